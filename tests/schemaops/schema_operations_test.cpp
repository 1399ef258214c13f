// SPDX-License-Identifier: MIT
#include "schemaops/schemaops_fixture.h"

namespace quillmere {
namespace {

constexpr auto kKey = ObjectKind::PrimaryKey;
constexpr auto kIndex = ObjectKind::Index;
constexpr auto kTable = ObjectKind::Table;
const std::string kBusy = "ORA-00054: resource busy";
const std::string kColumns = "from dba_tab_columns";
const std::string kKeyColumns =
    "from dba_cons_columns where owner ='SHOP' and constraint_name='PK'";
const std::string kIndexColumns = "from dba_ind_columns";

SchemaItem ItemOf(ObjectKind kind) {
  return {"SHOP", "ORDERS", kind == kKey ? "PK" : kind == kIndex ? "IX" : "ORDERS"};
}

// Of the table SHOP.ORDERS with a key and an index.
class SchemaOperationsTest : public SchemaOpsTest {
 protected:
  void SetUp() override {
    script_.Answer("count(*) from  DBA_CONSTRAINTS", {{"1"}});
    script_.Answer("count(*) from  DBA_INDEXES", {{"1"}});
    script_.Answer("status from  DBA_CONSTRAINTS", {{"PK", "ENABLED"}});
    script_.Answer("I.status from  DBA_INDEXES", {{"IX", "NORMAL", "VALID"}});
    script_.Answer(kKeyColumns, {{"ID"}, {"PART"}});
    script_.Answer(kIndexColumns, {{"AT"}});
    TargetTables("0");
    AnswerColumns("ID");
  }

  void TargetTables(const std::string& count) {
    script_.Answer("count(*) from  dba_all_tables", {{count}});
  }

  void AnswerColumns(const std::string& name) {
    script_.Answer(kColumns, {{name, "NUMBER", "22", "0", "0", "N"}});
  }

  // options: d drops the target, k takes the key along, i the indexes.
  SchemaRun Migrate(ObjectKind kind, std::string_view options = "") {
    const auto has = [&](char option) { return options.find(option) != std::string_view::npos; };
    return operations_.MigrateItems(source_, target_, kind, {ItemOf(kind)},
                                    {has('d'), has('k'), has('i')}, heard_);
  }

  // What a run did, line by line: changes with the number of their session, what the listener heard
  // ("- " a detail, "! " a failure), what the log got; "both" where that is the same.
  std::string Account(const SchemaRun& run) {
    std::string text = run.refused.empty() ? "" : "  refused: " + run.refused + "\n";
    for (const std::string& change : TakeChanges()) text += "  " + change + "\n";
    Lines log = TakeLog();
    for (std::string line : std::exchange(heard_.lines, {})) {
      const bool detail = line.starts_with("- ");
      const auto logged = std::find(log.begin(), log.end(), detail ? "! " + line.substr(2) : line);
      text += (logged == log.end() ? "  told " : "  both ") + line + "\n";
      if (logged != log.end()) log.erase(logged);
    }
    for (const std::string& line : log) text += "  log " + line + "\n";
    return text;
  }
};

TEST_F(SchemaOperationsTest, GoAsTheyAreWrittenDownWhateverFails) {
  std::string text;
  for (const auto& [kind, name] : {std::pair(kKey, "key"), {kIndex, "index"}, {kTable, "table"}}) {
    const auto drop = [&, kind = kind] {
      return Account(operations_.DropItems(source_, kind, {ItemOf(kind)}, kind == kTable, heard_));
    };
    const auto rename = [&, kind = kind] {
      return Account(operations_.RenameItem(source_, kind, ItemOf(kind), "NEW", heard_));
    };
    text += Accounts(std::string("drop ") + name, drop);
    text += Accounts(std::string("rename ") + name, rename);
    TargetTables("1");
    text += Accounts(std::string("migrate ") + name + " that is there",
                     [&, kind = kind] { return Account(Migrate(kind, "dki")); });
    TargetTables("0");
    for (const char* options : {"", "k", "i", "ki", "d"}) {
      if (kind != kTable && *options != 0) continue;
      text += std::string("=== migrate ") + name + " " + options + "\n" +
              Account(Migrate(kind, options));
    }
  }
  ExpectStored(text, ACCOUNTS "/operations.txt");
}

TEST_F(SchemaOperationsTest, AFailureDoesNotEndTheRunAndCancelDoesBetweenItems) {
  const std::vector<SchemaItem> items = {{"S", "A", "A"}, {"S", "B", "B"}, {"S", "C", "C"}};
  script_.FailOn("drop table S.A", kBusy);
  SchemaRun run = operations_.DropItems(source_, kTable, items, false, heard_);
  EXPECT_EQ(run.failed * 10 + run.succeeded, 12u);
  EXPECT_EQ(heard_.progress, (Lines{"drop S.A 0/3", "drop S.B 1/3", "drop S.C 2/3"}));
  heard_ = {};
  heard_.allowed = 1;
  TakeChanges();
  run = operations_.DropItems(source_, kTable, items, false, heard_);
  EXPECT_TRUE(run.cancelled);
  EXPECT_EQ(heard_.progress.size(), 2u) << "asked no more";
  EXPECT_EQ(TakeChanges(), Lines{"1: drop table S.A"});
}

TEST_F(SchemaOperationsTest, TheCachedListsFollow) {
  source_.tables = {{"SHOP", "ORDERS", "", "", 1}, {"SHOP", "PARTS", "", "", 2}};
  source_.primary_keys = {{"SHOP", "ORDERS", "PK", ""}, {"SHOP", "PARTS", "PK2", ""}};
  source_.indexes = {{"SHOP", "ORDERS", "SHOP", "IX", "", "", 0}};
  operations_.RenameItem(source_, kTable, ItemOf(kTable), "SALES", heard_);
  operations_.RenameItem(source_, kIndex, {"SHOP", "SALES", "IX"}, "IX1", heard_);
  EXPECT_TRUE(source_.needsave);
  std::string text = "ORDERS is SALES, IX is IX1\n" + Lists();
  operations_.DropItems(source_, kKey, {{"SHOP", "PARTS", "PK2"}}, false, heard_);
  text += "PK2 dropped\n" + Lists();
  script_.FailOn("drop table SHOP.PARTS", kBusy);
  operations_.DropItems(source_, kTable, {{"SHOP", "SALES", "SALES"}, {"SHOP", "PARTS", "PARTS"}},
                        false, heard_);
  ExpectStored(text + "SALES dropped, PARTS not\n" + Lists(), ACCOUNTS "/cached_lists.txt");
}

TEST_F(SchemaOperationsTest, MigrateRefusesWhatWouldLoseSomethingAndTracesWhatItCreates) {
  std::string text;
  const auto migrate = [&](ObjectKind kind, std::string_view options = "") {
    text += Account(Migrate(kind, options));
  };
  settings_.statement_trace = true;
  migrate(kTable);
  text += "a table that is there\n";
  TargetTables("1");
  migrate(kTable);
  text += "a column that could not be listed, and would be missing on the target\n";
  AnswerColumns("ID2" + std::string(118, 'X'));
  migrate(kTable, "d");
  for (const auto& [columns, kind] :
       {std::pair(kColumns, kTable), {kIndexColumns, kIndex}, {kKeyColumns, kKey}}) {
    text += "nor is anything dropped for what the source has no more\n";
    script_.Answer(columns, {});
    for (const ObjectKind migrated : {kind, kTable}) migrate(migrated, "dki");
  }
  target_.name = source_.name;
  migrate(kTable, "d");
  ExpectStored(text, ACCOUNTS "/refusals.txt");
}

}  // namespace
}  // namespace quillmere
