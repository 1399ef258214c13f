// SPDX-License-Identifier: MIT
// The database manager: data sources are connected and browsed, and their tables, keys and indexes
// dropped, renamed and migrated; the databases themselves tell what was done.
#include <gtest/gtest.h>

#include <QAction>
#include <QTableView>
#include <QTreeView>

#include "window/program_fixture.h"

namespace quillmere::window {
namespace {

using Names = std::vector<std::string>;

const std::string kUsers = R"(
create user SHOP identified by x;
create user CRM identified by x;
)";
// A key that another owner's table references, and an index.
const std::string kSchema = kUsers + R"(
create table SHOP.ORDERS (ID number(10), NAME varchar2(60), constraint ORDERS_PK primary key (ID));
create index SHOP.ORDERS_NAME on SHOP.ORDERS (NAME);
create table CRM.VISITS (V number(5), OID number(10), constraint VISITS_PK primary key (V),
  constraint VISITS_FK foreign key (OID) references SHOP.ORDERS (ID));
)";
const std::string kOrphan = "insert into CRM.VISITS values (1, 77);";

class DatabaseManager : public ProgramTest {
 protected:
  void OpenManager() {
    MakeDatabase("A", kSchema);
    MakeDatabase("B", kUsers);
    Open();
    for (const std::string name : {"A", "B"}) AddSource(name);
    Show();
    ShowDatabases();
  }
  void SelectNode(const Path& below_root) {
    Path path{"ORACLE"};
    path.insert(path.end(), below_root.begin(), below_root.end());
    ClickNode("DbMgrTV", path);
  }
  // Nodes are opened by a look at their list.
  void OpenList(const std::string& source, const std::string& kind) {
    SelectNode({source});
    auto* tree = Find<QTreeView>("DbMgrTV");
    Ui([tree] { tree->expand(tree->currentIndex()); });
    SelectNode({source, kind});
  }
  // Of the selected list: the named rows, by the action; its dialog is open afterwards.
  void Choose(const Names& rows, const std::string& action) {
    SelectRows("DbMgrLV", rows);
    ClickAction(action);
  }
  Names Shown() { return ActionsShown("DbMgrToolBar"); }
  Names FirstCells() {
    Names names;
    for (const Row& row : Rows("DbMgrLV")) names.push_back(row.front());
    return names;
  }
  void ExpectNames(const Names& names) {
    WaitForNoDialog();
    for (int turn = 0; turn < 2000 && FirstCells() != names; ++turn) {
    }
    EXPECT_EQ(FirstCells(), names);
  }
  void WaitForNoDialog() {
    WaitFor("the dialogs to close", [] { return QApplication::activeModalWidget() == nullptr; });
  }
  // True when the foreign key is gone.
  bool OrphanIsTaken(const std::string& database) { return SqlFails(database, kOrphan).empty(); }
};

TEST_F(DatabaseManager, SourcesAreConnectedAndBrowsed) {
  OpenManager();
  SelectNode({});
  EXPECT_EQ(Shown(), Names{"ActOpenDbMgr"});
  EXPECT_EQ(Captions("DbMgrLV"), (Row{"Data Source", "Version", "UserName", "Mode"}));
  DoubleClickCell("DbMgrLV", 0, 0);
  EXPECT_EQ(Captions("DbMgrLV"), Row{"Meta Types"});
  EXPECT_EQ(Rows("DbMgrLV"), (std::vector<Row>{{"PRIMARY KEY"}, {"INDEX"}, {"TABLE"}}));
  EXPECT_EQ(Shown(), (Names{"ActOpenDbMgr", "ConnectDS"}));
  // The source has another table by now: connecting reads it.
  Sql("A", "create table SHOP.FRESH (ID number(10));");
  ClickAction("ConnectDS");
  WaitFor("A to be connected", [this] {
    return Work().Registry().At(0).state == ConnectionState::Connected &&
           Work().Registry().At(0).tables.size() == 3;
  });
  WaitForMessage("connect to database: A successed, when refresh.");
  EXPECT_EQ(Shown(), (Names{"ActOpenDbMgr", "DisConnectDS", "RefreshDS"}));
  const struct {
    std::string node;
    Row captions;
    std::vector<int> widths;
    std::vector<Row> rows;
  } lists[] = {
      {"Primary Key",
       {"Key Name", "Table Owner", "Table Name", "Status"},
       {210, 110, 110, 90},
       {{"ORDERS_PK", "SHOP", "ORDERS", "ENABLED"}, {"VISITS_PK", "CRM", "VISITS", "ENABLED"}}},
      {"Index",
       {"Index Name", "Index Type", "Index Owner", "Table Owner", "Table Name", "Status"},
       {210, 80, 110, 110, 110, 90},
       {{"ORDERS_NAME", "NORMAL", "SHOP", "SHOP", "ORDERS", "VALID"}}},
      {"Table",
       {"Table Name", "Table Owner", "Table Space", "Rows", "Type"},
       {210, 80, 110, 80, 80},
       {{"FRESH", "SHOP", "USERS", "0", ""},
        {"ORDERS", "SHOP", "USERS", "0", ""},
        {"VISITS", "CRM", "USERS", "0", ""}}},
  };
  for (const auto& list : lists) {
    SCOPED_TRACE(list.node);
    SelectNode({"A", list.node});
    EXPECT_EQ(Shown(), (Names{"ActOpenDbMgr", "DropMeta", "ChangeMeta", "MigrateMeta"}));
    EXPECT_EQ(Captions("DbMgrLV"), list.captions);
    EXPECT_EQ(Rows("DbMgrLV"), list.rows);
    EXPECT_EQ(Widths("DbMgrLV"), list.widths);
  }
  // A right press changes nothing.
  ClickNode("DbMgrTV", {"ORACLE", "B"}, XDisplay::kRight);
  EXPECT_EQ(Captions("DbMgrLV"), lists[2].captions);
  CloseDialogs();
  SelectNode({"A"});
  ClickAction("DisConnectDS");
  EXPECT_EQ(Shown(), (Names{"ActOpenDbMgr", "ConnectDS"}));
  // Without a connection the lists can still be browsed, also after a restart.
  Quit();
  Open();
  Show();
  OpenList("A", "Primary Key");
  EXPECT_EQ(Rows("DbMgrLV"), lists[0].rows);
}

TEST_F(DatabaseManager, AWrongStoredPasswordAsksForAnother) {
  OpenManager();
  Ui([this] { Work().Registry().At(0).password = "stale"; });
  SelectNode({"A"});
  ClickAction("ConnectDS");
  EXPECT_EQ(TextOf("EditDatabaseName"), "A");
  EXPECT_EQ(TextOf("EditUserId"), "SYS");
  EXPECT_EQ(TextOf("EditPassword"), "");
  EXPECT_EQ(FocusName(), "EditPassword");
  Type("no");
  Press("Return");
  AnswerBox(
      "connect Database failed. Error: OCISessionBegin : ORA-01017: invalid username/password; "
      "logon denied");
  Enter("EditPassword", "");
  Enter("EditUserId", "");
  Click("LoginBtn");
  AnswerBox("Obligatory field can not be empty");
  Click("CancelBtn");
  EXPECT_EQ(Shown(), (Names{"ActOpenDbMgr", "ConnectDS"}));
  ClickAction("ConnectDS");
  Enter("EditPassword", kPassword);
  Click("LoginBtn");
  WaitFor("the refresh", [this] { return !Work().Registry().At(0).tables.empty(); });
  WaitForNoDialog();
  EXPECT_EQ(Shown(), (Names{"ActOpenDbMgr", "DisConnectDS", "RefreshDS"}));
  // A refresh that cannot connect leaves the lists.
  std::filesystem::rename(folder_ / "sandbox/A.db", folder_ / "sandbox/gone");
  ClickAction("RefreshDS");
  BoxText();
  Press("Return");
  WaitForMessage("Can't not connect to database: A");
  SelectNode({"A", "Table"});
  EXPECT_EQ(FirstCells(), (Names{"ORDERS", "VISITS"}));
}

TEST_F(DatabaseManager, ObjectsAreDropped) {
  OpenManager();
  OpenList("A", "Table");
  ClickAction("DropMeta");
  AnswerBox("Please select at least one item to operate");
  Choose({"ORDERS", "VISITS"}, "ChangeMeta");
  AnswerBox("Can only select one item to change.");

  Choose({"ORDERS"}, "DropMeta");
  EXPECT_EQ(TextOf("LableTop"), "1 Table(s) to drop:");
  EXPECT_EQ(TextOf("LblTips"), "Drop Key/Table/Index");
  Press("Return");  // aborts: nothing is dropped by accident
  WaitForNoDialog();
  Choose({"ORDERS"}, "DropMeta");
  Click("DropBtn");
  EXPECT_EQ(BoxText().substr(0, 39), "Drop Table ORDERS failed, reason: OCISt");
  Press("Return");
  ExpectNames({"ORDERS", "VISITS"});

  SelectNode({"A", "Index"});
  Choose({"ORDERS_NAME"}, "DropMeta");
  EXPECT_EQ(TextOf("LableTop"), "1 indexe(s) to drop:");
  Click("DropBtn");
  ExpectNames({});
  WaitForMessage("Drop Index ORDERS_NAME successed");

  SelectNode({"A", "Primary Key"});
  Choose({"ORDERS_PK"}, "DropMeta");
  EXPECT_EQ(TextOf("LableTop"), "1 primary key(s) to drop:");
  EXPECT_NE(SqlFails("A", kOrphan), "");
  Click("DropBtn");
  ExpectNames({"VISITS_PK"});
  WaitForMessage("Drop Primary key ORDERS_PK successed");
  EXPECT_EQ(SqlFails("A", kOrphan), "") << "the foreign key of the other owner is gone";

  // Once more with the keys: now the tables go, and the foreign key with them.
  Sql("A",
      "delete from CRM.VISITS;\n"
      "alter table SHOP.ORDERS add constraint ORDERS_PK primary key (ID);\n"
      "alter table CRM.VISITS add constraint VISITS_FK foreign key (OID) references "
      "SHOP.ORDERS (ID);");
  EXPECT_NE(SqlFails("A", kOrphan), "");
  SelectNode({"A", "Table"});
  Choose({"ORDERS", "VISITS"}, "DropMeta");
  EXPECT_EQ(TextOf("LableTop"), "2 Table(s) to drop:");
  EXPECT_EQ(Rows("DropListBox"), (std::vector<Row>{{"SHOP.ORDERS"}, {"CRM.VISITS"}}));
  Click("CancelBtn");
  Choose({"ORDERS"}, "DropMeta");
  Click("ChBCasecade");
  Click("DropBtn");
  ExpectNames({"VISITS"});
  WaitForMessage("Drop Table ORDERS successed");
  EXPECT_EQ(SqlFails("A", kOrphan), "");
}

TEST_F(DatabaseManager, ObjectsAreRenamed) {
  OpenManager();
  const struct {
    std::string node, name, table, new_name, message;
  } rows[] = {
      {"Primary Key", "ORDERS_PK", "ORDERS", "ORDERS_KEY",
       "Key: SHOP.ORDERS_PK's name changed to ORDERS_KEY"},
      {"Index", "ORDERS_NAME", "ORDERS", "BY_NAME",
       "index: SHOP.ORDERS_NAME's name changed to BY_NAME"},
      {"Table", "ORDERS", "ORDERS", "SALES", "table: SHOP.ORDERS's name changed to SALES"},
  };
  OpenList("A", "Table");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.node);
    SelectNode({"A", row.node});
    Choose({row.name}, "ChangeMeta");
    EXPECT_EQ(TextOf("EditOwner"), "SHOP");
    EXPECT_EQ(TextOf("EditTable"), row.table);
    EXPECT_EQ(TextOf("EditCurName"), row.name);
    EXPECT_EQ(FocusName(), "EditNewName");
    Type(row.new_name);
    Press("Return");
    WaitForMessage(row.message);
    WaitForNoDialog();
    EXPECT_EQ(SelectedRow("DbMgrLV"), row.new_name);
  }
  EXPECT_NE(SqlFails("A", kOrphan), "") << "the foreign key was made again";
  EXPECT_EQ(SqlFails("A", "insert into SHOP.SALES values (77, 'x');"), "");
  EXPECT_EQ(SqlFails("A", kOrphan), "");
  // The server judges the name.
  Choose({"SALES"}, "ChangeMeta");
  Click("SubmitBtn");
  EXPECT_EQ(BoxText().substr(0, 57), "change table name of SHOP.SALES failed. Reason: OCIStmtEx");
  Press("Return");
  ExpectNames({"SALES", "VISITS"});
}

TEST_F(DatabaseManager, TablesAreMigratedWithWhatIsTicked) {
  OpenManager();
  OpenList("A", "Table");
  Choose({"ORDERS", "VISITS"}, "MigrateMeta");
  EXPECT_EQ(TextOf("LableTop"), "2 Table(s) to migrate:");
  EXPECT_EQ(TextOf("EditSourceDS"), "A");
  EXPECT_EQ(Captions("OptionsLV"), Row{"Control Parameter"});
  EXPECT_EQ(
      Rows("OptionsLV"),
      (std::vector<Row>{
          {"Drop Target"}, {"Prompt Before Drop"}, {"Include Primary Key"}, {"Include Index"}}));
  Click("SubmitBtn");
  AnswerBox("Choose the data source to migrate to first");
  // What is ticked, and what becomes of the indexes then.
  const struct {
    Names ticks;
    std::size_t keys, indexes;
  } rows[] = {{{}, 0, 0},
              {{"Drop Target", "Include Index"}, 0, 0},
              {{"Drop Target", "Prompt Before Drop", "Include Primary Key"}, 2, 0},
              {{"Drop Target", "Include Primary Key", "Include Index"}, 2, 1}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.ticks));
    if (!IsShown("CBTargetDS")) Choose({"ORDERS", "VISITS"}, "MigrateMeta");
    Driver::Choose("CBTargetDS", "B");
    for (const std::string& tick : row.ticks) TickRow("OptionsLV", tick);
    Click("SubmitBtn");
    WaitForNoDialog();
    SelectNode({"B"});
    ClickAction("ConnectDS");
    WaitForNoDialog();
    const DataSource& target = Work().Registry().At(1);
    EXPECT_EQ(Ui([&] { return target.tables.size(); }), 2U);
    EXPECT_EQ(Ui([&] { return target.primary_keys.size(); }), row.keys);
    EXPECT_EQ(Ui([&] { return target.indexes.size(); }), row.indexes);
    ClickAction("DisConnectDS");
    OpenList("A", "Table");
  }
  EXPECT_EQ(Difference("A B"), "identical\n");
  WaitForMessage("Migarte Table ORDERS successed");
  // Without "Drop Target" what is there stays.
  Sql("B", "insert into SHOP.ORDERS values (1, 'kept');");
  Choose({"ORDERS"}, "MigrateMeta");
  Driver::Choose("CBTargetDS", "B");
  Click("SubmitBtn");
  BoxText();
  Press("Return");
  WaitForMessage(
      "Migarte Table ORDERS failed. Reason: Table: SHOP already exist. Can't migrate "
      "Table: ORDERS.");
  EXPECT_NE(Difference("A B"), "identical\n");
}

TEST_F(DatabaseManager, KeysAndIndexesAreMigrated) {
  OpenManager();
  Sql("B", "create table SHOP.ORDERS (ID number(10), NAME varchar2(60));");
  for (const auto& [node, name, what] :
       std::vector<std::tuple<std::string, std::string, std::string>>{
           {"Primary Key", "ORDERS_PK", "Primary key"}, {"Index", "ORDERS_NAME", "Index"}}) {
    OpenList("A", node);
    for (const bool again : {false, true}) {
      Choose({name}, "MigrateMeta");
      EXPECT_EQ(Rows("MigrateLV").front().front(), name + " of ORDERS");
      Driver::Choose("CBTargetDS", "B");
      if (again) TickRow("OptionsLV", "Drop Target");
      Click("SubmitBtn");
      WaitForMessage("Migarte " + what + " " + name + " successed");
      WaitForNoDialog();
    }
  }
  // They are there: both names are taken.
  EXPECT_NE(SqlFails("B", "create index SHOP.ORDERS_NAME on SHOP.ORDERS (ID);"), "");
  EXPECT_NE(SqlFails("B",
                     "insert into SHOP.ORDERS values (1, 'a');\n"
                     "insert into SHOP.ORDERS values (1, 'b');"),
            "");
}

TEST_F(DatabaseManager, ARunningJobKeepsItsDatabases) {
  OpenManager();
  AddJob("J");
  Ui([this] { Work().Jobs().SetState(0, JobState::Starting); });
  WaitForState("J", JobState::Started);
  OpenList("A", "Table");
  for (const char* action : {"DropMeta", "ChangeMeta", "MigrateMeta"}) {
    Choose({"ORDERS"}, action);
    AnswerBox("Database is used in a running job");
  }
  Ui([this] { RequestPause(Work().Jobs(), 0); });
  WaitForState("J", JobState::Paused);
  Choose({"VISITS"}, "DropMeta");
  Click("DropBtn");
  ExpectNames({"ORDERS"});
}

TEST_F(DatabaseManager, ThereAreAtMostTwentySources) {
  MakeDatabase("A", "");
  Open();
  AddSource("A");
  Ui([this] {
    for (int i = 2; i < 20; ++i) {
      DataSource source;
      source.state = ConnectionState::Disconnected;
      source.name = "S" + std::to_string(i);
      Work().Registry().Add(source);
    }
  });
  Show();
  ShowDatabases();
  MakeDatabase("LAST", "");
  ClickAction("ActOpenDbMgr");
  Click("NewDSN");
  Enter("EditDbName", "LAST");
  Enter("EditUserId", "SYS");
  Enter("EditPassword", kPassword);
  Click("AddBtn");
  WaitFor("the twentieth", [this] { return Work().Registry().CountInUse() == 20; });
  Click("CloseBtn");
  WaitForNoDialog();
  auto* action = Ui([this] { return Window().Form().findChild<QAction*>("ActOpenDbMgr"); });
  WaitFor("the manager to be closed", [action] { return !action->isEnabled(); });
}

}  // namespace
}  // namespace quillmere::window
