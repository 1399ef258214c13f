#include "schemaops/schemaops_fixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string kBusy = "ORA-00054: resource busy";
const std::string kExecuteBusy = "OCIStmtExecute : " + kBusy;
const SchemaItem kKey{"SHOP", "ORDERS", "PK"};
const SchemaItem kIndex{"SHOP", "ORDERS", "IX"};
const SchemaItem kTable{"SHOP", "ORDERS", "ORDERS"};

std::string CountOf(const std::string& what) {
  return "select count(*) from  " + what + "  where owner='SHOP' and table_name='ORDERS'";
}
const std::string kCountTables = CountOf("dba_all_tables");
const std::string kCountKeys = CountOf("DBA_CONSTRAINTS") + " and constraint_type='P'";
const std::string kNoKeyIndexes =
    " AND NOT EXISTS (SELECT 1 FROM SYS.DBA_CONSTRAINTS C WHERE C.CONSTRAINT_NAME=I.INDEX_NAME AND "
    "C.TABLE_NAME=I.TABLE_NAME AND C.OWNER=I.OWNER AND C.CONSTRAINT_TYPE IN ('P','U')  AND "
    "I.UNIQUENESS='UNIQUE') ";
const std::string kCreate = "CREATE TABLE SHOP.ORDERS ( ID NUMBER NOT NULL ) ";
const std::string kAddKey = "ALTER TABLE SHOP.ORDERS ADD CONSTRAINT PK PRIMARY KEY (ID,PART)";
const std::string kCreateIndex = "CREATE INDEX  SHOP.IX on SHOP.ORDERS(AT)";

class SchemaOperationsTest : public SchemaOpsTest {
 protected:
  void SetUp() override {
    script_.Answer(kCountTables, {{"0"}});
    script_.Answer(kCountKeys, {{"1"}});
    script_.Answer(kCountKeys + " and constraint_name ='PK'", {{"1"}});
    script_.Answer(CountOf("DBA_INDEXES") + " and index_name ='IX'", {{"1"}});
    script_.Answer(
        "select count(*) from  DBA_INDEXES  I where owner='SHOP' and "
        "table_name='ORDERS'" +
            kNoKeyIndexes,
        {{"1"}});
    script_.Answer(
        "select constraint_name, status from  DBA_CONSTRAINTS  where owner='SHOP' and "
        "table_name='ORDERS' and  constraint_type='P' ",
        {{"PK", "ENABLED"}});
    script_.Answer(
        "select I.index_name, I.index_type, I.status from  DBA_INDEXES  I where "
        "I.owner='SHOP' and I.table_name='ORDERS'" +
            kNoKeyIndexes,
        {{"IX", "NORMAL", "VALID"}});
    script_.Answer(
        "select substr(column_name,0, 50) from dba_cons_columns where owner ='SHOP' and "
        "constraint_name='PK'",
        {{"ID"}, {"PART"}});
    script_.Answer(
        "select substr(column_name,0, 50) from dba_ind_columns where "
        "table_name='ORDERS' and index_owner ='SHOP' and index_name='IX'",
        {{"AT"}});
    AnswerColumns("ID");
  }

  void AnswerColumns(const std::string& name) {
    script_.Answer(
        "select column_name, substr(data_type,0,30), data_length, "
        "NVL(data_precision,0),   NVL(data_scale,0), nullable from dba_tab_columns where "
        "table_name='ORDERS' and owner ='SHOP'",
        {{name, "NUMBER", "22", "0", "0", "N"}});
  }

  SchemaRun Migrate(ObjectKind kind, const MigrateOptions& options = {}, std::size_t times = 1) {
    const std::vector<SchemaItem> items(times, kind == ObjectKind::PrimaryKey ? kKey
                                               : kind == ObjectKind::Index    ? kIndex
                                                                              : kTable);
    return operations_.MigrateItems(source_, target_, kind, items, options, heard_);
  }
};

TEST_F(SchemaOperationsTest, DropAndRenameTellEachResult) {
  const auto drop = [this](ObjectKind kind, SchemaItem item, bool cascade) {
    return [=, this] { return operations_.DropItems(source_, kind, {item}, cascade, heard_); };
  };
  const auto rename = [this](ObjectKind kind, SchemaItem item) {
    return [=, this] { return operations_.RenameItem(source_, kind, item, "NEW", heard_); };
  };
  struct Case {
    std::function<SchemaRun()> run;
    std::string first_change;
    std::string done;
    std::string failed;       // before the reason
    std::string detail = "";  // before the failed line
  };
  const auto key = ObjectKind::PrimaryKey;
  const auto index = ObjectKind::Index;
  const auto table = ObjectKind::Table;
  const std::string drop_key = "alter table SHOP.ORDERS drop constraint PK";
  for (const Case& c :
       std::vector<Case>{{drop(key, kKey, false), drop_key, "Drop Primary key PK successed",
                          "Drop Primary key PK failed. Reason: ", "drop pk: PK failed."},
                         {drop(index, kIndex, false), "drop index SHOP.IX",
                          "Drop Index IX successed", "Drop Index IX failed. Reason: "},
                         {drop(table, kTable, true), "drop table SHOP.ORDERS CASCADE CONSTRAINTS",
                          "Drop Table ORDERS successed", "Drop Table ORDERS failed, reason: "},
                         {rename(key, kKey), drop_key, "Key: SHOP.PK's name changed to NEW",
                          "change Pk name of SHOP.ORDERS's PK failed. Reason: "},
                         {rename(index, kIndex), "ALTER INDEX SHOP.IX RENAME TO NEW",
                          "index: SHOP.IX's name changed to NEW",
                          "change index name of SHOP.ORDERS's IX failed. Reason: "},
                         {rename(table, kTable), "ALTER TABLE SHOP.ORDERS RENAME TO NEW",
                          "table: SHOP.ORDERS's name changed to NEW",
                          "change table name of SHOP.ORDERS failed. Reason: "}}) {
    SCOPED_TRACE(c.done);
    EXPECT_TRUE(c.run().AllDone());
    EXPECT_EQ(heard_.lines, Lines{c.done});
    EXPECT_EQ(TakeLog(), Lines{c.done});
    EXPECT_THAT(TakeChanges()[0], ::testing::EndsWith(": " + c.first_change));

    heard_.lines.clear();
    script_.FailOn(c.first_change, kBusy, 54, 1);  // passes the preparation
    const SchemaRun run = c.run();
    EXPECT_EQ(run.failed, 1u);
    Lines heard = {"! " + c.failed + kExecuteBusy};
    Lines logged = heard;
    if (!c.detail.empty()) {
      heard.insert(heard.begin(), "- " + c.detail);
      logged.insert(logged.begin(), "! " + c.detail);
    }
    EXPECT_EQ(heard_.lines, heard);
    EXPECT_EQ(TakeLog(), logged);
    TakeChanges();
    heard_.lines.clear();

    script_.FailOn("SessionBegin", "ORA-01017: denied", 1017);
    EXPECT_EQ(c.run().refused,
              "connect Database failed. Error: OCISessionBegin : ORA-01017: denied");
    EXPECT_THAT(heard_.lines, IsEmpty());
  }
}

TEST_F(SchemaOperationsTest, AFailedKeyRenameTellsHowToBringTheKeyBack) {
  script_.FailOn("ADD CONSTRAINT NEW", kBusy);
  operations_.RenameItem(source_, ObjectKind::PrimaryKey, kKey, "NEW", heard_);
  ASSERT_EQ(heard_.lines.size(), 2u);
  EXPECT_THAT(heard_.lines[0], HasSubstr("to be run by hand: " + kAddKey));
  EXPECT_EQ(TakeLog().size(), 2u);
}

TEST_F(SchemaOperationsTest, AFailureDoesNotEndTheRunAndCancelDoesBetweenItems) {
  const std::vector<SchemaItem> items = {{"S", "A", "A"}, {"S", "B", "B"}, {"S", "C", "C"}};
  script_.FailOn("drop table S.A", kBusy);
  SchemaRun run = operations_.DropItems(source_, ObjectKind::Table, items, false, heard_);
  EXPECT_EQ(run.failed, 1u);
  EXPECT_EQ(run.succeeded, 2u);
  EXPECT_FALSE(run.AllDone());
  EXPECT_THAT(heard_.progress, ElementsAre("drop S.A 0/3", "drop S.B 1/3", "drop S.C 2/3"));

  heard_ = {};
  heard_.allowed = 1;
  TakeChanges();
  run = operations_.DropItems(source_, ObjectKind::Table, items, false, heard_);
  EXPECT_TRUE(run.cancelled);
  EXPECT_EQ(heard_.progress.size(), 2u) << "asked no more";
  EXPECT_THAT(TakeChanges(), ElementsAre("2: drop table S.A"));
}

TEST_F(SchemaOperationsTest, TheCachedListsFollow) {
  source_.tables = {{"SHOP", "ORDERS", "", "", 1}, {"SHOP", "PARTS", "", "", 2}};
  source_.primary_keys = {{"SHOP", "ORDERS", "PK", ""}, {"SHOP", "PARTS", "PK2", ""}};
  source_.indexes = {{"SHOP", "ORDERS", "SHOP", "IX", "", "", 0}};
  operations_.RenameItem(source_, ObjectKind::Table, kTable, "SALES", heard_);
  operations_.RenameItem(source_, ObjectKind::Index, {"SHOP", "SALES", "IX"}, "IX1", heard_);
  EXPECT_TRUE(source_.needsave);
  EXPECT_EQ(source_.tables[0].table_name, "SALES");
  EXPECT_EQ(source_.primary_keys[0].table_name, "SALES");
  EXPECT_EQ(source_.indexes[0].index_name, "IX1");
  operations_.DropItems(source_, ObjectKind::PrimaryKey, {{"SHOP", "PARTS", "PK2"}}, false, heard_);
  EXPECT_EQ(source_.primary_keys.size(), 1u);
  script_.FailOn("drop table SHOP.PARTS", kBusy);
  operations_.DropItems(source_, ObjectKind::Table,
                        {{"SHOP", "SALES", "SALES"}, {"SHOP", "PARTS", "PARTS"}}, false, heard_);
  ASSERT_EQ(source_.tables.size(), 1u);
  EXPECT_EQ(source_.tables[0].table_name, "PARTS");
  EXPECT_THAT(source_.primary_keys, IsEmpty());
  EXPECT_THAT(source_.indexes, IsEmpty());
}

TEST_F(SchemaOperationsTest, MigrateRunsTheRightStatementsOnTheTarget) {
  struct Case {
    std::string name;
    ObjectKind kind;
    std::string options;  // d: drop target, k: with key, i: with indexes
    std::string tables;   // of that name on the target
    std::string changes;
  };
  const auto key = ObjectKind::PrimaryKey;
  const auto index = ObjectKind::Index;
  const auto table = ObjectKind::Table;
  const std::string drop_table = "drop table SHOP.ORDERS CASCADE CONSTRAINTS";
  const std::string drop_key = "alter table SHOP.ORDERS drop constraint PK";
  for (const Case& c : std::vector<Case>{
           {"bare table", table, "", "0", kCreate},
           {"with key", table, "k", "0", kCreate + kAddKey},
           {"indexes go with the key only", table, "i", "0", kCreate},
           {"with both", table, "ki", "0", kCreate + kAddKey + kCreateIndex},
           {"nothing to drop", table, "d", "0", kCreate},
           {"drop target", table, "d", "1", drop_table + kCreate},
           {"key", key, "", "0", kAddKey},
           {"key, drop target", key, "d", "1", drop_key + kAddKey},
           {"index, drop target", index, "d", "1", "drop index SHOP.IX" + kCreateIndex}}) {
    SCOPED_TRACE(c.name);
    script_.Answer(kCountTables, {{c.tables}});
    const auto has = [&](char option) { return c.options.find(option) != std::string::npos; };
    EXPECT_TRUE(Migrate(c.kind, {has('d'), has('k'), has('i')}).AllDone());
    const std::string result = c.kind == key     ? "Migarte Primary key PK successed"
                               : c.kind == index ? "Migarte Index IX successed"
                                                 : "Migarte Table ORDERS successed";
    EXPECT_EQ(heard_.lines, Lines{result});
    EXPECT_EQ(TakeLog(), Lines{result});
    std::string changes;
    for (const std::string& change : TakeChanges()) {
      EXPECT_EQ(std::stoi(change) % 2, 0) << "the target is the second connection of a run";
      changes += change.substr(change.find(": ") + 2);
    }
    EXPECT_EQ(changes, c.changes);
    heard_.lines.clear();
  }
}

TEST_F(SchemaOperationsTest, EachStepOfAMigrateFailsWithItsText) {
  struct Case {
    ObjectKind kind;
    std::string failing;
    std::string step;  // empty: the server's text alone
    std::size_t changes;
  };
  const auto table = ObjectKind::Table;
  for (const Case& c : std::vector<Case>{
           {table, "dba_all_tables", "Check destination table existed failed. Reason:", 0},
           {table, "DBA_CONSTRAINTS  where", "Can't not check table's primary key.", 0},
           {table, "select constraint_name", "Can't not get source table's primary key.", 0},
           {table, "dba_cons_columns", "Can't not get primary key's content", 0},
           {table, "count(*) from  DBA_INDEXES", "Can't not check table's index", 0},
           {table, "select I.index_name", "Can't not get table's index", 0},
           {table, "dba_ind_columns", "Can't not get source table's index content", 0},
           {table, "dba_tab_columns", "Can't not get source table's columns", 0},
           {table, "drop table", "Can't not drop target table", 1},
           {table, "CREATE TABLE", "Create target table:SHOP.ORDERS failed", 2},
           {table, "PRIMARY KEY (", "Create target primary key:PKof ORDERS failed", 3},
           {table, "CREATE INDEX", "Create target index:IXof ORDERS failed", 4},
           {ObjectKind::PrimaryKey, "dba_all_tables",
            "Table: ORDERS not exist. Can't migrate key: PK", 0},
           {ObjectKind::PrimaryKey, "dba_cons_columns", "", 1},
           {ObjectKind::PrimaryKey, "PRIMARY KEY (", "", 2},
           {ObjectKind::Index, "dba_all_tables", "Table: ORDERS not exist. Can't migrate index: IX",
            0},
           {ObjectKind::Index, "dba_ind_columns", "", 1},
           {ObjectKind::Index, "CREATE INDEX", "", 2}}) {
    SCOPED_TRACE(c.failing + " " + c.step);
    script_.Answer(kCountTables, {{"1"}});
    script_.FailOn(c.failing, kBusy, 54);
    const SchemaRun run = Migrate(c.kind, {true, true, true}, 2);
    EXPECT_EQ(run.failed, 1u);
    EXPECT_EQ(run.succeeded, 1u) << "the next item is done";
    const std::size_t result = c.step.empty() ? 0 : 1;
    ASSERT_EQ(heard_.lines.size(), result + 2);
    if (result > 0) {
      EXPECT_THAT(heard_.lines[0], ::testing::StartsWith("- " + c.step));
    }
    EXPECT_THAT(heard_.lines[result], HasSubstr(" failed. Reason: " + c.step));
    EXPECT_TRUE(heard_.lines[result].ends_with(kBusy));
    EXPECT_EQ(TakeLog()[0], heard_.lines[result]);
    const std::size_t all = c.kind == table ? 4 : 2;
    EXPECT_EQ(TakeChanges().size(), c.changes + all);
    heard_.lines.clear();
  }
}

TEST_F(SchemaOperationsTest, MigrateRefusesWhatWouldLoseSomething) {
  script_.Answer(kCountTables, {{"1"}});
  EXPECT_EQ(Migrate(ObjectKind::Table).failed, 1u);
  EXPECT_EQ(
      heard_.lines.back(),
      "! Migarte Table ORDERS failed. Reason: Table: SHOP already exist. Can't migrate Table: "
      "ORDERS.");
  // A column that could not be listed would be missing on the target.
  AnswerColumns("ID2" + std::string(118, 'X'));
  EXPECT_EQ(Migrate(ObjectKind::Table, {true, false, false}).failed, 1u);
  EXPECT_THAT(heard_.lines.back(), HasSubstr("Can't not get source table's columns: column of "
                                             "SHOP.ORDERS beginning with ID2"));
  target_.name = source_.name;
  EXPECT_THAT(Migrate(ObjectKind::Table, {true, false, false}).refused, HasSubstr("source itself"));
  EXPECT_THAT(TakeChanges(), IsEmpty());
}

TEST_F(SchemaOperationsTest, MigrateNamesTheConnectionThatFailedAndTracesWhatItCreates) {
  script_.FailOn("SessionBegin", "ORA-01017: denied", 1017);
  EXPECT_EQ(Migrate(ObjectKind::Table).refused,
            "connect source Database failed. Error: OCISessionBegin : ORA-01017: denied");
  script_.FailOn("SessionBegin", "ORA-01017: denied", 1017, 1);
  EXPECT_EQ(Migrate(ObjectKind::Table).refused,
            "connect destination Database failed. Error: OCISessionBegin : ORA-01017: denied");
  EXPECT_THAT(TakeLog(), IsEmpty());
  settings_.statement_trace = true;
  EXPECT_TRUE(Migrate(ObjectKind::Table).AllDone());
  EXPECT_THAT(TakeLog(), ElementsAre("/n" + kCreate + "/n", "Migarte Table ORDERS successed"));
}

}  // namespace
}  // namespace quillmere
