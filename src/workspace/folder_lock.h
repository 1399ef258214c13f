// One program per working folder: the lock lies on quillmere.lock in it and goes with the process,
// however it ends. The file itself stays.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace quillmere {

// Each platform has a file of its own.
class FolderLock {
 public:
  FolderLock() = default;
  ~FolderLock() { Release(); }
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  // Waits a moment for a program that only looks whether the folder is taken. False: the reason
  // says which program has the folder, or why the lock file cannot be made.
  bool Take(const std::filesystem::path& folder, std::string& reason);
  void Release();

  // True when a program has taken the folder. Changes nothing and makes no file.
  static bool IsTaken(const std::filesystem::path& folder);

 private:
  static constexpr std::ptrdiff_t kNone = -1;
  std::ptrdiff_t handle_ = kNone;
};

}  // namespace quillmere
