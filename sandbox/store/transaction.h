// SPDX-License-Identifier: MIT
// The one transaction of a session: begun by its first change, on a connection that only writes.
// Hands out the SCNs of the changes made in it. Used by the thread that holds the session.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "sandbox/store/sqlite.h"

namespace quillmere::sandbox {

class Transaction {
 public:
  // `committing` runs the commit it is given when it may happen at all.
  using CommitGuard = std::function<Status(const std::function<Status()>&)>;

  // `writer` must outlive it.
  Transaction(SqliteConnection* writer, CommitGuard guard)
      : writer_(writer), guard_(std::move(guard)) {}

  bool active() const { return active_; }
  bool changed() const { return changed_; }
  std::int64_t dictionary_version() const { return dictionary_version_; }

  // Waits for another writer to end; ORA-00054 when that takes too long, ORA-19706 when the SCNs
  // are used up. Failed, there is no transaction.
  Status Begin();
  // Failed, the transaction has been rolled back.
  Status Commit();
  void Rollback();

  // The SCN of the next change.
  std::int64_t NextScn() {
    changed_ = true;
    return ++scn_;
  }
  // After the transaction's only statement was undone: nothing is left to commit.
  void ForgetChanges() { changed_ = false; }
  // Ends a transaction that changed nothing, and its lock; savepoints set before it stay.
  void LetGo() {
    if (active_ && !changed_) End();
  }
  // Says that the dictionary changed with this transaction.
  Status BumpDictionary();

  // Statement-level atomicity: Mark before, then Keep or Undo, which always succeeds: where SQLite
  // has taken the whole transaction back, that is rolled back here too.
  Status MarkStatement() { return Run("SAVEPOINT qm_statement"); }
  Status KeepStatement() { return Run("RELEASE qm_statement"); }
  void UndoStatement();

  // A savepoint of the same name moves. ORA-01086 for one that is not there; the work stays then.
  Status SetSavepoint(const std::string& name);
  Status RollbackTo(const std::string& name);

 private:
  Status Run(const std::string& sql);
  void End();

  struct Savepoint {
    std::string name;
    int number = 0;  // 0: set before the transaction began
  };

  SqliteConnection* writer_;
  CommitGuard guard_;
  bool active_ = false;
  bool changed_ = false;
  std::int64_t scn_ = 0;
  std::int64_t dictionary_version_ = 0;
  int next_savepoint_ = 1;
  std::vector<Savepoint> savepoints_;
};

}  // namespace quillmere::sandbox
