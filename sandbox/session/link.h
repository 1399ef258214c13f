// SPDX-License-Identifier: MIT
// An attachment to a database: what stands for the network between client and server. Shared by
// the server handle and the sessions begun on it, which all have the same environment's lock.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "sandbox/store/cut_flag.h"
#include "sandbox/store/database_file.h"
#include "sandbox/store/open_transaction.h"

namespace quillmere::sandbox {

class Link {
 public:
  // Attaches to `name` under QUILLMERE_SANDBOX_DIR, or ./sandbox. ORA-12154 when it is not there.
  static Status Attach(const std::string& name, std::shared_ptr<Link>* out);
  static Status AttachFile(const DatabasePath& path, std::shared_ptr<Link>* out);

  // One exchange with the server: waits for QUILLMERE_SANDBOX_LATENCY_US, then ORA-03113 when the
  // connection has been cut since it was attached, and ORA-03114 ever after. On the caller's
  // thread.
  Status RoundTrip();
  bool IsCut() const { return dead_ || cut_->Count() != seen_; }

  // Runs `commit` with the certainty that no cut comes between the check and the commit.
  template <typename Commit>
  Status Committing(Commit commit) {
    if (Status status = cut_->LockForCommit(); !status.ok()) return status;
    Status status = IsCut() ? Fail() : commit();
    cut_->Unlock();
    return status;
  }

  const DatabasePath& path() const { return path_; }
  OpenTransaction& open_transaction() const { return *open_; }
  std::chrono::milliseconds lock_wait() const { return lock_wait_; }

 private:
  Link() = default;
  Status Fail();

  DatabasePath path_;
  std::unique_ptr<CutFlag> cut_;
  std::unique_ptr<OpenTransaction> open_;
  std::uint64_t seen_ = 0;
  bool dead_ = false;
  std::chrono::microseconds latency_{0};
  std::chrono::milliseconds lock_wait_{60000};
};

// QUILLMERE_SANDBOX_DIR, or ./sandbox.
std::filesystem::path DatabaseDirectory();

}  // namespace quillmere::sandbox
