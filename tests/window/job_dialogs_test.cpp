// SPDX-License-Identifier: MIT
// The dialogs in which data sources and jobs are entered: what they refuse, with which words and
// which field to mend; and that what they accept comes back as it was entered.
#include <gtest/gtest.h>

#include "support/config_of.h"
#include "window/program_fixture.h"
#include "workspace/source_operations.h"

namespace quillmere::window {
namespace {

class Dialogs : public ProgramTest {
 protected:
  void ChooseIf(std::string_view combo, const std::string& text) {
    if (!text.empty()) Choose(combo, text);
  }
};

TEST_F(Dialogs, JobPropertiesThatCannotBeAreRefused) {
  for (const std::string name : {"A", "B"}) MakeDatabase(name);
  Open();
  AddSource("A");
  Show();
  Press("ctrl+n");
  Click("OkBtn");
  AnswerBox("At least 2 data sources needed, add them first please");
  EXPECT_EQ(FocusName(), "NewConnBtn");
  Press("Escape");
  AddSource("B");
  AddJob("Taken");

  const struct {
    std::string name, interval, source, destination, refusal, focus;
  } rows[] = {
      {"J", "ten", "", "", "Synchronize Interval must > 0", "UpDownSyncInterval"},
      {"J", "5", "A", "", "Obligatory field can not be empty", "CBDesDSN"},
      {"J", "5", "B", "B", "Data Source Can't be same", "CBDesDSN"},
      {"a\tb", "5", "A", "B", "A name must not contain control characters", "EditJobName"},
      {std::string(300, 'x'), "5", "", "", "A name must not be longer than 100 bytes",
       "EditJobName"},
      {"tAKEN", "5", "", "", "There is a job Taken already", "EditJobName"},
  };
  Press("ctrl+n");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.refusal);
    Enter("EditJobName", row.name);
    Enter("EditJobDescription", "d");
    Enter("EditSyncInterval", row.interval);
    ChooseIf("CBSrcDSN", row.source);
    ChooseIf("CBDesDSN", row.destination);
    Click("OkBtn");
    AnswerBox(row.refusal);
    EXPECT_EQ(FocusName(), row.focus);
    EXPECT_EQ(TextOf("EditJobName"), row.name) << "what was entered stays";
  }
  // Up and down stop at both ends; the first data source is never highlighted, the second is.
  Enter("EditSyncInterval", "10000");
  Press("Up");
  EXPECT_EQ(TextOf("EditSyncInterval"), "10000");
  EXPECT_EQ(SelectedRow("DbConnLV"), "B");
  Choose("CBDesDSN", "A");
  EXPECT_EQ(SelectedRow("DbConnLV"), "B");
  Press("Escape");
  WaitFor("no other job", [this] { return Work().Jobs().LiveJobs().size() == 1; });
}

TEST_F(Dialogs, WhatIsEnteredComesBackByteForByte) {
  std::string lengthy;
  while (lengthy.size() < 10'000) lengthy.append(1500, 'x').append("\n");
  const std::string name = "Ночь 東京 & 'J' €";
  const std::string told =
      "The description cannot be kept exactly so: its file breaks very long lines, drops empty "
      "lines "
      "and blanks around lines, and makes tabs blanks.\n\nKeep it like that?";
  const std::pair<std::string, std::string> descriptions[] = {
      {"a \\ \"quoted\" <tag> </description> & ;\n  indented\nПривет", ""},
      {lengthy.append("end"), ""},
      {"a\tb \n\nc", "a b\nc"}};
  OpenWithJob();
  for (const auto& [entered, kept] : descriptions) {
    const std::string& description = kept.empty() ? entered : kept;
    SelectNode({"J"});
    ClickAction("FileOpen");
    Enter("EditJobDescription", entered);
    Click("OkBtn");
    if (!kept.empty()) AnswerBox(told, "Yes");
    WaitFor("the description",
            [&] { return ConfigOf(Work().Jobs().At(0)).description == description; });
    Quit();
    Open();
    Show();

    EXPECT_TRUE(Ui([&] { return ConfigOf(Work().Jobs().At(0)).description == description; }));
  }
  SelectNode({"J"});
  ClickAction("FileOpen");
  Enter("EditJobName", name);
  Click("OkBtn");
  SelectNode({name});
  Quit();
  EXPECT_TRUE(folder_.Exists("jobs/" + name + "/" + name + ".xml"));
}

TEST_F(Dialogs, DataSourcesThatCannotBeAreRefused) {
  OpenWithJob();
  ChooseInMenu({"Database", "OpenDbMgr"});
  for (const auto& [button, text] : std::vector<std::pair<std::string, std::string>>{
           {"EditDSN", "You must choose a data source to edit"},
           {"DelDSN", "You must select an Database to delete"},
           {"TestDSN", "You must choose a data source to test"}}) {
    Click(button);
    AnswerBox(text);
  }
  const std::string failed = "connect Database failed. Error: ";
  const struct {
    std::string name, user, password, refusal, focus;
  } rows[] = {
      {"C", "", "x", "Obligatory field can not be empty", "EditUserId"},
      {"a", "SYS", "x", "There is a data source A already", "EditDbName"},
      {"NOWHERE", "SYS", "x",
       failed + "OCIServerAttach : ORA-12154: TNS:could not resolve the connect identifier "
                "specified",
       "EditDbName"},
      {"C", "SYS", "x",
       failed + "OCISessionBegin : ORA-01017: invalid username/password; logon denied",
       "EditPassword"},
  };
  MakeDatabase("C", "");
  Click("NewDSN");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name + "/" + row.user + "/" + row.refusal);
    Enter("EditDbName", row.name);
    Enter("EditUserId", row.user);
    Enter("EditPassword", row.password);
    Click("AddBtn");
    AnswerBox(row.refusal);
    EXPECT_EQ(FocusName(), row.focus);
  }
  EXPECT_EQ(Rows("DbConnLV").size(), 2U);
  Enter("EditPassword", kPassword);
  Press("Return");
  WaitForRows("DbConnLV", {{"A", "1.0", "SYS", "SYSDBA"},
                           {"B", "1.0", "SYS", "SYSDBA"},
                           {"C", "1.0", "SYS", "SYSDBA"}});
  Click("TestDSN");
  AnswerBox("connect to C successed");
  // A log-on that does not work is not stored; one that does, is.
  Sql("C", "create user U identified by pass;");
  for (const auto& [password, refused] :
       std::vector<std::pair<std::string, bool>>{{"wrong", true}, {"pass", false}}) {
    Click("EditDSN");
    Enter("EditUserId", "U");
    Enter("EditPassword", password);
    Choose("CBMode", "NORMAL");
    Click("SaveBtn");
    if (refused) {
      AnswerBox(rows[3].refusal);
      EXPECT_EQ(Ui([this] { return Work().Registry().At(2).user_id; }), "SYS");
      Press("Escape");
    }
  }
  WaitForRows(
      "DbConnLV",
      {{"A", "1.0", "SYS", "SYSDBA"}, {"B", "1.0", "SYS", "SYSDBA"}, {"C", "1.0", "U", "NORMAL"}});
  Click("DelDSN");
  EXPECT_EQ(BoxText().substr(0, 26), "Delete the data source C?\n");
  AnswerBox(BoxText(), "Yes");
  WaitFor("its file to go", [this] { return !folder_.Exists("config/C.xml"); });
}

TEST_F(Dialogs, DataSourcesOfARunningJobAreLeftAlone) {
  OpenWithJob();
  Ui([this] { Work().Jobs().SetState(0, JobState::Starting); });
  WaitForState("J", JobState::Started);
  ChooseInMenu({"Database", "OpenDbMgr"});
  for (const char* button : {"EditDSN", "DelDSN"}) {
    ClickCell("DbConnLV", 1, 0);
    Click(button);
    AnswerBox("Database is using in running job, delete later");
  }
  EXPECT_EQ(Rows("DbConnLV").size(), 2U);
}

}  // namespace
}  // namespace quillmere::window
