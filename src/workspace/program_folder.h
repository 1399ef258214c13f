// SPDX-License-Identifier: MIT
// Where the running program stands: its sandbox library stands beside it.
#pragma once

#include <filesystem>

namespace quillmere {

// The folder of the program's file; empty when the system does not tell. Any thread. Each platform
// has a file of its own.
std::filesystem::path ProgramFolder();

}  // namespace quillmere
