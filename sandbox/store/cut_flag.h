// SPDX-License-Identifier: MIT
// The side file that tells every attached session that its connection has been cut. Every cut makes
// it longer by a byte; a session compares its size at each round trip, and holds its shared lock
// while it commits, so that no commit can follow a cut. Belongs to one link and is used as that is.
#pragma once

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

  // Larger after each cut; 0 when the file cannot be looked at, which is not what it was either.
  std::uint64_t Count() const;

  // Cuts every session attached now: when it returns none of them can commit any more.
  Status Raise();

  // Waits for a cut that is under way.
  Status LockForCommit();
  void Unlock();

 private:
  explicit CutFlag(std::intptr_t file) : file_(file) {}

  std::intptr_t file_;
};

}  // namespace quillmere::sandbox
