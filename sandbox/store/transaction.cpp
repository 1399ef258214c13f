// SPDX-License-Identifier: MIT
#include "sandbox/store/transaction.h"

#include <algorithm>

#include "sandbox/store/sql_runner.h"

namespace quillmere::sandbox {

namespace {

// A transaction that begins below it has SCNs enough.
constexpr std::int64_t kMaxScn = 1LL << 62;

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
  const auto scn = sql.Int("SELECT scn FROM qm_meta WHERE id = 1");
  const auto version = sql.Int("SELECT dict_version FROM qm_meta WHERE id = 1");
  if (!scn || !version) sql.Fail({1578, "the database file has lost its head record"});
  scn_ = scn.value_or(0);
  dictionary_version_ = version.value_or(0);
  if (scn_ < 0 || scn_ >= kMaxScn) sql.Fail(Ora(19706));
  if (!sql.ok()) Rollback();
  return sql.status();
}

Status Transaction::Commit() {
  Status status;
  if (active_ && changed_) {
    status = guard_([this] {
      SqlRunner sql(writer_);
      sql.Run("UPDATE qm_meta SET scn = ? WHERE id = 1", scn_ + 1);
      sql.Run("COMMIT");
      return sql.status();
    });
  }
  // What is left open is a failure, or had nothing to commit.
  Rollback();
  return status;
}

void Transaction::End() {
  // SQLite may have rolled back by itself, after a full disk for instance.
  if (writer_->InTransaction() && !Run("ROLLBACK").ok()) {
    writer_->ForgetCached();
    (void)writer_->Exec("ROLLBACK");
  }
  active_ = false;
  changed_ = false;
}

void Transaction::Rollback() {
  End();
  savepoints_.clear();
}

Status Transaction::BumpDictionary() {
  changed_ = true;
  SqlRunner sql(writer_);
  sql.Run("UPDATE qm_meta SET dict_version = ? WHERE id = 1", ++dictionary_version_);
  return sql.status();
}

void Transaction::UndoStatement() {
  const bool undone =
      writer_->InTransaction() && Run("ROLLBACK TO qm_statement").ok() && KeepStatement().ok();
  if (!undone) Rollback();
}

Status Transaction::SetSavepoint(const std::string& name) {
  std::erase_if(savepoints_, [&name](const Savepoint& point) { return point.name == name; });
  Savepoint point{name, 0};
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
  const int number = found->number;
  savepoints_.erase(found + 1, savepoints_.end());
  if (number != 0) return Run("ROLLBACK TO qm_user" + std::to_string(number));
  End();
  return {};
}

}  // namespace quillmere::sandbox
