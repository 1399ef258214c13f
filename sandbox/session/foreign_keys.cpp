// SPDX-License-Identifier: MIT
#include <algorithm>

#include "sandbox/session/row_changer.h"

namespace quillmere::sandbox {

namespace {

// The values of a key in a row; nothing when one of them is NULL, for then it binds nothing.
std::optional<std::vector<std::string>> KeyValues(const Table& table,
                                                  const std::vector<std::int64_t>& columns,
                                                  const RowValues& row) {
  std::vector<std::string> values;
  for (const std::int64_t id : columns) {
    const RowValue& value = row.at(static_cast<std::size_t>(table.FindColumnId(id)));
    if (!value) return std::nullopt;
    values.push_back(*value);
  }
  return values;
}

bool Touches(const Table& table, const std::vector<std::int64_t>& columns,
             const RowChanges& changes) {
  return std::any_of(changes.begin(), changes.end(), [&](const auto& change) {
    const std::int64_t id = table.columns[change.first].id;
    return std::find(columns.begin(), columns.end(), id) != columns.end();
  });
}

std::string WhereSql(std::int64_t table_id, const std::vector<std::int64_t>& columns) {
  std::string sql = " FROM t" + std::to_string(table_id);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    sql += (i == 0 ? " WHERE c" : " AND c") + std::to_string(columns[i]) + " = ?";
  }
  return sql;
}

Status Violated(int code, const ForeignKey& key, const std::string& how) {
  return {code, "integrity constraint (" + key.owner + "." + key.name + ") violated - " + how};
}

}  // namespace

bool RowChanger::Exists(std::int64_t table_id, const std::vector<std::int64_t>& columns,
                        const std::vector<std::string>& values) {
  return sql_.Int("SELECT 1" + WhereSql(table_id, columns) + " LIMIT 1", values).has_value();
}

void RowChanger::NoteParents(const Table& table, const RowValues& row, const RowChanges* changes) {
  for (const ForeignKey& key : table.parents) {
    if (changes != nullptr && !Touches(table, key.child_columns, *changes)) continue;
    auto values = KeyValues(table, key.child_columns, row);
    if (!values) continue;
    // A statement that points thousands of rows at one parent needs one look.
    const bool noted =
        !checks_.empty() && checks_.back().key == &key && checks_.back().values == *values;
    if (!noted) checks_.push_back({&key, false, std::move(*values)});
  }
}

void RowChanger::NoteChildren(const Table& table, const RowValues& old_values,
                              const RowChanges* changes) {
  for (const ForeignKey& key : table.children) {
    if (changes != nullptr && !Touches(table, key.parent_columns, *changes)) continue;
    auto values = KeyValues(table, key.parent_columns, old_values);
    if (values) checks_.push_back({&key, true, std::move(*values)});
  }
}

Status RowChanger::Finish() {
  for (const Check& check : checks_) {
    const ForeignKey& key = *check.key;
    if (!sql_.ok() || Exists(key.parent_table, key.parent_columns, check.values)) continue;
    if (!check.parent_changed) {
      sql_.Fail(Violated(2291, key, "parent key not found"));
    } else if (Exists(key.child_table, key.child_columns, check.values)) {
      sql_.Fail(Violated(2292, key, "child record found"));
    }
  }
  return sql_.status();
}

}  // namespace quillmere::sandbox
