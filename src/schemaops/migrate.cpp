// SPDX-License-Identifier: MIT
#include "schemaops/item_run.h"

namespace quillmere {
namespace {

// Items on their way from one database to the other.
class Migration {
 public:
  Migration(OracleSession& source, OracleSession& target, const MigrateOptions& options,
            const LineSink& trace, ItemRun& run)
      : source_(source), target_(target), options_(options), trace_(trace), run_(run) {}

  bool Migrate(ObjectKind kind, const SchemaItem& item) {
    made_.clear();
    switch (kind) {
      case ObjectKind::PrimaryKey:
        return PrimaryKey(item);
      case ObjectKind::Index:
        return Index(item);
      case ObjectKind::Table:
        break;
    }
    return Table(item);
  }

  // Why the last item failed.
  const std::string& Reason() const { return reason_; }
  // What was made there of the last table, also of one that failed half-way; else empty.
  const std::string& Made() const { return made_; }

 private:
  struct IndexWithColumns {
    IndexRef index;
    std::vector<std::string> columns;
  };

  struct TableParts {
    std::vector<ColumnInfo> columns;
    bool has_key = false;
    KeyInfo key;
    std::vector<std::string> key_columns;
    std::vector<IndexWithColumns> indexes;
  };

  bool PrimaryKey(const SchemaItem& item);
  bool Index(const SchemaItem& item);
  bool Table(const SchemaItem& item);
  bool ReadKey(const SchemaItem& item, TableParts& parts);
  bool ReadIndexes(const SchemaItem& item, TableParts& parts);
  bool Create(const SchemaItem& item, const TableParts& parts);

  // True when the source answered and left out nothing: an object made from less would lack
  // something. Otherwise source_text_ says why not.
  bool Whole(bool answered);

  // The same for the columns of an object. One that has none is gone: nothing is to be dropped for
  // it.
  template <typename Columns>
  bool Listed(bool answered, const Columns& columns, const SchemaItem& item) {
    if (!Whole(answered)) return false;
    if (!columns.empty()) return true;
    source_text_ = item.owner + "." + item.name + " is gone from the source";
    return false;
  }

  // Always false. The step's own text, where it has one, is followed by the server's.
  bool Fail(const std::string& step, const std::string& server_text);
  bool SourceFailed(const std::string& step) { return Fail(step, source_text_); }
  bool TargetFailed(const std::string& step) { return Fail(step, target_.LastError()); }

  OracleSession& source_;
  OracleSession& target_;
  const MigrateOptions& options_;
  const LineSink& trace_;
  ItemRun& run_;
  std::string source_text_;
  std::string reason_;
  std::string made_;  // of a table
};

bool Migration::Whole(bool answered) {
  const std::vector<std::string> warnings = source_.TakeWarnings();
  for (const std::string& warning : warnings) run_.Detail(warning);
  if (answered && warnings.empty()) return true;
  source_text_ = answered ? warnings.front() : source_.LastError();
  return false;
}

bool Migration::Fail(const std::string& step, const std::string& server_text) {
  reason_ = step;
  if (!step.empty()) run_.Step(step);
  if (!step.empty() && !server_text.empty()) reason_ += step.ends_with('.') ? " " : ": ";
  reason_ += server_text;
  return false;
}

bool Migration::PrimaryKey(const SchemaItem& item) {
  std::int32_t count = 0;
  // A table that is not there passes: then it is the server that refuses the key.
  if (!target_.CountTables(item.owner, item.table, count)) {
    return TargetFailed("Table: " + item.table + " not exist. Can't migrate key: " + item.name);
  }
  std::vector<std::string> columns;
  if (!Listed(source_.ListConstraintColumns(item.owner, item.name, columns), columns, item)) {
    return SourceFailed("");
  }
  const KeyInfo key{item.owner, item.table, item.name, {}};
  if (options_.drop_target &&
      target_.CountPrimaryKeysNamed(item.owner, item.table, item.name, count) && count > 0) {
    target_.DropConstraint(key);
  }
  return target_.AddPrimaryKey(key, columns) || TargetFailed("");
}

bool Migration::Index(const SchemaItem& item) {
  std::int32_t count = 0;
  if (!target_.CountTables(item.owner, item.table, count)) {
    return TargetFailed("Table: " + item.table + " not exist. Can't migrate index: " + item.name);
  }
  std::vector<std::string> columns;
  if (!Listed(source_.ListIndexColumns(item.table, item.owner, item.name, columns), columns,
              item)) {
    return SourceFailed("");
  }
  const IndexRef index{item.owner, item.table, item.owner, item.name};
  if (options_.drop_target && target_.CountIndexesNamed(item.owner, item.table, item.name, count) &&
      count > 0) {
    target_.DropIndex(index);
  }
  return target_.CreateIndex(index, columns) || TargetFailed("");
}

bool Migration::Table(const SchemaItem& item) {
  std::int32_t count = 0;
  if (!target_.CountTables(item.owner, item.table, count)) {
    return Fail("Check destination table existed failed. Reason:" + target_.LastError(), "");
  }
  const bool exists = count > 0;
  if (exists && !options_.drop_target) {
    return Fail("Table: " + item.owner + " already exist. Can't migrate Table: " + item.table + ".",
                "");
  }
  TableParts parts;
  if (options_.include_primary_key && !ReadKey(item, parts)) return false;
  if (options_.include_index && !ReadIndexes(item, parts)) return false;
  if (!Listed(source_.ListColumns(item.table, item.owner, parts.columns), parts.columns, item)) {
    return SourceFailed("Can't not get source table's columns");
  }
  if (exists && !target_.DropTable(item.owner, item.table, true)) {
    return TargetFailed("Can't not drop target table");
  }
  return Create(item, parts);
}

bool Migration::ReadKey(const SchemaItem& item, TableParts& parts) {
  std::int32_t count = 0;
  if (!Whole(source_.CountPrimaryKeys(item.owner, item.table, count))) {
    return SourceFailed("Can't not check table's primary key.");
  }
  if (count <= 0) return true;
  if (!Whole(source_.GetPrimaryKey(item.owner, item.table, parts.key))) {
    return SourceFailed("Can't not get source table's primary key.");
  }
  if (!Listed(
          source_.ListConstraintColumns(item.owner, parts.key.constraint_name, parts.key_columns),
          parts.key_columns, {item.owner, item.table, parts.key.constraint_name})) {
    return SourceFailed("Can't not get primary key's content");
  }
  parts.has_key = true;
  return true;
}

bool Migration::ReadIndexes(const SchemaItem& item, TableParts& parts) {
  std::int32_t count = 0;
  if (!Whole(source_.CountIndexes(item.owner, item.table, count))) {
    return SourceFailed("Can't not check table's index");
  }
  if (count <= 0) return true;
  std::vector<IndexInfo> indexes;
  if (!Whole(source_.ListIndexes(item.owner, item.table, indexes))) {
    return SourceFailed("Can't not get table's index");
  }
  for (const IndexInfo& info : indexes) {
    IndexWithColumns index{{item.owner, item.table, item.owner, info.index_name}, {}};
    if (!Listed(source_.ListIndexColumns(item.table, item.owner, info.index_name, index.columns),
                index.columns, {item.owner, item.table, info.index_name})) {
      return SourceFailed("Can't not get source table's index content");
    }
    parts.indexes.push_back(std::move(index));
  }
  return true;
}

bool Migration::Create(const SchemaItem& item, const TableParts& parts) {
  const TableInfo table{item.owner, item.table, {}, 0, {}};
  if (!target_.CreateTable(table, parts.columns, false, trace_)) {
    return TargetFailed("Create target table:" + item.owner + "." + item.table + " failed");
  }
  made_ = item.owner + "." + item.table + " was made with " + std::to_string(parts.columns.size()) +
          (parts.columns.size() == 1 ? " column" : " columns");
  // Indexes go along with the key only.
  if (!options_.include_primary_key) return true;
  if (parts.has_key && !target_.AddPrimaryKey(parts.key, parts.key_columns)) {
    return TargetFailed("Create target primary key:" + parts.key.constraint_name + "of " +
                        item.table + " failed");
  }
  if (parts.has_key) made_ += ", primary key " + parts.key.constraint_name;
  for (const auto& [index, columns] : parts.indexes) {
    if (!target_.CreateIndex(index, columns)) {
      return TargetFailed("Create target index:" + index.index_name + "of " + item.table +
                          " failed");
    }
    made_ += ", index " + index.index_name;
  }
  return true;
}

std::string WhatOf(ObjectKind kind) {
  switch (kind) {
    case ObjectKind::PrimaryKey:
      return "Migarte Primary key ";
    case ObjectKind::Index:
      return "Migarte Index ";
    case ObjectKind::Table:
      break;
  }
  return "Migarte Table ";
}

}  // namespace

SchemaRun SchemaOperations::MigrateItems(const LogOn& source, const LogOn& target, ObjectKind kind,
                                         const std::vector<SchemaItem>& items,
                                         const MigrateOptions& options, SchemaListener& listener) {
  ItemRun run(log_, listener);
  OracleSession from(library_);
  OracleSession to(library_);
  if (source.name == target.name) {
    run.Refuse("The target is the source itself: choose another data source to migrate to");
  } else if (run.Connect(from, source, "connect source Database failed. Error: ") &&
             run.Connect(to, target, "connect destination Database failed. Error: ")) {
    const LineSink trace = StatementTrace();
    Migration migration(from, to, options, trace, run);
    const std::string what = WhatOf(kind);
    run.ForEach("migrate", items, [&](const SchemaItem& item) {
      const bool ok = migration.Migrate(kind, item);
      run.Result(ok, what + item.name + " successed",
                 what + item.name + " failed. Reason: " + migration.Reason());
      if (!migration.Made().empty()) run.Made(migration.Made());
    });
    if (items.size() > 1) run.Sum(items.size(), source.name, target.name);
  }
  return run.Take();
}

LineSink SchemaOperations::StatementTrace() const {
  if (!settings_.statement_trace) return nullptr;
  return [this](std::string_view line) { log_.Add(line, false); };
}

}  // namespace quillmere
