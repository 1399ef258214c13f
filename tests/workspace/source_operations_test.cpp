// SPDX-License-Identifier: MIT
#include "workspace/source_operations.h"

#include "workspace/scripted_workspace.h"

namespace quillmere {
namespace {

const std::string kNoListener = "ORA-12541: TNS:no listener";

using SourceOperations = ScriptedWorkspace;

TEST_F(SourceOperations, AddingConnectsReadsTheCatalogueAndSavesAtOnce) {
  script.Answer("select banner from v$version",
                {{"Oracle Database 10g Enterprise Edition Release 10.2.0.1.0 - 64bit"}});
  Tell("add", AddDataSource(*workspace, {"A", "scott", "tiger", true}, progress));
  Restart();
  EXPECT_EQ(workspace->Registry().At(0).password, "tiger");
  for (const auto& [name, content] : files.All("/work")) {
    EXPECT_EQ(content.find("tiger"), std::string::npos) << name;
  }
}

TEST_F(SourceOperations, AReadingThatFailsOrIsCancelledTellsSo) {
  script.FailOn(kTables, "ORA-00942: table or view does not exist", 942);
  Tell("registered without its catalogue", AddDataSource(*workspace, {"A", "u", "p"}, progress));
  Tell("refresh", RefreshDataSource(*workspace, 0, progress));
  script.FailOn("ServerAttach", kNoListener, 12541);
  Tell("no connection", RefreshDataSource(*workspace, 0, progress));
  Tell("test", TestDataSource(*workspace, 0, progress));
  script.FailOn("ServerAttach", kNoListener, 12541);
  Tell("test", TestDataSource(*workspace, 0, progress));
  progress.cancel = 0;
  Tell("cancelled", RefreshDataSource(*workspace, 0, progress));
  EXPECT_EQ(workspace->Registry().At(0).tables.size(), 2U);
  Tell("another one, cancelled", AddDataSource(*workspace, {"B", "u", "p"}, progress));
  EXPECT_EQ(workspace->Registry().CountInUse(), 1U);
}

TEST_F(SourceOperations, WhatCanNotBeRegisteredIsRefusedWithItsReason) {
  AddSources();
  const std::pair<const char*, LogOn> rows[] = {
      {"no name", {"", "u", "p"}},           {"no user", {"D", "", "p"}},
      {"same name", {"A", "u", "p"}},        {"other case", {"a", "u", "p"}},
      {"no file name", {"x/y", "u", "p"}},   {"password", {"D", "u", std::string(32, 'x')}},
      {"zero byte", {"D", "u", {"a\0b", 3}}}};
  script.TakeTranscript();
  for (const auto& [what, log_on] : rows) Tell(what, AddDataSource(*workspace, log_on, progress));
  EXPECT_TRUE(script.TakeTranscript().empty()) << "nothing was connected";
  script.FailOn("SessionBegin", "ORA-01017: invalid username/password; logon denied", 1017);
  Tell("denied", AddDataSource(*workspace, {"D", "u", "p"}, progress));
  EXPECT_EQ(workspace->Registry().CountInUse(), 3U);
}

TEST_F(SourceOperations, JobsFollowTheLogOnsOfTheirDataSources) {
  AddSources();
  NewJob();
  const auto tell = [&](const std::string& what, const Outcome& outcome) {
    account << "= " << what << (outcome.done ? "" : ": " + outcome.text) << "\n";
    for (const LogOn& of : {ConfigOf(Job(0)).source, ConfigOf(Job(0)).destination}) {
      account << of.name << " " << of.user_id << "/" << of.password << " " << of.sysdba << "\n";
    }
  };
  tell("new", {true, ""});
  tell("A as SYSDBA", SaveDataSource(*workspace, {"A", "sys", "lion", true}, progress));
  tell("B", SaveDataSource(*workspace, {"B", "scott", "lynx", false}, progress));
  script.FailOn("SessionBegin", "ORA-01017: no", 1017);
  tell("one that does not work", SaveDataSource(*workspace, {"A", "sys", "puma", true}, progress));
  Restart();
  tell("it is not kept", {true, ""});
  tell("A removed", RemoveDataSource(*workspace, 0));
  EXPECT_EQ(ConfigOf(Job(0)).src_database_name, "A");
  EXPECT_EQ(files.Content("/work/config/A.xml"), "(none)") << "the password is gone";
}

TEST_F(SourceOperations, TheDataSourcesOfARunningJobAreLeftAlone) {
  AddSources();
  const std::size_t job = NewJob();
  for (const JobState state : {JobState::Starting, JobState::Started, JobState::Pausing,
                               JobState::Stopping, JobState::Paused, JobState::Stopped}) {
    workspace->Jobs().SetState(job, state);
    for (const char* name : {"A", "B", "C"}) {
      account << StateName(state) << " " << name << ": " << WhySourceBusy(*workspace, name) << "\n";
    }
  }
  workspace->Jobs().SetState(job, JobState::Started);
  Forget();
  Tell("save B", SaveDataSource(*workspace, {"B", "u", "p"}, progress));
  Tell("remove A", RemoveDataSource(*workspace, 0));
  Tell("remove C", RemoveDataSource(*workspace, 2));
}

}  // namespace
}  // namespace quillmere
