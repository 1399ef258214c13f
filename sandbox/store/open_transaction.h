// SPDX-License-Identifier: MIT
// What sessions must know of a transaction that is still open, although the database file shows it
// to nobody: that it is there, and how far the SCNs have gone. Kept in a side file that all map
// into memory. Who writes holds the file's lock, so that a process that dies takes its transaction
// along. Belongs to one link and is used as that is.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "sandbox/base/status.h"
#include "sandbox/store/platform.h"

namespace quillmere::sandbox {

// The transaction and the session it belongs to.
struct TransactionRecord {
  std::int64_t start_scn = 0;
  std::string started;  // canonical date
  std::string user;
  std::string machine;
  std::string program;
  std::int64_t process = 0;
};

class OpenTransaction {
 public:
  // Makes the file (owner-only) when it is not there.
  static Status Open(const std::filesystem::path& path, std::unique_ptr<OpenTransaction>* out);
  ~OpenTransaction();
  OpenTransaction(const OpenTransaction&) = delete;
  OpenTransaction& operator=(const OpenTransaction&) = delete;

  // The largest SCN given to a change or commit, also one that was taken back: it is never given
  // again. A power cut may take it back to that of the last commit.
  std::int64_t last_scn() const;
  void set_last_scn(std::int64_t scn);

  // By the one writer: shows its transaction to all; machine, program and process are those that
  // it runs in.
  Status Show(const TransactionRecord& record);
  // Called when its end is in the database file, so that nobody sees neither.
  void Hide();
  // False when no transaction is open.
  bool Find(TransactionRecord* out) const;

 private:
  struct Shared;

  explicit OpenTransaction(SharedFile file);

  SharedFile file_;
  Shared* shared_;
  bool shown_ = false;  // by this link: its own lock tells it nothing
};

}  // namespace quillmere::sandbox
