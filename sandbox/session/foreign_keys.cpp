#include <algorithm>

#include "sandbox/session/row_changer.h"

namespace quillmere::sandbox {

namespace {

constexpr std::size_t kMaxCascade = 200;

// The values of a key in a row; nothing when one of them is NULL, for then it binds nothing.
bool KeyValues(const Table& table, const std::vector<std::int64_t>& columns, const RowValues& row,
               std::vector<std::string>* out) {
  out->clear();
  for (const std::int64_t id : columns) {
    const int column = table.FindColumnId(id);
    if (column < 0 || !row[static_cast<std::size_t>(column)]) return false;
    out->push_back(*row[static_cast<std::size_t>(column)]);
  }
  return true;
}

bool Touches(const Table& table, const std::vector<std::int64_t>& columns,
             const RowChanges& changes) {
  return std::any_of(changes.begin(), changes.end(), [&](const auto& change) {
    const std::int64_t id = table.columns[change.first].id;
    return std::find(columns.begin(), columns.end(), id) != columns.end();
  });
}

std::string WhereSql(const std::vector<std::int64_t>& columns) {
  std::string sql;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    sql += (i == 0 ? " WHERE c" : " AND c") + std::to_string(columns[i]) + " = ?" +
           std::to_string(i + 1);
  }
  return sql;
}

std::string FullName(const ForeignKey& key) {
  return "(" + key.owner + "." + key.name + ")";
}

Status ChildFound(const ForeignKey& key) {
  return {2292, "integrity constraint " + FullName(key) + " violated - child record found"};
}

}  // namespace

Status RowChanger::Exists(std::int64_t table_id, const std::vector<std::int64_t>& columns,
                          const std::vector<std::string>& values, bool* out) {
  SqliteStatement* select = nullptr;
  Status status = writer_.Cached(
      "SELECT 1 FROM t" + std::to_string(table_id) + WhereSql(columns) + " LIMIT 1", &select);
  if (!status.ok()) return status;
  for (std::size_t i = 0; i < values.size(); ++i) {
    select->BindText(static_cast<int>(i) + 1, values[i]);
  }
  status = select->Step(out);
  select->Reset();
  return status;
}

Status RowChanger::ChildRows(const ForeignKey& key, const std::vector<std::string>& values,
                             std::vector<std::int64_t>* out) {
  SqliteStatement* select = nullptr;
  Status status = writer_.Cached(
      "SELECT rid FROM t" + std::to_string(key.child_table) + WhereSql(key.child_columns), &select);
  if (!status.ok()) return status;
  for (std::size_t i = 0; i < values.size(); ++i) {
    select->BindText(static_cast<int>(i) + 1, values[i]);
  }
  bool row = false;
  while ((status = select->Step(&row)).ok() && row) out->push_back(select->Int(0));
  return status;
}

void RowChanger::NoteParents(const Table& table, const RowValues& row, const RowChanges* changes) {
  for (const ForeignKey& key : table.parents) {
    if (changes != nullptr && !Touches(table, key.child_columns, *changes)) continue;
    std::vector<std::string> values;
    if (!KeyValues(table, key.child_columns, row, &values)) continue;
    // A statement that points thousands of rows at one parent needs one look.
    if (!parent_checks_.empty() && parent_checks_.back().key == &key &&
        parent_checks_.back().values == values) {
      continue;
    }
    parent_checks_.push_back({&key, std::move(values)});
  }
}

void RowChanger::NoteChildren(const Table& table, const RowValues& old_values,
                              const RowChanges& changes) {
  for (const ForeignKey& key : table.children) {
    if (!Touches(table, key.parent_columns, changes)) continue;
    std::vector<std::string> values;
    if (KeyValues(table, key.parent_columns, old_values, &values)) {
      child_checks_.push_back({&key, std::move(values)});
    }
  }
}

// Children first: their changes then stand before the parent's in the redo too.
Status RowChanger::FollowChildren(const Table& table, const RowValues& old_values) {
  for (const ForeignKey& key : table.children) {
    std::vector<std::string> values;
    if (!KeyValues(table, key.parent_columns, old_values, &values)) continue;
    bool found = false;
    if (Status status = Exists(key.child_table, key.child_columns, values, &found); !status.ok()) {
      return status;
    }
    if (!found) continue;
    if (key.delete_rule == "CASCADE" || key.delete_rule == "SET NULL") {
      if (deleting_.size() > kMaxCascade) return ChildFound(key);
      if (Status status = ActOnChildren(key, values); !status.ok()) return status;
    } else {
      // The statement may yet remove the child itself.
      child_checks_.push_back({&key, std::move(values)});
    }
  }
  return {};
}

Status RowChanger::ActOnChildren(const ForeignKey& key, const std::vector<std::string>& values) {
  TablePtr child;
  if (Status status = catalog_.FindTableById(&writer_, key.child_table, &child); !status.ok()) {
    return status;
  }
  kept_.push_back(child);
  std::vector<std::int64_t> rows;
  if (Status status = ChildRows(key, values, &rows); !status.ok()) return status;
  for (const std::int64_t row : rows) {
    // A row may reference itself, or one whose removal led here.
    const std::pair<std::int64_t, std::int64_t> self(child->id, row);
    if (std::find(deleting_.begin(), deleting_.end(), self) != deleting_.end()) continue;
    RowUpdate update;
    update.row = row;
    Status status = ReadRow(*child, row, &update.old_values);
    if (status.code() == 1410) continue;  // a cascade over another road took it already
    if (!status.ok()) return status;
    if (key.delete_rule == "CASCADE") {
      status = Delete(*child, row, update.old_values);
    } else {
      for (const std::int64_t column : key.child_columns) {
        update.changes.emplace_back(static_cast<std::size_t>(child->FindColumnId(column)),
                                    RowValue());
      }
      status = Update(*child, update);
    }
    if (!status.ok()) return status;
  }
  return {};
}

Status RowChanger::Finish() {
  bool found = false;
  for (const ParentCheck& check : parent_checks_) {
    Status status =
        Exists(check.key->parent_table, check.key->parent_columns, check.values, &found);
    if (!status.ok()) return status;
    if (!found) {
      return {2291,
              "integrity constraint " + FullName(*check.key) + " violated - parent key not found"};
    }
  }
  for (const ChildCheck& check : child_checks_) {
    Status status =
        Exists(check.key->parent_table, check.key->parent_columns, check.values, &found);
    if (!status.ok()) return status;
    if (found) continue;
    status = Exists(check.key->child_table, check.key->child_columns, check.values, &found);
    if (!status.ok()) return status;
    if (found) return ChildFound(*check.key);
  }
  return {};
}

}  // namespace quillmere::sandbox
