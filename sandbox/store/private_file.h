// SPDX-License-Identifier: MIT
// Files that nobody but their owner may read.
#pragma once

#include <filesystem>
#include <string>

namespace quillmere::sandbox {

// Makes an empty file with owner-only access from its first moment; false with a reason when it
// exists or cannot be made.
bool MakePrivateFile(const std::filesystem::path& path, std::string* reason);

}  // namespace quillmere::sandbox
