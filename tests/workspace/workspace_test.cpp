// SPDX-License-Identifier: MIT
#include "workspace/workspace.h"

#include "jobs/run_state_files.h"
#include "workspace/scripted_workspace.h"

namespace quillmere {
namespace {

using WorkspaceTest = ScriptedWorkspace;
using JobOperations = ScriptedWorkspace;

std::string StartedRecord(std::uint32_t applied, std::uint32_t remaining) {
  const RunRecord record{.state = static_cast<std::int32_t>(JobState::Started),
                         .batch_applied = applied,
                         .batch_remaining = remaining,
                         .batch_pending = 1};
  return {reinterpret_cast<const char*>(&record), sizeof record};
}

TEST_F(WorkspaceTest, OneProgramChangesAFolderAndOthersOnlyLook) {
  AddSources();
  NewJob();
  files.Put("/work/jobs/Job1/block.dat", StartedRecord(1, 1));
  files.Put("/work/jobs/Job1/commit.dat", StartedRecord(0, 2));
  files.Put("/work/jobs/Job1/sqlcmds.txt", "first\nsecond\n");
  std::string reason;
  EXPECT_EQ(Workspace::Open(Options(), reason), nullptr);
  account << reason << "\n";
  files.Remove("/work/quillmere.lock");
  EXPECT_EQ(Workspace::Open(Options(), reason), nullptr) << "the folder itself is locked";
  const auto before = files.All("/work");
  const auto look = [&](JobState expected) {
    const auto looking = Open(Workspace::Access::LookOnly);
    EXPECT_EQ(looking->Jobs().State(0), expected);
    looking->Log().Add("not written", true);
    looking->Log().WriteGeneral("not written");
    EXPECT_EQ(files.All("/work"), before);
  };
  look(JobState::Started);
  workspace.reset();
  look(JobState::Paused);
  Restart();
  JobList::Progress batch;
  EXPECT_EQ(workspace->Jobs().State(0, &batch), JobState::Paused);
  EXPECT_EQ(batch.batch_remaining, 2U) << "the pass that did not commit is taken back";
  EXPECT_EQ(Job(0).run.pending_batch.Size(), 2U);
  EXPECT_EQ(files.Content("/work/jobs/Job1/commit.dat"), "(none)");
  EXPECT_FALSE(ConfigOf(Open(Workspace::Access::LookOnly)->Jobs().At(0)).source.password.empty());
}

TEST_F(WorkspaceTest, WhatCanNotBeRestoredOrOpenedIsTold) {
  AddSources();
  NewJob();
  files.Put("/work/jobs/Job1/block.dat", StartedRecord(1, 1));
  files.Put("/work/jobs/Job1/sqlcmds.txt", "ends inside 'a literal");
  files.Put("/work/config/settings.xml", "<settings>\n<debug>true\n");
  ForgetFiles();
  Restart();
  taken = 0;
  Tell("start", {true, ""});
  files.Put("/work/file", "");
  files.Put("/work/logless/error.log/x", "");
  const std::pair<const char*, bool> rows[] = {// and whether it is to be made
                                               {"missing", false},
                                               {"file", true},
                                               {"file/x", true},
                                               {"logless", false},
                                               {"new/deep", true}};
  for (const auto& [folder, create] : rows) {
    Workspace::Options options = Options();
    options.folder /= folder;
    options.create_folder = create;
    std::string reason;
    const bool opened = Workspace::Open(options, reason) != nullptr;
    account << folder << (opened ? " opened" : ": ") << reason << "\n";
  }
}

TEST_F(JobOperations, PropertiesThatCanNotBeStoredAreRefused) {
  const std::pair<const char*, JobProperties> rows[] = {
      {"interval before fields", {"", "", "", "", 0}},
      {"negative", {"J", "d", "A", "B", -1}},
      {"negative, zero allowed", {"J", "d", "A", "B", -1, true}},
      {"blank name", {" \t ", "d", "A", "B", 1}},
      {"no description", {"J", " ", "A", "B", 1}},
      {"no source", {"J", "d", "", "B", 1}},
      {"no destination", {"J", "d", "A", " ", 1}},
      {"same", {"J", "d", " A", "A ", 1}},
      {"container by rows", {"J", "d", "A", "B", 1, false, Follow::Rows, "PDB"}},
      {"no container", {"J", "d", "A", "B", 1, false, Follow::Commits, "a b"}},
      {"no file", {"a/b", "d", "A", "B", 1}},
      {"taken", {"jOB1", "d", "A", "B", 1}}};
  const auto tell = [&](const std::string& what, const JobProperties& properties) {
    std::size_t index = 0;
    const JobRefusal why = WhyJobRefused(*workspace, Trimmed(properties), JobList::kNotFound);
    account << "field " << static_cast<int>(why.field) << " ";
    Tell(what, AddJob(*workspace, properties, index, progress));
    EXPECT_EQ(index, JobList::kNotFound) << what;
  };
  tell("no sources", {});
  AddSources();
  NewJob();
  for (const auto& [what, properties] : rows) tell(what, properties);
  EXPECT_EQ(workspace->Jobs().Count(), 1U);
  EXPECT_FALSE(WhyJobRefused(*workspace, {"Job1", "d", "A", "B", 1}, 0)) << "its own name";
  for (const char* text : {"15", " 7 ", "", "x", "5x", "99999999999"}) {
    account << text << " is " << ParseInterval(text) << " minutes\n";
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
  files.Put("/work/jobs/Old/block.dat", StartedRecord(1, 1));
  files.Put("/work/jobs/Old/commit.dat", StartedRecord(1, 1));
  Forget();
  std::size_t index = 0;
  Tell("add", AddJob(*workspace, {" Old ", "two\nlines", "A", "B", 0, true}, index, progress));
  Restart();
  EXPECT_EQ(workspace->Jobs().State(2), JobState::Stopped) << "another job's record came back";
  EXPECT_EQ(PropertiesOf(Job(2)).description, "two\nlines");
  EXPECT_EQ(ConfigOf(Job(2)).source.password, "tiger");
  EXPECT_TRUE(ConfigOf(Job(2)).table_list_fetched);
}

TEST_F(JobOperations, ARefreshKeepsWhatTheOperatorChoseAndWhatWasCounted) {
  AddSources();
  const std::size_t job = NewJob();
  FilterTables(*workspace, job, {TableFilter::ChangeOwner, "SHOP", {"ORDERS"}, false, "ARCHIVE"});
  FilterTables(*workspace, job, {TableFilter::Exclude, "SHOP", {"CLIENT"}});
  Table(job, "ORDERS")->totalsynced = 7;
  script.Answer(kUsers, {{"SHOP"}, {"NEW"}});
  script.Answer(kTables, {{"NEW", "N", "USERS", "1"},
                          {"SHOP", "CLIENT", "USERS", "11"},
                          {"SHOP", "ORDERS", "USERS", "25"},
                          {"ZZZ", "OF NO OWNER", "USERS", "1"}});
  Tell("refresh", RefreshTables(*workspace, job, progress));
  for (const std::string call : {"ServerAttach", kUsers, kTables}) {
    script.FailOn(call, "no");
    Tell(call + " fails", RefreshTables(*workspace, 0, progress));
    EXPECT_TRUE(ConfigOf(Job(0)).table_list_fetched);
  }
  workspace->Jobs().SetState(0, JobState::Started);
  Tell("it runs", RefreshTables(*workspace, 0, progress));
}

TEST_F(JobOperations, FiltersChangeOwnerAndFlagAndReachTheFile) {
  AddSources();
  NewJob();
  const auto filter = [&](const std::string& what, const TableChoice& choice) {
    const FilterResult result = FilterTables(*workspace, 0, choice);
    account << "= " << what << ": " << result.changed << " changed " << result.refused
            << result.unsaved << "\n";
    for (const char* of : {"in force", "after a restart"}) {
      for (const auto& table : ConfigOf(Job(0)).schemas.find("SHOP")->second.Tables()) {
        account << "  " << table.name << (table.includeflag ? " to " : " not to ")
                << table.desowner;
      }
      account << " " << of << "\n";
      if (result.refused.empty() && result.unsaved.empty()) Restart();
    }
  };
  const auto include = TableFilter::Include;
  const auto exclude = TableFilter::Exclude;
  const auto owner = TableFilter::ChangeOwner;
  const std::vector<std::string> tables = {"ORDERS", "NONE"};
  filter("exclude", {exclude, "SHOP", tables});
  filter("another owner includes, and reaches the file later",
         {owner, "SHOP", tables, false, "As Typed"});
  filter("or at once", {owner, "SHOP", tables, false, "As Typed", OwnerSaving::AtOnce});
  filter("exclude keeps the owner", {exclude, "SHOP", tables, false, "ignored"});
  filter("include, to the source's owner", {include, "SHOP", tables});
  filter("include, to another owner", {include, "SHOP", tables, false, "X"});
  filter("owners are told apart by case", {exclude, "shop", tables});
  filter("all", {exclude, "SHOP", {}, true});
  for (const JobState state : {JobState::Starting, JobState::Started, JobState::Pausing}) {
    workspace->Jobs().SetState(0, state);
    filter(std::string(StateName(state)), {include, "SHOP", {}, true});
  }
  workspace->Jobs().SetState(0, JobState::Paused);
  Refuse("append", "Job1.xml");
  filter("it can not be saved, and is in force all the same", {include, "SHOP", {"ORDERS"}});
}

TEST_F(JobOperations, EditingFollowsTheStateOfTheJob) {
  AddSources();
  const std::size_t job = NewJob();
  Forget();
  JobProperties edited = PropertiesOf(Job(job));
  edited.source = "C";
  workspace->Jobs().SetState(job, JobState::Paused);
  Tell("another source of a paused one", EditJob(*workspace, job, edited, progress));
  workspace->Jobs().SetState(job, JobState::Started);
  Tell("nothing of a running one", EditJob(*workspace, job, PropertiesOf(Job(job)), progress));
  workspace->Jobs().SetState(job, JobState::Stopped);
  Table(job, "ORDERS")->totalsynced = 7;
  edited.name = " Renamed ";
  edited.interval = 90;
  Tell("another source's tables are new ones", EditJob(*workspace, job, edited, progress));
  edited.source = "A";
  script.FailOn("ServerAttach", "no");
  Tell("its tables can not be read", EditJob(*workspace, job, edited, progress));
  EXPECT_FALSE(ConfigOf(Job(job)).table_list_fetched);
  edited.name = "jobs.xml";
  Tell("a refused rename leaves everything", EditJob(*workspace, 0, edited, progress));
  Restart();
  EXPECT_EQ(PropertiesOf(Job(0)).name, "Renamed");
  EXPECT_EQ(PropertiesOf(Job(0)).interval, 90);
}

TEST_F(JobOperations, DeletingTakesAStoppedJobsOwnFilesOnly) {
  AddSources();
  NewJob("Kept");
  const std::size_t job = NewJob("Gone");
  for (const std::string name : {"block.dat", "error.log"})
    files.Put("/work/jobs/Gone/" + name, "");
  Forget();
  workspace->Jobs().SetState(job, JobState::Paused);
  Tell("a paused one", DeleteJob(*workspace, job));
  workspace->Jobs().SetState(job, JobState::Stopped);
  Tell("a stopped one", DeleteJob(*workspace, job));
}

TEST_F(JobOperations, RunningJobsAndUnfinishedBatchesKeepTheWindowOpen) {
  AddSources();
  const std::size_t job = NewJob();
  for (const JobState state : {JobState::Stopped, JobState::Paused, JobState::Starting,
                               JobState::Started, JobState::Pausing}) {
    for (const std::uint32_t remaining : {0u, 1u}) {
      workspace->Jobs().SetState(job, state, {0, remaining});
      account << StateName(state) << " with " << remaining
              << "\n  explorer: " << WhyExplorerStaysOpen(workspace->Jobs())
              << "\n  window: " << WhyMainWindowStaysOpen(workspace->Jobs()) << "\n";
    }
  }
}

}  // namespace
}  // namespace quillmere
