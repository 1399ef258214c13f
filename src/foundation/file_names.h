// SPDX-License-Identifier: MIT
// Names of jobs and data sources become file and folder names, on Windows and on Linux.
#pragma once

#include <string>
#include <string_view>

namespace quillmere {

// Why the text cannot be a file name ("... must not contain '/'"); empty when it can be one.
std::string WhyNoFileName(std::string_view name);

// True when two names would meet in one file where file names ignore the case of ASCII letters.
bool SameFileName(std::string_view a, std::string_view b);

}  // namespace quillmere
