// SPDX-License-Identifier: MIT
#include "engine/job_runner.h"

#include <gmock/gmock.h>

#include <fstream>
#include <thread>

#include "engine/engine_fixture.h"
#include "engine/statement_safety.h"
#include "engine/work_thread.h"

namespace quillmere {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

std::string Insert(const std::string& id, const std::string& table = "ORDERS") {
  return "insert into \"SHOP\".\"" + table + "\"(\"ID\") values ('" + id + "');";
}
std::string InsertOf(const std::string& id, const std::string& table = "SHOP.ORDERS") {
  return "INSERT INTO " + table + "(\"ID\") values ('" + id + "')";
}
const std::string kStarted = "i:Job J started.";
const std::string kNothing = "i:Nothing synchronized in this interval of  J";
const std::string kDone = "i:Successfully synchronized a batch of J";
const std::string kBegin = "i:Begin synchronize a new batch";
const std::string kContinue = "i:Continue synchronize a old batch";
const std::string kWrong = "e:Something wrong in this interval of J";

// --- The calls in order ----------------------------------------------------------------------

// The calls since the last look are those of transcripts/<name>.txt.
#define EXPECT_CALLS(name) EXPECT_EQ(Lines(script_.TakeTranscript()), Transcript(name))

std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

std::string Transcript(const std::string& name) {
  std::ifstream file(std::string(TRANSCRIPTS) + "/" + name + ".txt");
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(EngineTest, CallsOfAStart) {
  std::string reason;
  ASSERT_TRUE(RequestRun(context_, index_, reason));
  runner_.Step(index_);
  EXPECT_CALLS("start");
}

TEST_F(EngineTest, CallsOfAPassWithARefusedStatementAndOfItsContinuation) {
  StartJob();
  script_.Answer(kRedoQuery,
                 {{"90", Insert("1")}, {"91", Insert("x", "SECRET")}, {"92", Insert("2")}});
  script_.FailOn("  " + InsertOf("2"), "ORA-00001: unique constraint\n");
  NextPass();
  EXPECT_CALLS("pass_with_a_refused_statement");
  EXPECT_THAT(listener_.Take(), ElementsAre("fetched", kBegin,
                                            "e:Execute sql fail : OCIStmtExecute : ORA-00001: "
                                            "unique constraint",
                                            kWrong));
  NextPass();
  EXPECT_CALLS("continued_pass");
  EXPECT_THAT(listener_.Take(), ElementsAre(kContinue, kDone));
}

// --- States ------------------------------------------------------------------------------------

TEST_F(EngineTest, StartTakesTheCurrentScnAndForgetsTheOldBatch) {
  job_.run.pending_batch.Append("left over");
  job_.run.applied_count = 7;
  job_.run.batch_pending = 1;
  std::string reason;
  ASSERT_TRUE(RequestRun(context_, index_, reason));
  EXPECT_EQ(jobs_.State(index_), JobState::Starting);
  runner_.Step(index_);
  EXPECT_THAT(listener_.Take(), ElementsAre(kStarted));
  EXPECT_TRUE(config_.has_runned);
  EXPECT_TRUE(job_.run.pending_batch.Empty());
  EXPECT_EQ(job_.run.next_due, AddMinutes(clock_.now, 5));
  const RunRecord record = Record();
  EXPECT_EQ(record.state, 2);
  EXPECT_EQ(record.mining_start_scn, 100);
  EXPECT_EQ(record.cutoff_scn, 100);
  EXPECT_EQ(record.applied_count + record.batch_pending, 0);
}

TEST_F(EngineTest, StartWarnsOfNamesThatNeedQuotes) {
  config_.schemas["SHOP"].Append({.name = "left out", .includeflag = false});
  config_.schemas["SHOP"].Append({.name = "Odd"});
  config_.schemas["crm"].Append({.name = "VISIT", .desowner = "crm"});
  config_.schemas["crm"].Append({.name = "MOVED", .desowner = "crm2"});
  std::string reason;
  ASSERT_TRUE(RequestRun(context_, index_, reason));
  runner_.Step(index_);
  EXPECT_THAT(
      listener_.Take(),
      ElementsAre(StartsWith("e:Tables whose names need quotes: 2 (SHOP.Odd, crm.VISIT). A job"),
                  kStarted));
}

TEST_F(EngineTest, StartFailsBackToStopped) {
  for (const auto& [call, line] : std::vector<std::pair<std::string, std::string>>{
           {"ServerAttach", "e:Connect source fail : OCIServerAttach : ORA-12154: TNS"},
           {kScnQuery + "\"", "e:GetLastScn fail : OCIStmtPrepare : ORA-12154: TNS"}}) {
    script_.FailOn(call, "ORA-12154: TNS");
    std::string reason;
    ASSERT_TRUE(RequestRun(context_, index_, reason));
    runner_.Step(index_);
    EXPECT_EQ(jobs_.State(index_), JobState::Stopped);
    EXPECT_EQ(Record().state, 4);
    EXPECT_THAT(listener_.Take(), ElementsAre(line, "e:Job J start failed."));
  }
}

TEST_F(EngineTest, RunIsRefusedWithoutATableList) {
  config_.table_list_fetched = false;
  std::string reason;
  EXPECT_FALSE(RequestRun(context_, index_, reason));
  EXPECT_EQ(reason, "Not get table list yet, refresh first please.");
  EXPECT_EQ(jobs_.State(index_), JobState::Stopped);
}

TEST_F(EngineTest, PauseContinueAndStopKeepWhatTheyShould) {
  StartJob();
  const LocalTime due = job_.run.next_due;
  RequestPause(jobs_, index_);
  runner_.Step(index_);
  EXPECT_THAT(listener_.Take(), ElementsAre("i:Job J temporary stopped."));
  EXPECT_EQ(Record().state, 6);
  std::string reason;
  ASSERT_TRUE(RequestRun(context_, index_, reason));
  EXPECT_EQ(jobs_.State(index_), JobState::Started);
  EXPECT_EQ(Record().state, 2) << "written at once";
  EXPECT_EQ(job_.run.next_due, due);
  jobs_.SetProgress(index_, {3, 4});
  RequestStop(jobs_, index_);
  runner_.Step(index_);
  EXPECT_THAT(listener_.Take(), ElementsAre("i:J resetted."));
  EXPECT_EQ(Record().state, 4);
  EXPECT_EQ(Record().batch_applied, 3U);
  EXPECT_EQ(Record().batch_remaining, 0U);
}

TEST_F(EngineTest, RequestsThatDoNotFitTheStateChangeNothing) {
  RequestPause(jobs_, index_);
  RequestStop(jobs_, index_);
  runner_.Step(index_);
  EXPECT_EQ(jobs_.State(index_), JobState::Stopped);
  EXPECT_THAT(listener_.Take(), IsEmpty());
  EXPECT_THAT(script_.TakeTranscript(), IsEmpty());
}

// --- Passes ------------------------------------------------------------------------------------

TEST_F(EngineTest, EveryRowIsAppliedOnceByThePassAfterTheOneThatSawIt) {
  StartJob();
  // As the server's redo grows, each pass sees what lies above its mining start.
  std::vector<std::pair<std::int64_t, std::string>> redo;
  std::int64_t mining_from = 0;
  script_.on_executed = [&](const std::string& sql) {
    const auto at = sql.find("startscn=>");
    if (at == std::string::npos) return;
    mining_from = std::stoll(sql.substr(at + 10));
    ScriptedOci::Rows rows;
    for (const auto& [scn, text] : redo) {
      if (scn >= mining_from) rows.push_back({std::to_string(scn), text});
    }
    script_.Answer(kRedoQuery, rows);
  };
  std::vector<std::string> applied;
  const auto pass = [&] {
    NextPass();
    for (std::string& sql : Applied()) applied.push_back(std::move(sql));
  };
  redo = {{101, Insert("a")}, {105, Insert("b")}};
  pass();
  EXPECT_THAT(applied, IsEmpty());
  EXPECT_EQ(Record().cutoff_scn, 106);
  redo.push_back({104, Insert("c")});  // committed later, changed earlier
  redo.push_back({106, Insert("d")});
  pass();
  EXPECT_EQ(mining_from, 100);
  EXPECT_THAT(applied, ElementsAre(InsertOf("a"), InsertOf("b"), InsertOf("c")));
  pass();
  pass();
  pass();
  EXPECT_EQ(mining_from, 107) << "a range without rows is mined again";
  EXPECT_EQ(applied.size(), 4U);
  EXPECT_EQ(job_.run.applied_count, 4);
  EXPECT_EQ(Table("ORDERS").totalsynced, 4);
}

TEST_F(EngineTest, AppliesInOrderCountsAndSaves) {
  StartWithBatch({});
  script_.Answer(
      kRedoQuery,
      {{"10", Insert("1")},
       {"11", Insert("2", "SECRET")},
       {"12", "update \"SHOP\".\"ITEMS\" set \"A\" = '1' where \"A\" = '0'" + kRowAddress + ";"},
       {"13", "delete from \"SHOP\".\"UNLISTED\" where \"A\" = '0'" + kRowAddress + ";"},
       {"14", Insert("3", "OTHER")}});
  NextPass();
  EXPECT_THAT(
      Applied(),
      ElementsAre(InsertOf("1"), "UPDATE  ARCHIVE.ITEMS set \"A\" = '1' where \"A\" = '0'",
                  "DELETE FROM SHOP.UNLISTED where \"A\" = '0'", InsertOf("3", "SHOP.OTHER")));
  EXPECT_THAT(listener_.Take(), ElementsAre("fetched", kBegin, kDone));
  EXPECT_EQ(job_.run.applied_count, 4);
  EXPECT_EQ(job_.run.blocked_count, 1);
  EXPECT_EQ(Table("ORDERS").totalsynced, 1);
  EXPECT_EQ(Table("ITEMS").totalsynced, 1);
  EXPECT_EQ(Table("SECRET").RecordsBlocked, 1);
  EXPECT_TRUE(job_.run.pending_batch.Empty());
  EXPECT_EQ(Record().batch_pending, 0);
  EXPECT_FALSE(std::filesystem::exists(JobFile("commit.dat")));
  EXPECT_THAT(folder_.Read("jobs/J/J.xml"), HasSubstr("<totalsynced>1</totalsynced>"));
  EXPECT_THAT(folder_.Read("jobs/jobs.xml"), HasSubstr("<has_runned>true</has_runned>"));
}

TEST_F(EngineTest, SetsAsideKeepsMarksAndTellsWhatIsNotSafe) {
  StartJob();
  const std::string delete_items = "delete from \"SHOP\".\"ITEMS\" where ";
  const std::string address = "ROWID = 'AAABBBAAACCCDDDEEE'";
  const std::string gone = "insert into \"UNKNOWN\".\"OBJ# 7\"(\"COL 1\") values ('1')";
  const std::string odd = "insert into \"SHOP\".\"ORDERS\"(\"A\") values ('O'Hara');";
  script_.Answer(kRedoQuery, {{"10", "/* No SQL_REDO for temporary tables */"},
                              {"10", "-- nor here"},
                              {"11", delete_items + "\"A\" = '1';"},
                              {"12", delete_items + address + ";"},
                              {"13", "delete from \"SHOP\".\"SECRET\" where A = '1';"},
                              {"14", gone + ";"},
                              {"15", odd},
                              {"16", Insert("1")}});
  // Whatever keeps it from the disk fails the capture; the same is mined again.
  folder_.Write("jobs/J/setaside.sql/in the way", "");
  NextPass();
  EXPECT_THAT(listener_.Take(), ElementsAre(HasSubstr("setaside.sql"), kWrong));
  EXPECT_TRUE(job_.run.pending_batch.Empty());
  EXPECT_FALSE(Table("ITEMS").compare);
  std::filesystem::remove_all(JobFile("setaside.sql"));

  script_.FailOn("ServerAttach", "ORA-12541: TNS", 12541, 1);  // the destination's
  NextPass();
  EXPECT_THAT(folder_.ReadFlat("jobs/J/J.xml"), HasSubstr("<compare>true</compare>"));
  const std::string in_file =
      ". All are in " + JobFile("setaside.sql").string() + "; compare the table";
  const auto told = [&](const std::string& table, int count, int scn, Safety why,
                        const std::string& text) {
    return "e:Changes of " + table + " set aside and not applied: " + std::to_string(count) +
           ". The first, at SCN " + std::to_string(scn) + ": " + std::string(WhyUnsafe(why)) +
           ": " + text + in_file;
  };
  EXPECT_THAT(
      listener_.Take(),
      ElementsAre(told("SHOP.ITEMS", 2, 11, Safety::NoRowAddress, delete_items + "\"A\" = '1'"),
                  told("UNKNOWN.OBJ# 7", 1, 14, Safety::UnknownObject, gone),
                  told("SHOP.ORDERS", 1, 15, Safety::Unfinished, odd),
                  "i:Rows of the redo that are no statement left out: 2. The first: "
                  "/* No SQL_REDO for temporary tables */ (SCN 10)",
                  "fetched", HasSubstr("Connect destination fail"), kWrong));
  NextPass();
  EXPECT_THAT(listener_.Take(), ElementsAre(kBegin, kDone)) << "told once";
  EXPECT_THAT(Applied(), ElementsAre(InsertOf("1")));
  EXPECT_EQ(job_.run.blocked_count, 5);
  const auto entry = [](int scn, const std::string& table, Safety why, const std::string& text) {
    return "-- SCN " + std::to_string(scn) + ", " + table + ": " + std::string(WhyUnsafe(why)) +
           "\n" + text + "\n\n";
  };
  EXPECT_THAT(
      folder_.Read("jobs/J/setaside.sql"),
      EndsWith("\n\n" +
               entry(11, "SHOP.ITEMS", Safety::NoRowAddress, delete_items + "\"A\" = '1';") +
               entry(12, "SHOP.ITEMS", Safety::RowAddressAlone, delete_items + address + ";") +
               entry(14, "UNKNOWN.OBJ# 7", Safety::UnknownObject, gone + ";") +
               entry(15, "SHOP.ORDERS", Safety::Unfinished, odd)));
  EXPECT_TRUE(Table("ITEMS").compare && Table("ORDERS").compare);
  EXPECT_FALSE(Table("SECRET").compare);
}

TEST_F(EngineTest, BatchOfBlockedStatementsIsNothingSynchronized) {
  StartWithBatch({});
  script_.Answer(kRedoQuery, {{"10", Insert("1", "SECRET")}});
  NextPass();
  EXPECT_THAT(listener_.Take(), ElementsAre("fetched", kBegin, kNothing));
  EXPECT_EQ(job_.run.blocked_count, 1);
  EXPECT_EQ(job_.run.applied_count, 0);
}

TEST_F(EngineTest, ScheduleKeepsItsRhythmAndCountsFailuresFromNow) {
  StartJob();
  const LocalTime due = job_.run.next_due;
  clock_.now = LocalTime{due.ms - 1};
  runner_.Step(index_);
  EXPECT_THAT(script_.TakeTranscript(), IsEmpty()) << "not due yet";
  clock_.now = LocalTime{due.ms + 30'000};
  runner_.Step(index_);
  EXPECT_EQ(job_.run.next_due, AddMinutes(due, 5));
  script_.FailOn("ServerAttach", "ORA-12541: TNS:no listener");
  clock_.now = LocalTime{job_.run.next_due.ms + 30'000};
  runner_.Step(index_);
  EXPECT_EQ(job_.run.next_due, AddMinutes(clock_.now, 5));
  job_.run.next_due = LocalTime{};
  config_.sync_interval = 90;
  runner_.Step(index_);
  EXPECT_EQ(job_.run.next_due, AddMinutes(clock_.now, 90));
}

TEST_F(EngineTest, FailingCaptureKeepsThePositionsAndNoBatch) {
  StartWithBatch({});
  script_.Answer(kRedoQuery, {{"10", Insert("1")}, {"200", Insert("2")}});
  const std::string label = "ORA-00604: error";
  struct Case {
    std::string call, line;
    int skip;
  };
  for (const Case& c : std::vector<Case>{
           {"ServerAttach",
            "e:Connect source fail : OCIServerAttach : " + label + " when get command of J.", 0},
           {"StmtFetch2", "e:SetLogs fail : OCIStmtFetch2 : " + label, 0},
           {"StmtFetch2", "e:GetSqlStrings fail : OCIStmtFetch2 : " + label, 3}}) {
    SCOPED_TRACE(c.line);
    script_.FailOn(c.call, label, 604, c.skip);
    NextPass();
    EXPECT_THAT(listener_.Take(), ElementsAre(c.line, kWrong));
    EXPECT_TRUE(job_.run.pending_batch.Empty());
    EXPECT_EQ(Record().mining_start_scn, 100);
    EXPECT_EQ(Record().batch_pending, 0);
    EXPECT_EQ(jobs_.State(index_), JobState::Started);
  }
  EXPECT_THAT(folder_.Read("sqlerror.log"), HasSubstr(" OCIStmtFetch2 : " + label + "\n"));
  NextPass();
  EXPECT_THAT(Applied(), ElementsAre(InsertOf("1"))) << "mined again";
}

TEST_F(EngineTest, RedoThatBreaksOffIsNotTaken) {
  StartJob();
  script_.Answer(kRedoQuery,
                 {{"10", Insert("1")}, {"11", Insert("2").substr(0, 40) + std::string(4000, 'x')}});
  NextPass();
  EXPECT_THAT(listener_.Take(),
              Contains(HasSubstr("the redo ends inside a statement (SCN 11, SHOP.ORDERS)")));
  EXPECT_TRUE(job_.run.pending_batch.Empty());
  EXPECT_EQ(Record().cutoff_scn, 100);
}

TEST_F(EngineTest, BatchThatCannotBeKeptOnDiskIsNotBegun) {
  StartJob();
  folder_.Write("jobs/J/sqlcmds.txt/in the way", "");
  script_.Answer(kRedoQuery, {{"10", Insert("1")}});
  NextPass();
  EXPECT_THAT(
      listener_.Take(),
      ElementsAre(StartsWith("e:Can not create " + JobFile("sqlcmds.txt").string()), kWrong));
  EXPECT_THAT(Applied(), IsEmpty());
  std::filesystem::remove_all(JobFile("sqlcmds.txt"));
  folder_.Write("jobs/J/commit.dat/in the way", "");
  NextPass();
  EXPECT_THAT(listener_.Take(), Contains(StartsWith("e:Can not create")));
  EXPECT_THAT(Applied(), IsEmpty());
  std::filesystem::remove_all(JobFile("commit.dat"));
  NextPass();
  EXPECT_THAT(Applied(), ElementsAre(InsertOf("1")));
}

TEST_F(EngineTest, LostDestinationTakesThePassBack) {
  StartJob();
  script_.Answer(kRedoQuery,
                 {{"10", Insert("1")}, {"11", Insert("s", "SECRET")}, {"12", Insert("2")}});
  script_.FailOn("  " + InsertOf("2"), "ORA-03113: end-of-file");
  script_.FailOn("SessionEnd", "ORA-03114: not connected", 3114, 1);  // the capture's ends well
  NextPass();
  EXPECT_THAT(listener_.Take(), ElementsAre("fetched", kBegin, HasSubstr("ORA-03113"),
                                            HasSubstr("ORA-03114"), kWrong));
  EXPECT_EQ(Progress().batch_remaining, 3U);
  EXPECT_EQ(Progress().batch_applied, 0U);
  EXPECT_EQ(job_.run.applied_count + job_.run.blocked_count, 0);
  EXPECT_EQ(Table("ORDERS").totalsynced + Table("SECRET").RecordsBlocked, 0);
  EXPECT_EQ(Record().batch_remaining, 3U);
  EXPECT_FALSE(std::filesystem::exists(JobFile("commit.dat")));
  script_.TakeExecuted();
  NextPass();
  EXPECT_THAT(Applied(), ElementsAre(InsertOf("1"), InsertOf("2")));
  EXPECT_EQ(Table("ORDERS").totalsynced, 2);
}

TEST_F(EngineTest, ProgramThatDiesInAPassComesBackToItsCommitPoint) {
  StartJob();
  script_.Answer(kRedoQuery, {{"10", Insert("1")}, {"11", Insert("2")}, {"12", Insert("3")}});
  script_.FailOn("  " + InsertOf("2"), "ORA-01653: unable to extend table");
  NextPass();  // applies and commits the first
  // What a killed program leaves while the second is on its way: both files of that moment.
  std::string commit_point;
  RunRecord provisional;
  script_.on_executed = [&](const std::string& sql) {
    if (sql != InsertOf("3")) return;
    commit_point = folder_.Read("jobs/J/commit.dat");
    provisional = Record();
  };
  NextPass();
  EXPECT_EQ(provisional.batch_applied, 2U);
  folder_.Write("jobs/J/commit.dat", commit_point);
  SyncJob again;
  ConfigOf(again).name = "J";
  const RestoredRun restored =
      RestoreRunState(folder_.Files(), again, JobFolder(folder_.Path(), "J"), RestoreMode::Resume);
  EXPECT_EQ(restored.progress.batch_applied, 1U);
  EXPECT_EQ(restored.progress.batch_remaining, 2U);
  EXPECT_EQ(again.run.applied_count, 1);
}

// It holds the rows below the cut-off and nothing above: the next capture starts there.
TEST_F(EngineTest, BatchThatIsReadBackMovesBothPositionsToTheCutOff) {
  StartJob();
  const RunRecord record{.state = 2, .batch_remaining = 2, .cutoff_scn = 500, .batch_pending = 1};
  folder_.Write("jobs/J/block.dat", {reinterpret_cast<const char*>(&record), sizeof record});
  folder_.Write("jobs/J/sqlcmds.txt", "insert into SHOP.ORDERS values (1)\n\n");
  const RestoredRun restored =
      RestoreRunState(folder_.Files(), job_, JobFolder(folder_.Path(), "J"), RestoreMode::Resume);
  jobs_.SetState(index_, JobState::Started, restored.progress);
  NextPass();
  EXPECT_EQ(job_.run.applied_count + job_.run.blocked_count, 2);
  EXPECT_EQ(Record().mining_start_scn, 500);
  EXPECT_EQ(Record().cutoff_scn, 500);
}

TEST_F(EngineTest, RequestStopsAPassBehindTheStatementInHand) {
  StartJob();
  script_.Answer(kRedoQuery, {{"10", Insert("1")}, {"11", Insert("2")}, {"12", Insert("3")}});
  script_.on_executed = [&](const std::string& sql) {
    if (sql == InsertOf("2")) RequestPause(jobs_, index_);
  };
  clock_.now = job_.run.next_due;
  runner_.Step(index_);
  EXPECT_THAT(listener_.Take(), ElementsAre("fetched", kBegin)) << "no error, no result";
  EXPECT_EQ(job_.run.next_due, clock_.now) << "unchanged";
  EXPECT_FALSE(std::filesystem::exists(JobFile("commit.dat")));
  runner_.Step(index_);
  EXPECT_EQ(jobs_.State(index_), JobState::Paused);
  std::string reason;
  script_.TakeExecuted();
  ASSERT_TRUE(RequestRun(context_, index_, reason));
  runner_.Step(index_);
  EXPECT_THAT(Applied(), ElementsAre(InsertOf("3")));
}

TEST_F(EngineTest, EndOfTheProgramStopsAPassAndKeepsItStarted) {
  StartJob();
  script_.Answer(kRedoQuery, {{"10", Insert("1")}, {"11", Insert("2")}});
  script_.on_executed = [&](const std::string& sql) {
    if (sql == InsertOf("1")) runner_.RequestEnd();
  };
  NextPass();
  EXPECT_EQ(jobs_.State(index_), JobState::Started);
  EXPECT_EQ(Record().batch_remaining, 1U);
  EXPECT_THAT(listener_.Take(), ElementsAre("fetched", kBegin));
}

TEST_F(EngineTest, DebugLines) {
  StartWithBatch({});
  settings_.debug = true;
  script_.Answer(kRedoQuery, {{"10", Insert("1", "ITEMS")}, {"11", Insert("2", "SECRET")}});
  NextPass();
  EXPECT_THAT(listener_.Take(),
              ElementsAre("i:100, 100", "fetched", kBegin, "i:Source Schema is SHOP",
                          "i:Block Opreaton: INSERT INTO SHOP.SECRET", kDone));
  EXPECT_THAT(folder_.Read("ravelkin.log"), HasSubstr(" 10, insert into \"SHOP\".\"ITEMS\""));
  EXPECT_THAT(folder_.Read("ravelkin.log"), HasSubstr(" INSERT INTO ARCHIVE.ITEMS"));
}

// Every call of a whole life may fail: nothing is lost, nothing comes twice, no handle stays.
TEST_F(EngineTest, AnyFailingCallOnlyDelays) {
  script_.Answer(kRedoQuery, {{"10", Insert("1")}, {"11", Insert("2")}, {"12", Insert("3")}});
  for (int skip = 0;; ++skip) {
    SCOPED_TRACE(skip);
    jobs_.SetState(index_, JobState::Stopped, {});
    std::string reason;
    ASSERT_TRUE(RequestRun(context_, index_, reason));
    runner_.Step(index_);
    script_.TakeTranscript();
    std::vector<std::string> open, committed;
    bool lost = false;
    script_.FailOn("(", "ORA-00600: internal error", 600, skip);
    script_.on_executed = [&](const std::string& sql) {
      if (sql.starts_with("INSERT")) open.push_back(sql);
    };
    bool failed_once = false;
    for (int pass = 0; pass < 3 && job_.run.applied_count < 3; ++pass) {
      NextPass();
      // The server's side: a session whose end failed has lost its transaction.
      for (const std::string& line : listener_.Take()) {
        lost = lost || line.find("The end of the session on DES failed") != std::string::npos;
        failed_once = failed_once || line.starts_with("e:");
      }
      if (!lost) committed.insert(committed.end(), open.begin(), open.end());
      open.clear();
      lost = false;
    }
    ASSERT_EQ(committed, (std::vector<std::string>{InsertOf("1"), InsertOf("2"), InsertOf("3")}));
    ASSERT_EQ(Table("ORDERS").totalsynced % 3, 0);
    ASSERT_EQ(script_.LiveHandles(), 0U);
    script_.on_executed = nullptr;
    script_.ForgetFailures();
    if (!failed_once && skip > 100) break;  // past the last call of a pass
    ASSERT_LT(skip, 200);
  }
}

TEST_F(EngineTest, SweepServesEveryJobAndEnds) {
  std::string reason;
  ASSERT_TRUE(RequestRun(context_, index_, reason));
  config_.sync_interval = 0;
  HWorkThread thread(runner_, jobs_, std::chrono::milliseconds(1));
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (job_.run.applied_count == 0 && std::chrono::steady_clock::now() < limit) {
    std::this_thread::yield();
    if (jobs_.State(index_) == JobState::Started) break;
  }
  EXPECT_EQ(jobs_.State(index_), JobState::Started);
  thread.Terminate();
  EXPECT_TRUE(thread.WaitFor(std::chrono::seconds(20)));
}

}  // namespace
}  // namespace quillmere
