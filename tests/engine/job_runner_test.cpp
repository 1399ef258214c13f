// SPDX-License-Identifier: MIT
#include "engine/job_runner.h"

#include <gmock/gmock.h>

#include <fstream>

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

const std::string kStarted = "i:Job J started.";
const std::string kNothing = "i:Nothing synchronized in this interval of  J";
const std::string kDone = "i:Successfully synchronized a batch of J";
const std::string kBegin = "i:Begin synchronize a new batch";
const std::string kContinue = "i:Continue synchronize a old batch";
const std::string kWrong = "e:Something wrong in this interval of J";

// --- The calls and what happens on the disk between them, in order -----------------------------

class Ledger : public EngineTest {
 protected:
  Ledger() {
    files_.on_operation = [this](const testing::FileOperation& operation) {
      constexpr std::string_view kOnlyAsk = "look list read close";
      if (kOnlyAsk.find(operation.what) == std::string_view::npos) {
        script_.Note("    " + operation.Text());
      }
      return FileStatus();
    };
  }
  // What was noted since the last look is transcripts/<name>.txt.
  void ExpectLedger(const std::string& name) {
    std::string found;
    for (const std::string& line : script_.TakeTranscript()) found += line + "\n";
    std::ifstream file(std::string(TRANSCRIPTS) + "/" + name + ".txt");
    EXPECT_EQ(found, std::string(std::istreambuf_iterator<char>(file), {})) << name;
  }
};

TEST_F(Ledger, OfAStartAPassItsContinuationAndAFailedEnd) {
  std::string reason;
  ASSERT_TRUE(RequestRun(program_.context, 0, reason));
  Step();
  ExpectLedger("start");
  EXPECT_THAT(listener_.Take(), ElementsAre(kStarted));

  script_.Answer(kRedoQuery,
                 {{"90", Insert("1")}, {"91", Insert("x", "SECRET")}, {"92", Insert("2")}});
  script_.FailOn("  " + InsertOf("2"), "ORA-00001: unique constraint\n");
  NextPass();
  ExpectLedger("pass_with_a_refused_statement");
  EXPECT_THAT(
      listener_.Take(),
      ElementsAre("fetched", kBegin,
                  "e:Execute sql fail : OCIStmtExecute : ORA-00001: unique constraint", kWrong));

  script_.FailOn("SessionEnd", "ORA-03114: not connected");
  NextPass();
  ExpectLedger("failed_end");
  EXPECT_THAT(listener_.Take(), ElementsAre(kContinue,
                                            HasSubstr("The end of the session on DES failed : "
                                                      "OCISessionEnd : ORA-03114: not connected"),
                                            kWrong));
  NextPass();
  ExpectLedger("continued_pass");
  EXPECT_THAT(listener_.Take(), ElementsAre(kContinue, kDone));
}

// --- States ------------------------------------------------------------------------------------

TEST_F(EngineTest, StartTakesTheCurrentScnAndForgetsTheOldBatch) {
  job_.run.pending_batch.Append("left over");
  job_.run.applied_count = 7;
  job_.run.batch_pending = 1;
  const std::pair<std::string, std::string> failures[] = {
      {"ServerAttach", "e:Connect source fail : OCIServerAttach : ORA-12154: TNS"},
      {kScnQuery + "\"", "e:GetLastScn fail : OCIStmtPrepare : ORA-12154: TNS"}};
  std::string reason;
  for (const auto& [call, line] : failures) {
    script_.FailOn(call, "ORA-12154: TNS");
    ASSERT_TRUE(RequestRun(program_.context, 0, reason));
    EXPECT_EQ(program_.State(), JobState::Starting);
    Step();
    EXPECT_EQ(program_.State(), JobState::Stopped);
    EXPECT_EQ(Record().state, 4);
    EXPECT_THAT(listener_.Take(), ElementsAre(line, "e:Job J start failed."));
  }
  SchemaMap& schemas = program_.Config().schemas;
  schemas["SHOP"].Append({.name = "left out", .includeflag = false});
  schemas["SHOP"].Append({.name = "Odd"});
  schemas["crm"].Append({.name = "VISIT", .desowner = "crm"});
  schemas["crm"].Append({.name = "MOVED", .desowner = "crm2"});
  ASSERT_TRUE(RequestRun(program_.context, 0, reason));
  Step();
  EXPECT_THAT(
      listener_.Take(),
      ElementsAre(HasSubstr("names need quotes: 2 (SHOP.Odd, crm.VISIT). A job"), kStarted));
  EXPECT_EQ(program_.State(), JobState::Started);
  EXPECT_TRUE(program_.Config().has_runned);
  EXPECT_TRUE(job_.run.pending_batch.Empty());
  EXPECT_EQ(job_.run.next_due, AddMinutes(clock_.now, 5));
  const RunRecord record = Record();
  EXPECT_EQ(record.state, 2);
  EXPECT_EQ(record.mining_start_scn, 100);
  EXPECT_EQ(record.cutoff_scn, 100);
  EXPECT_EQ(record.applied_count + record.batch_pending, 0);
}

TEST_F(EngineTest, RequestsThatDoNotFitTheStateChangeNothing) {
  RequestPause(program_.jobs, 0);
  RequestStop(program_.jobs, 0);
  program_.Config().table_list_fetched = false;
  std::string reason;
  EXPECT_FALSE(RequestRun(program_.context, 0, reason));
  EXPECT_EQ(reason, "Not get table list yet, refresh first please.");
  Step();
  EXPECT_EQ(program_.State(), JobState::Stopped);
  EXPECT_THAT(listener_.Take(), IsEmpty());
  EXPECT_THAT(script_.TakeTranscript(), IsEmpty());
}

TEST_F(EngineTest, PauseContinueAndStopKeepWhatTheyShould) {
  StartJob();
  const LocalTime due = job_.run.next_due;
  RequestPause(program_.jobs, 0);
  Step();
  EXPECT_THAT(listener_.Take(), ElementsAre("i:Job J temporary stopped."));
  EXPECT_EQ(Record().state, 6);
  // The record comes first: as soon as the state is Started, the file is the worker's.
  bool full = true;
  files_.on_operation = [&](const testing::FileOperation& operation) {
    EXPECT_EQ(program_.State(), JobState::Paused) << operation.Text();
    return full && operation.what == "write" ? FileStatus{FileCode::NoSpace, "full"} : FileStatus();
  };
  std::string reason;
  EXPECT_FALSE(RequestRun(program_.context, 0, reason));
  EXPECT_EQ(reason, "Can not create /work/jobs/J/block.dat");
  EXPECT_EQ(program_.State(), JobState::Paused);
  full = false;
  ASSERT_TRUE(RequestRun(program_.context, 0, reason));
  files_.on_operation = nullptr;
  EXPECT_EQ(program_.State(), JobState::Started);
  EXPECT_EQ(Record().state, 2) << "written at once";
  EXPECT_EQ(job_.run.next_due, due);
  program_.jobs.SetProgress(0, {3, 4});
  RequestStop(program_.jobs, 0);
  Step();
  EXPECT_THAT(listener_.Take(), ElementsAre("i:J resetted."));
  EXPECT_EQ(Record().state, 4);
  EXPECT_EQ(Record().batch_applied, 3U);
  EXPECT_EQ(Record().batch_remaining, 0U);
}

// --- Passes ------------------------------------------------------------------------------------

TEST_F(EngineTest, AppliesInOrderCountsAndSaves) {
  StartJob();
  NextPass();
  EXPECT_THAT(listener_.Take(), ElementsAre(kNothing));
  script_.Answer(
      kRedoQuery,
      {{"10", Insert("1")},
       {"11", Insert("2", "SECRET")},
       {"12", "update \"SHOP\".\"ITEMS\" set \"A\" = '1' where \"A\" = '0'" + kRowAddress + ";"},
       {"13", "delete from \"SHOP\".\"UNLISTED\" where \"A\" = '0'" + kRowAddress + ";"},
       {"14", Insert("3", "OTHER")},
       {"15", "delete from \"SHOP\".\"ORDERS\";"}});
  NextPass();
  EXPECT_THAT(
      Applied(),
      ElementsAre(InsertOf("1"), "UPDATE  ARCHIVE.ITEMS set \"A\" = '1' where \"A\" = '0'",
                  "DELETE FROM SHOP.UNLISTED where \"A\" = '0'", InsertOf("3", "SHOP.OTHER")));
  const std::vector<std::string> lines = listener_.Take();
  EXPECT_THAT(
      lines[0],
      HasSubstr("SHOP.ORDERS set aside and not applied: 1. The first, at SCN 15: it does not"));
  EXPECT_THAT(lines.back(), kDone);
  EXPECT_EQ(job_.run.applied_count, 4);
  EXPECT_EQ(job_.run.blocked_count, 2);
  EXPECT_EQ(program_.Table("ORDERS").totalsynced, 1);
  EXPECT_EQ(program_.Table("ITEMS").totalsynced, 1);
  EXPECT_EQ(program_.Table("SECRET").RecordsBlocked, 1);
  EXPECT_THAT(Read("jobs/J/J.xml"), HasSubstr("<totalsynced>1</totalsynced>"));
  EXPECT_THAT(Read("jobs/jobs.xml"), HasSubstr("<has_runned>true</has_runned>"));
  EXPECT_THAT(Read("ravelkin.log"), HasSubstr("delete from \"SHOP\".\"ORDERS\""));

  program_.settings.debug = true;
  script_.Answer(kRedoQuery, {{"10", Insert("1", "ITEMS")}, {"11", Insert("2", "SECRET")}});
  NextPass();
  EXPECT_THAT(listener_.Take(),
              ElementsAre("i:100, 16", "fetched", kBegin, "i:Source Schema is SHOP",
                          "i:Block Opreaton: INSERT INTO SHOP.SECRET", kDone));
  EXPECT_THAT(Read("ravelkin.log"), HasSubstr(" 10, insert into \"SHOP\".\"ITEMS\""));
  EXPECT_THAT(Read("ravelkin.log"), HasSubstr(" INSERT INTO ARCHIVE.ITEMS"));

  program_.settings.debug = false;
  script_.Answer(kRedoQuery, {{"11", Insert("2", "SECRET")}});
  NextPass();
  EXPECT_THAT(listener_.Take(), ElementsAre("fetched", kBegin, kNothing)) << "all of it blocked";
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
  files_.on_operation = [](const testing::FileOperation& operation) {
    const bool refused = operation.Text() == "append /work/jobs/J/setaside.sql";
    return refused ? FileStatus{FileCode::NoSpace, "full"} : FileStatus();
  };
  NextPass();
  EXPECT_THAT(listener_.Take(), ElementsAre(HasSubstr("setaside.sql"), kWrong));
  EXPECT_TRUE(job_.run.pending_batch.Empty());
  EXPECT_FALSE(program_.Table("ITEMS").compare);
  files_.on_operation = nullptr;

  script_.FailOn("ServerAttach", "ORA-12541: TNS", 12541, 1);  // the destination's
  NextPass();
  EXPECT_THAT(Read("jobs/J/J.xml"), HasSubstr("<compare>true</compare>"));
  const std::string in_file = ". All are in /work/jobs/J/setaside.sql; compare the table";
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
      Read("jobs/J/setaside.sql"),
      EndsWith("\n\n" +
               entry(11, "SHOP.ITEMS", Safety::NoRowAddress, delete_items + "\"A\" = '1';") +
               entry(12, "SHOP.ITEMS", Safety::RowAddressAlone, delete_items + address + ";") +
               entry(14, "UNKNOWN.OBJ# 7", Safety::UnknownObject, gone + ";") +
               entry(15, "SHOP.ORDERS", Safety::Unfinished, odd)));
  EXPECT_TRUE(program_.Table("ITEMS").compare && program_.Table("ORDERS").compare);
  EXPECT_FALSE(program_.Table("SECRET").compare);
}

TEST_F(EngineTest, ScheduleKeepsItsRhythmAndCountsFailuresFromNow) {
  StartJob();
  const LocalTime due = job_.run.next_due;
  clock_.now = LocalTime{due.ms - 1};
  Step();
  EXPECT_THAT(script_.TakeTranscript(), IsEmpty()) << "not due yet";
  clock_.now = LocalTime{due.ms + 30'000};
  Step();
  EXPECT_EQ(job_.run.next_due, AddMinutes(due, 5));
  script_.FailOn("ServerAttach", "ORA-12541: TNS:no listener");
  clock_.now = LocalTime{job_.run.next_due.ms + 30'000};
  Step();
  EXPECT_EQ(job_.run.next_due, AddMinutes(clock_.now, 5));
  job_.run.next_due = LocalTime{};
  program_.Config().sync_interval = 90;
  Step();
  EXPECT_EQ(job_.run.next_due, AddMinutes(clock_.now, 90));
}

TEST_F(EngineTest, WhatKeepsABatchFromBeingBegunIsTold) {
  StartJob();
  NextPass();
  script_.Answer(kRedoQuery, {{"10", Insert("1")}, {"200", Insert("2")}});
  listener_.Take();
  const std::string label = "ORA-00604: error";
  std::string full;  // the name in whose replacement the disk is full
  files_.on_operation = [&](const testing::FileOperation& operation) {
    const bool refused = !full.empty() && operation.what == "append" &&
                         operation.path.find(full) != std::string::npos;
    return refused ? FileStatus{FileCode::NoSpace, "full"} : FileStatus();
  };
  const struct {
    std::string call;
    int skip;
    std::string file, line;
  } rows[] = {
      {"ServerAttach", 0, "",
       "e:Connect source fail : OCIServerAttach : " + label + " when get command of J."},
      {"StmtFetch2", 0, "", "e:SetLogs fail : OCIStmtFetch2 : " + label},
      {"StmtFetch2", 3, "", "e:GetSqlStrings fail : OCIStmtFetch2 : " + label},
      {"", 0, "sqlcmds.txt",
       "e:Can not create /work/jobs/J/sqlcmds.txt (Can not write /work/jobs/J/sqlcmds.txt: full)"},
      {"\"DES\"", 0, "",
       "e:Before job: J synchronize, Connect destination fail : OCIServerAttach : " + label},
      {"", 0, "commit.dat",
       "e:Can not create /work/jobs/J/commit.dat (Can not write /work/jobs/J/commit.dat: full)"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.line);
    if (!row.call.empty()) script_.FailOn(row.call, label, 604, row.skip);
    full = row.file;
    NextPass();
    std::vector<std::string> lines = listener_.Take();
    std::erase(lines, "fetched");
    EXPECT_THAT(lines, ElementsAre(row.line, kWrong));
    EXPECT_EQ(Record().mining_start_scn, 100);
    EXPECT_EQ(program_.State(), JobState::Started);
  }
  EXPECT_THAT(Read("sqlerror.log"), HasSubstr(" OCIStmtFetch2 : " + label + "\n"));
  EXPECT_THAT(Applied(), IsEmpty());
  full.clear();
  NextPass();
  EXPECT_THAT(Applied(), ElementsAre(InsertOf("1"))) << "mined again";
  script_.Answer(kRedoQuery, {{"11", Insert("2").substr(0, 40) + std::string(4000, 'x')}});
  NextPass();
  EXPECT_THAT(listener_.Take(),
              Contains(HasSubstr("the redo ends inside a statement (SCN 11, SHOP.ORDERS)")));
}

// As long as the record that was taken back is not on the disk, the commit point has to say it.
TEST_F(EngineTest, ARecordThatIsNotTakenBackKeepsTheCommitPoint) {
  for (const std::string what : {"write", "flush"}) {
    StartJob();
    script_.Answer(kRedoQuery, {{"90", Insert("1")}});
    script_.FailOn("SessionEnd", "ORA-03114: not connected", 3114, 1);  // the capture's ends well
    bool ended = false;
    script_.on_call = [&](const std::string& line) {
      ended = ended || (line.starts_with("SessionEnd") && Read("jobs/J/commit.dat") != "(none)");
      return "";
    };
    files_.on_operation = [&](const testing::FileOperation& operation) {
      const bool refused = ended && operation.Text() == what + " /work/jobs/J/block.dat";
      return refused ? FileStatus{FileCode::Failed, "Input/output error"} : FileStatus();
    };
    NextPass();
    files_.on_operation = nullptr;
    script_.on_call = nullptr;
    EXPECT_NE(Read("jobs/J/commit.dat"), "(none)") << what;
    EXPECT_EQ(job_.run.applied_count, 0);
    script_.TakeExecuted();
    NextPass();
    EXPECT_EQ(Read("jobs/J/commit.dat"), "(none)");
    EXPECT_THAT(Applied(), ElementsAre(InsertOf("1")));
    RequestStop(program_.jobs, 0);
    Step();
  }
}

TEST_F(EngineTest, RequestStopsAPassBehindTheStatementInHand) {
  StartJob();
  script_.Answer(kRedoQuery, {{"10", Insert("1")}, {"11", Insert("2")}, {"12", Insert("3")}});
  std::string last = InsertOf("1");
  script_.on_executed = [&](const std::string& sql) {
    if (sql == last) RequestPause(program_.jobs, 0);
  };
  const LocalTime due = job_.run.next_due;
  NextPass();
  EXPECT_THAT(listener_.Take(), ElementsAre("fetched", kBegin)) << "no error, no result";
  EXPECT_EQ(job_.run.next_due, due) << "unchanged";
  EXPECT_EQ(Read("jobs/J/commit.dat"), "(none)");
  Step();
  EXPECT_EQ(program_.State(), JobState::Paused);
  std::string reason;
  ASSERT_TRUE(RequestRun(program_.context, 0, reason));
  last = InsertOf("3");
  Step();
  EXPECT_THAT(Applied(), ElementsAre(InsertOf("1"), InsertOf("2"), InsertOf("3")));
  EXPECT_EQ(Record().batch_pending, 0) << "behind the last statement nothing is left to stop";
  EXPECT_EQ(program_.State(), JobState::Pausing);
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
