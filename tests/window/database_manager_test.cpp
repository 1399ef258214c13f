// SPDX-License-Identifier: MIT
// The database manager: data sources are connected and browsed, and their tables, keys and indexes
// dropped, renamed and migrated; the databases themselves tell what was done.
#include <gtest/gtest.h>

#include <QAction>
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
};

TEST_F(DatabaseManager, SourcesAreConnectedAndBrowsed) {
  OpenManager();
  SelectNode({});
  EXPECT_EQ(Shown(), Names{"ActOpenDbMgr"});
  DoubleClickCell("DbMgrLV", 0, 0);
  EXPECT_EQ(FirstCells(), (Names{"PRIMARY KEY", "INDEX", "TABLE"}));
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
  const std::pair<std::string, std::vector<Row>> lists[] = {
      {"Table",
       {{"FRESH", "SHOP", "USERS", "0", ""},
        {"ORDERS", "SHOP", "USERS", "0", ""},
        {"VISITS", "CRM", "USERS", "0", ""}}},
      {"Index", {{"ORDERS_NAME", "NORMAL", "SHOP", "SHOP", "ORDERS", "VALID"}}},
      {"Primary Key",
       {{"ORDERS_PK", "SHOP", "ORDERS", "ENABLED"}, {"VISITS_PK", "CRM", "VISITS", "ENABLED"}}}};
  for (const auto& [node, rows] : lists) {
    SelectNode({"A", node});
    EXPECT_EQ(Shown(), (Names{"ActOpenDbMgr", "DropMeta", "ChangeMeta", "MigrateMeta"}));
    EXPECT_EQ(Rows("DbMgrLV"), rows);
  }
  // A right press changes nothing.
  ClickNode("DbMgrTV", {"ORACLE", "B"}, XDisplay::kRight);
  EXPECT_EQ(Rows("DbMgrLV"), lists[2].second);
  CloseDialogs();
  SelectNode({"A"});
  ClickAction("DisConnectDS");
  EXPECT_EQ(Shown(), (Names{"ActOpenDbMgr", "ConnectDS"}));
  // Without a connection the lists can still be browsed, also after a restart.
  Quit();
  Open();
  Show();
  OpenList("A", "Primary Key");
  EXPECT_EQ(Rows("DbMgrLV"), lists[2].second);
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
  Choose({"ORDERS", "VISITS"}, "DropMeta");
  EXPECT_EQ(TextOf("LableTop"), "2 Table(s) to drop:");
  EXPECT_EQ(Rows("DropListBox"), (std::vector<Row>{{"SHOP.ORDERS"}, {"CRM.VISITS"}}));
  Press("Return");  // aborts: nothing is dropped by accident
  WaitForNoDialog();
  Choose({"ORDERS"}, "DropMeta");
  Click("DropBtn");
  EXPECT_EQ(BoxText().substr(0, 39), "Drop Table ORDERS failed, reason: OCISt");
  Press("Return");
  ExpectNames({"ORDERS", "VISITS"});
  EXPECT_NE(SqlFails("A", kOrphan), "");
  Choose({"ORDERS"}, "DropMeta");
  Click("ChBCasecade");
  Click("DropBtn");
  ExpectNames({"VISITS"});
  WaitForMessage("Drop Table ORDERS successed");
  EXPECT_EQ(SqlFails("A", kOrphan), "") << "the foreign key of the other owner is gone";
  SelectNode({"A", "Primary Key"});
  Choose({"VISITS_PK"}, "DropMeta");
  EXPECT_EQ(TextOf("LableTop"), "1 primary key(s) to drop:");
  Click("DropBtn");
  ExpectNames({});
}

TEST_F(DatabaseManager, ObjectsAreRenamed) {
  OpenManager();
  OpenList("A", "Index");
  const struct {
    std::string node, name, new_name, message;
  } rows[] = {
      {"Index", "ORDERS_NAME", "BY_NAME", "index: SHOP.ORDERS_NAME's name changed to BY_NAME"},
      {"Table", "ORDERS", "SALES", "table: SHOP.ORDERS's name changed to SALES"},
  };
  for (const auto& row : rows) {
    SelectNode({"A", row.node});
    Choose({row.name}, "ChangeMeta");
    EXPECT_EQ(TextOf("EditOwner") + "." + TextOf("EditTable"), "SHOP.ORDERS");
    EXPECT_EQ(TextOf("EditCurName"), row.name);
    EXPECT_EQ(FocusName(), "EditNewName");
    Type(row.new_name);
    Press("Return");
    WaitForMessage(row.message);
    WaitForNoDialog();
    EXPECT_EQ(SelectedRow("DbMgrLV"), row.new_name);
  }
  // The server judges the name.
  Choose({"SALES"}, "ChangeMeta");
  Click("SubmitBtn");
  EXPECT_EQ(BoxText().substr(0, 57), "change table name of SHOP.SALES failed. Reason: OCIStmtEx");
  Press("Return");
  ExpectNames({"SALES", "VISITS"});
  Choose({"SALES", "VISITS"}, "ChangeMeta");
  AnswerBox("Can only select one item to change.");
}

TEST_F(DatabaseManager, TablesAreMigratedWithWhatIsTicked) {
  OpenManager();
  OpenList("A", "Table");
  // What is ticked, and what becomes of keys and indexes then.
  const struct {
    Names ticks;
    std::size_t keys, indexes;
  } rows[] = {{{}, 0, 0},
              {{"Drop Target", "Prompt Before Drop", "Include Primary Key"}, 2, 0},
              {{"Drop Target", "Include Primary Key", "Include Index"}, 2, 1}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.ticks));
    Choose({"ORDERS", "VISITS"}, "MigrateMeta");
    EXPECT_EQ(TextOf("LableTop"), "2 Table(s) to migrate:");
    if (row.ticks.empty()) {
      Click("SubmitBtn");
      AnswerBox("Choose the data source to migrate to first");
    }
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

TEST_F(DatabaseManager, ARunningJobKeepsItsDatabases) {
  OpenManager();
  MakeDatabase("C", kUsers);
  AddSource("C");
  AddJob("J", "B", "C");
  Ui([this] { Work().Jobs().SetState(0, JobState::Starting); });
  WaitForState("J", JobState::Started);
  // What it writes to or reads from is a target for those only who say so.
  OpenList("A", "Table");
  for (const std::string answer : {"No", "Yes"}) {
    if (!IsShown("CBTargetDS")) Choose({"ORDERS"}, "MigrateMeta");
    Driver::Choose("CBTargetDS", "B");
    Click("SubmitBtn");
    AnswerBox("B is used in a running job. Migrate to it all the same?", answer);
  }
  WaitForMessage("Migarte Table ORDERS successed");
  SelectNode({"B"});
  ClickAction("ConnectDS");
  WaitForNoDialog();
  SelectNode({"B", "Table"});
  for (const char* action : {"DropMeta", "ChangeMeta", "MigrateMeta"}) {
    Choose({"ORDERS"}, action);
    AnswerBox("Database is used in a running job");
  }
  Ui([this] { RequestPause(Work().Jobs(), 0); });
  WaitForState("J", JobState::Paused);
  Choose({"ORDERS"}, "DropMeta");
  Click("DropBtn");
  ExpectNames({});
}

TEST_F(DatabaseManager, TheTwentiethSourceIsTheLast) {
  Open();
  Ui([this] {
    for (int i = 1; i <= 20; ++i) {
      DataSource source;
      source.state = ConnectionState::Disconnected;
      source.name = "S" + std::to_string(i);
      Work().Registry().Add(source);
    }
  });
  Show();
  ShowDatabases();
  EXPECT_FALSE(
      Ui([this] { return Window().Form().findChild<QAction*>("ActOpenDbMgr")->isEnabled(); }));
}

}  // namespace
}  // namespace quillmere::window
