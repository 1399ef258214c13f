// SPDX-License-Identifier: MIT
// The one transaction of a session: begun by its first change, on a connection that only writes.
// Hands out the SCNs of the changes made in it and shows all sessions that it is open. Used by the
// thread that holds the session.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "sandbox/store/open_transaction.h"
#include "sandbox/store/sql_runner.h"

namespace quillmere::sandbox {

class Transaction {
 public:
  // `writer` and `shown` must outlive it.
  Transaction(SqliteConnection* writer, OpenTransaction* shown, std::string user)
      : writer_(writer), shown_(*shown), user_(std::move(user)) {}

  bool active() const { return active_; }
  bool changed() const { return changed_; }
  // The SCN given latest.
  std::int64_t last_scn() const { return scn_; }
  // NONE, MIN, KEY or ALL, as at the beginning.
  const std::string& supplemental() const { return supplemental_; }

  // Waits for another writer to end; ORA-00054 when that takes too long, ORA-19706 when the SCNs
  // are used up. Failed, there is no transaction.
  Status Begin();
  // Failed, the transaction has been rolled back.
  Status Commit();
  void Rollback();

  // Before the first change: makes it one that has something to commit, and others see it from now
  // on.
  Status Start();
  // Writes a change to the redo: its values, which are of the form `shape`, beside the row.
  Status WriteRedo(std::int64_t shape, int operation, std::int64_t row, const Blob& values);
  // The rows of a temporary table, by its name in SQL, go when the transaction ends.
  void ClearAtCommit(const std::string& table) { temporary_.insert(table); }
  // After the transaction's only statement was undone: nothing is left to commit.
  void ForgetChanges() { changed_ = false; }
  // Ends a transaction that changed nothing, and its lock; savepoints set before it stay.
  void LetGo() {
    if (active_ && !changed_) End();
  }
  // Says that the dictionary changed with this transaction.
  Status BumpDictionary();

  // Statement-level atomicity: Mark before, then Keep or Undo, which always succeeds: where SQLite
  // has taken the whole transaction back, that is rolled back here too. What is taken back here,
  // and by RollbackTo, stays in the redo, each change followed by one that undoes it.
  Status MarkStatement() {
    statement_scn_ = scn_;
    return Run("SAVEPOINT qm_statement");
  }
  Status KeepStatement() { return Run("RELEASE qm_statement"); }
  void UndoStatement();

  // A savepoint of the same name moves. ORA-01086 for one that is not there; the work stays then.
  Status SetSavepoint(const std::string& name);
  Status RollbackTo(const std::string& name);

 private:
  // A change in the redo; of one that undoes another the latter's operation and values.
  struct Change {
    std::int64_t scn = 0;
    std::int64_t shape = 0;
    std::int64_t operation = 0;
    bool undo = false;
    std::int64_t row = 0;
    Blob values;
  };

  Status Run(const std::string& sql);
  void End();
  void PrepareCommit(SqlRunner* sql);
  // Back to the savepoint of SQLite, after which the SCN stood there.
  Status TakeBack(const std::string& savepoint, std::int64_t scn);
  void Write(SqlRunner* sql, const Change& change);

  struct Savepoint {
    std::string name;
    int number = 0;  // 0: set before the transaction began
    std::int64_t scn = 0;
  };

  SqliteConnection* writer_;
  OpenTransaction& shown_;
  std::string user_;
  bool active_ = false;
  bool changed_ = false;
  std::int64_t scn_ = 0;
  std::int64_t start_scn_ = 0;  // its number in the redo
  std::string started_;
  std::string supplemental_;
  bool logs_switch_ = false;
  std::int64_t redo_bytes_ = 0;
  std::set<std::string> temporary_;
  std::int64_t statement_scn_ = 0;
  std::int64_t dictionary_version_ = 0;
  int next_savepoint_ = 1;
  std::vector<Savepoint> savepoints_;
};

}  // namespace quillmere::sandbox
