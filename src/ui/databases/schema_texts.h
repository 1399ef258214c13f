// SPDX-License-Identifier: MIT
// What the drop, rename and migrate dialogs tell in words before and after they run.
#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "schemaops/schema_operations.h"

namespace quillmere {

// "3 Table(s) to drop:", "1 indexe(s) to migrate:".
QString DropCountLine(ObjectKind kind, std::size_t count);
QString MigrateCountLine(ObjectKind kind, std::size_t count);

// An item among others: "SALES.ORDERS", "PK_ORDERS of SALES.ORDERS".
std::string ItemText(ObjectKind kind, const SchemaItem& item);

// "PK_ORDERS of ORDERS", for every kind of object.
std::string NameOfTable(const SchemaItem& item);

// What will happen to how many objects of which data source.
QString DropAdvice(ObjectKind kind, std::size_t count, std::string_view source, bool cascade);
QString RenameAdvice(ObjectKind kind, const SchemaItem& item, std::string_view source);

// What can be ticked.
struct MigrateChoices : MigrateOptions {
  bool prompt_before_drop = false;  // without effect
};

struct MigratePlan {
  ObjectKind kind = ObjectKind::Table;
  std::size_t count = 0;
  std::string_view source;
  std::string_view target;  // empty: none is chosen yet
  MigrateChoices choices;
};

QString MigrateAdvice(const MigratePlan& plan);

// What is asked before a run that drops on the target what it creates there.
QString DropTargetQuestion(ObjectKind kind, const std::vector<SchemaItem>& items,
                           std::string_view target);

// Of a run that ended otherwise than with everything done: what is done and what is not; else
// empty. total: how many items there were.
QString RunSummary(const SchemaRun& run, std::size_t total);

}  // namespace quillmere
