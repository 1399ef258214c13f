// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "sandbox/store/cut_flag.h"
#include "sandbox/store/platform.h"

namespace quillmere::sandbox {

Status CutFlag::Open(const std::filesystem::path& path, std::unique_ptr<CutFlag>* out) {
  constexpr int kFlags = O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC;
  const int file = open(path.c_str(), kFlags, 0600);
  if (file < 0) return FileFailure("use " + path.string());
  out->reset(new CutFlag(file));
  return {};
}

CutFlag::~CutFlag() {
  close(static_cast<int>(file_));
}

std::uint64_t CutFlag::Count() const {
  struct stat info {};
  if (fstat(static_cast<int>(file_), &info) != 0) return 0;
  return static_cast<std::uint64_t>(info.st_size) + 1;
}

Status CutFlag::Raise() {
  if (!LockFile(file_, FileLock::Exclusive)) return FileFailure("lock the cut file");
  const bool written = write(static_cast<int>(file_), "x", 1) == 1;
  Status status = written ? Status() : FileFailure("write the cut file");
  Unlock();
  return status;
}

Status CutFlag::LockForCommit() {
  return LockFile(file_, FileLock::Shared) ? Status() : FileFailure("lock the cut file");
}

void CutFlag::Unlock() {
  LockFile(file_, FileLock::None);
}

}  // namespace quillmere::sandbox
