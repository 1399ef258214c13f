// SPDX-License-Identifier: MIT
// Salted one-way hashes of passwords, so that the database file does not give them away.
#pragma once

#include <string>

namespace quillmere::sandbox {

// Empty on failure of the platform's hash.
std::string HashPassword(const std::string& password);
bool PasswordMatches(const std::string& password, const std::string& hash);

}  // namespace quillmere::sandbox
