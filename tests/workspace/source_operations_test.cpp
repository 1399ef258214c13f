// SPDX-License-Identifier: MIT
#include "workspace/source_operations.h"

#include <gmock/gmock.h>

#include "workspace/scripted_workspace.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

using SourceOperations = ScriptedWorkspace;

TEST_F(SourceOperations, AddingConnectsReadsTheCatalogueAndSavesAtOnce) {
  script.Answer("select banner from v$version",
                {{"Oracle Database 10g Enterprise Edition Release 10.2.0.1.0 - 64bit"}});
  const Outcome added = AddDataSource(*workspace, {"A", "scott", "tiger", true}, progress);
  ASSERT_TRUE(added.done) << added.text;
  EXPECT_THAT(script.TakeTranscript(), ::testing::Contains("SessionBegin(svc1, err1, ses1, 1, 2)"));
  Restart();
  const DataSource& source = workspace->Registry().At(0);
  EXPECT_EQ(source.password, "tiger");
  EXPECT_EQ(source.version, "10.2.0.1.0");
  EXPECT_TRUE(source.sysdba);
  EXPECT_EQ(source.state, ConnectionState::Disconnected);
  ASSERT_EQ(source.tables.size(), 2U);
  EXPECT_EQ(source.tables[1].table_name, "ORDERS");
  EXPECT_EQ(source.tables[1].rows, 20);
  for (const auto& [name, content] : Files()) EXPECT_THAT(content, Not(HasSubstr("tiger"))) << name;
}

TEST_F(SourceOperations, AReadingThatFailsOrIsCancelledTellsSo) {
  script.FailOn(kTables, "ORA-00942: table or view does not exist", 942);
  const Outcome added = AddDataSource(*workspace, {"A", "u", "p"}, progress);
  EXPECT_TRUE(added.done) << "it is registered without its catalogue";
  EXPECT_THAT(added.text, HasSubstr("Can't not get table info list,Reason: "));
  ASSERT_TRUE(RefreshDataSource(*workspace, 0, progress).done);
  ASSERT_EQ(workspace->Registry().At(0).tables.size(), 2U);
  progress.cancel = 0;
  const auto before = Files();
  EXPECT_EQ(RefreshDataSource(*workspace, 0, progress).text, "Cancelled, nothing was changed");
  EXPECT_EQ(workspace->Registry().At(0).tables.size(), 2U);
  EXPECT_FALSE(AddDataSource(*workspace, {"B", "u", "p"}, progress).done);
  EXPECT_EQ(workspace->Registry().CountInUse(), 1U);
  EXPECT_EQ(Files().size(), before.size());
}

TEST_F(SourceOperations, WhatCannotBeRegisteredIsRefusedWithItsReason) {
  AddSources();
  const std::string long_password(32, 'x');
  struct Row {
    const char* what;
    LogOn login;
    std::string reason;
  };
  const std::vector<Row> rows = {
      {"no name", {"", "u", "p"}, "Obligatory field can not be empty"},
      {"no user", {"D", "", "p"}, "Obligatory field can not be empty"},
      {"same name", {"A", "u", "p"}, "Database already exist, user another please"},
      {"other case", {"a", "u", "p"}, "There is a data source A already"},
      {"no file name", {"x/y", "u", "p"}, "A name must not contain '/'"},
      {"password", {"D", "u", long_password}, "A password must not be longer than 31 bytes"},
      {"zero byte", {"D", "u", {"a\0b", 3}}, "A password must not contain a zero byte"},
  };
  const auto before = Files();
  script.TakeTranscript();
  for (const Row& row : rows) {
    const Outcome outcome = AddDataSource(*workspace, row.login, progress);
    EXPECT_FALSE(outcome.done) << row.what;
    EXPECT_EQ(outcome.text, row.reason) << row.what;
  }
  EXPECT_THAT(script.TakeTranscript(), ElementsAre()) << "nothing was connected";
  script.FailOn("SessionBegin", "ORA-01017: invalid username/password; logon denied", 1017);
  EXPECT_EQ(AddDataSource(*workspace, {"D", "u", "p"}, progress).text,
            "connect Database failed. Error: OCISessionBegin : ORA-01017: invalid "
            "username/password; logon denied");
  EXPECT_EQ(Files(), before);
  EXPECT_EQ(workspace->Registry().CountInUse(), 3U);
}

TEST_F(SourceOperations, JobsFollowTheLogOnsOfTheirDataSources) {
  AddSources();
  const std::size_t job = NewJob();
  EXPECT_EQ(ConfigOf(Job(job)).source.password, "tiger");
  ASSERT_TRUE(SaveDataSource(*workspace, {"A", "sys", "lion", true}).done);
  EXPECT_EQ(ConfigOf(Job(job)).source.password, "lion");
  EXPECT_EQ(ConfigOf(Job(job)).source.user_id, "sys");
  EXPECT_TRUE(ConfigOf(Job(job)).source.sysdba);
  EXPECT_EQ(ConfigOf(Job(job)).destination.password, "tiger");
  ASSERT_TRUE(SaveDataSource(*workspace, {"B", "scott", "lynx", false}).done);
  EXPECT_EQ(ConfigOf(Job(job)).destination.password, "lynx");
  script.FailOn("SessionBegin", "ORA-01017: no", 1017);
  EXPECT_FALSE(SaveDataSource(*workspace, {"A", "sys", "puma", true}).done);
  Restart();
  EXPECT_EQ(ConfigOf(Job(0)).source.password, "lion") << "a log-on that does not work is not kept";
  ASSERT_TRUE(RemoveDataSource(*workspace, 0).done);
  EXPECT_EQ(ConfigOf(Job(0)).source.password, "");
  EXPECT_EQ(ConfigOf(Job(0)).src_database_name, "A");
  EXPECT_FALSE(folder.Exists("config/A.xml")) << "the password is gone";
}

TEST_F(SourceOperations, TheDataSourcesOfARunningJobAreLeftAlone) {
  AddSources();
  const std::size_t job = NewJob();
  const std::string busy = "Database is using in running job, delete later";
  for (const JobState state : {JobState::Starting, JobState::Started, JobState::Pausing,
                               JobState::Stopping, JobState::Paused, JobState::Stopped}) {
    workspace->Jobs().SetState(job, state);
    const bool rests = state == JobState::Paused || state == JobState::Stopped;
    EXPECT_EQ(WhySourceBusy(*workspace, "A"), rests ? "" : busy) << StateName(state);
    EXPECT_EQ(WhySourceBusy(*workspace, "B"), rests ? "" : busy) << StateName(state);
    EXPECT_EQ(WhySourceBusy(*workspace, "C"), "") << StateName(state);
  }
  workspace->Jobs().SetState(job, JobState::Started);
  EXPECT_EQ(SaveDataSource(*workspace, {"B", "u", "p"}).text, busy);
  EXPECT_EQ(RemoveDataSource(*workspace, 0).text, busy);
  EXPECT_TRUE(RemoveDataSource(*workspace, 2).done);
}

TEST_F(SourceOperations, TestAndRefreshTellHowTheConnectionWent) {
  AddSources();
  EXPECT_EQ(TestDataSource(*workspace, 0).text, "connect to A successed");
  script.FailOn("ServerAttach", "ORA-12541: TNS:no listener", 12541);
  EXPECT_EQ(TestDataSource(*workspace, 0).text,
            "connect Database failed. Error: OCIServerAttach : ORA-12541: TNS:no listener");
  TakeMessages();
  script.Answer(kTables, {{"SHOP", "ORDERS", "USERS", "21"}});
  EXPECT_TRUE(RefreshDataSource(*workspace, 0, progress).done);
  EXPECT_THAT(TakeMessages(), ElementsAre("I connect to database: A successed, when refresh."));
  script.FailOn("ServerAttach", "ORA-12541: TNS:no listener", 12541);
  EXPECT_FALSE(RefreshDataSource(*workspace, 0, progress).done);
  EXPECT_THAT(TakeMessages(), ElementsAre("E Can't not connect to database: A",
                                          "E OCIServerAttach : ORA-12541: TNS:no listener"));
  Restart();
  ASSERT_EQ(workspace->Registry().At(0).tables.size(), 1U);
  EXPECT_EQ(workspace->Registry().At(0).tables[0].rows, 21);
}

}  // namespace
}  // namespace quillmere
