// SPDX-License-Identifier: MIT
// The database manager: data sources are entered, connected and browsed, and their tables, keys and
// indexes dropped, renamed and migrated; the databases themselves tell what was done.
#include <gtest/gtest.h>

#include <QAction>

#include "window/program_fixture.h"

namespace quillmere::window {
namespace {

const std::string kOrphan = "insert into CRM.VISIT values (77);";
const std::string kMigrated = "A B --exclude SHOP.NOTE --exclude SHOP.SECRET";
const std::string kRefusedLogOn =
    "connect Database failed. Error: OCISessionBegin : ORA-01017: invalid username/password; "
    "logon denied";

class DatabaseManager : public ProgramTest {
 protected:
  void OpenManager() {
    OpenWithSources(kOwners);
    Show();
    ShowDatabases();
  }
  void OpenList(const std::string& source, const std::string& kind) {
    SelectNode({source});
    Press("Right");  // opens it
    SelectNode({source, kind});
  }
  void Connect(const std::string& source) {
    SelectNode({source});
    ClickAction("ConnectDS");
    WaitForNoDialog();
    ExpectActions({"ActOpenDbMgr", "DisConnectDS", "RefreshDS"});
  }
  // Of the selected list: the named rows, by the action; its dialog is open afterwards.
  void Choose(const Names& rows, const std::string& action) {
    SelectRows("DbMgrLV", rows);
    ClickAction(action);
  }
  void Migrate(const Names& tables, const Names& ticks = {}) {
    Choose(tables, "MigrateMeta");
    Driver::Choose("CBTargetDS", "B");
    for (const std::string& tick : ticks) {
      SelectRows("OptionsLV", {tick});
      Press("space");
    }
    Click("SubmitBtn");
    if (!ticks.empty())
      AnswerBox("\"Drop Target\" is checked. What is there on B under these", "Yes");
  }
};

TEST_F(DatabaseManager, DataSourcesAreEnteredTestedChangedAndDeleted) {
  OpenWithJob();
  MakeDatabase("C", "create user U identified by pass;");
  ChooseInMenu("Database", "OpenDbMgr");
  Click("DelDSN");
  AnswerBox("You must select an Database to delete");
  Click("NewDSN");
  Enter("EditDbName", "C");
  Enter("EditPassword", "x");
  Click("AddBtn");
  AnswerBox("Obligatory field can not be empty");
  EXPECT_EQ(FocusName(), "EditUserId");
  Enter("EditUserId", "SYS");
  Click("AddBtn");
  AnswerBox(kRefusedLogOn);
  EXPECT_EQ(FocusName(), "EditPassword");
  WaitForRows("DbConnLV", {{"A"}, {"B"}});
  Enter("EditPassword", kPassword);
  Press("Return");
  WaitForRows("DbConnLV", {{"A"}, {"B"}, {"C"}});
  Click("TestDSN");
  AnswerBox("connect to C successed");
  // A log-on that does not work is not stored; one that does, is.
  for (const std::string password : {"wrong", "pass"}) {
    Click("EditDSN");
    Enter("EditUserId", "U");
    Enter("EditPassword", password);
    Driver::Choose("CBMode", "NORMAL");
    Click("SaveBtn");
    if (password == "pass") break;
    AnswerBox(kRefusedLogOn);
    EXPECT_EQ(Ui([this] { return Work().Registry().At(2).user_id; }), "SYS");
    Press("Escape");
  }
  WaitForRows(
      "DbConnLV",
      {{"A", "1.0", "SYS", "SYSDBA"}, {"B", "1.0", "SYS", "SYSDBA"}, {"C", "1.0", "U", "NORMAL"}});
  for (const std::string answer : {"No", "Yes"}) {
    EXPECT_TRUE(folder_.Exists("config/C.xml"));
    Click("DelDSN");
    AnswerBox("Delete the data source C?\n", answer);
  }
  WaitFor("its file to go", [this] { return !folder_.Exists("config/C.xml"); });
  ClickRow("DbConnLV", "B");
  Press("Delete");
  AnswerBox("Delete the data source B?\n", "Yes");
  WaitForMessage("J is held: B is not registered any more");
}

TEST_F(DatabaseManager, SourcesAreConnectedAndBrowsed) {
  OpenManager();
  // The password is another by now, and there is one more table: connecting asks, and reads it.
  Ui([this] { Work().Registry().At(0).password = "stale"; });
  Sql("A", "create table SHOP.FRESH (ID number(10));");
  SelectNode({});
  ExpectActions({"ActOpenDbMgr"});
  ClickRow("DbMgrLV", "A", x::kLeft, 2);
  WaitForRows("DbMgrLV", {{"PRIMARY KEY"}, {"INDEX"}, {"TABLE"}});
  ExpectActions({"ActOpenDbMgr", "ConnectDS"});
  Press("F5");
  AnswerBox("A is not connected. ConnectDS connects it and reads its lists");
  ClickAction("ConnectDS");
  EXPECT_EQ(TextOf("LblWhy").find("The stored log-on to A was refused: OCISessionBegin"), 0U);
  EXPECT_EQ(TextOf("EditDatabaseName") + TextOf("EditUserId") + TextOf("EditPassword"), "ASYS");
  EXPECT_EQ(FocusName(), "EditPassword");
  Type("no");
  Press("Return");
  AnswerBox(kRefusedLogOn);
  Click("CancelBtn");
  ExpectActions({"ActOpenDbMgr", "ConnectDS"});
  ClickAction("ConnectDS");
  Enter("EditPassword", kPassword);
  Click("LoginBtn");
  WaitForMessage("connect to database: A successed, when refresh.");
  WaitForNoDialog();
  ExpectActions({"ActOpenDbMgr", "DisConnectDS", "RefreshDS"});
  // A refresh that cannot connect leaves the lists.
  std::filesystem::remove(folder_ / "sandbox/A.db");
  ClickAction("RefreshDS");
  AnswerBox("Can't not connect to database: A");
  const std::pair<std::string, std::vector<Row>> lists[] = {
      {"Table", {{"FRESH"}, {"ITEM"}, {"NOTE"}, {"SECRET"}, {"VISIT"}}},
      {"Index", {{"ITEM_NAME", "NORMAL", "SHOP", "SHOP", "ITEM", "VALID"}}},
      {"Primary Key",
       {{"ITEM_PK", "SHOP", "ITEM", "ENABLED"}, {"VISIT_PK", "CRM", "VISIT", "ENABLED"}}}};
  for (const auto& [node, rows] : lists) {
    SelectNode({"A", node});
    ExpectActions({"ActOpenDbMgr", "DropMeta", "ChangeMeta", "MigrateMeta"});
    WaitForRows("DbMgrLV", rows);
  }
  Ui([this] {
    for (int i = 3; i <= 20; ++i) {
      DataSource source = Work().Registry().At(1);
      source.name = std::to_string(i);
      Work().Registry().Add(source);
    }
  });
  SelectNode({"A"});
  ClickAction("DisConnectDS");
  const auto* add = Window().Form().findChild<QAction*>("ActOpenDbMgr");
  EXPECT_FALSE(Ui([=] { return add->isEnabled(); })) << "the twentieth source is the last";
  // Without a connection the lists can still be browsed, also after a restart.
  Restart();
  OpenList("A", "Primary Key");
  WaitForRows("DbMgrLV", lists[2].second);
}

TEST_F(DatabaseManager, ObjectsAreRenamedAndDropped) {
  OpenManager();
  OpenList("A", "Index");
  const struct {
    std::string node, name, new_name, message;
  } rows[] = {
      {"Index", "ITEM_NAME", "BY_NAME", "index: SHOP.ITEM_NAME's name changed to BY_NAME"},
      {"Table", "ITEM", "GOODS", "table: SHOP.ITEM's name changed to GOODS"},
  };
  for (const auto& row : rows) {
    SelectNode({"A", row.node});
    Choose({row.name}, "ChangeMeta");
    EXPECT_EQ(TextOf("EditOwner") + TextOf("EditTable") + TextOf("EditCurName"),
              "SHOPITEM" + row.name);
    EXPECT_EQ(FocusName(), "EditNewName");
    Type(row.new_name);
    Press("Return");
    WaitForMessage(row.message);
    WaitForNoDialog();
    EXPECT_EQ(SelectedRow("DbMgrLV"), row.new_name);
  }
  // The server judges the name.
  ClickAction("ChangeMeta");
  Click("SubmitBtn");
  AnswerBox("change table name of SHOP.GOODS failed. Reason: OCIStmtExecute");
  WaitForNoDialog();
  Choose({"GOODS", "VISIT"}, "ChangeMeta");
  AnswerBox("Can only select one item to change.");

  ClickAction("DropMeta");
  EXPECT_EQ(TextOf("LableTop"), "2 Table(s) to drop:");
  WaitForRows("DropListBox", {{"SHOP.GOODS"}, {"CRM.VISIT"}});
  Press("Return");  // aborts: nothing is dropped by accident
  WaitForNoDialog();
  Choose({"GOODS"}, "DropMeta");
  Click("DropBtn");
  AnswerBox("Drop Table GOODS failed, reason: OCIStmtExecute : ORA-02449");
  WaitForRows("DbMgrLV", {{"GOODS"}, {"NOTE"}, {"SECRET"}, {"VISIT"}});
  Sql("A", kOrphan, false);
  Choose({"GOODS"}, "DropMeta");
  Click("ChBCasecade");
  Click("DropBtn");
  WaitForMessage("Drop Table GOODS successed");
  WaitForRows("DbMgrLV", {{"NOTE"}, {"SECRET"}, {"VISIT"}});
  Sql("A", kOrphan);  // the foreign key of the other owner is gone
  SelectNode({"A", "Primary Key"});
  ClickAction("DropMeta");
  AnswerBox("Please select at least one item to operate");
  Choose({"VISIT_PK"}, "DropMeta");
  Click("DropBtn");
  WaitForRows("DbMgrLV", {});
}

TEST_F(DatabaseManager, TablesAreMigratedWithWhatIsTicked) {
  OpenManager();
  OpenList("A", "Table");
  Choose({"ITEM", "VISIT"}, "MigrateMeta");
  EXPECT_EQ(TextOf("LableTop"), "2 Table(s) to migrate:");
  Click("SubmitBtn");
  AnswerBox("Choose the data source to migrate to first");
  Press("Escape");
  // What is ticked, and what becomes of keys and indexes then.
  const struct {
    Names ticks;
    std::size_t keys, indexes;
  } rows[] = {{{}, 0, 0},
              {{"Drop Target", "Prompt Before Drop", "Include Primary Key"}, 2, 0},
              {{"Drop Target", "Include Primary Key", "Include Index"}, 2, 1}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.ticks));
    Migrate({"ITEM", "VISIT"}, row.ticks);
    WaitForNoDialog();
    Connect("B");
    const DataSource& target = Work().Registry().At(1);
    EXPECT_EQ(Ui([&] { return target.tables.size(); }), 2U);
    EXPECT_EQ(Ui([&] { return target.primary_keys.size(); }), row.keys);
    EXPECT_EQ(Ui([&] { return target.indexes.size(); }), row.indexes);
    ClickAction("DisConnectDS");
    OpenList("A", "Table");
  }
  EXPECT_TRUE(Identical(kMigrated));
  // Without "Drop Target" what is there stays.
  Sql("B", "insert into SHOP.ITEM values (1, 'kept');");
  Migrate({"ITEM"});
  AnswerBox("Migarte Table ITEM failed. Reason: Table: SHOP already exist. Can't migrate");
  EXPECT_FALSE(Identical(kMigrated));
}

TEST_F(DatabaseManager, ARunningJobKeepsItsDatabases) {
  OpenManager();
  MakeDatabase("C", kOwners);
  AddSource("C");
  AddJob("J", "B", "C");
  StartJob();
  // What it writes to or reads from is a target for those only who say so.
  OpenList("A", "Table");
  Migrate({"ITEM"});
  AnswerBox("B is used in a running job. Migrate to it all the same?", "No");
  Click("SubmitBtn");
  AnswerBox("B is used in a running job. Migrate to it all the same?", "Yes");
  WaitForMessage("Migarte Table ITEM successed");
  WaitForNoDialog();
  ChooseInMenu("Database", "OpenDbMgr");
  for (const char* button : {"EditDSN", "DelDSN"}) {
    ClickRow("DbConnLV", "B");
    Click(button);
    AnswerBox("Database is using in running job, delete later");
  }
  Press("Escape");
  Connect("B");
  SelectNode({"B", "Table"});
  for (const char* action : {"DropMeta", "ChangeMeta", "MigrateMeta"}) {
    Choose({"ITEM"}, action);
    AnswerBox("Database is used in a running job");
  }
}

}  // namespace
}  // namespace quillmere::window
