#include "sandbox/store/transaction.h"

#include <algorithm>

namespace quillmere::sandbox {

Status Transaction::Run(const char* sql) {
  SqliteStatement* statement = nullptr;
  if (Status status = writer_->Cached(sql, &statement); !status.ok()) return status;
  return statement->Run();
}

Status Transaction::Begin() {
  if (active_) return {};
  if (Status status = Run("BEGIN IMMEDIATE"); !status.ok()) return status;
  active_ = true;
  changed_ = false;
  SqliteStatement* meta = nullptr;
  Status status = writer_->Cached("SELECT scn, dict_version FROM qm_meta WHERE id = 1", &meta);
  bool row = false;
  if (status.ok()) status = meta->Step(&row);
  if (status.ok() && !row) status = {1578, "the database file has lost its head record"};
  if (!status.ok()) {
    Rollback();
    return status;
  }
  scn_ = meta->Int(0);
  dictionary_version_ = meta->Int(1);
  meta->Reset();
  return {};
}

Status Transaction::Commit() {
  if (!active_) {
    savepoints_.clear();
    return {};
  }
  if (!changed_) {
    Rollback();
    return {};
  }
  const Status status = guard_([this]() -> Status {
    SqliteStatement* update = nullptr;
    Status done = writer_->Cached("UPDATE qm_meta SET scn = ? WHERE id = 1", &update);
    if (!done.ok()) return done;
    update->BindInt(1, scn_ + 1);
    if (done = update->Run(); !done.ok()) return done;
    return Run("COMMIT");
  });
  if (!status.ok()) {
    Rollback();
    return status;
  }
  active_ = false;
  changed_ = false;
  savepoints_.clear();
  return {};
}

void Transaction::Rollback() {
  // SQLite may have rolled back by itself, after a full disk for instance.
  if (writer_->InTransaction() && !Run("ROLLBACK").ok()) {
    writer_->ForgetCached();
    (void)writer_->Exec("ROLLBACK");
  }
  active_ = false;
  changed_ = false;
  savepoints_.clear();
}

Status Transaction::BumpDictionary() {
  changed_ = true;
  ++dictionary_version_;
  SqliteStatement* update = nullptr;
  Status status = writer_->Cached("UPDATE qm_meta SET dict_version = ? WHERE id = 1", &update);
  if (!status.ok()) return status;
  update->BindInt(1, dictionary_version_);
  return update->Run();
}

Status Transaction::MarkStatement() {
  return Run("SAVEPOINT qm_statement");
}

Status Transaction::KeepStatement() {
  return Run("RELEASE qm_statement");
}

void Transaction::UndoStatement() {
  if (!writer_->InTransaction()) {
    // The failure was so grave that SQLite took the whole transaction back.
    Rollback();
    return;
  }
  if (!Run("ROLLBACK TO qm_statement").ok() || !Run("RELEASE qm_statement").ok()) Rollback();
}

Status Transaction::SetSavepoint(const std::string& name) {
  std::erase_if(savepoints_, [&name](const Savepoint& point) { return point.name == name; });
  Savepoint point{name, 0};
  if (active_) {
    point.number = next_savepoint_++;
    Status status = writer_->Exec("SAVEPOINT qm_user" + std::to_string(point.number));
    if (!status.ok()) return status;
  }
  savepoints_.push_back(point);
  return {};
}

Status Transaction::RollbackTo(const std::string& name) {
  const auto found = std::find_if(savepoints_.begin(), savepoints_.end(),
                                  [&name](const Savepoint& point) { return point.name == name; });
  if (found == savepoints_.end()) return Ora(1086, name);
  if (found->number != 0) {
    Status status = writer_->Exec("ROLLBACK TO qm_user" + std::to_string(found->number));
    savepoints_.erase(found + 1, savepoints_.end());
    return status;
  }
  std::vector<Savepoint> kept(savepoints_.begin(), found + 1);
  Rollback();
  savepoints_ = std::move(kept);
  return {};
}

}  // namespace quillmere::sandbox
