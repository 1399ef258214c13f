// SPDX-License-Identifier: MIT
// One program per working folder: the lock lies on the folder itself, and on quillmere.lock in it,
// which says who has it. Both go with the process, however it ends; the file stays. Who removes it
// lets nobody in.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "foundation/files.h"

namespace quillmere {

// One thread at a time. The file system must outlive a lock that is taken.
class FolderLock {
 public:
  // Waits a moment for a program that only looks whether the folder is taken. False: the reason
  // says which program has the folder, or why the lock file cannot be made.
  bool Take(FileSystem& files, const std::filesystem::path& folder, std::string& reason);

  // True when a program has taken the folder. Changes nothing and makes no file.
  static bool IsTaken(FileSystem& files, const std::filesystem::path& folder);

 private:
  std::unique_ptr<OpenFile> folder_, file_;
};

}  // namespace quillmere
