#include "sandbox/session/row_changer.h"

#include <algorithm>

#include "sandbox/session/row_values.h"

namespace quillmere::sandbox {

namespace {

// The SQL of a table that all its rows share, e.g. "INSERT INTO t5(rid,c7,c8) VALUES(?1,?2,?3)".
std::string WriteSql(const Table& table, const char* verb) {
  std::string names = "rid";
  std::string marks = "?1";
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    names += ',' + table.columns[i].SqlName();
    marks += ",?" + std::to_string(i + 2);
  }
  return std::string(verb) + " INTO " + table.SqlName() + '(' + names + ") VALUES(" + marks + ')';
}

void Bind(SqliteStatement* statement, int index, const RowValue& value) {
  if (value) {
    statement->BindText(index, *value);
  } else {
    statement->BindNull(index);
  }
}

}  // namespace

Status RowChanger::ReadRow(const Table& table, std::int64_t row, RowValues* out) {
  std::string sql = "SELECT ";
  for (const Column& column : table.columns) sql += column.SqlName() + ',';
  sql.back() = ' ';
  SqliteStatement* select = nullptr;
  Status status = writer_.Cached(sql + "FROM " + table.SqlName() + " WHERE rid = ?1", &select);
  if (!status.ok()) return status;
  select->BindInt(1, row);
  bool found = false;
  if (status = select->Step(&found); !status.ok()) return status;
  if (!found) return {1410, "invalid ROWID"};
  out->clear();
  for (int i = 0; i < static_cast<int>(table.columns.size()); ++i) {
    out->push_back(select->IsNull(i) ? RowValue() : RowValue(select->Text(i)));
  }
  select->Reset();
  return {};
}

Status RowChanger::WriteRedo(const Table& table, const RedoRecord& record, std::int64_t row) {
  SqliteStatement* insert = nullptr;
  Status status = writer_.Cached("INSERT INTO qm_redo VALUES(?1, ?2, ?3, ?4, ?5)", &insert);
  if (!status.ok()) return status;
  insert->BindInt(1, transaction_.NextScn());
  insert->BindInt(2, table.shape);
  insert->BindInt(3, static_cast<int>(record.operation));
  insert->BindInt(4, row);
  insert->BindBlob(5, EncodeRecord(record));
  return insert->Run();
}

Status RowChanger::WriteRow(const Table& table, const char* verb, std::int64_t row,
                            const RowValues& values) {
  SqliteStatement* insert = nullptr;
  if (Status status = writer_.Cached(WriteSql(table, verb), &insert); !status.ok()) return status;
  if (row > 0) {
    insert->BindInt(1, row);
  } else {
    insert->BindNull(1);
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    Bind(insert, static_cast<int>(i) + 2, values[i]);
  }
  if (Status status = insert->Run(); !status.ok()) return NameUniqueKey(table, status);
  return CheckPartialKeys(table, values, writer_.LastRowId());
}

Status RowChanger::RemoveRow(const Table& table, std::int64_t row) {
  SqliteStatement* erase = nullptr;
  Status status = writer_.Cached("DELETE FROM " + table.SqlName() + " WHERE rid = ?1", &erase);
  if (!status.ok()) return status;
  erase->BindInt(1, row);
  return erase->Run();
}

Status RowChanger::CheckNotNull(const Table& table, const RowValues& row) const {
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (!row[i] && !table.columns[i].nullable) {
      return {1400, "cannot insert NULL into (" + QuotedColumn(table, table.columns[i]) + ")"};
    }
  }
  return {};
}

// SQLite names the columns ("t5.c7, t5.c8"); the operator wants the constraint.
Status RowChanger::NameUniqueKey(const Table& table, const Status& failure) const {
  constexpr std::string_view kMark = "UNIQUE constraint failed: ";
  const std::size_t at = failure.message().find(kMark);
  if (at == std::string::npos) return failure;
  for (const UniqueKey& key : table.keys) {
    std::string names;
    for (const std::size_t column : key.columns) {
      if (!names.empty()) names += ", ";
      names += table.SqlName() + '.' + table.columns[column].SqlName();
    }
    const std::string rest = failure.message().substr(at + kMark.size());
    if (rest.starts_with(names) && (rest.size() == names.size() || rest[names.size()] == ']')) {
      return {1, "unique constraint (" + key.owner + "." + key.name + ") violated"};
    }
  }
  return Ora(1);
}

// For SQLite a key with a NULL in it equals no other; for Oracle only one of nothing but NULLs.
Status RowChanger::CheckPartialKeys(const Table& table, const RowValues& values, std::int64_t row) {
  for (const UniqueKey& key : table.keys) {
    const auto nulls = std::count_if(key.columns.begin(), key.columns.end(),
                                     [&values](std::size_t i) { return !values[i]; });
    if (nulls == 0 || nulls == static_cast<std::ptrdiff_t>(key.columns.size())) continue;
    std::string sql = "SELECT 1 FROM " + table.SqlName() + " WHERE rid <> ?1";
    int index = 2;
    for (const std::size_t column : key.columns) {
      sql += " AND " + table.columns[column].SqlName() + " IS ?" + std::to_string(index++);
    }
    SqliteStatement* select = nullptr;
    if (Status status = writer_.Cached(sql, &select); !status.ok()) return status;
    select->BindInt(1, row);
    index = 2;
    for (const std::size_t column : key.columns) Bind(select, index++, values[column]);
    bool found = false;
    if (Status status = select->Step(&found); !status.ok()) return status;
    select->Reset();
    if (found) return {1, "unique constraint (" + key.owner + "." + key.name + ") violated"};
  }
  return {};
}

Status RowChanger::Insert(const Table& table, const RowValues& row) {
  Status status = CheckNotNull(table, row);
  if (status.ok()) status = WriteRow(table, "INSERT", 0, row);
  if (!status.ok()) return status;
  NoteParents(table, row, nullptr);
  return WriteRedo(table, {RedoOperation::Insert, row, {}}, writer_.LastRowId());
}

Status RowChanger::Delete(const Table& table, std::int64_t row, const RowValues& old_values) {
  deleting_.emplace_back(table.id, row);
  Status status = FollowChildren(table, old_values);
  deleting_.pop_back();
  if (status.ok()) status = RemoveRow(table, row);
  if (!status.ok()) return status;
  return WriteRedo(table, {RedoOperation::Delete, old_values, {}}, row);
}

Status RowChanger::Update(const Table& table, const RowUpdate& update) {
  std::string sql = "UPDATE " + table.SqlName() + " SET ";
  RowValues values = update.old_values;
  for (std::size_t i = 0; i < update.changes.size(); ++i) {
    const auto& [column, value] = update.changes[i];
    if (!value && !table.columns[column].nullable) {
      return {1407, "cannot update (" + QuotedColumn(table, table.columns[column]) + ") to NULL"};
    }
    values[column] = value;
    if (i > 0) sql += ',';
    sql += table.columns[column].SqlName() + "=?" + std::to_string(i + 2);
  }
  SqliteStatement* statement = nullptr;
  Status status = writer_.Cached(sql + " WHERE rid = ?1", &statement);
  if (!status.ok()) return status;
  statement->BindInt(1, update.row);
  for (std::size_t i = 0; i < update.changes.size(); ++i) {
    Bind(statement, static_cast<int>(i) + 2, update.changes[i].second);
  }
  if (status = statement->Run(); !status.ok()) return NameUniqueKey(table, status);
  if (status = CheckPartialKeys(table, values, update.row); !status.ok()) return status;
  NoteParents(table, values, &update.changes);
  NoteChildren(table, update.old_values, update.changes);
  return WriteRedo(table, {RedoOperation::Update, update.old_values, update.changes}, update.row);
}

Status RowChanger::UpdateKeys(const Table& table, const std::vector<RowUpdate>& updates) {
  for (const RowUpdate& update : updates) {
    if (Status status = RemoveRow(table, update.row); !status.ok()) return status;
  }
  for (const RowUpdate& update : updates) {
    RowValues values = update.old_values;
    for (const auto& [column, value] : update.changes) {
      if (!value && !table.columns[column].nullable) {
        return {1407, "cannot update (" + QuotedColumn(table, table.columns[column]) + ") to NULL"};
      }
      values[column] = value;
    }
    Status status = WriteRow(table, "INSERT", update.row, values);
    if (!status.ok()) return status;
    NoteParents(table, values, &update.changes);
    NoteChildren(table, update.old_values, update.changes);
    status =
        WriteRedo(table, {RedoOperation::Update, update.old_values, update.changes}, update.row);
    if (!status.ok()) return status;
  }
  return {};
}

}  // namespace quillmere::sandbox
