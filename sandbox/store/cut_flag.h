// SPDX-License-Identifier: MIT
// The side file that tells every attached session that its connection has been cut. A session
// compares a counter in shared memory at each round trip, and holds the file's shared lock while
// it commits, so that no commit can follow a cut.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>

#include "sandbox/base/status.h"

namespace quillmere::sandbox {

class CutFlag {
 public:
  // Makes the file (owner-only) when it is not there.
  static Status Open(const std::filesystem::path& path, std::unique_ptr<CutFlag>* out);
  ~CutFlag();
  CutFlag(const CutFlag&) = delete;
  CutFlag& operator=(const CutFlag&) = delete;

  std::uint64_t Count() const { return counter_->load(std::memory_order_acquire); }

  // Cuts every session attached now: when it returns none of them can commit any more.
  Status Raise();

  Status LockForCommit();
  void Unlock();

 private:
  CutFlag(std::intptr_t file, std::atomic<std::uint64_t>* counter)
      : file_(file), counter_(counter) {}

  std::intptr_t file_;
  std::atomic<std::uint64_t>* counter_;  // in the mapped file
};

}  // namespace quillmere::sandbox
