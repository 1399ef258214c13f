// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "sandbox/store/cut_flag.h"

namespace quillmere::sandbox {

namespace {

static_assert(std::atomic<std::uint64_t>::is_always_lock_free, "the counter lies in shared memory");

Status Failure(const std::filesystem::path& path) {
  return {1110, "cannot use " + path.string() + ": " + std::strerror(errno)};
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
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (file < 0) return Failure(path);
  const bool sized = ftruncate(file, sizeof(std::uint64_t)) == 0;
  void* memory =
      sized ? mmap(nullptr, sizeof(std::uint64_t), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0)
            : MAP_FAILED;
  if (memory == MAP_FAILED) {
    const Status status = Failure(path);
    close(file);
    return status;
  }
  out->reset(new CutFlag(file, static_cast<std::atomic<std::uint64_t>*>(memory)));
  return {};
}

CutFlag::~CutFlag() {
  munmap(counter_, sizeof(std::uint64_t));
  close(static_cast<int>(file_));
}

Status CutFlag::Raise() {
  if (!Lock(file_, LOCK_EX)) return {1110, std::strerror(errno)};
  counter_->fetch_add(1, std::memory_order_acq_rel);
  Unlock();
  return {};
}

Status CutFlag::LockForCommit() {
  return Lock(file_, LOCK_SH) ? Status() : Status(1110, std::strerror(errno));
}

void CutFlag::Unlock() {
  Lock(file_, LOCK_UN);
}

}  // namespace quillmere::sandbox
