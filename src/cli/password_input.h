// SPDX-License-Identifier: MIT
// Where a password comes from: a file or standard input, never an argument.
#pragma once

#include <string>

namespace quillmere::cli {

// From the file, or from standard input when it is empty. The line end behind it is no part of it.
// False: the reason.
bool ReadPassword(const std::string& file, const std::string& prompt, std::string& password,
                  std::string& reason);

}  // namespace quillmere::cli
