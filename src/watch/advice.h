// SPDX-License-Identifier: MIT
// What usually helps with an error of the server. Any thread.
#pragma once

#include <string_view>

#include "watch/problem_file.h"

namespace quillmere {

// A sentence or two; never empty.
std::string_view AdviceFor(const JobProblem& problem);

}  // namespace quillmere
