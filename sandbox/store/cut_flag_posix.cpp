// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "sandbox/store/cut_flag.h"

namespace quillmere::sandbox {

namespace {

Status Failure(const std::string& what) {
  return {1110, "cannot " + what + ": " + std::strerror(errno)};
}

bool Lock(std::intptr_t file, int how) {
  int result = 0;
  do {
    result = flock(static_cast<int>(file), how);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

}  // namespace

Status CutFlag::Open(const std::filesystem::path& path, std::unique_ptr<CutFlag>* out) {
  constexpr int kFlags = O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC;
  const int file = open(path.c_str(), kFlags, 0600);
  if (file < 0) return Failure("use " + path.string());
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
  if (!Lock(file_, LOCK_EX)) return Failure("lock the cut file");
  const bool written = write(static_cast<int>(file_), "x", 1) == 1;
  Status status = written ? Status() : Failure("write the cut file");
  Unlock();
  return status;
}

Status CutFlag::LockForCommit() {
  return Lock(file_, LOCK_SH) ? Status() : Failure("lock the cut file");
}

void CutFlag::Unlock() {
  Lock(file_, LOCK_UN);
}

}  // namespace quillmere::sandbox
