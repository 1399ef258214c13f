// SPDX-License-Identifier: MIT
#include "sandbox/store/transaction.h"

#include <algorithm>

#include "sandbox/store/redo_logs.h"
#include "sandbox/values/datetime.h"

namespace quillmere::sandbox {

namespace {

// A transaction that begins below it has SCNs enough.
constexpr std::int64_t kMaxScn = 1LL << 62;

// Operations of the redo that change no row.
constexpr int kStart = 6;
constexpr int kCommit = 7;

}  // namespace

Status Transaction::Run(const std::string& sql) {
  SqlRunner runner(writer_);
  runner.Run(sql);
  return runner.status();
}

Status Transaction::Begin() {
  if (active_) return {};
  SqlRunner sql(writer_);
  sql.Run("BEGIN IMMEDIATE");
  if (!sql.ok()) return sql.status();
  active_ = true;
  changed_ = false;
  std::int64_t committed = -1;
  sql.Each("SELECT scn, dict_version, log_size > 0, supplemental FROM qm_meta WHERE id = 1",
           [&](const SqliteStatement& row) {
             committed = row.Int(0);
             dictionary_version_ = row.Int(1);
             logs_switch_ = row.Int(2) != 0;
             supplemental_ = row.Text(3);
           });
  scn_ = std::max(committed, shown_.last_scn());
  redo_bytes_ = 0;
  temporary_.clear();
  if (committed < 0 || scn_ >= kMaxScn) sql.Fail(Ora(19706));
  if (!sql.ok()) Rollback();
  return sql.status();
}

Status Transaction::Start() {
  if (changed_) return {};
  TransactionRecord record;
  record.start_scn = start_scn_ = ++scn_;
  record.started = started_ = DateTime::Now().Canonical(Kind::Date);
  record.user = user_;
  Status status = shown_.Show(record);
  changed_ = status.ok();
  return status;
}

Status Transaction::Commit() {
  SqlRunner sql(writer_);
  if (active_ && changed_) {
    PrepareCommit(&sql);
    sql.Run("COMMIT");
    // Not before: who saw it would take the commit for one that can be read.
    if (sql.ok()) shown_.set_last_scn(scn_);
  }
  // What is left open is a failure, or had nothing to commit.
  Rollback();
  return sql.status();
}

void Transaction::PrepareCommit(SqlRunner* sql) {
  for (const std::string& table : temporary_) sql->Exec("DELETE FROM " + table);
  sql->Run("UPDATE qm_meta SET scn = ? WHERE id = 1", ++scn_);
  sql->Run("INSERT INTO qm_transaction VALUES(?, ?, ?, ?)", start_scn_, scn_, started_,
           DateTime::Now().Canonical(Kind::Date));
  // Around the changes, which have SCNs between the two.
  if (redo_bytes_ > 0) Write(sql, {start_scn_, 0, kStart, false, 0, {}});
  if (redo_bytes_ > 0) Write(sql, {scn_, 0, kCommit, false, 0, {}});
  if (logs_switch_) AddToRedoLog(sql, redo_bytes_, scn_);
}

Status Transaction::WriteRedo(std::int64_t shape, int operation, std::int64_t row,
                              const Blob& values) {
  SqlRunner sql(writer_);
  sql.Fail(Start());
  Write(&sql, {++scn_, shape, operation, false, row, values});
  shown_.set_last_scn(scn_);
  return sql.status();
}

void Transaction::Write(SqlRunner* sql, const Change& change) {
  constexpr std::int64_t kHead = 100;  // what a change costs besides its values
  redo_bytes_ += kHead + static_cast<std::int64_t>(change.values.bytes.size());
  sql->Run("INSERT INTO qm_redo VALUES(?, ?, ?, ?, ?, ?, ?)", change.scn, start_scn_, change.shape,
           change.operation, change.undo ? 1 : 0, change.row, change.values);
}

void Transaction::End() {
  // SQLite may have rolled back by itself, after a full disk for instance.
  if (writer_->InTransaction() && !Run("ROLLBACK").ok()) {
    writer_->ForgetCached();
    (void)writer_->Exec("ROLLBACK");
  }
  shown_.Hide();
  active_ = false;
  changed_ = false;
}

void Transaction::Rollback() {
  End();
  savepoints_.clear();
}

Status Transaction::BumpDictionary() {
  SqlRunner sql(writer_);
  sql.Fail(Start());
  sql.Run("UPDATE qm_meta SET dict_version = ? WHERE id = 1", ++dictionary_version_);
  return sql.status();
}

void Transaction::UndoStatement() {
  const bool undone = writer_->InTransaction() && TakeBack("qm_statement", statement_scn_).ok() &&
                      KeepStatement().ok();
  if (!undone) Rollback();
}

Status Transaction::SetSavepoint(const std::string& name) {
  std::erase_if(savepoints_, [&name](const Savepoint& point) { return point.name == name; });
  Savepoint point{name, 0, scn_};
  if (active_) {
    point.number = next_savepoint_++;
    Status status = Run("SAVEPOINT qm_user" + std::to_string(point.number));
    if (!status.ok()) return status;
  }
  savepoints_.push_back(point);
  return {};
}

Status Transaction::RollbackTo(const std::string& name) {
  const auto found = std::find_if(savepoints_.begin(), savepoints_.end(),
                                  [&name](const Savepoint& point) { return point.name == name; });
  if (found == savepoints_.end()) return Ora(1086, name);
  const Savepoint point = *found;
  savepoints_.erase(found + 1, savepoints_.end());
  if (point.number == 0) End();
  if (point.number == 0) return {};
  return TakeBack("qm_user" + std::to_string(point.number), point.scn);
}

Status Transaction::TakeBack(const std::string& savepoint, std::int64_t scn) {
  SqlRunner sql(writer_);
  std::vector<Change> changes;
  sql.Each(
      "SELECT scn, shape, operation, undo, row, data FROM qm_redo WHERE scn > ?",
      [&changes](const SqliteStatement& row) {
        changes.push_back({row.Int(0), row.Int(1), row.Int(2), row.Int(3) != 0, row.Int(4),
                           Blob{std::string(row.Text(5))}});
      },
      scn);
  sql.Run("ROLLBACK TO " + savepoint);
  std::vector<const Change*> standing;  // not undone yet
  for (const Change& change : changes) {
    Write(&sql, change);
    change.undo ? standing.pop_back() : standing.push_back(&change);
  }
  for (auto change = standing.rbegin(); change != standing.rend(); ++change) {
    Change undo = **change;
    undo.scn = ++scn_;
    undo.undo = true;
    Write(&sql, undo);
  }
  shown_.set_last_scn(scn_);
  return sql.status();
}

}  // namespace quillmere::sandbox
