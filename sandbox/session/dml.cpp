// SPDX-License-Identifier: MIT
#include "sandbox/session/dml.h"

#include "sandbox/session/row_values.h"
#include "sandbox/sql/parser.h"

namespace quillmere::sandbox {

namespace {

Scope TableScope(const TablePtr& table, const std::string& alias) {
  return {{{alias.empty() ? table->name : alias, "", table, nullptr}}, nullptr};
}

// New values of columns: what is known beforehand, and what SQLite computes for each row.
class Assignments {
 public:
  // `scope` holds the columns that values may name; all must outlive it.
  Assignments(const Table& table, const Scope& scope, const EvalContext& context)
      : table_(table), scope_(scope), context_(context), compiler_(&context) {}

  void Add(const std::string& name, const Expr* value) {
    const int column = table_.FindColumn(name);
    if (column < 0) return compiler_.Fail({904, "\"" + name + "\": invalid identifier"});
    const auto index = static_cast<std::size_t>(column);
    if (Has(index)) return compiler_.Fail(Ora(957, name));
    Add(index, value);
  }

  // No expression: the column's default.
  void Add(std::size_t column, const Expr* value) {
    assigned_[column] = true;
    ExprPtr usual;
    const std::string& default_text = table_.columns[column].default_text;
    if (value == nullptr && !default_text.empty()) {
      compiler_.Fail(ParseExpression(default_text, &usual));
      value = usual.get();
    }
    Source& source = sources_.emplace_back();
    source.column = column;
    if (value == nullptr) return;
    const Kind kind = table_.columns[column].type.kind();
    const Compiled compiled = compiler_.Value(*value, scope_);
    if (compiled.sql == "NULL" && !compiled.literal) return;
    if (compiled.literal) {
      Datum datum;
      compiler_.Fail(Convert(Datum::Of(compiled.kind, compiled.sql), kind, context_, &datum));
      if (status().ok()) compiler_.Fail(Fit(column, datum, &source.value));
    } else {
      source.computed = static_cast<int>(computed_++);
      sql_ += (sql_.empty() ? "" : ",") + compiler_.Emit(compiled, kind);
    }
  }

  bool Has(std::size_t column) const { return assigned_.at(column); }
  const Status& status() const { return compiler_.status(); }
  // What is to be computed, in the order in which Values reads it; empty when nothing is.
  const std::string& sql() const { return sql_; }
  const std::vector<std::string>& parameters() const { return compiler_.parameters(); }

  // The values for one row, whose computed ones stand in `row` from column `first` on.
  Status Values(const SqliteStatement* row, std::size_t first, RowChanges* out) const {
    for (const Source& source : sources_) {
      RowValue value = source.value;
      if (source.computed >= 0) {
        const auto at = static_cast<int>(first) + source.computed;
        Datum datum = Datum::NullOf(table_.columns[source.column].type.kind());
        datum.null = row->IsNull(at);
        datum.text = row->Text(at);
        if (Status status = Fit(source.column, datum, &value); !status.ok()) return status;
      }
      out->emplace_back(source.column, std::move(value));
    }
    return {};
  }

 private:
  struct Source {
    std::size_t column = 0;
    RowValue value;
    int computed = -1;  // or: its number among the computed ones
  };

  Status Fit(std::size_t column, const Datum& value, RowValue* out) const {
    return FitValue(table_, table_.columns[column], value, out);
  }

  const Table& table_;
  const Scope& scope_;
  const EvalContext& context_;
  ExpressionCompiler compiler_;
  std::vector<Source> sources_;
  std::vector<bool> assigned_ = std::vector<bool>(table_.columns.size());
  std::size_t computed_ = 0;
  std::string sql_;
};

// The values where no row is there to compute them from.
Status Evaluate(const Assignments& assignments, SqliteConnection* connection, RowChanges* out) {
  if (!assignments.status().ok()) return assignments.status();
  if (assignments.sql().empty()) return assignments.Values(nullptr, 0, out);
  SqlRunner sql(connection);
  Status status;
  sql.Each(
      "SELECT " + assignments.sql(),
      [&](const SqliteStatement& row) { status = assignments.Values(&row, 0, out); },
      assignments.parameters());
  sql.Fail(status);
  return sql.status();
}

Status RunInsert(const Insert& insert, const Table& table, const EvalContext& context,
                 SqliteConnection* writer, RowChanger* changer) {
  const Scope nothing;
  Assignments assignments(table, nothing, context);
  const std::size_t targets = insert.columns.empty() ? table.columns.size() : insert.columns.size();
  if (insert.values.size() != targets) return Ora(insert.values.size() > targets ? 913 : 947);
  for (std::size_t i = 0; i < targets; ++i) {
    if (insert.columns.empty()) {
      assignments.Add(i, insert.values[i].get());
    } else {
      assignments.Add(insert.columns[i], insert.values[i].get());
    }
  }
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    if (!assignments.Has(i)) assignments.Add(i, nullptr);
  }
  RowChanges changes;
  if (Status status = Evaluate(assignments, writer, &changes); !status.ok()) return status;
  RowValues row(table.columns.size());
  for (auto& [column, value] : changes) row[column] = std::move(value);
  changer->Insert(table, row);
  return {};
}

// All rows are found before the first one changes: a statement never meets its own changes.
Status FindRows(const Scope& scope, const Expr* where, const EvalContext& context,
                SqliteConnection* writer, std::vector<std::int64_t>* out) {
  ExpressionCompiler compiler(&context);
  std::string sql = "SELECT rid FROM " + scope.sources[0].table->SqlName();
  if (where != nullptr) sql += " WHERE " + compiler.Condition(*where, scope);
  if (!compiler.status().ok()) return compiler.status();
  SqlRunner runner(writer);
  *out = runner.Ints(sql, compiler.parameters());
  return runner.status();
}

bool ChangesKeys(const Table& table, const Assignments& assignments) {
  for (const UniqueKey& key : table.keys) {
    for (const std::size_t column : key.columns) {
      if (assignments.Has(column)) return true;
    }
  }
  return false;
}

Status RunUpdate(const Update& update, const TablePtr& table, const EvalContext& context,
                 SqliteConnection* writer, RowChanger* changer, std::vector<std::int64_t>* rows) {
  const Scope scope = TableScope(table, update.alias);
  Assignments assignments(*table, scope, context);
  for (const Assignment& set : update.set) assignments.Add(set.column, set.value.get());
  if (!assignments.status().ok()) return assignments.status();
  if (Status status = FindRows(scope, update.where.get(), context, writer, rows); !status.ok()) {
    return status;
  }
  const std::size_t columns = table->columns.size();
  const std::string fetch = "SELECT " + table->SqlColumns() +
                            (assignments.sql().empty() ? "" : "," + assignments.sql()) + " FROM " +
                            table->SqlName() + " WHERE rid = ?" +
                            std::to_string(assignments.parameters().size() + 1);
  SqlRunner sql(writer);
  const std::size_t together = ChangesKeys(*table, assignments) ? rows->size() : 1;
  std::vector<RowUpdate> updates;
  for (const std::int64_t row : *rows) {
    RowUpdate& change = updates.emplace_back();
    change.row = row;
    Status status;
    sql.Each(
        fetch,
        [&](const SqliteStatement& found) {
          change.old_values = ValuesOf(found, 0, columns);
          status = assignments.Values(&found, columns, &change.changes);
        },
        assignments.parameters(), row);
    sql.Fail(status);
    if (!sql.ok()) return sql.status();
    if (updates.size() < together) continue;
    changer->Update(*table, updates);
    updates.clear();
  }
  return {};
}

}  // namespace

const ObjectName* TargetOf(const Statement& statement) {
  if (const auto* insert = std::get_if<Insert>(&statement)) return &insert->table;
  if (const auto* update = std::get_if<Update>(&statement)) return &update->table;
  const auto* erase = std::get_if<Delete>(&statement);
  return erase == nullptr ? nullptr : &erase->table;
}

Status RunDml(const Statement& statement, const TablePtr& table, const EvalContext& context,
              SqliteConnection* writer, RowChanger* changer, std::int64_t* rows) {
  std::vector<std::int64_t> found(1);
  Status status;
  if (const auto* insert = std::get_if<Insert>(&statement)) {
    status = RunInsert(*insert, *table, context, writer, changer);
  } else if (const auto* update = std::get_if<Update>(&statement)) {
    status = RunUpdate(*update, table, context, writer, changer, &found);
  } else {
    const auto& erase = std::get<Delete>(statement);
    const Scope scope = TableScope(table, erase.alias);
    status = FindRows(scope, erase.where.get(), context, writer, &found);
    for (const std::int64_t row : found) {
      if (status.ok()) changer->Delete(*table, row);
    }
  }
  *rows = static_cast<std::int64_t>(found.size());
  return status.ok() ? changer->Finish() : status;
}

}  // namespace quillmere::sandbox
