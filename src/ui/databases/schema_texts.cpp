// SPDX-License-Identifier: MIT
#include "ui/databases/schema_texts.h"

#include "ui/databases/list_texts.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr std::size_t kLongestReason = 600;  // bytes; a message box must fit on the screen

const QString kNoWayBack = QStringLiteral(" This cannot be undone.");

QString CountLine(ObjectKind kind, std::size_t count, const char* purpose) {
  const char* what = "Table(s)";
  if (kind == ObjectKind::PrimaryKey) what = "primary key(s)";
  if (kind == ObjectKind::Index) what = "indexe(s)";
  return QString::number(count) + u' ' + QLatin1String(what) + QLatin1String(purpose);
}

// One object or many.
QString They(std::size_t count) {
  return count == 1 ? QStringLiteral("it") : QStringLiteral("them");
}

QString Their(std::size_t count) {
  return count == 1 ? QStringLiteral("its") : QStringLiteral("their");
}

QString ObjectsOf(ObjectKind kind, std::size_t count, std::string_view source) {
  return CountedObjects(kind, count) + QStringLiteral(" of ") + OneLine(source);
}

QString WithParts(const MigrateOptions& options) {
  if (!options.include_primary_key) return {};
  return options.include_index ? QStringLiteral(", with primary keys and indexes")
                               : QStringLiteral(", with primary keys");
}

QString WhatIsThereAlready(const MigratePlan& plan) {
  if (!plan.choices.drop_target) {
    return QStringLiteral(
        " What is there already under the same name is left as it is and "
        "reported as failed.");
  }
  if (plan.kind == ObjectKind::Table) {
    return QStringLiteral(
               " A table that is there already under the same name is dropped first, "
               "with all its rows and the foreign keys that reference it.") +
           kNoWayBack;
  }
  return QStringLiteral(" What is there already under the same name is dropped first.") +
         kNoWayBack;
}

QString OptionsWithoutEffect(const MigratePlan& plan) {
  QString text;
  if (plan.kind == ObjectKind::Table && plan.choices.include_index &&
      !plan.choices.include_primary_key) {
    text += QStringLiteral(
        " Indexes travel only together with primary keys: check \"Include "
        "Primary Key\", too.");
  }
  if (plan.choices.prompt_before_drop) {
    text += QStringLiteral(
        " \"Prompt Before Drop\" changes nothing: \"Drop Target\" asks once, with or "
        "without it.");
  }
  return text;
}

}  // namespace

QString DropCountLine(ObjectKind kind, std::size_t count) {
  return CountLine(kind, count, " to drop:");
}

QString MigrateCountLine(ObjectKind kind, std::size_t count) {
  return CountLine(kind, count, " to migrate:");
}

std::string ItemText(ObjectKind kind, const SchemaItem& item) {
  const std::string table = item.owner + "." + item.table;
  return kind == ObjectKind::Table ? table : item.name + " of " + table;
}

QString DropAdvice(ObjectKind kind, std::size_t count, std::string_view source, bool cascade) {
  const QString what = ObjectsOf(kind, count, source) + QStringLiteral(" will be dropped");
  switch (kind) {
    case ObjectKind::PrimaryKey:
      return what +
             QStringLiteral(
                 ", and with %1 every foreign key that references %1, whoever owns it. "
                 "The rows stay.")
                 .arg(They(count)) +
             kNoWayBack;
    case ObjectKind::Index:
      return what + QStringLiteral(". The rows stay.") + kNoWayBack;
    case ObjectKind::Table:
      break;
  }
  return what + QStringLiteral(" with all %1 rows.").arg(Their(count)) + kNoWayBack +
         (cascade ? QStringLiteral(" Foreign keys of other tables that reference %1 are dropped, "
                                   "too.")
                        .arg(They(count))
                  : QStringLiteral(" A table that foreign keys of other tables reference stays and "
                                   "is reported as failed."));
}

QString RenameAdvice(ObjectKind kind, const SchemaItem& item, std::string_view source) {
  const QString place = OneLine(ItemText(kind, item)) + QStringLiteral(" on ") + OneLine(source);
  switch (kind) {
    case ObjectKind::PrimaryKey:
      return QStringLiteral(
                 "The primary key %1 and every foreign key that references it will be "
                 "dropped and created again, the key under the new name. What can not "
                 "be created again is told in the message list, with its statement.")
          .arg(place);
    case ObjectKind::Index:
      return QStringLiteral("The index %1 will get the new name.").arg(place);
    case ObjectKind::Table:
      break;
  }
  return QStringLiteral(
             "The table %1 will get the new name. Jobs know it by the old one until "
             "their table lists are refreshed.")
      .arg(place);
}

QString MigrateAdvice(const MigratePlan& plan) {
  const QString objects = ObjectsOf(plan.kind, plan.count, plan.source);
  if (plan.target.empty()) {
    return QStringLiteral("Choose the data source on which %1 will be created.").arg(objects);
  }
  QString text = objects + QStringLiteral(" will be created on ") + OneLine(plan.target);
  if (plan.kind == ObjectKind::Table) {
    text +=
        WithParts(plan.choices) +
        QStringLiteral(
            ". Columns travel with their names, types, sizes and whether they may be empty; rows, "
            "foreign keys, checks, defaults, triggers and grants do not. The owners must be "
            "there already.");
  } else {
    text += QStringLiteral(". The tables must be there already.");
  }
  return text + WhatIsThereAlready(plan) + OptionsWithoutEffect(plan);
}

std::string DropTargetQuestion(ObjectKind kind, const std::vector<SchemaItem>& items,
                               std::string_view target) {
  constexpr std::size_t kNamesTold = 12;
  std::string names;
  for (std::size_t i = 0; i < std::min(items.size(), kNamesTold); ++i) {
    names += "\n" + ItemText(kind, items[i]);
  }
  if (items.size() > kNamesTold) {
    names += "\nand " + std::to_string(items.size() - kNamesTold) + " more";
  }
  std::string question = "\"Drop Target\" is checked. What is there on " + std::string(target) +
                         " under these names is dropped";
  if (kind == ObjectKind::Table) {
    question += ", with all its rows and the foreign keys that reference it";
  }
  return question + ", and can not be brought back:\n" + names + "\n\nGo on?";
}

std::string RunSummary(const SchemaRun& run, std::size_t total) {
  const std::string_view first_failure = run.first_failure;
  std::string text;
  if (run.failed > 0 && total == 1) {
    text = first_failure.substr(0, kLongestReason);
  } else if (run.failed > 0) {
    text = std::to_string(run.failed) + " of " + std::to_string(total) +
           " failed, the first one with:\n" + std::string(first_failure.substr(0, kLongestReason));
  }
  if (run.cancelled) {
    const std::size_t left = total - run.succeeded - run.failed;
    if (!text.empty()) text += "\n\n";
    if (left == total) return "Cancelled, nothing was changed";
    text += "Cancelled: " + std::to_string(run.succeeded) + " of " + std::to_string(total) +
            " were done and stay done, " + std::to_string(left) + " were not begun.";
  }
  if (text.empty() && run.logged) return text;
  if (!text.empty()) text += "\n\n";
  return text + (run.logged ? "Every result is in the message list."
                            : "error.log cannot be written, so the results are not in the message "
                              "list. Make room in the working folder.");
}

}  // namespace quillmere
