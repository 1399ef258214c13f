// SPDX-License-Identifier: MIT
#include "window_actions.h"

#include <QApplication>
#include <QMessageBox>

namespace quillmere::window {

const std::vector<ActionStage::Action> ActionStage::kActions = {
    {"Job Explorer: New", "connect to A", &ActionStage::EnterNewJob, &ActionStage::ClickOk,
     nullptr},
    {"Job Explorer: Open, another source", "connect to ", &ActionStage::OpenWithOtherSource,
     &ActionStage::ClickOk, nullptr},
    {"Job Explorer: Refresh", "connect to ", &ActionStage::SelectK, &ActionStage::Refresh, nullptr},
    {"Job Explorer: Exclude", nullptr, &ActionStage::ChooseIncluded, &ActionStage::ClickSubmit,
     nullptr},
    {"Job Explorer: Include", nullptr, &ActionStage::ChooseExcluded, &ActionStage::ClickSubmit,
     nullptr},
    {"Job Explorer: ChangeOwner", nullptr, &ActionStage::ChooseOwner, &ActionStage::ClickSubmit,
     nullptr},
    {"Job Explorer: Run", nullptr, &ActionStage::AskRun, &ActionStage::Yes, &ActionStage::KRuns},
    {"Job Explorer: Pause", nullptr, &ActionStage::AskPause, &ActionStage::Yes,
     &ActionStage::KPauses},
    {"Job Explorer: Stop", nullptr, &ActionStage::AskStop, &ActionStage::Yes, &ActionStage::KStops},
    {"Job Explorer: collapse, expand", nullptr, &ActionStage::SelectK,
     &ActionStage::CollapseAndExpand, nullptr},
    {"Database: OpenDbMgr", nullptr, &ActionStage::Manager, &ActionStage::OpenManager,
     &ActionStage::CloseAll},
    {"Data Sources: Test", "connect to A", &ActionStage::ManagerAtA, &ActionStage::ClickTest,
     &ActionStage::TestWentWell},
    {"Data Sources: Add", "connect to D", &ActionStage::EnterD, &ActionStage::ClickAdd,
     &ActionStage::CloseAll},
    {"Data Sources: Save", "connect to A", &ActionStage::EditA, &ActionStage::ClickSave,
     &ActionStage::CloseAll},
    {"Data Sources: Delete", nullptr, &ActionStage::DeleteD, &ActionStage::Yes,
     &ActionStage::CloseAll},
    {"Database: ConnectDS", "connect to A", &ActionStage::Disconnected, &ActionStage::ClickConnect,
     nullptr},
    {"Database: Login", "connect to A", &ActionStage::AskLogOn, &ActionStage::ClickLogin,
     &ActionStage::ForgetStale},
    {"Database: RefreshDS", "connect to A", &ActionStage::Connected, &ActionStage::PressRefresh,
     nullptr},
    {"Database: lists", nullptr, &ActionStage::Connected, &ActionStage::BrowseKeys, nullptr},
    {"Database: DisConnectDS", nullptr, &ActionStage::Connected, &ActionStage::ClickDisconnect,
     nullptr},
    {"Database: ChangeName", "connect to A", &ActionStage::EnterNewName, &ActionStage::ClickSubmit,
     nullptr},
    {"Database: MoveMeta", "connect to A", &ActionStage::ChooseTarget, &ActionStage::ClickSubmit,
     nullptr},
    {"Database: DropMeta", "connect to A", &ActionStage::ChooseToDrop, &ActionStage::ClickDrop,
     nullptr},
    {"Job Explorer: Delete", nullptr, &ActionStage::AskDelete, &ActionStage::Yes, nullptr},
};

void ActionStage::SetStage() {
  oci_ = &gate_.Api();
  for (const char* name : {"A", "C", "D", "X", "Y"}) MakeDatabase(name);
  MakeDatabase("B", kOwners);
  Open();
  for (const char* name : {"A", "B", "C", "X", "Y"}) AddSource(name);
  AddJob("J", "X", "Y");
  AddJob("K", "A", "B");
  Show();
  StartJob();
}

void ActionStage::CloseAll() {
  const auto open = [] { return QApplication::activeModalWidget(); };
  while (Ui(open) != nullptr) {
    WaitFor("the database", [&] {
      return open() == nullptr || open()->objectName() != QStringLiteral("ProgressDialog");
    });
    if (Ui(open) != nullptr) Press("Escape");
  }
}

void ActionStage::Jobs() {
  CloseAll();
  ShowPage(0);
}

void ActionStage::SelectK() {
  Jobs();
  SelectNode({"K"});
}

void ActionStage::EnterNewJob() {
  Jobs();
  Press("ctrl+n");
  Enter("EditJobDescription", "what is sold");
  Enter("EditSyncInterval", "1");
  Driver::Choose("CBSrcDSN", "A");
  Driver::Choose("CBDesDSN", "B");
}

void ActionStage::OpenWithOtherSource() {
  SelectK();
  ClickAction("FileOpen");
  const std::string now = Ui([this] { return ConfigOf(Work().Jobs().At(1)).src_database_name; });
  Driver::Choose("CBSrcDSN", now == "A" ? "C" : "A");
}

void ActionStage::ChooseIncluded() {
  Jobs();
  SelectNode({"K", "Include"});
  SelectRows("JobMgrLV", {"NOTE"});
  ClickAction("Exclude");
}

void ActionStage::ChooseExcluded() {
  Jobs();
  SelectNode({"K", "Exclude"});
  SelectRows("JobMgrLV", {"NOTE"});
  ClickAction("Include");
}

void ActionStage::ChooseOwner() {
  Jobs();
  SelectNode({"K", "Include"});
  SelectRows("JobMgrLV", {"ITEM"});
  ClickAction("ChangeRemoteOwner");
  Enter("EditNewOwner", "SHOP");
}

void ActionStage::Ask(const char* action) {
  SelectK();
  ClickAction(action);
  WaitFor("the question",
          [] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()) != nullptr; });
}

void ActionStage::Yes() {
  Press("alt+y");
}

void ActionStage::AwaitK(JobState state) {
  WaitFor("K", [this, state] { return Work().Jobs().State(1) == state; });
}

void ActionStage::CollapseAndExpand() {
  for (const char* entry : {"collapse", "expand"}) {
    Click("OptionsImg");
    ChooseInPopup(entry);
  }
}

void ActionStage::Manager() {
  CloseAll();
  ShowPage(1);
}

void ActionStage::ManagerAtA() {
  Manager();
  OpenManager();
  ClickRow("DbConnLV", "A");
}

void ActionStage::TestWentWell() {
  AnswerBox("connect to A successed");
  CloseAll();
}

void ActionStage::EnterD() {
  Manager();
  OpenManager();
  Click("NewDSN");
  Enter("EditDbName", "D");
  Enter("EditUserId", "SYS");
  Enter("EditPassword", kPassword);
}

void ActionStage::EditA() {
  ManagerAtA();
  Click("EditDSN");
}

void ActionStage::DeleteD() {
  Manager();
  OpenManager();
  ClickRow("DbConnLV", "D");
  Click("DelDSN");
  WaitFor("the question",
          [] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()) != nullptr; });
}

void ActionStage::Disconnected() {
  Manager();
  SelectNode({"A"});
  if (ActionsShown() == Names{"ActOpenDbMgr", "DisConnectDS", "RefreshDS"}) ClickDisconnect();
}

void ActionStage::Connected() {
  Manager();
  Ui([this] { Work().Registry().At(0).state = ConnectionState::Connected; });
  SelectNode({});
  SelectNode({"A"});
}

void ActionStage::AskLogOn() {
  Disconnected();
  Ui([this] { Work().Registry().At(0).password = "stale"; });
  ClickConnect();
  Enter("EditPassword", kPassword);
}

void ActionStage::ForgetStale() {
  WaitForNoDialog();
  EXPECT_EQ(Ui([this] { return Work().Registry().At(0).password; }), "stale")
      << "what is entered serves the connection only";
  Ui([this] { Work().Registry().At(0).password = kPassword; });
}

void ActionStage::BrowseKeys() {
  Press("Right");
  for (const char* list : {"Primary Key", "Index", "Table"}) SelectNode({"A", list});
  SelectNode({"A"});
}

void ActionStage::TablesOfA(const Names& rows) {
  Disconnected();
  Press("Right");
  SelectNode({"A", "Table"});
  SelectRows("DbMgrLV", rows);
}

bool ActionStage::HasTable(const std::string& name) {
  return Ui([&] {
    for (const TableRecord& table : Work().Registry().At(0).tables) {
      if (table.table_name == name) return true;
    }
    return false;
  });
}

void ActionStage::EnterNewName() {
  const bool changed = !HasTable("SECRET");
  TablesOfA({changed ? "HIDDEN" : "SECRET"});
  ClickAction("ChangeMeta");
  Type(changed ? "SECRET" : "HIDDEN");
}

void ActionStage::ChooseTarget() {
  TablesOfA({"ITEM", "VISIT"});
  ClickAction("MigrateMeta");
  Driver::Choose("CBTargetDS", "B");
}

void ActionStage::ChooseToDrop() {
  TablesOfA({"NOTE"});
  ClickAction("DropMeta");
}

}  // namespace quillmere::window
