// SPDX-License-Identifier: MIT
// An attachment to a database: what stands for the network between client and server. Shared by
// the server handle and the sessions begun on it, which all have the same environment's lock.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "sandbox/store/database_file.h"
#include "sandbox/store/open_transaction.h"

namespace quillmere::sandbox {

class Link {
 public:
  // Attaches to `name` under QUILLMERE_SANDBOX_DIR, or ./sandbox. ORA-12154 when it is not there.
  // `new:name` makes it first, with the password 'sandbox'; refused when it is there.
  static Status Attach(const std::string& name, std::shared_ptr<Link>* out);
  static Status AttachFile(const DatabasePath& path, std::shared_ptr<Link>* out);

  // One exchange with the server: waits for QUILLMERE_SANDBOX_LATENCY_US on the caller's thread.
  void RoundTrip() const;

  const DatabasePath& path() const { return path_; }
  OpenTransaction& open_transaction() const { return *open_; }
  std::chrono::milliseconds lock_wait() const { return lock_wait_; }

 private:
  Link() = default;

  DatabasePath path_;
  std::unique_ptr<OpenTransaction> open_;
  std::chrono::microseconds latency_{0};
  std::chrono::milliseconds lock_wait_{60000};
};

// QUILLMERE_SANDBOX_DIR, or ./sandbox.
std::filesystem::path DatabaseDirectory();

}  // namespace quillmere::sandbox
