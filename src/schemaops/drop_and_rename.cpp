// SPDX-License-Identifier: MIT
#include "schemaops/cached_catalogue.h"
#include "schemaops/item_run.h"

namespace quillmere {
namespace {

constexpr std::string_view kConnectFailed = "connect Database failed. Error: ";

IndexRef IndexOf(const SchemaItem& item) {
  return {item.owner, item.table, item.owner, item.name};
}

KeyInfo KeyOf(const SchemaItem& item) {
  return {item.owner, item.table, item.name, {}};
}

bool Drop(OracleSession& session, ObjectKind kind, const SchemaItem& item, bool cascade,
          ItemRun& run) {
  switch (kind) {
    case ObjectKind::PrimaryKey:
      return session.DropPrimaryKey(KeyOf(item), [&](std::string_view line) { run.Detail(line); });
    case ObjectKind::Index:
      return session.DropIndex(IndexOf(item));
    case ObjectKind::Table:
      break;
  }
  return session.DropTable(item.owner, item.name, cascade);
}

// The beginning of the result line, and what stands in front of the reason of a failure.
struct DropTexts {
  std::string what;
  std::string failed;
};

DropTexts DropTextsOf(ObjectKind kind) {
  switch (kind) {
    case ObjectKind::PrimaryKey:
      return {"Drop Primary key ", " failed. Reason: "};
    case ObjectKind::Index:
      return {"Drop Index ", " failed. Reason: "};
    case ObjectKind::Table:
      break;
  }
  return {"Drop Table ", " failed, reason: "};
}

bool Rename(OracleSession& session, ObjectKind kind, const SchemaItem& item,
            std::string_view new_name) {
  switch (kind) {
    case ObjectKind::PrimaryKey:
      return session.RenamePrimaryKey(KeyOf(item), new_name);
    case ObjectKind::Index:
      return session.RenameIndex(item.owner, item.name, new_name);
    case ObjectKind::Table:
      break;
  }
  return session.RenameTable(item.owner, item.name, new_name);
}

struct RenameTexts {
  std::string done;
  std::string failed;
};

RenameTexts RenameTextsOf(ObjectKind kind, const SchemaItem& item) {
  const std::string name = item.owner + "." + item.name;
  const std::string of_table = item.owner + "." + item.table;
  switch (kind) {
    case ObjectKind::PrimaryKey:
      return {"Key: " + name, "change Pk name of " + of_table + "'s " + item.name};
    case ObjectKind::Index:
      return {"index: " + name, "change index name of " + of_table + "'s " + item.name};
    case ObjectKind::Table:
      break;
  }
  return {"table: " + name, "change table name of " + of_table};
}

}  // namespace

SchemaRun SchemaOperations::DropItems(DataSource& source, ObjectKind kind,
                                      const std::vector<SchemaItem>& items, bool cascade,
                                      SchemaListener& listener) {
  ItemRun run(log_, listener);
  OracleSession session(library_);
  if (!run.Connect(session, source, kConnectFailed)) return run.Take();
  const DropTexts texts = DropTextsOf(kind);
  std::vector<SchemaItem> dropped;
  run.ForEach("drop", items, [&](const SchemaItem& item) {
    const bool ok = Drop(session, kind, item, cascade, run);
    if (ok) dropped.push_back(item);
    run.Warnings(session);
    run.Result(ok, texts.what + item.name + " successed",
               texts.what + item.name + texts.failed + session.LastError());
  });
  ForgetDropped(source, kind, dropped);
  return run.Take();
}

SchemaRun SchemaOperations::RenameItem(DataSource& source, ObjectKind kind, const SchemaItem& item,
                                       std::string_view new_name, SchemaListener& listener) {
  ItemRun run(log_, listener);
  OracleSession session(library_);
  if (!run.Connect(session, source, kConnectFailed)) return run.Take();
  run.ForEach("rename", {item}, [&](const SchemaItem&) {
    const bool ok = Rename(session, kind, item, new_name);
    if (ok) TakeNewName(source, kind, item, new_name);
    const RenameTexts texts = RenameTextsOf(kind, item);
    run.Warnings(session);
    run.Result(ok, texts.done + "'s name changed to " + std::string(new_name),
               texts.failed + " failed. Reason: " + session.LastError());
  });
  return run.Take();
}

}  // namespace quillmere
