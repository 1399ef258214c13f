// SPDX-License-Identifier: MIT
// What the platform gives: files that nobody but their owner may read, their locks, memory that
// processes share, what a process is, and one-way hashes. Plain functions, for any thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "sandbox/base/status.h"

namespace quillmere::sandbox {

// Makes an empty file with owner-only access from its first moment. ORA-01119 when it exists or
// cannot be made.
Status MakePrivateFile(const std::filesystem::path& path);

// Locks of a whole file by its descriptor, gone when that is closed or its process dies. False when
// `Try` finds another's lock.
enum class FileLock { Exclusive, Try, None };
bool LockFile(std::intptr_t file, FileLock lock);
// ORA-01110 with what the system says of the latest call.
Status FileFailure(const std::string& what);

// A file that all who map it write and read as one piece of memory. Made (owner-only) when it is
// not there; ORA-01110 when that fails.
struct SharedFile {
  std::intptr_t file = -1;
  void* memory = nullptr;
};
Status MapShared(const std::filesystem::path& path, std::size_t size, SharedFile* out);
void Unmap(const SharedFile& shared, std::size_t size);

struct ProcessFacts {
  std::int64_t number = 0;
  std::string machine;
  std::string program;  // its file's name
};
ProcessFacts ThisProcess();

// Salted, so that the database file does not give passwords away; empty when the platform refuses.
std::string HashPassword(const std::string& password);
bool PasswordMatches(const std::string& password, const std::string& hash);

}  // namespace quillmere::sandbox
