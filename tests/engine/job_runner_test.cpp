// SPDX-License-Identifier: MIT
#include "engine/job_runner.h"

#include "engine/engine_fixture.h"
#include "engine/work_thread.h"
#include "support/stored_text.h"

namespace quillmere {
namespace {

class Account : public EngineTest {
 protected:
  // From now on a paragraph has the calls, too, and what happens on the disk between them.
  void WithCalls() {
    files.on_operation = [this](const testing::FileOperation& operation) {
      constexpr std::string_view kOnlyAsk = "look list read close";
      if (kOnlyAsk.find(operation.what) == std::string_view::npos) {
        script_.Note("    " + operation.Text());
      }
      return FileStatus();
    };
    with_calls_ = true;
  }

  // A paragraph: what was told and applied since the last one, and how the job stands.
  void Tell(const std::string& what) {
    account << "= " << what << "\n";
    for (const std::string& line : script_.TakeTranscript()) {
      if (with_calls_) account << line << "\n";
    }
    for (const std::string& line : listener_.Take()) account << line << "\n";
    for (const std::string& sql : Applied()) account << "  " << sql << "\n";
    account << std::exchange(listener_.passes, {});
    const RunRecord record = Record();
    const std::int64_t due = job_.run.next_due.ms - clock_.Now().ms;
    account << StateName(program_.State()) << ", on disk "
            << StateName(static_cast<JobState>(record.state)) << " from " << record.mining_start_scn
            << " below " << record.cutoff_scn
            << (record.batch_pending != 0 ? ", batch with " : ", no batch, ")
            << record.batch_remaining << " to do, " << record.batch_applied << " done; applied "
            << job_.run.applied_count << ", blocked " << job_.run.blocked_count << ", due in "
            << std::max<std::int64_t>(due, 0) / 1000 << " s\n";
  }
  void TellFile(const std::string& name) { account << "[" << name << "]\n" << Read(name) << "\n"; }

  void Run() {
    std::string reason;
    if (!RequestRun(program_.context, 0, reason)) account << "no: " << reason << "\n";
  }

  bool with_calls_ = false;
};

TEST_F(Account, Calls) {
  WithCalls();
  Run();
  Step();
  Tell("start");
  script_.Answer(kRedoQuery,
                 {{"90", Insert("1")}, {"91", Insert("x", "SECRET")}, {"92", Insert("2")}});
  script_.FailOn("  " + InsertOf("2"), "ORA-00001: unique constraint\n");
  NextPass();
  Tell("a pass with a refused statement");
  script_.FailOn("SessionEnd", "ORA-03114: not connected");
  NextPass();
  Tell("its continuation, and the end fails");
  NextPass();
  Tell("its continuation");
}

TEST_F(Account, Requests) {
  RequestPause(program_.jobs, 0);
  RequestStop(program_.jobs, 0);
  Step();
  program_.Config().table_list_fetched = false;
  Run();
  Tell("that do not fit");
  program_.Config().table_list_fetched = true;
  job_.run.pending_batch.Append("left over");
  job_.run.applied_count = 7;
  job_.run.batch_pending = 1;
  for (const std::string& call : {std::string("ServerAttach"), kScnQuery + "\""}) {
    script_.FailOn(call, "ORA-12154: TNS");
    Run();
    EXPECT_EQ(program_.State(), JobState::Starting);
    Step();
    Tell("a start that fails");
  }
  SchemaMap& schemas = program_.Config().schemas;
  schemas["SHOP"].Append({.name = "left out", .includeflag = false});
  schemas["SHOP"].Append({.name = "Odd"});
  schemas["crm"].Append({.name = "VISIT", .desowner = "crm"});
  schemas["crm"].Append({.name = "MOVED", .desowner = "crm2"});
  Run();
  Step();
  EXPECT_TRUE(program_.Config().has_runned && job_.run.pending_batch.Empty());
  Tell("start, with a warning of names");
  RequestPause(program_.jobs, 0);
  Step();
  Tell("pause");
  // The record comes first: as soon as the state is Started, the file is the worker's.
  Refuse("write", "block.dat");
  Run();
  Tell("continue, and the disk is full");
  files.on_operation = [&](const testing::FileOperation& operation) {
    EXPECT_EQ(program_.State(), JobState::Paused) << operation.Text();
    return FileStatus();
  };
  Run();
  files.on_operation = nullptr;
  Tell("continue");
  program_.jobs.SetProgress(0, {3, 4});
  RequestStop(program_.jobs, 0);
  Step();
  Tell("stop");
}

TEST_F(Account, NeitherAClockThatIsSetNorAnAskedPassKeepsAJobWaiting) {
  StartJob();
  constexpr std::int64_t kDay = 86'400'000;
  const auto due_after = [&](std::int64_t jump) {
    Step();
    clock_.jumped_ms += jump;
    Step();
    return job_.run.next_due.ms - clock_.Now().ms;
  };
  const std::int64_t due = job_.run.next_due.ms - clock_.Now().ms;
  EXPECT_GT(due, 0);
  for (int i = 0; i < 2; ++i) {
    job_.run.pass_asked = true;
    EXPECT_EQ(due_after(0), due) << "a pass that was asked for does not put off the next";
  }
  EXPECT_EQ(due_after(-30'000), due + 30'000) << "the schedule keeps its rhythm";
  EXPECT_EQ(due_after(-kDay), due);
  EXPECT_LT(due_after(kDay), due) << "it is due";
  EXPECT_LE(due_after(-kDay), due);
  EXPECT_GT(due_after(-kDay), 0) << "and not at every step from now on";
}

TEST_F(Account, Passes) {
  StartJob();
  clock_.now = LocalTime{job_.run.next_due.ms - 1};
  Step();
  Tell("not due yet");
  clock_.now = LocalTime{job_.run.next_due.ms + 30'000};
  Step();
  Tell("nothing to apply, late: the next is due in its rhythm");
  script_.Answer(
      kRedoQuery,
      {{"10", Insert("1")},
       {"11", Insert("2", "SECRET")},
       {"12", "update \"SHOP\".\"ITEMS\" set \"A\" = '1' where \"A\" = '0'" + kRowAddress + ";"},
       {"13", "delete from \"SHOP\".\"UNLISTED\" where \"A\" = '0'" + kRowAddress + ";"},
       {"14", Insert("3", "OTHER")}});
  NextPass();
  Tell("all kinds, in order");
  TellFile("jobs/J/J.xml");
  TellFile("jobs/jobs.xml");
  program_.settings.debug = true;
  script_.Answer(kRedoQuery, {{"10", Insert("1", "ITEMS")}, {"11", Insert("2", "SECRET")}});
  NextPass();
  Tell("with the debug lines");
  TellFile("ravelkin.log");
  program_.settings.debug = false;
  script_.Answer(kRedoQuery, {{"11", Insert("2", "SECRET")}});
  program_.Config().sync_interval = 90;
  NextPass();
  Tell("all of it blocked, every 90 minutes");
}

TEST_F(Account, WhatIsSetAside) {
  StartJob();
  const std::string delete_items = "delete from \"SHOP\".\"ITEMS\" where ";
  script_.Answer(kRedoQuery, {{"10", "/* No SQL_REDO for temporary tables */"},
                              {"10", "-- nor here"},
                              {"11", delete_items + "\"A\" = '1';"},
                              {"12", delete_items + "ROWID = 'AAABBBAAACCCDDDEEE';"},
                              {"13", "delete from \"SHOP\".\"SECRET\" where A = '1';"},
                              {"14", "insert into \"UNKNOWN\".\"OBJ# 7\"(\"COL 1\") values ('1');"},
                              {"15", "insert into \"SHOP\".\"ORDERS\"(\"A\") values ('O'Hara');"},
                              {"16", Insert("1")}});
  Refuse("append", "setaside.sql");
  NextPass();
  EXPECT_FALSE(program_.Table("ITEMS").compare);
  Tell("it can not be kept: the same is mined again");
  Refuse();
  script_.FailOn("ServerAttach", "ORA-12541: TNS", 12541, 1);  // the destination's
  NextPass();
  Tell("it is told, and its tables are marked");
  TellFile("jobs/J/J.xml");
  TellFile("jobs/J/setaside.sql");
  NextPass();
  Tell("told once");
}

// The request comes with each exchange of a pass in turn.
TEST_F(EngineTest, ARequestEndsAPassAtItsNextExchange) {
  script_.Answer(kRedoQuery, {{"90", Insert("1")}, {"92", Insert("2")}, {"93", Insert("3")}});
  StartJob();
  int exchanges = 0, at = 1, in_capture = 0;
  for (; exchanges >= at - 1; ++at) {
    int later = exchanges = 0;
    script_.on_call = [&](const std::string& line) {
      constexpr std::string_view kExchanges[] = {"ServerAttach", "SessionBegin", "StmtExecute",
                                                 "StmtFetch2"};
      if (!std::ranges::any_of(kExchanges, [&](auto what) { return line.starts_with(what); })) {
        return "";
      }
      if (++exchanges > at) ++later;
      if (exchanges == at) RequestPause(program_.jobs, 0);
      return "";
    };
    NextPass();
    script_.on_call = nullptr;
    EXPECT_EQ(later, 0) << at;
    std::vector<std::string> applied = Applied();
    if (program_.State() == JobState::Pausing && applied.empty()) {
      ++in_capture;
      std::erase(listener_.lines, "fetched");
      EXPECT_EQ(listener_.lines, std::vector<std::string>{}) << at;
    }
    std::string reason;
    if (program_.State() == JobState::Pausing) Step();
    if (program_.State() == JobState::Paused) RequestRun(program_.context, 0, reason);
    if (applied.size() < 3) NextPass();
    for (std::string& sql : Applied()) applied.push_back(std::move(sql));
    EXPECT_EQ(applied, (std::vector{InsertOf("1"), InsertOf("2"), InsertOf("3")})) << at;
    EXPECT_EQ(Read("sqlerror.log"), "(none)");
    listener_.Take();
  }
  EXPECT_GT(in_capture, 10);
}

// Each file of the run is not readable in turn, or damaged, when the program begins.
TEST_F(EngineTest, WhatHoldsAJobIsKeptWhenItIsStoppedOrStartsAnew) {
  script_.Answer(kRedoQuery, {{"90", Insert("1")}, {"92", Insert("2")}});
  for (const std::string name : {"block.dat", "commit.dat", "sqlcmds.txt"}) {
    for (const bool damaged : {false, true}) {
      SCOPED_TRACE(name + (damaged ? " damaged" : ""));
      EngineProgram first(files, clock_, script_), second(files, clock_, script_);
      first.AddJob();
      std::string error;
      ASSERT_TRUE(first.catalogue.SaveAll(error) && RequestRun(first.context, 0, error)) << error;
      first.runner.Step(0);
      script_.FailOn("  " + InsertOf("2"), "ORA-00001: unique constraint\n");
      clock_.TurnMinutes(5);
      first.runner.Step(0);
      const std::string file = "/work/jobs/J/" + name,
                        before = damaged ? "'" : Read("jobs/J/" + name);
      if (damaged) files.Put(file, before);
      if (before == "(none)") files.Put(file, Read("jobs/J/block.dat"));
      const std::string old = files.Content(file);
      files.on_operation = [&](const testing::FileOperation& operation) {
        const bool refused = !damaged && operation.path == file && operation.what == "open";
        return refused ? FileStatus{FileCode::Denied, "Permission denied"} : FileStatus();
      };
      second.Load();
      EXPECT_NE(AsStored(second.jobs.HeldBecause(0)).find(file), std::string::npos);
      if (name != "block.dat") {
        EXPECT_EQ(second.State(), JobState::Paused);
        EXPECT_FALSE(RequestRun(second.context, 0, error));
        EXPECT_NE(error.find("J is held: "), std::string::npos) << error;
        RequestStop(second.jobs, 0);
        second.runner.Step(0);
      }
      ASSERT_EQ(second.State(), JobState::Stopped);
      files.Release();
      ASSERT_TRUE(RequestRun(second.context, 0, error)) << error;
      second.runner.Step(0);
      EXPECT_EQ(second.State(), JobState::Started);
      EXPECT_EQ(second.jobs.HeldBecause(0), "");
      EXPECT_EQ(files.Content(file + ".bad"), old);
      EXPECT_EQ(Record().batch_pending, 0);
    }
  }
}

TEST_F(EngineTest, ASweepServesEveryJobUntilTheEnd) {
  const std::size_t second = program_.jobs.Claim();
  ConfigOf(program_.jobs.At(second)).name = "K";
  ConfigOf(program_.jobs.At(second)).sync_interval = 60;
  // The end is asked for while the first is served: the second is left alone then.
  HWorkThread* sweeping = nullptr;
  script_.Answer(kRedoQuery, {{"10", Insert("1")}, {"11", Insert("2")}});
  script_.on_executed = [&](const std::string& sql) {
    if (sql != InsertOf("1")) return;
    program_.jobs.SetState(second, JobState::Pausing);
    sweeping->Terminate();
  };
  for (const std::size_t index : {program_.index, second}) {
    program_.jobs.SetState(index, JobState::Starting);
  }
  HWorkThread thread(program_.runner, program_.jobs, std::chrono::milliseconds(1));
  sweeping = &thread;
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (program_.jobs.State(second) != JobState::Started &&
         std::chrono::steady_clock::now() < limit) {
    std::this_thread::yield();
  }
  EXPECT_EQ(program_.State(), JobState::Started);
  EXPECT_EQ(program_.jobs.State(second), JobState::Started);
  clock_.TurnMinutes(5);
  EXPECT_TRUE(thread.WaitFor(std::chrono::seconds(20)));
  EXPECT_EQ(program_.State(), JobState::Started);
  EXPECT_EQ(Record().batch_remaining, 1U);
  EXPECT_EQ(program_.jobs.State(second), JobState::Pausing);
}

}  // namespace
}  // namespace quillmere
