// SPDX-License-Identifier: MIT
#include "sandbox/session/row_changer.h"

#include <algorithm>
#include <set>

#include "sandbox/session/row_values.h"

namespace quillmere::sandbox {

namespace {

Status NotNull(const Table& table, const Column& column, bool insert) {
  const std::string name = "(" + QuotedColumn(table, column) + ")";
  return insert ? Status(1400, "cannot insert NULL into " + name)
                : Status(1407, "cannot update " + name + " to NULL");
}

// SQLite names its index or its columns ("t5.c7, t5.c8"); the operator wants the constraint.
Status NameUniqueKey(const Table& table, const Status& failure) {
  constexpr std::string_view kMark = "UNIQUE constraint failed: ";
  const std::size_t at = failure.message().find(kMark);
  if (at == std::string::npos) return failure;
  const std::string what = failure.message().substr(at + kMark.size());
  for (const UniqueKey& key : table.keys) {
    std::string names;
    for (const std::size_t column : key.columns) {
      names +=
          (names.empty() ? "" : ", ") + table.SqlName() + "." + table.columns[column].SqlName();
    }
    if (what == names + "]" || what == "index '" + key.sql_index + "']") {
      return {1, "unique constraint (" + key.owner + "." + key.name + ") violated"};
    }
  }
  return Ora(1);
}

}  // namespace

bool RowChanger::Read(const Table& table, std::int64_t row, RowValues* out) {
  out->clear();
  sql_.Each(
      "SELECT " + table.SqlColumns() + " FROM " + table.SqlName() + " WHERE rid = ?",
      [&](const SqliteStatement& found) { *out = ValuesOf(found, 0, table.columns.size()); }, row);
  return !out->empty();
}

void RowChanger::WriteRedo(const Table& table, const RedoRecord& record, std::int64_t row) {
  if (!sql_.ok()) return;
  // Of a temporary table it is kept that there was a change, not which.
  if (table.temporary) transaction_.ClearAtCommit(table.SqlName());
  const Blob values{table.temporary ? "" : EncodeRecord(record)};
  sql_.Fail(transaction_.WriteRedo(table.shape, static_cast<int>(record.operation), row, values));
}

// The columns that the redo of an update tells the row by: all unless only keys or nothing is
// logged beside what changed.
std::vector<std::size_t> RowChanger::LoggedColumns(const Table& table, const RowChanges& changes) {
  const std::string& supplemental = transaction_.supplemental();
  std::set<std::size_t> logged;
  if (supplemental == "ALL" || table.supplemental == "ALL") return {};
  for (const auto& change : changes) logged.insert(change.first);
  const UniqueKey* key = table.PrimaryKey();
  const bool log_key = supplemental == "KEY" || table.supplemental == "KEY";
  if (log_key && key != nullptr) logged.insert(key->columns.begin(), key->columns.end());
  return {logged.begin(), logged.end()};
}

void RowChanger::WriteRow(const Table& table, std::optional<std::int64_t> row,
                          const RowValues& values) {
  if (!sql_.ok()) return;
  std::string marks = "?";
  for (std::size_t i = 0; i < values.size(); ++i) marks += ",?";
  SqlRunner write(&writer_);
  write.Run(
      "INSERT INTO " + table.SqlName() + "(rid," + table.SqlColumns() + ") VALUES(" + marks + ")",
      row, values);
  if (!write.ok()) sql_.Fail(NameUniqueKey(table, write.status()));
}

void RowChanger::RemoveRow(const Table& table, std::int64_t row) {
  sql_.Run("DELETE FROM " + table.SqlName() + " WHERE rid = ?", row);
}

void RowChanger::Insert(const Table& table, const RowValues& row) {
  for (std::size_t i = 0; i < row.size(); ++i) {
    const Column& column = table.columns[i];
    if (!row[i] && !column.nullable) sql_.Fail(NotNull(table, column, true));
  }
  WriteRow(table, std::nullopt, row);
  NoteParents(table, row, nullptr);
  WriteRedo(table, {RedoOperation::Insert, row, {}, {}}, sql_.LastRowId());
}

void RowChanger::Delete(const Table& table, std::int64_t row) {
  RowValues old_values;
  if (!Read(table, row, &old_values)) return;
  // The statement may yet remove the children itself.
  NoteChildren(table, old_values, nullptr);
  RemoveRow(table, row);
  WriteRedo(table, {RedoOperation::Delete, old_values, {}, {}}, row);
}

void RowChanger::Update(const Table& table, const std::vector<RowUpdate>& updates) {
  for (const RowUpdate& update : updates) RemoveRow(table, update.row);
  for (const RowUpdate& update : updates) {
    RowValues values = update.old_values;
    for (const auto& [index, value] : update.changes) {
      const Column& column = table.columns[index];
      if (!value && !column.nullable) sql_.Fail(NotNull(table, column, false));
      values[index] = value;
    }
    WriteRow(table, update.row, values);
    NoteParents(table, values, &update.changes);
    NoteChildren(table, update.old_values, &update.changes);
    WriteRedo(table,
              {RedoOperation::Update, update.old_values, update.changes,
               LoggedColumns(table, update.changes)},
              update.row);
  }
}

}  // namespace quillmere::sandbox
