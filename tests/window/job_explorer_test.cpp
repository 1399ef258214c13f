// SPDX-License-Identifier: MIT
// The job explorer: a job from its first entry to its end, and its tables.
#include <gtest/gtest.h>

#include "window/program_fixture.h"

namespace quillmere::window {
namespace {

class JobExplorer : public ProgramTest {
 protected:
  void WaitForJob(const std::string& state, int done, int batch = 0) {
    WaitForRows("JobMgrLV", {{"J", state, std::to_string(done), "0", std::to_string(batch)}});
  }
  // By the tool bar; No changes nothing.
  void Request(const std::string& action, const std::string& question, JobState expected) {
    const JobState before = Ui([this] { return Work().Jobs().State(0); });
    for (const std::string answer : {"No", "Yes"}) {
      WaitForState(before);
      ClickAction(action);
      AnswerBox(question, answer);
    }
    WaitForState(expected);
  }
  std::string Title() {
    return Ui([this] { return Window().Form().windowTitle().toStdString(); });
  }
  JobConfig& Config() { return ConfigOf(Work().Jobs().At(0)); }
};

TEST_F(JobExplorer, AJobIsEnteredChangedAndDeleted) {
  OpenWithSources();
  MakeDatabase("C");
  Show();
  ExpectActions({"FileNew"});
  Press("ctrl+n");
  Click("NewConnBtn");
  Enter("EditDbName", "C");
  Enter("EditUserId", "SYS");
  Enter("EditPassword", kPassword);
  Click("AddBtn");
  WaitForRows("DbConnLV", {{"A"}, {"B"}, {"C"}});
  Click("CloseBtn");
  const struct {
    std::string name, interval, source, destination, refusal, focus;
  } rows[] = {
      {"J", "ten", "A", "", "Synchronize Interval must > 0", "UpDownSyncInterval"},
      {"J", "1", "A", "", "Obligatory field can not be empty", "CBDesDSN"},
      {"J", "1", "B", "B", "Data Source Can't be same", "CBDesDSN"},
      {"a/b", "1", "A", "C", "A name must not contain '/'", "EditJobName"},
  };
  Enter("EditJobDescription", "all of the shop");
  for (const auto& row : rows) {
    Enter("EditJobName", row.name);
    Enter("EditSyncInterval", row.interval);
    Choose("CBSrcDSN", row.source);
    if (!row.destination.empty()) Choose("CBDesDSN", row.destination);
    Click("OkBtn");
    AnswerBox(row.refusal);
    EXPECT_EQ(FocusName(), row.focus);
    EXPECT_EQ(TextOf("EditJobName"), row.name) << "what was entered stays";
  }
  EXPECT_EQ(SelectedRow("DbConnLV"), "C") << "the first data source is never highlighted";
  Enter("EditJobName", " J ");
  Click("OkBtn");
  WaitForJob("Stopped", 0);
  WaitForMessage("A job created, name is J");
  ClickRow("JobMgrLV", "J", x::kLeft, 2);
  EXPECT_EQ(SelectedRow("JobMgrTV"), "J");
  ExpectActions({"FileNew", "FileOpen", "Refresh", "FileDelete", "RunRun"});

  const std::string name = "Ночь 東京 & 'J' €";
  ClickAction("FileOpen");
  Enter("EditJobName", name);
  Enter("EditJobDescription", "a\tb \n\nc");
  ClickAt(Find("FollowCommits"), [] { return QPoint(10, 10); });
  for (const std::string answer : {"No", "Yes"}) {
    Click("OkBtn");
    AnswerBox("The description cannot be kept exactly so: its file breaks very long", answer);
  }
  WaitForMessage("J's name changed to " + name);
  Restart();
  EXPECT_EQ(Ui([this] { return Config().description; }), "a b\nc");
  EXPECT_EQ(Ui([this] { return Config().follow; }), Follow::Commits);
  SelectNode({name});
  EXPECT_EQ(TextOf("ListNote").find("Follows commits. Whole transactions"), 0U);
  for (const std::string answer : {"No", "Yes"}) {
    EXPECT_TRUE(folder_.Exists("jobs/" + name + "/" + name + ".xml"));
    Press("ctrl+d");
    AnswerBox("Delete " + name + "?", answer);
  }
  Find("FirstJob");  // in place of a list without rows
  EXPECT_FALSE(folder_.Exists("jobs/" + name + "/" + name + ".xml"));
}

TEST_F(JobExplorer, AJobRunsPausesGoesOnAndStops) {
  OpenWithJob();
  SelectNode({"J"});
  Ui([this] { Config().table_list_fetched = false; });
  // From the list of all jobs, too: the job is gone to first.
  SelectNode({});
  ClickRow("JobMgrLV", "J", x::kRight);
  ChooseInPopup("Run");
  AnswerBox("Run J?", "Yes");
  AnswerBox("Not get table list yet, refresh first please.");
  EXPECT_EQ(SelectedRow("JobMgrTV"), "J");
  ClickAction("Refresh");
  WaitFor("the tables", [this] { return Config().table_list_fetched; });
  Request("RunRun", "Run J?", JobState::Started);
  WaitForJob("Started", 0);
  ExpectActions({"FileNew", "RunPause", "RunStop"});
  Press("ctrl+d");  // rests while the job runs
  Ui([this] {
    Work().Jobs().At(0).run.applied_count = 40;
    QMetaObject::invokeMethod(Window().Form().findChild<QTimer*>("TimerRefresh"), "timeout");
  });
  WaitForJob("Started", 40);
  Sql("A", "insert into SHOP.ITEM values (1, 'a');\ninsert into CRM.VISIT values (1);");
  NextPass();
  WaitForJob("Started", 42, 2);
  EXPECT_TRUE(Identical());

  Request("RunPause", "Pause J?", JobState::Paused);
  WaitForJob("Paused", 42, 2);
  ExpectActions({"FileNew", "FileOpen", "Refresh", "RunRun", "RunStop"});
  ClickAction("FileOpen");
  EXPECT_FALSE(Find("GroupFollow")->isEnabled()) << "until it is stopped";
  Click("CancelBtn");
  Ui([this] { Work().Jobs().Hold(0, "the batch is gone"); });
  SelectNode({});
  SelectNode({"J"});
  EXPECT_EQ(TextOf("ListNote").find("Held: the batch is gone\nFollows rows."), 0U);
  ClickAction("RunRun");
  AnswerBox("Continue J?", "Yes");
  AnswerBox("J is held: the batch is gone");
  Ui([this] { Work().Jobs().Hold(0, {}); });
  Sql("A", "update SHOP.ITEM set NAME = 'b';\ndelete from CRM.VISIT;");
  Request("RunRun", "Continue J?", JobState::Started);
  NextPass();
  WaitForJob("Started", 44, 2);
  EXPECT_TRUE(Identical());
  Request("RunStop", "Stop J?", JobState::Stopped);
  WaitForMessage("J resetted.");
}

TEST_F(JobExplorer, AFailingJobSaysWhyAndOffersWaysOut) {
  OpenWithJob();
  StartJob();
  SelectNode({"J"});
  const auto fail = [&](const std::string& id, const std::string& where) {
    Sql("B", "insert into SHOP.ITEM values (" + id + ", 'theirs');");
    Sql("A", "insert into SHOP.ITEM values (" + id + ", 'ours');\ninsert into SHOP.NOTE values (" +
                 id + ", 'x');");
    NextPass();
    WaitFor("the problem", [&] { return Title() == "Quillmere - 1 job failing"; });
    SelectNode({});
    WaitForRows("JobMgrLV", {{"J", "Started"}});
    SelectNode({"J"});  // opens with its problem
    EXPECT_EQ(TextOf("ProblemWhere"), where);
  };
  fail("1", "statement 1 of 2, insert on SHOP.ITEM");
  EXPECT_EQ(TextOf("ProblemRow"), "\"ID\" = '1', \"NAME\" = 'ours'");
  EXPECT_NE(TextOf("JobHeadFacts").find("<b>Started, failing</b>"), std::string::npos);
  EXPECT_EQ(TextOf("ProblemTries").find("1 time, "), 0U);
  WaitFor("the button", [this] { return Find("LookBtn")->isEnabled(); });
  Press("alt+w");
  const std::string row = "\nNAME: there 'theirs', given 'ours'";
  EXPECT_NE(TextOf("ProblemBeside").find(row), std::string::npos);
  Press("alt+t");
  WaitFor("another pass", [this] { return TextOf("ProblemTries").starts_with("2 times, "); });
  Click("SkipBtn");
  EXPECT_FALSE(Find("OkBtn")->isEnabled()) << "without a reason";
  Enter("EditReason", "theirs is right");
  Press("Return");
  WaitForRows("JobMgrLV", {{"J", "Started", "1", "0"}});
  WaitFor("the recovery", [this] { return Title() == "Quillmere - 1 job up to date"; });
  EXPECT_NE(folder_.Read("jobs/J/skipped.sql").find("theirs is right"), std::string::npos);
  fail("2", "statement 1 of 2, insert on SHOP.ITEM");
  Click("ExcludeBtn");
  AnswerBox("Exclude SHOP.ITEM from J?", "Yes");
  WaitForRows("JobMgrLV", {{"J", "Started", "2", "0"}});
  WaitFor("the recovery", [this] { return Title() == "Quillmere - 1 job up to date"; });
  SelectNode({"J", "Exclude"});
  WaitForRows("JobMgrLV", {{"ITEM", "SHOP"}});
}

TEST_F(JobExplorer, TablesAreExcludedRedirectedAndIncluded) {
  OpenWithJob();
  SelectNode({"J", "Include"});
  ExpectActions({"FileNew", "Exclude", "ChangeRemoteOwner"});
  WaitForRows("JobMgrLV", {{"ITEM"}, {"NOTE"}, {"SECRET"}, {"VISIT"}});
  Click("BackBtn");
  ExpectActions({"FileNew", "FileOpen", "Refresh", "FileDelete", "RunRun"});
  SelectNode({"J", "Include"});
  ClickAction("Exclude");
  AnswerBox("Plsease select a item first");
  SelectRows("JobMgrLV", {"SECRET", "VISIT"});
  ClickAction("Exclude");
  AnswerBox("can only select one owner's table");
  SelectRows("JobMgrLV", {"NOTE", "SECRET"});
  for (const std::string button : {"CancelBtn", "SubmitBtn"}) {
    WaitForRows("JobMgrLV", {{"ITEM"}, {"NOTE"}, {"SECRET"}, {"VISIT"}});
    ClickAction("Exclude");
    EXPECT_EQ(TextOf("EditCurOwner"), "SHOP");
    WaitForRows("TableListBox", {{"NOTE"}, {"SECRET"}});
    EXPECT_FALSE(IsShown("EditNewOwner"));
    Click(button);
  }
  WaitForRows("JobMgrLV", {{"ITEM"}, {"VISIT"}});
  EXPECT_NE(folder_.Read("jobs/J/J.xml").find("<includeflag>false<"), std::string::npos) << "saved";
  SelectRows("JobMgrLV", {"ITEM"});
  ClickRow("JobMgrLV", "ITEM", x::kRight);
  ChooseInPopup("ChangeRemoteOwner");
  Enter("EditNewOwner", "ARCHIVE");
  Click("SubmitBtn");
  WaitForRows("JobMgrLV", {{"ITEM", "SHOP", "ARCHIVE"}, {"VISIT", "CRM", "CRM"}});
  EXPECT_EQ(folder_.Read("jobs/J/J.xml").find("<desowner>ARCHIVE"), std::string::npos)
      << "not yet saved";

  SelectNode({"J", "Exclude"});
  ExpectActions({"FileNew", "Include"});
  SelectRows("JobMgrLV", {"NOTE"});
  ClickAction("Include");
  Enter("EditNewOwner", "new Owner");
  Click("SubmitBtn");
  WaitForRows("JobMgrLV", {{"SECRET", "SHOP"}});
  // As it stands in the files: a program that starts anew shows the same.
  Restart();
  Sql("A", "create table SHOP.FRESH (ID number(10));\ndrop table CRM.VISIT;");
  Ui([this] { MarkToCompare(Work().Jobs().At(0), "SHOP", "NOTE"); });
  // A refresh sees what is new, and leaves the rest; so does one that cannot be.
  for (const bool reachable : {true, false}) {
    if (!reachable) std::filesystem::remove(folder_ / "sandbox/A.db");
    SelectNode({"J"});
    ClickAction("Refresh");
    if (!reachable) WaitForMessage("Can not connect to source, refresh failed");
    SelectNode({"J", "Include"});
    WaitForRows("JobMgrLV", {{"FRESH", "SHOP", "SHOP", "0", "0", "0", ""},
                             {"ITEM", "SHOP", "ARCHIVE", "0", "0", "0", ""},
                             {"NOTE", "SHOP", "new Owner", "0", "0", "0", "compare"}});
  }
  SelectRows("JobMgrLV", {"NOTE"});
  ClickRow("JobMgrLV", "NOTE", x::kRight);
  ChooseInPopup("Compared");
  AnswerBox("Have the selected tables been compared? Their mark is taken away.", "Yes");
  WaitFor("the mark to go",
          [this] { return !Config().schemas.find("SHOP")->second.Find("NOTE")->compare; });
}

}  // namespace
}  // namespace quillmere::window
