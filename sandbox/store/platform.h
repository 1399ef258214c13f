// SPDX-License-Identifier: MIT
// What the platform gives: files that nobody but their owner may read, and one-way hashes. Plain
// functions, for any thread.
#pragma once

#include <filesystem>
#include <string>

#include "sandbox/base/status.h"

namespace quillmere::sandbox {

// Makes an empty file with owner-only access from its first moment. ORA-01119 when it exists or
// cannot be made.
Status MakePrivateFile(const std::filesystem::path& path);

// Salted, so that the database file does not give passwords away; empty when the platform refuses.
std::string HashPassword(const std::string& password);
bool PasswordMatches(const std::string& password, const std::string& hash);

}  // namespace quillmere::sandbox
