#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "oracle/H_oracle.h"
#include "support/scripted_oci.h"

namespace quillmere {
namespace {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::ScriptedOci;
using ::testing::StartsWith;

const std::string kScnQuery = "select max(ktuxescnw * power(2,32) + ktuxescnb) from x$ktuxe";
const std::string kMembersQuery = "select member from v$logfile where type='ONLINE'";
const std::string kRedoQuery =
    "select scn, sql_redo from v$logmnr_contents where ( operation='INSERT' or operation='UPDATE' "
    "or operation='DELETE' ) and ( seg_owner NOT IN ('SYS', 'SYSTEM') ) ";

class LogMiner : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(session_.Connect({"DB", "u", "p", false}));
    script_.TakeTranscript();
  }

  ScriptedOci script_;
  OciLibrary library_{script_.Api()};
  OracleSession session_{library_};
};

struct Collector final : RedoSink {
  bool OnRedo(std::int64_t scn, std::string_view text, std::string& reason) override {
    rows.emplace_back(scn, text);
    reason = "the sink is full";
    return rows.size() < most;
  }
  bool OnEnd(std::string&) override { return true; }
  std::vector<std::pair<std::int64_t, std::string>> rows;
  std::size_t most = 1000;
};

TEST_F(LogMiner, ReadsTheCurrentScn) {
  script_.Answer(kScnQuery, {{"9223372036854775807 "}});
  std::int64_t scn = 0;
  ASSERT_TRUE(session_.ReadCurrentScn(scn)) << session_.LastError();
  EXPECT_EQ(scn, 9223372036854775807LL);
  EXPECT_THAT(script_.TakeTranscript(),
              ElementsAre("HandleAlloc(env1, stm, 0)",
                          "StmtPrepare(stm1, err1, \"" + kScnQuery + "\", 1, 0)",
                          "DefineByPos(stm1, err1, 1, 20, 1, ind, len, 0, 0)",
                          "StmtExecute(svc1, stm1, err1, 1, 0, 0)", "HandleFree(stm1, stm)"));
}

TEST_F(LogMiner, RefusesAnScnThatIsNone) {
  for (const ScriptedOci::Cell& cell :
       {ScriptedOci::Cell(), ScriptedOci::Cell("1.5E+20"), ScriptedOci::Cell("12x"),
        ScriptedOci::Cell("9223372036854775808")}) {
    script_.Answer(kScnQuery, {{cell}});
    std::int64_t scn = 0;
    EXPECT_FALSE(session_.ReadCurrentScn(scn));
    EXPECT_THAT(session_.LastError(), HasSubstr("not a number"));
  }
  script_.Answer(kScnQuery, {});
  std::int64_t scn = 0;
  EXPECT_FALSE(session_.ReadCurrentScn(scn));
  EXPECT_EQ(session_.LastError(), "OCIStmtExecute : ORA-01403: no data found");
}

TEST_F(LogMiner, GivesEveryOnlineLogAndStarts) {
  script_.Answer(kMembersQuery, {{"/u01/redo01.log   "}, {"/u01/o'hara.log"}});
  ASSERT_TRUE(session_.SetLogs(4711)) << session_.LastError();
  EXPECT_THAT(
      script_.TakeExecuted(),
      ElementsAre(kMembersQuery,
                  "begin dbms_logmnr.add_logfile(logfilename=>'/u01/redo01.log', "
                  "options=>DBMS_LOGMNR.NEW); end;",
                  "begin dbms_logmnr.add_logfile(logfilename=>'/u01/o''hara.log', "
                  "options=>DBMS_LOGMNR.ADDFILE); end;",
                  "begin dbms_logmnr.start_logmnr(options=>dbms_logmnr.dict_from_online_catalog + "
                  "dbms_logmnr.committed_data_only, startscn=>4711); end;"));
}

// A mirrored log's second member is the same log again.
TEST_F(LogMiner, SkipsALogThatTheServerHasAlready) {
  script_.Answer(kMembersQuery, {{"a1"}, {"a2"}, {"b1"}});
  script_.FailOn("StmtExecute", "ORA-01289: le fichier est deja la\n", 1289, 2);
  EXPECT_TRUE(session_.SetLogs(7)) << session_.LastError();
  EXPECT_THAT(script_.TakeExecuted(), ElementsAre(_, HasSubstr("'a1', options=>DBMS_LOGMNR.NEW"),
                                                  HasSubstr("'b1', options=>DBMS_LOGMNR.ADDFILE"),
                                                  HasSubstr("startscn=>7")));

  script_.FailOn("StmtExecute", "ORA-01284: file b1 (see ORA-01289)\n", 1284, 3);
  EXPECT_FALSE(session_.SetLogs(7));
  EXPECT_EQ(session_.LastErrorCode(), 1284);
}

TEST_F(LogMiner, MinesPiecesByteForByteAndEnds) {
  const std::string long_piece(16000, ' ');
  script_.Answer(kRedoQuery, {{"10", "a  "}, {"11", long_piece}, {"12", std::nullopt}});
  Collector sink;
  ASSERT_TRUE(session_.MineRedo(sink)) << session_.LastError();
  EXPECT_THAT(sink.rows,
              ElementsAre(std::pair(10, "a  "), std::pair(11, long_piece), std::pair(12, "")));
  const std::vector<std::string> calls = script_.TakeTranscript();
  EXPECT_EQ(calls[2], "StmtPrepare(stm1, err1, \"" + kRedoQuery + "\", 1, 0)");
  EXPECT_THAT(calls[3], StartsWith("AttrSet(stm1, stm, 500, 0, 11"));
  EXPECT_THAT(script_.TakeExecuted(),
              ElementsAre(kRedoQuery, "begin dbms_logmnr.end_logmnr(); end;"));
}

TEST_F(LogMiner, LosesNoByteSilently) {
  struct Case {
    std::string what;
    ScriptedOci::Rows rows;
    std::string reason;
  };
  for (const Case& broken :
       std::vector<Case>{{"piece too long", {{"10", std::string(16001, 'x')}}, "longer than 16000"},
                         {"scn missing", {{std::nullopt, "x"}}, "not a number"},
                         {"sink refuses", {{"1", "a"}, {"2", "b"}}, "the sink is full"}}) {
    SCOPED_TRACE(broken.what);
    script_.Answer(kRedoQuery, broken.rows);
    Collector sink;
    sink.most = 2;
    EXPECT_FALSE(session_.MineRedo(sink));
    EXPECT_THAT(session_.LastError(), HasSubstr(broken.reason));
    EXPECT_THAT(script_.TakeExecuted(), ElementsAre(kRedoQuery))
        << "the mining session is not ended";
  }
}

struct FailingStep {
  const char* call;
  const char* label;
  int skip = 0;
};

TEST_F(LogMiner, EveryStepFailsUnderItsOwnLabel) {
  script_.Answer(kScnQuery, {{"1"}});
  script_.Answer(kMembersQuery, {{"a"}, {"b"}});
  script_.Answer(kRedoQuery, {{"1", "x"}});
  const auto expect_label = [&](const FailingStep& step, const auto& operation) {
    SCOPED_TRACE(std::string(step.call) + " " + step.label);
    const std::size_t live = script_.LiveHandles();
    script_.FailOn(step.call, "ORA-01291: missing logfile\n", 1291, step.skip);
    EXPECT_FALSE(operation());
    EXPECT_EQ(session_.LastError(), step.label + std::string("ORA-01291: missing logfile"));
    EXPECT_EQ(script_.LiveHandles(), live);
  };
  for (const FailingStep& step : {FailingStep{"HandleAlloc", "OCIHandleAlloc(Stmt) : "},
                                  FailingStep{"StmtPrepare", "OCIStmtPrepare : "},
                                  FailingStep{"DefineByPos", "OCIDefineByPos : "},
                                  FailingStep{"StmtExecute", "OCIStmtExecute : "}}) {
    std::int64_t scn = 0;
    expect_label(step, [&] { return session_.ReadCurrentScn(scn); });
  }
  for (const FailingStep& step :
       {FailingStep{"HandleAlloc", "OCIHandleAlloc(Stmt1) : "},
        FailingStep{"HandleAlloc", "OCIHandleAlloc(Stmt2) : ", 1},
        FailingStep{"v$logfile where type='ONLINE'\"", "OCIStmtPrepare(SqlStr1) : "},
        FailingStep{"DefineByPos", "OCIDefineByPos : "},
        FailingStep{"StmtExecute", "OCIStmtExecute(Stmthp1) : "},
        FailingStep{"StmtFetch2", "OCIStmtFetch2 : ", 1},
        FailingStep{"ADDFILE); end;\"", "OCIStmtPrepare(dbms_logmnr.add_logfile) : "},
        FailingStep{"StmtExecute", "OCIStmtExecute(dbms_logmnr.add_logfile) : ", 2},
        FailingStep{"StmtPrepare", "OCIStmtPrepare(dbms_logmnr.start_logmnr) : ", 3},
        FailingStep{"StmtExecute", "OCIStmtExecute(dbms_logmnr.start_logmnr) : ", 3}}) {
    expect_label(step, [&] { return session_.SetLogs(1); });
  }
  for (const FailingStep& step :
       {FailingStep{"HandleAlloc", "OCIHandleAlloc(Stmt1) : "},
        FailingStep{"HandleAlloc", "OCIHandleAlloc(Stmt2) : ", 1},
        FailingStep{"StmtPrepare", "OCIStmtPrepare(SqlStr1) : "},
        FailingStep{"DefineByPos", "OCIDefineByPos : "},
        FailingStep{"DefineByPos", "OCIDefineByPos : ", 1},
        FailingStep{"StmtExecute", "OCIStmtExecute(Stmthp1) : "},
        FailingStep{"StmtFetch2", "OCIStmtFetch2 : "},
        FailingStep{"StmtPrepare", "OCIStmtPrepare(dbms_logmnr.end_logmnr) : ", 1},
        FailingStep{"StmtExecute", "OCIStmtExecute(dbms_logmnr.end_logmnr) : ", 1}}) {
    Collector sink;
    expect_label(step, [&] { return session_.MineRedo(sink); });
  }
}

}  // namespace
}  // namespace quillmere
