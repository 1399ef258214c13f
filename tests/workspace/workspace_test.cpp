// SPDX-License-Identifier: MIT
#include "workspace/workspace.h"

#include <gmock/gmock.h>

#include "jobs/run_state_files.h"
#include "workspace/scripted_workspace.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

using WorkspaceTest = ScriptedWorkspace;
using JobOperations = ScriptedWorkspace;

std::string RecordBytes(RunRecord record) {
  return {reinterpret_cast<const char*>(&record), sizeof record};
}

RunRecord StartedRecord(std::uint32_t applied, std::uint32_t remaining) {
  RunRecord record;
  record.state = static_cast<std::int32_t>(JobState::Started);
  record.batch_applied = applied;
  record.batch_remaining = remaining;
  record.batch_pending = 1;
  return record;
}

TEST_F(WorkspaceTest, OneProgramChangesAFolderAndOthersOnlyLook) {
  AddSources();
  NewJob();
  folder.Write("jobs/Job1/block.dat", RecordBytes(StartedRecord(1, 1)));
  folder.Write("jobs/Job1/commit.dat", RecordBytes(StartedRecord(0, 2)));
  folder.Write("jobs/Job1/sqlcmds.txt", "first\nsecond\n");
  std::string reason;
  EXPECT_EQ(Workspace::Open(Options(), reason), nullptr);
  EXPECT_THAT(reason, HasSubstr("Another program (process " + std::to_string(getpid()) + ")"));
  const auto before = Files();
  const auto look = [&](JobState expected) {
    const auto looking = Open(Workspace::Access::LookOnly);
    EXPECT_EQ(looking->Jobs().State(0), expected);
    looking->Log().Add("not written", true);
    looking->Log().WriteGeneral("not written");
    EXPECT_EQ(Files(), before);
  };
  look(JobState::Started);
  workspace.reset();
  look(JobState::Paused);
  Restart();
  JobList::Progress batch;
  EXPECT_EQ(workspace->Jobs().State(0, &batch), JobState::Paused);
  EXPECT_EQ(batch.batch_remaining, 2U) << "the pass that did not commit is taken back";
  EXPECT_EQ(Job(0).run.pending_batch.Size(), 2U);
  EXPECT_FALSE(folder.Exists("jobs/Job1/commit.dat"));
  EXPECT_FALSE(ConfigOf(Open(Workspace::Access::LookOnly)->Jobs().At(0)).source.password.empty());
}

TEST_F(WorkspaceTest, WhatCannotBeRestoredIsTold) {
  AddSources();
  NewJob();
  folder.Write("jobs/Job1/block.dat", RecordBytes(StartedRecord(1, 1)));
  folder.Write("jobs/Job1/sqlcmds.txt", "ends inside 'a literal");
  folder.Write("config/settings.xml", "<settings>\n<debug>true\n");
  Restart();
  taken = 0;
  const auto messages = TakeMessages();
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_THAT(messages[0], HasSubstr("settings"));
  EXPECT_THAT(messages[1], HasSubstr("The pending batch of Job1 is lost"));
}

TEST_F(WorkspaceTest, AFolderThatCannotBeWorkedOnIsRefused) {
  folder.Write("file", "");
  folder.Write("logless/error.log/x", "");
  struct Row {
    const char* folder;
    bool create;
    const char* reason;
  };
  for (const Row& row :
       {Row{"missing", false, "There is no working folder "}, Row{"file", true, " is no folder"},
        Row{"file/x", true, "Can not"}, Row{"logless", false, "Messages would be lost"}}) {
    Workspace::Options options = Options();
    options.folder = folder / row.folder;
    options.create_folder = row.create;
    std::string reason;
    EXPECT_EQ(Workspace::Open(options, reason), nullptr) << row.folder;
    EXPECT_THAT(reason, HasSubstr(row.reason)) << row.folder;
  }
  Workspace::Options options = Options();
  options.folder = folder / "new/deep";
  options.create_folder = true;
  std::string reason;
  EXPECT_NE(Workspace::Open(options, reason), nullptr) << reason;
}

TEST_F(JobOperations, PropertiesThatCannotBeStoredAreRefused) {
  struct Row {
    const char* what;
    JobProperties properties;
    std::string reason;
    JobField field;
  };
  const std::string empty = "Obligatory field can not be empty";
  const std::string minutes = "Synchronize Interval must > 0";
  const std::vector<Row> rows = {
      {"interval before fields", {"", "", "", "", 0}, minutes, JobField::Interval},
      {"negative", {"J", "d", "A", "B", -1}, minutes, JobField::Interval},
      {"negative, zero allowed", {"J", "d", "A", "B", -1, true}, minutes, JobField::Interval},
      {"blank name", {" \t ", "d", "A", "B", 1}, empty, JobField::Name},
      {"no description", {"J", " ", "A", "B", 1}, empty, JobField::Description},
      {"no source", {"J", "d", "", "B", 1}, empty, JobField::Source},
      {"no destination", {"J", "d", "A", " ", 1}, empty, JobField::Destination},
      {"same", {"J", "d", " A", "A ", 1}, "Data Source Can't be same", JobField::Destination},
      {"no file", {"a/b", "d", "A", "B", 1}, "A name must not contain '/'", JobField::Name},
      {"taken", {"jOB1", "d", "A", "B", 1}, "There is a job Job1 already", JobField::Name},
  };
  std::size_t index = 0;
  const JobRefusal no_sources = WhyJobRefused(*workspace, {}, JobList::kNotFound);
  EXPECT_EQ(no_sources.reason, "At least 2 data sources needed, add them first please");
  EXPECT_EQ(no_sources.field, JobField::DataSources);
  AddSources();
  NewJob();
  for (const Row& row : rows) {
    EXPECT_EQ(AddJob(*workspace, row.properties, index).text, row.reason) << row.what;
    EXPECT_EQ(index, JobList::kNotFound) << row.what;
    const JobRefusal refused = WhyJobRefused(*workspace, Trimmed(row.properties), index);
    EXPECT_EQ(refused.field, row.field) << row.what;
  }
  EXPECT_EQ(workspace->Jobs().Count(), 1U);
  EXPECT_FALSE(WhyJobRefused(*workspace, {"Job1", "d", "A", "B", 1}, 0)) << "its own name";
  for (const auto& [text, number] : std::vector<std::pair<const char*, int>>{
           {"15", 15}, {" 7 ", 7}, {"", 0}, {"x", 0}, {"5x", 0}, {"99999999999", 0}}) {
    EXPECT_EQ(ParseInterval(text), number) << text;
  }
}

TEST_F(JobOperations, RunWhileTheirDataSourcesAreRegistered) {
  struct Silent final : RunnerListener {
    void OnJobChanged(std::size_t, bool) override {}
    void OnError(std::size_t, std::string_view) override {}
    void OnInformation(std::size_t, std::string_view) override {}
  } listener;
  AddSources();
  const std::size_t job = NewJob();
  EngineContext engine = workspace->EngineFor(listener);
  ASSERT_TRUE(RemoveDataSource(*workspace, 1).done);
  for (const JobState state : {JobState::Stopped, JobState::Paused}) {
    workspace->Jobs().SetState(job, state);
    EXPECT_EQ(RunJob(*workspace, engine, job).text, "B is not registered any more");
    EXPECT_EQ(workspace->Jobs().State(job), state);
  }
  ASSERT_TRUE(AddDataSource(*workspace, {"B", "u", "p"}, progress).done);
  EXPECT_TRUE(RunJob(*workspace, engine, job).done);
  EXPECT_EQ(workspace->Jobs().State(job), JobState::Started);
}

TEST_F(JobOperations, ANewJobIsStoppedReadsItsTablesAndIsSaved) {
  AddSources();
  EXPECT_EQ(ProposeJobName(workspace->Jobs()), "Job1");
  NewJob("Job1");
  NewJob("Job3");
  EXPECT_EQ(ProposeJobName(workspace->Jobs()), "Job2");
  folder.Write("jobs/Old/block.dat", RecordBytes(StartedRecord(1, 1)));
  folder.Write("jobs/Old/commit.dat", RecordBytes(StartedRecord(1, 1)));
  TakeMessages();
  std::size_t index = 0;
  ASSERT_TRUE(AddJob(*workspace, {" Old ", "two\nlines", "A", "B", 0, true}, index).done);
  EXPECT_THAT(TakeMessages(), ElementsAre("I A job created, name is Old"));
  Restart();
  EXPECT_EQ(workspace->Jobs().State(2), JobState::Stopped) << "another job's record came back";
  EXPECT_TRUE(folder.Exists("jobs/Old/block.dat.bad"));
  EXPECT_EQ(PropertiesOf(Job(2)).description, "two\nlines");
  EXPECT_EQ(PropertiesOf(Job(2)).interval, 0);
  EXPECT_EQ(ConfigOf(Job(2)).source.password, "tiger");
  EXPECT_TRUE(ConfigOf(Job(2)).table_list_fetched);
  ASSERT_EQ(ConfigOf(Job(2)).schemas.size(), 2U)
      << "an owner without tables is kept, a system owner is not";
  EXPECT_EQ(Table(2, "ORDERS")->beginrows, 20);
  EXPECT_EQ(Table(2, "ORDERS")->desowner, "SHOP");
  EXPECT_TRUE(Table(2, "ORDERS")->includeflag);
}

TEST_F(JobOperations, ARefreshKeepsWhatTheOperatorChoseAndWhatWasCounted) {
  AddSources();
  const std::size_t job = NewJob();
  FilterTables(*workspace, job, {TableFilter::ChangeOwner, "SHOP", {"ORDERS"}, false, "ARCHIVE"});
  FilterTables(*workspace, job, {TableFilter::Exclude, "SHOP", {"CLIENT"}});
  ConfigOf(Job(job)).schemas.find("SHOP")->second.Find("ORDERS")->totalsynced = 7;
  script.Answer(kUsers, {{"SHOP"}, {"NEW"}});
  script.Answer(kTables, {{"NEW", "N", "USERS", "1"},
                          {"SHOP", "CLIENT", "USERS", "11"},
                          {"SHOP", "ORDERS", "USERS", "25"},
                          {"ZZZ", "OF NO OWNER", "USERS", "1"}});
  ASSERT_TRUE(RefreshTables(*workspace, job).done);
  Restart();
  EXPECT_EQ(ConfigOf(Job(0)).schemas.size(), 2U);
  EXPECT_EQ(ConfigOf(Job(0)).schemas.count("EMPTY"), 0U);
  EXPECT_TRUE(ConfigOf(Job(0)).schemas.find("NEW")->second.Find("N")->includeflag);
  EXPECT_EQ(Table(0, "ORDERS")->desowner, "ARCHIVE");
  EXPECT_EQ(Table(0, "ORDERS")->totalsynced, 7);
  EXPECT_EQ(Table(0, "ORDERS")->beginrows, 20);
  EXPECT_EQ(Table(0, "ORDERS")->rows, 25);
  EXPECT_FALSE(Table(0, "CLIENT")->includeflag);

  struct Row {
    const char* call;
    std::string message;
  };
  for (const Row& row :
       {Row{"ServerAttach", "E Can not connect to source, refresh failed"},
        Row{kUsers,
            "E Can't get source owner list, refresh failed. Reason: OCIStmtPrepare(SqlStr1) : no"},
        Row{kTables,
            "E Can't get source table info list, refresh failed. Reason: OCIStmtPrepare(SqlStr1) : "
            "no"}}) {
    TakeMessages();
    script.FailOn(row.call, "no");
    EXPECT_FALSE(RefreshTables(*workspace, 0).done) << row.message;
    EXPECT_EQ(TakeMessages().at(0), row.message);
    EXPECT_EQ(Table(0, "ORDERS")->totalsynced, 7);
    EXPECT_TRUE(ConfigOf(Job(0)).table_list_fetched);
  }
  workspace->Jobs().SetState(0, JobState::Started);
  EXPECT_EQ(RefreshTables(*workspace, 0).text, "Job Job1 is running. Pause or stop it first");
}

TEST_F(JobOperations, FiltersChangeOwnerAndFlagAndReachTheFile) {
  AddSources();
  NewJob();
  struct Row {
    const char* what;
    TableChoice choice;
    std::size_t changed;
    const char* desowner;  // of ORDERS in the file: every row begins there
    bool included;
  };
  const auto include = TableFilter::Include;
  const auto exclude = TableFilter::Exclude;
  const auto owner = TableFilter::ChangeOwner;
  const auto now = OwnerSaving::AtOnce;
  const std::vector<std::string> tables = {"ORDERS", "NONE"};
  for (const Row& row : std::vector<Row>{
           {"exclude", {exclude, "SHOP", tables}, 1, "SHOP", false},
           {"another owner reaches the file later",
            {owner, "SHOP", tables, false, "As Typed"},
            1,
            "SHOP",
            false},
           {"or at once, and includes",
            {owner, "SHOP", tables, false, "As Typed", now},
            1,
            "As Typed",
            true},
           {"exclude keeps the owner",
            {exclude, "SHOP", tables, false, "ignored"},
            1,
            "As Typed",
            false},
           {"include, to the source's owner", {include, "SHOP", tables}, 1, "SHOP", true},
           {"include, to another owner", {include, "SHOP", tables, false, "X"}, 1, "X", true},
           {"owners are told apart by case", {exclude, "shop", tables}, 0, "X", true},
           {"all", {exclude, "SHOP", {}, true}, 2, "X", false}}) {
    SCOPED_TRACE(row.what);
    const FilterResult result = FilterTables(*workspace, 0, row.choice);
    EXPECT_EQ(result.changed, row.changed);
    EXPECT_EQ(result.refused + result.unsaved, "");
    Restart();
    EXPECT_EQ(Table(0, "ORDERS")->desowner, row.desowner);
    EXPECT_EQ(Table(0, "ORDERS")->includeflag, row.included);
    EXPECT_EQ(Table(0, "CLIENT")->includeflag, !row.choice.all_tables);
  }
  for (const JobState state : {JobState::Starting, JobState::Started, JobState::Pausing}) {
    workspace->Jobs().SetState(0, state);
    EXPECT_EQ(FilterTables(*workspace, 0, {include, "SHOP", {}, true}).refused,
              "Job Job1 is running. Pause or stop it first");
  }
  EXPECT_FALSE(Table(0, "ORDERS")->includeflag);
  workspace->Jobs().SetState(0, JobState::Paused);
  std::filesystem::remove(folder / "jobs/Job1/Job1.xml");
  std::filesystem::create_directories(folder / "jobs/Job1/Job1.xml/in the way");
  EXPECT_NE(FilterTables(*workspace, 0, {include, "SHOP", {"ORDERS"}}).unsaved, "");
  EXPECT_TRUE(Table(0, "ORDERS")->includeflag) << "in force all the same";
}

TEST_F(JobOperations, EditingFollowsTheStateOfTheJob) {
  AddSources();
  const std::size_t job = NewJob();
  JobProperties edited = PropertiesOf(Job(job));
  edited.source = "C";
  workspace->Jobs().SetState(job, JobState::Paused);
  EXPECT_EQ(EditJob(*workspace, job, edited).text,
            "You can't change data source after a job is runned, Stop the job first please.");
  workspace->Jobs().SetState(job, JobState::Started);
  EXPECT_FALSE(EditJob(*workspace, job, PropertiesOf(Job(job))).done);
  EXPECT_EQ(PropertiesOf(Job(job)).source, "A");

  workspace->Jobs().SetState(job, JobState::Stopped);
  ConfigOf(Job(job)).schemas.find("SHOP")->second.Find("ORDERS")->totalsynced = 7;
  edited.name = " Renamed ";
  edited.interval = 90;
  TakeMessages();
  ASSERT_TRUE(EditJob(*workspace, job, edited).done);
  EXPECT_THAT(TakeMessages(), ElementsAre("I Job1's name changed to Renamed",
                                          "I Refresh filter info of Renamed ok."));
  EXPECT_EQ(Table(job, "ORDERS")->totalsynced, 0) << "another source's tables are new ones";
  edited.source = "A";
  script.FailOn("ServerAttach", "no");
  ASSERT_TRUE(EditJob(*workspace, job, edited).done);
  EXPECT_EQ(TakeMessages().back(), "E Refresh filter info of Renamed failed.");
  EXPECT_FALSE(ConfigOf(Job(job)).table_list_fetched);
  Restart();
  EXPECT_EQ(PropertiesOf(Job(0)).name, "Renamed");
  EXPECT_EQ(PropertiesOf(Job(0)).interval, 90);
  EXPECT_EQ(folder.List("jobs"), (std::vector<std::string>{"Renamed", "jobs.xml"}));
  folder.Write("jobs/Taken/file", "");
  edited.name = "Taken";
  EXPECT_FALSE(EditJob(*workspace, 0, edited).done);
  EXPECT_EQ(PropertiesOf(Job(0)).name, "Renamed") << "a refused rename leaves everything";
}

TEST_F(JobOperations, DeletingTakesAStoppedJobsOwnFilesOnly) {
  AddSources();
  NewJob("Kept");
  const std::size_t job = NewJob("Gone");
  folder.Write("jobs/Gone/block.dat", "x");
  folder.Write("jobs/Gone/error.log", "x");
  workspace->Jobs().SetState(job, JobState::Paused);
  EXPECT_FALSE(DeleteJob(*workspace, job).done);
  workspace->Jobs().SetState(job, JobState::Stopped);
  TakeMessages();
  EXPECT_EQ(DeleteJob(*workspace, job).text, "job: Gone deleted.");
  EXPECT_THAT(TakeMessages(), ElementsAre("I job: Gone deleted."));
  EXPECT_EQ(folder.List("jobs/Gone"), (std::vector<std::string>{"error.log"}));
  Restart();
  EXPECT_EQ(workspace->Jobs().IndexOf("Gone"), JobList::kNotFound);
  EXPECT_EQ(workspace->Jobs().IndexOf("Kept"), 0U);
}

TEST_F(JobOperations, RunningJobsAndUnfinishedBatchesKeepTheWindowOpen) {
  AddSources();
  const std::size_t job = NewJob();
  struct Row {
    JobState state;
    std::uint32_t remaining;
    bool explorer_closes, main_closes;
  };
  for (const Row& row :
       {Row{JobState::Stopped, 3, true, true}, Row{JobState::Paused, 0, true, true},
        Row{JobState::Paused, 1, true, false}, Row{JobState::Started, 0, false, false},
        Row{JobState::Starting, 0, false, true}, Row{JobState::Pausing, 0, false, true}}) {
    workspace->Jobs().SetState(job, row.state, {0, row.remaining});
    EXPECT_EQ(WhyExplorerStaysOpen(workspace->Jobs()),
              row.explorer_closes ? "" : "Job1 is running, do not close the application");
    EXPECT_EQ(WhyMainWindowStaysOpen(workspace->Jobs()),
              row.main_closes
                  ? ""
                  : "Some job is running or has records to synchronize, stop them first");
  }
}

}  // namespace
}  // namespace quillmere
