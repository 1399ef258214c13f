// SPDX-License-Identifier: MIT
#include "ui/databases/schema_texts.h"

#include <QCoreApplication>
#include <QStringList>
#include <algorithm>
#include <initializer_list>

#include "ui/databases/list_texts.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr std::size_t kLongestReason = 600;  // bytes; a message box must fit on the screen

struct SchemaTexts {
  Q_DECLARE_TR_FUNCTIONS(SchemaTexts)
};

// Sentences one after another; those that do not apply are empty.
QString Sentences(std::initializer_list<QString> sentences) {
  QStringList said;
  for (const QString& sentence : sentences) {
    if (!sentence.isEmpty()) said << sentence;
  }
  return said.join(u' ');
}

QString NoWayBack() {
  return SchemaTexts::tr("This cannot be undone.");
}

QString DropTables(int count, const QString& source) {
  return SchemaTexts::tr("%Ln table(s) of %1 will be dropped with all rows.", nullptr, count)
      .arg(source);
}

QString DropKeys(int count, const QString& source) {
  return SchemaTexts::tr(
             "%Ln primary key(s) of %1 will be dropped, and with them every foreign key that "
             "references them, whoever owns it. The rows stay.",
             nullptr, count)
      .arg(source);
}

QString DropIndexes(int count, const QString& source) {
  return SchemaTexts::tr("%Ln index(es) of %1 will be dropped. The rows stay.", nullptr, count)
      .arg(source);
}

QString WhatIsMade(const MigratePlan& plan) {
  const QString objects = CountedObjects(plan.kind, plan.count);
  const QString source = OneLine(plan.source), target = OneLine(plan.target);
  if (plan.kind != ObjectKind::Table) {
    return SchemaTexts::tr("%1 of %2 will be created on %3. The tables must be there already.")
        .arg(objects, source, target);
  }
  const QString made =
      !plan.choices.include_primary_key ? SchemaTexts::tr("%1 of %2 will be created on %3.")
      : plan.choices.include_index
          ? SchemaTexts::tr("%1 of %2 will be created on %3, with primary keys and indexes.")
          : SchemaTexts::tr("%1 of %2 will be created on %3, with primary keys.");
  return Sentences(
      {made.arg(objects, source, target),
       SchemaTexts::tr(
           "Columns travel with their names, types, sizes and whether they may be empty; "
           "rows, foreign keys, checks, defaults, triggers and grants do not. The owners "
           "must be there already.")});
}

QString WhatIsThereAlready(const MigratePlan& plan) {
  if (!plan.choices.drop_target) {
    return SchemaTexts::tr(
        "What is there already under the same name is left as it is and reported as failed.");
  }
  const QString dropped =
      plan.kind == ObjectKind::Table
          ? SchemaTexts::tr(
                "A table that is there already under the same name is dropped first, "
                "with all its rows and the foreign keys that reference it.")
          : SchemaTexts::tr("What is there already under the same name is dropped first.");
  return Sentences({dropped, NoWayBack()});
}

QString OptionsWithoutEffect(const MigratePlan& plan) {
  QString indexes, prompt;
  if (plan.kind == ObjectKind::Table && plan.choices.include_index &&
      !plan.choices.include_primary_key) {
    indexes = SchemaTexts::tr(
        "Indexes travel only together with primary keys: check \"Include Primary Key\", too.");
  }
  if (plan.choices.prompt_before_drop) {
    prompt = SchemaTexts::tr(
        "\"Prompt Before Drop\" changes nothing: \"Drop Target\" asks once, with or without it.");
  }
  return Sentences({indexes, prompt});
}

QString WhatFailed(const SchemaRun& run, std::size_t total) {
  if (run.failed == 0) return {};
  const QString reason = Translated(run.first_failure).left(kLongestReason);
  if (total == 1) return reason;
  return SchemaTexts::tr("%1 of %2 failed, the first one with:\n%3")
      .arg(Grouped(static_cast<std::int64_t>(run.failed)),
           Grouped(static_cast<std::int64_t>(total)), reason);
}

QString WhatWasCancelled(const SchemaRun& run, std::size_t total) {
  if (!run.cancelled) return {};
  const std::size_t left = total - run.succeeded - run.failed;
  return SchemaTexts::tr("Cancelled: %1 of %2 were done and stay done, %3 were not begun.")
      .arg(Grouped(static_cast<std::int64_t>(run.succeeded)),
           Grouped(static_cast<std::int64_t>(total)), Grouped(static_cast<std::int64_t>(left)));
}

}  // namespace

QString DropCountLine(ObjectKind kind, std::size_t count) {
  const QString line = kind == ObjectKind::PrimaryKey
                           ? SchemaTexts::tr("%1 primary key(s) to drop:")
                       : kind == ObjectKind::Index ? SchemaTexts::tr("%1 indexe(s) to drop:")
                                                   : SchemaTexts::tr("%1 Table(s) to drop:");
  return line.arg(count);
}

QString MigrateCountLine(ObjectKind kind, std::size_t count) {
  const QString line = kind == ObjectKind::PrimaryKey
                           ? SchemaTexts::tr("%1 primary key(s) to migrate:")
                       : kind == ObjectKind::Index ? SchemaTexts::tr("%1 indexe(s) to migrate:")
                                                   : SchemaTexts::tr("%1 Table(s) to migrate:");
  return line.arg(count);
}

std::string ItemText(ObjectKind kind, const SchemaItem& item) {
  const std::string table = item.owner + "." + item.table;
  if (kind == ObjectKind::Table) return table;
  return ToBytes(SchemaTexts::tr("%1 of %2").arg(ToQt(item.name), ToQt(table)));
}

std::string NameOfTable(const SchemaItem& item) {
  return ToBytes(SchemaTexts::tr("%1 of %2").arg(ToQt(item.name), ToQt(item.table)));
}

QString DropAdvice(ObjectKind kind, std::size_t count, std::string_view source, bool cascade) {
  const int number = Plural(count);
  const QString place = OneLine(source);
  if (kind == ObjectKind::PrimaryKey) return Sentences({DropKeys(number, place), NoWayBack()});
  if (kind == ObjectKind::Index) return Sentences({DropIndexes(number, place), NoWayBack()});
  const QString references =
      cascade
          ? SchemaTexts::tr("Foreign keys of other tables that reference them are dropped, too.",
                            nullptr, number)
          : SchemaTexts::tr(
                "A table that foreign keys of other tables reference stays and is "
                "reported as failed.");
  return Sentences({DropTables(number, place), NoWayBack(), references});
}

QString RenameAdvice(ObjectKind kind, const SchemaItem& item, std::string_view source) {
  const QString object = OneLine(ItemText(kind, item)), place = OneLine(source);
  switch (kind) {
    case ObjectKind::PrimaryKey:
      return SchemaTexts::
          tr("The primary key %1 on %2 and every foreign key that references it will be dropped "
             "and created again, the key under the new name. What can not be created again is "
             "told in the message list, with its statement.")
              .arg(object, place);
    case ObjectKind::Index:
      return SchemaTexts::tr("The index %1 on %2 will get the new name.").arg(object, place);
    case ObjectKind::Table:
      break;
  }
  return SchemaTexts::tr(
             "The table %1 on %2 will get the new name. Jobs know it by the old one until their "
             "table lists are refreshed.")
      .arg(object, place);
}

QString MigrateAdvice(const MigratePlan& plan) {
  if (plan.target.empty()) {
    return SchemaTexts::tr("Choose the data source on which %1 of %2 will be created.")
        .arg(CountedObjects(plan.kind, plan.count), OneLine(plan.source));
  }
  return Sentences({WhatIsMade(plan), WhatIsThereAlready(plan), OptionsWithoutEffect(plan)});
}

QString DropTargetQuestion(ObjectKind kind, const std::vector<SchemaItem>& items,
                           std::string_view target) {
  constexpr std::size_t kNamesTold = 12;
  QStringList names;
  for (std::size_t i = 0; i < std::min(items.size(), kNamesTold); ++i) {
    names << ToQt(ItemText(kind, items[i]));
  }
  if (items.size() > kNamesTold) {
    names << SchemaTexts::tr("and %Ln more", nullptr, Plural(items.size() - kNamesTold));
  }
  const QString question =
      kind == ObjectKind::Table
          ? SchemaTexts::tr(
                "\"Drop Target\" is checked. What is there on %1 under these names is "
                "dropped, with all its rows and the foreign keys that reference it, and "
                "can not be brought back:\n\n%2\n\nGo on?")
          : SchemaTexts::tr(
                "\"Drop Target\" is checked. What is there on %1 under these names is "
                "dropped, and can not be brought back:\n\n%2\n\nGo on?");
  return question.arg(ToQt(target), names.join(u'\n'));
}

QString RunSummary(const SchemaRun& run, std::size_t total) {
  if (run.cancelled && run.succeeded + run.failed == 0) {
    return SchemaTexts::tr("Cancelled, nothing was changed");
  }
  QStringList parts;
  for (const QString& part : {WhatFailed(run, total), WhatWasCancelled(run, total)}) {
    if (!part.isEmpty()) parts << part;
  }
  if (parts.isEmpty() && run.logged) return {};
  parts << (run.logged
                ? SchemaTexts::tr("Every result is in the message list.")
                : SchemaTexts::tr("error.log cannot be written, so the results are not in the "
                                  "message list. Make room in the working folder."));
  return parts.join(QStringLiteral("\n\n"));
}

}  // namespace quillmere
