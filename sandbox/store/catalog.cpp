#include "sandbox/store/catalog.h"

namespace quillmere::sandbox {

namespace {

std::optional<int> OptionalInt(const SqliteStatement& row, int column) {
  if (row.IsNull(column)) return std::nullopt;
  return static_cast<int>(row.Int(column));
}

Status LoadColumns(SqliteConnection* connection, Table* table) {
  SqliteStatement* rows = nullptr;
  Status status = connection->Cached(
      "SELECT id, name, type_code, data_type, data_length, data_precision, data_scale, char_length,"
      " char_used = 'C', nullable, default_text FROM qm_column WHERE table_id = ? ORDER BY "
      "position",
      &rows);
  if (!status.ok()) return status;
  rows->BindInt(1, table->id);
  bool row = false;
  while ((status = rows->Step(&row)).ok() && row) {
    Column& column = table->columns.emplace_back();
    column.id = rows->Int(0);
    column.name = rows->Text(1);
    column.type.code = static_cast<TypeCode>(rows->Int(2));
    column.type.name = rows->Text(3);
    column.type.data_length = static_cast<int>(rows->Int(4));
    column.type.precision = OptionalInt(*rows, 5);
    column.type.scale = OptionalInt(*rows, 6);
    column.type.char_length = static_cast<int>(rows->Int(7));
    column.type.in_characters = rows->Int(8) != 0;
    column.nullable = rows->Int(9) != 0;
    column.default_text = rows->Text(10);
  }
  return status;
}

// Keys that constraints make, then unique indexes made by hand.
Status LoadKeys(SqliteConnection* connection, Table* table) {
  SqliteStatement* rows = nullptr;
  Status status = connection->Cached(
      "SELECT c.id, c.owner, c.name, c.type = 'P', k.column_id, k.position FROM qm_constraint c"
      " JOIN qm_constraint_column k ON k.constraint_id = c.id"
      " WHERE c.table_id = ?1 AND c.type IN ('P', 'U')"
      " UNION ALL SELECT -i.id, i.owner, i.name, 0, k.column_id, k.position FROM qm_index i"
      " JOIN qm_index_column k ON k.index_id = i.id"
      " WHERE i.table_id = ?1 AND i.is_unique AND i.constraint_id IS NULL"
      " ORDER BY 1, 6",
      &rows);
  if (!status.ok()) return status;
  rows->BindInt(1, table->id);
  bool row = false;
  std::int64_t current = 0;
  while ((status = rows->Step(&row)).ok() && row) {
    if (rows->Int(0) != current) {
      current = rows->Int(0);
      UniqueKey& key = table->keys.emplace_back();
      key.constraint_id = current > 0 ? current : 0;
      key.owner = rows->Text(1);
      key.name = rows->Text(2);
      key.primary = rows->Int(3) != 0;
    }
    const int position = table->FindColumnId(rows->Int(4));
    if (position >= 0) table->keys.back().columns.push_back(static_cast<std::size_t>(position));
  }
  return status;
}

Status LoadForeignKeys(SqliteConnection* connection, const std::string& condition,
                       std::int64_t table_id, std::vector<ForeignKey>* out) {
  SqliteStatement* rows = nullptr;
  Status status = connection->Cached(
      "SELECT c.id, c.owner, c.name, c.delete_rule, c.table_id, r.table_id, k.column_id, "
      "q.column_id"
      " FROM qm_constraint c JOIN qm_constraint r ON r.id = c.ref_id"
      " JOIN qm_constraint_column k ON k.constraint_id = c.id"
      " JOIN qm_constraint_column q ON q.constraint_id = r.id AND q.position = k.position"
      " WHERE " +
          condition + " = ? AND c.type = 'R' ORDER BY c.id, k.position",
      &rows);
  if (!status.ok()) return status;
  rows->BindInt(1, table_id);
  bool row = false;
  while ((status = rows->Step(&row)).ok() && row) {
    if (out->empty() || out->back().constraint_id != rows->Int(0)) {
      ForeignKey& key = out->emplace_back();
      key.constraint_id = rows->Int(0);
      key.owner = rows->Text(1);
      key.name = rows->Text(2);
      key.delete_rule = rows->Text(3);
      key.child_table = rows->Int(4);
      key.parent_table = rows->Int(5);
    }
    out->back().child_columns.push_back(rows->Int(6));
    out->back().parent_columns.push_back(rows->Int(7));
  }
  return status;
}

Status LoadTable(SqliteConnection* connection, Table* table) {
  Status status = LoadColumns(connection, table);
  if (status.ok()) status = LoadKeys(connection, table);
  if (const UniqueKey* key = table->PrimaryKey()) {
    for (const std::size_t column : key->columns) table->columns[column].nullable = false;
  }
  if (status.ok()) status = LoadForeignKeys(connection, "c.table_id", table->id, &table->parents);
  if (status.ok()) status = LoadForeignKeys(connection, "r.table_id", table->id, &table->children);
  return status;
}

}  // namespace

int Table::FindColumn(std::string_view column) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].name == column) return static_cast<int>(i);
  }
  return -1;
}

int Table::FindColumnId(std::int64_t column_id) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].id == column_id) return static_cast<int>(i);
  }
  return -1;
}

const UniqueKey* Table::PrimaryKey() const {
  for (const UniqueKey& key : keys) {
    if (key.primary) return &key;
  }
  return nullptr;
}

void Catalog::Clear() {
  by_name_.clear();
  by_id_.clear();
}

Status Catalog::FindTable(SqliteConnection* connection, const std::string& owner,
                          const std::string& name, TablePtr* out) {
  const std::string key = owner + '\0' + name;
  if (const auto found = by_name_.find(key); found != by_name_.end()) {
    *out = found->second;
    return {};
  }
  SqliteStatement* row = nullptr;
  Status status = connection->Cached("SELECT id FROM qm_table WHERE owner = ? AND name = ?", &row);
  if (!status.ok()) return status;
  row->BindText(1, owner);
  row->BindText(2, name);
  bool found = false;
  if (status = row->Step(&found); !status.ok()) return status;
  if (!found) return Ora(942);
  const std::int64_t id = row->Int(0);
  row->Reset();
  if (status = FindTableById(connection, id, out); !status.ok()) return status;
  by_name_.emplace(key, *out);
  return {};
}

Status Catalog::FindTableById(SqliteConnection* connection, std::int64_t id, TablePtr* out) {
  constexpr std::size_t kMost = 20000;
  if (const auto found = by_id_.find(id); found != by_id_.end()) {
    *out = found->second;
    return {};
  }
  if (by_id_.size() >= kMost) Clear();
  SqliteStatement* row = nullptr;
  Status status = connection->Cached("SELECT owner, name, shape FROM qm_table WHERE id = ?", &row);
  if (!status.ok()) return status;
  row->BindInt(1, id);
  bool found = false;
  if (status = row->Step(&found); !status.ok()) return status;
  if (!found) return Ora(942);
  auto table = std::make_shared<Table>();
  table->id = id;
  table->owner = row->Text(0);
  table->name = row->Text(1);
  table->shape = row->Int(2);
  row->Reset();
  if (status = LoadTable(connection, table.get()); !status.ok()) return status;
  *out = table;
  by_id_.emplace(id, *out);
  return {};
}

}  // namespace quillmere::sandbox
