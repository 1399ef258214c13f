// SPDX-License-Identifier: MIT
// Files that come with the program: the manual and the skins.
#pragma once

#include <filesystem>
#include <string>

#include "foundation/file_system.h"

namespace quillmere {

// Looks for a file in the working folder, beside the program, and where the system's packages put
// what programs share. Empty when it is nowhere; tried then names the places.
std::filesystem::path FindSharedFile(FileSystem& files, const std::filesystem::path& relative,
                                     const std::filesystem::path& working_folder,
                                     const std::filesystem::path& program_folder,
                                     std::string& tried);

}  // namespace quillmere
