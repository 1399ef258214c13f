// SPDX-License-Identifier: MIT
// What the doctor of the core says, in the language of the window; what it does not know, and what
// a server said, stays as it is. Any thread.
#pragma once

#include <string>
#include <string_view>

#include "doctor/doctor.h"

namespace quillmere {

std::string CheckAsShown(std::string_view name);

// Of a cure only what is a sentence: statements and commands stay.
Finding AsShown(Finding finding);

}  // namespace quillmere
