// SPDX-License-Identifier: MIT
// The job explorer: what it shows, and a job from its first entry to its end.
#include <gtest/gtest.h>

#include "window/program_fixture.h"

namespace quillmere::window {
namespace {

using Names = std::vector<std::string>;

class JobExplorer : public ProgramTest {
 protected:
  void FillSource(const std::string& name) {
    Enter("EditDbName", name);
    Enter("EditUserId", "SYS");
    Enter("EditPassword", kPassword);
    Click("AddBtn");
    WaitFor(name + " in the list", [&] { return Work().Registry().IndexOf(name) >= 0; });
  }
  // done: since its start. batch: of the last batch.
  Row JobRow(const std::string& state, int done, int batch = 0) {
    return {"J", state, std::to_string(done), "0", std::to_string(batch), "0"};
  }
  Names Shown() { return ActionsShown("ToolBar1"); }
};

TEST_F(JobExplorer, AJobFromNothingToItsEnd) {
  for (const std::string name : {"A", "B"}) MakeDatabase(name);
  Open();
  Show();
  EXPECT_EQ(Shown(), Names{"FileNew"});
  Press("ctrl+n");
  EXPECT_EQ(TextOf("EditJobName"), "Job1");
  Click("NewConnBtn");
  FillSource("A");
  Click("NewDSN");
  FillSource("B");
  Click("CloseBtn");
  EXPECT_EQ(Rows("DbConnLV"),
            (std::vector<Row>{{"A", "1.0", "SYS", "SYSDBA"}, {"B", "1.0", "SYS", "SYSDBA"}}));
  Enter("EditJobName", " J ");
  Enter("EditJobDescription", "all of the shop");
  Choose("CBSrcDSN", "A");
  Choose("CBDesDSN", "B");
  Enter("EditSyncInterval", "1");
  Click("OkBtn");
  WaitForRows("JobMgrLV", {JobRow("Stopped", 0)});
  WaitForMessage("A job created, name is J");

  SelectNode({"J"});
  EXPECT_EQ(Shown(), (Names{"FileNew", "FileOpen", "Refresh", "FileDelete", "RunRun"}));
  Request("RunRun", "Run J?");
  WaitForRows("JobMgrLV", {JobRow("Started", 0)});
  EXPECT_EQ(Shown(), (Names{"FileNew", "RunPause", "RunStop"}));
  Sql("A", "insert into SHOP.ITEM values (1, 'a');\ninsert into CRM.VISIT values (7);");
  NextPass();
  WaitForRows("JobMgrLV", {JobRow("Started", 2, 2)});
  EXPECT_EQ(Difference("A B"), "identical\n");

  Request("RunPause", "Pause J?");
  WaitForRows("JobMgrLV", {JobRow("Paused", 2, 2)});
  EXPECT_EQ(Shown(), (Names{"FileNew", "FileOpen", "Refresh", "RunRun", "RunStop"}));
  Sql("A", "update SHOP.ITEM set NAME = 'b';\ndelete from CRM.VISIT;");
  Request("RunRun", "Continue J?");
  WaitForRows("JobMgrLV", {JobRow("Started", 2, 2)});
  NextPass();
  WaitForRows("JobMgrLV", {JobRow("Started", 4, 2)});
  EXPECT_EQ(Difference("A B"), "identical\n");

  ClickAction("RunStop");
  EXPECT_EQ(BoxText().substr(0, 7), "Stop J?");
  AnswerBox(BoxText(), "Yes");
  WaitForState("J", JobState::Stopped);
  ClickAction("FileOpen");
  Enter("EditJobName", "Nightly");
  Click("OkBtn");
  WaitForMessage("J's name changed to Nightly");
  SelectNode({"Nightly"});
  Press("ctrl+d");
  AnswerBox("Delete Nightly?", "No");
  ClickAction("FileDelete");
  AnswerBox("Delete Nightly?", "Yes");
  WaitForRows("JobMgrLV", {});
  WaitForMessage("job: Nightly deleted.");
  EXPECT_FALSE(folder_.Exists("jobs/Nightly/Nightly.xml"));
}

TEST_F(JobExplorer, TablesAreExcludedRedirectedAndIncluded) {
  OpenWithJob();
  SelectNode({"J", "Include"});
  EXPECT_EQ(Shown(), (Names{"FileNew", "Exclude", "ChangeRemoteOwner"}));
  const std::vector<Row> all = {{"ITEM", "SHOP", "SHOP", "0", "0", "0", ""},
                                {"NOTE", "SHOP", "SHOP", "0", "0", "0", ""},
                                {"SECRET", "SHOP", "SHOP", "0", "0", "0", ""},
                                {"VISIT", "CRM", "CRM", "0", "0", "0", ""}};
  WaitForRows("JobMgrLV", all);

  ClickAction("Exclude");
  AnswerBox("Plsease select a item first");
  SelectRows("JobMgrLV", {"SECRET", "VISIT"});
  ClickAction("Exclude");
  AnswerBox("can only select one owner's table");

  SelectRows("JobMgrLV", {"NOTE", "SECRET"});
  ClickAction("Exclude");
  EXPECT_EQ(TextOf("EditCurOwner"), "SHOP");
  EXPECT_EQ(Rows("TableListBox"), (std::vector<Row>{{"NOTE"}, {"SECRET"}}));
  EXPECT_FALSE(IsShown("EditNewOwner"));
  Click("CancelBtn");
  WaitForRows("JobMgrLV", all);
  ClickAction("Exclude");
  Click("SubmitBtn");
  WaitForRows("JobMgrLV", {all[0], all[3]});
  EXPECT_NE(folder_.Read("jobs/J/J.xml").find("<includeflag>false<"), std::string::npos) << "saved";

  SelectRows("JobMgrLV", {"ITEM"});
  ClickCell("JobMgrLV", 0, 0, XDisplay::kRight);
  EXPECT_EQ(PopupEntries(), (Names{"ChangeRemoteOwner", "Exclude"}));
  ChooseInPopup("ChangeRemoteOwner");
  Enter("EditNewOwner", "ARCHIVE");
  Click("SubmitBtn");
  Row redirected = all[0];
  redirected[2] = "ARCHIVE";
  WaitForRows("JobMgrLV", {redirected, all[3]});
  EXPECT_EQ(folder_.Read("jobs/J/J.xml").find("<desowner>ARCHIVE"), std::string::npos)
      << "not yet saved";

  SelectNode({"J", "Exclude"});
  EXPECT_EQ(Shown(), (Names{"FileNew", "Include"}));
  WaitForRows("JobMgrLV", {{"NOTE", "SHOP", "0", "0", ""}, {"SECRET", "SHOP", "0", "0", ""}});
  SelectRows("JobMgrLV", {"NOTE"});
  ClickAction("Include");
  Enter("EditNewOwner", "new Owner");
  Click("SubmitBtn");
  WaitForRows("JobMgrLV", {{"SECRET", "SHOP", "0", "0", ""}});
  SelectNode({"J", "Include"});
  Row taken = all[1];
  taken[2] = "new Owner";
  WaitForRows("JobMgrLV", {redirected, taken, all[3]});
  // As it stands in the files: a program that starts anew shows the same.
  Quit();
  Open();
  Show();
  SelectNode({"J", "Include"});
  WaitForRows("JobMgrLV", {redirected, taken, all[3]});

  Ui([this] { MarkToCompare(Work().Jobs().At(0), "SHOP", "NOTE"); });
  SelectNode({"J"});
  SelectNode({"J", "Include"});
  Row marked = taken;
  marked[6] = "compare";
  WaitForRows("JobMgrLV", {redirected, marked, all[3]});
  SelectRows("JobMgrLV", {"NOTE"});
  ClickCell("JobMgrLV", 1, 0, XDisplay::kRight);
  ChooseInPopup("Compared");
  AnswerBox("Have the selected tables been compared? Their mark is taken away.", "Yes");
  WaitForRows("JobMgrLV", {redirected, taken, all[3]});
}

TEST_F(JobExplorer, ARefreshSeesWhatIsNew) {
  OpenWithJob();
  Sql("A", "create table SHOP.FRESH (ID number(10));\ndrop table SHOP.SECRET;");
  SelectNode({"J"});
  ClickAction("Refresh");
  SelectNode({"J", "Include"});
  const std::vector<Row> tables = {{"FRESH", "SHOP", "SHOP", "0", "0", "0", ""},
                                   {"ITEM", "SHOP", "SHOP", "0", "0", "0", ""},
                                   {"NOTE", "SHOP", "SHOP", "0", "0", "0", ""},
                                   {"VISIT", "CRM", "CRM", "0", "0", "0", ""}};
  WaitForRows("JobMgrLV", tables);
  std::filesystem::rename(folder_ / "sandbox/A.db", folder_ / "sandbox/gone");
  SelectNode({"J"});
  ClickAction("Refresh");
  WaitForMessage("Can not connect to source, refresh failed");
  SelectNode({"J", "Include"});
  WaitForRows("JobMgrLV", tables);
}

TEST_F(JobExplorer, ADoubleClickLeadsToTheJobAndARightPressNowhere) {
  OpenWithJob();
  SelectNode({});
  DoubleClickCell("JobMgrLV", 0, 0);
  EXPECT_EQ(SelectedRow("JobMgrTV"), "J");
  ClickNode("JobMgrTV", {"All Jobs", "J", "Exclude"}, XDisplay::kRight);
  ClickNode("JobMgrTV", {"All Jobs"}, XDisplay::kRight);
  EXPECT_EQ(SelectedRow("JobMgrTV"), "J");
  EXPECT_EQ(Shown(), (Names{"FileNew", "FileOpen", "Refresh", "FileDelete", "RunRun"}));
}

TEST_F(JobExplorer, TheTimerRepaintsWhatRuns) {
  OpenWithJob();
  SelectNode({"J"});
  const auto tick = [this] {
    Ui([this] {
      auto* timer = Window().Form().findChild<QTimer*>("TimerRefresh");
      EXPECT_EQ(timer->interval(), 10000);
      QMetaObject::invokeMethod(timer, "timeout");
    });
  };
  const auto count = [this](int done) {
    Ui([&] { Work().Jobs().At(0).run.applied_count = done; });
  };
  count(41);
  tick();
  EXPECT_EQ(Rows("JobMgrLV"), std::vector<Row>{JobRow("Stopped", 0)}) << "frozen while it rests";
  SelectNode({});
  WaitForRows("JobMgrLV", {JobRow("Stopped", 41)});
  count(42);
  tick();
  EXPECT_EQ(Rows("JobMgrLV"), std::vector<Row>{JobRow("Stopped", 42)}) << "all jobs always";
  SelectNode({"J"});
  Request("RunRun", "Run J?");
  WaitForRows("JobMgrLV", {JobRow("Started", 0)});
  count(43);
  tick();
  EXPECT_EQ(Rows("JobMgrLV"), std::vector<Row>{JobRow("Started", 43)});
}

TEST_F(JobExplorer, WhatCannotBeDoneIsSaid) {
  OpenWithJob();
  SelectNode({"J"});
  Ui([this] { ConfigOf(Work().Jobs().At(0)).table_list_fetched = false; });
  Request("RunRun", "Run J?");
  AnswerBox("Not get table list yet, refresh first please.");
  ClickAction("Refresh");
  WaitFor("the tables", [this] { return ConfigOf(Work().Jobs().At(0)).table_list_fetched; });
  Request("RunRun", "Run J?");
  WaitForState("J", JobState::Started);
  Press("ctrl+d");  // rests while the job runs
  ClickAction("RunPause");
  AnswerBox("Pause J?", "No");
  Request("RunPause", "Pause J?");
  WaitForState("J", JobState::Paused);
}

}  // namespace
}  // namespace quillmere::window
