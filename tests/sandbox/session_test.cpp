// SPDX-License-Identifier: MIT
// Handles, fetching, cut connections, the tool, and texts that are no SQL.
#include <atomic>
#include <ctime>
#include <random>
#include <thread>

#include "sandbox/client.h"

namespace quillmere::sandbox_test {

namespace {

using namespace oci;

class SessionTest : public SandboxTest {
 protected:
  SessionTest() {
    EXPECT_EQ(client_.ConnectSys("SRC"), "");
    EXPECT_EQ(client_.ExecuteAll({"create user app identified by app",
                                  "create table app.t (id number primary key, v varchar2(20))",
                                  "insert into app.t values (1, 'abcdef')",
                                  "insert into app.t values (2, null)", "commit"}),
              "");
  }

  Client client_;
};

TEST_F(SessionTest, WrongHandlesAreKnown) {
  void* freed = nullptr;
  ASSERT_EQ(OCIHandleAlloc(client_.env, &freed, kHtypeStmt, 0, nullptr), kSuccess);
  ASSERT_EQ(OCIHandleFree(freed, kHtypeStmt), kSuccess);
  int other = 0;
  for (void* bad : {freed, static_cast<void*>(nullptr), static_cast<void*>(&other),
                    reinterpret_cast<void*>(~std::uintptr_t{1}), static_cast<void*>(client_.env)}) {
    auto* stmt = static_cast<OCIStmt*>(bad);
    auto* error = static_cast<OCIError*>(bad);
    const auto* text = reinterpret_cast<const OraText*>("commit");
    EXPECT_EQ(OCIHandleFree(bad, kHtypeStmt), kInvalidHandle);
    EXPECT_EQ(OCIStmtPrepare(stmt, client_.error, text, 6, 1, 0), kInvalidHandle);
    EXPECT_EQ(OCIStmtExecute(client_.svcctx, stmt, client_.error, 1, 0, nullptr, nullptr, 0),
              kInvalidHandle);
    EXPECT_EQ(OCIStmtFetch2(stmt, client_.error, 1, kFetchNext, 0, 0), kInvalidHandle);
    EXPECT_EQ(OCIServerDetach(client_.server, error, 0), kInvalidHandle);
    EXPECT_EQ(OCIAttrSet(client_.svcctx, kHtypeSvcCtx, bad, 0, kAttrServer, client_.error),
              kInvalidHandle);
    EXPECT_EQ(OCIErrorGet(bad, 1, nullptr, nullptr, nullptr, 0, kHtypeError), kInvalidHandle);
  }
  EXPECT_EQ(client_.Value("select count(*) from app.t"), "2") << "nothing of that did harm";
}

// The session handle of a client that frees its service context twice instead must not stay.
TEST_F(SessionTest, AbandonedSessionHandlesAreTakenOver) {
  OCIEnv* env = nullptr;
  ASSERT_EQ(OCIEnvCreate(&env, 0, nullptr, nullptr, nullptr, nullptr, 0, nullptr), kSuccess);
  void* first = nullptr;
  for (int i = 0; i < 3; ++i) {
    void* svcctx = nullptr;
    void* session = nullptr;
    ASSERT_EQ(OCIHandleAlloc(env, &svcctx, kHtypeSvcCtx, 0, nullptr), kSuccess);
    ASSERT_EQ(OCIHandleAlloc(env, &session, kHtypeSession, 0, nullptr), kSuccess);
    if (i == 0) first = session;
    EXPECT_EQ(OCIHandleFree(svcctx, kHtypeSvcCtx), kSuccess);
    EXPECT_EQ(OCIHandleFree(svcctx, kHtypeSession), kInvalidHandle);
  }
  EXPECT_EQ(OCIHandleFree(first, kHtypeSession), kInvalidHandle) << "it has been taken over";
  EXPECT_EQ(OCIHandleFree(env, kHtypeEnv), kSuccess);
}

TEST_F(SessionTest, NullAndTruncation) {
  struct Case {
    const char* name;
    bool indicator;
    bool code;
    int id;  // 1: 'abcdef' into 4 bytes, 2: NULL
    sword result;
    const char* error;
    sb2 wants_indicator;
    ub2 wants_code;
  };
  const Case cases[] = {
      {"null, nothing", false, false, 2, kError, "ORA-01405", 0, 0},
      {"null, indicator", true, false, 2, kSuccess, "", -1, 0},
      {"null, code", false, true, 2, kSuccessWithInfo, "ORA-24345", 0, 1405},
      {"null, both", true, true, 2, kSuccess, "", -1, 1405},
      {"cut, nothing", false, false, 1, kError, "ORA-01406", 0, 0},
      {"cut, indicator", true, false, 1, kError, "ORA-01406", 6, 0},
      {"cut, code", false, true, 1, kSuccessWithInfo, "ORA-24345", 0, 1406},
      {"cut, both", true, true, 1, kSuccessWithInfo, "ORA-24345", 6, 1406},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    void* handle = nullptr;
    ASSERT_EQ(OCIHandleAlloc(client_.env, &handle, kHtypeStmt, 0, nullptr), kSuccess);
    auto* stmt = static_cast<OCIStmt*>(handle);
    const std::string sql = "select v from app.t where id=" + std::to_string(test.id);
    OCIStmtPrepare(stmt, client_.error, reinterpret_cast<const OraText*>(sql.data()),
                   static_cast<ub4>(sql.size()), kNtvSyntax, kDefault);
    char buffer[5] = "....";
    sb2 indicator = 0;
    ub2 code = 0;
    OCIDefine* define = nullptr;
    ASSERT_EQ(OCIDefineByPos(stmt, &define, client_.error, 1, buffer, 4, kSqltChr,
                             test.indicator ? &indicator : nullptr, nullptr,
                             test.code ? &code : nullptr, kDefault),
              kSuccess);
    EXPECT_EQ(OCIStmtExecute(client_.svcctx, stmt, client_.error, 1, 0, nullptr, nullptr, 0),
              test.result);
    if (*test.error != '\0') {
      EXPECT_EQ(client_.LastError().substr(0, 9), test.error);
    }
    EXPECT_EQ(indicator, test.wants_indicator);
    EXPECT_EQ(code, test.wants_code);
    EXPECT_STREQ(buffer, test.id == 1 ? "abcd" : "....");
    EXPECT_EQ(OCIStmtFetch2(stmt, client_.error, 1, kFetchNext, 0, 0), kNoData);
    EXPECT_EQ(client_.LastError(), "ORA-01403: no data found");
    OCIHandleFree(handle, kHtypeStmt);
  }
}

TEST_F(SessionTest, ErrorsOfStatementsAndCalls) {
  struct Case {
    const char* sql;
    const char* begins;
  };
  std::string tall = "update app.t set id = id";
  std::string nested = "1";
  for (int i = 0; i < 300; ++i) {
    tall += " + id";
    nested = "(" + nested + std::string(i % 2 == 0 ? " + 1)" : " * 1 - 1)");
  }
  nested = "update app.t set id = " + nested;
  const std::string deep = "update app.t set id = " + std::string(5000, '(') + "1";
  const Case cases[] = {
      {"", "ORA-24373"},
      {"nonsense about nothing", "ORA-00900"},
      {"insert into app.t values (1, 'x')", "ORA-00001"},
      {"insert into app.t values (3)", "ORA-00947"},
      {"insert into app.t values (3, 'x', 1)", "ORA-00913"},
      {"insert into app.t (id, nope) values (3, 'x')", "ORA-00904"},
      {"insert into app.t values (null, 'x')", "ORA-01400"},
      {"insert into app.t values ('x', 'x')", "ORA-01722"},
      {"insert into app.t values (3, 'more than twenty bytes')", "ORA-12899"},
      {"insert into app.t values (3, 'x", "ORA-01756"},
      {"insert into app.t values (3, )", "ORA-00936"},
      {"insert into app.t values (3, 'x'", "ORA-00907"},
      {"insert into app.t values (3, 'x') and", "ORA-00933"},
      {"insert into app.t values (3, 'x');", "ORA-00911"},
      {"update app.t set id = null", "ORA-01407"},
      {"update app.t set id = 1 / 0", "ORA-01476"},
      {"update app.t set v = to_date('2020-13-01', 'YYYY-MM-DD')", "ORA-01843"},
      {"update app.t set v = to_date('x', 'YYYY')", "ORA-01858"},
      {"update app.t set v = nope(1)", "ORA-00904"},
      {"update app.nope set v = 1", "ORA-00942"},
      {"delete from app.t where v", "ORA-00920"},
      {"drop table app.a_name_of_more_than_thirty_bytes", "ORA-00972"},
      {"begin dbms_output.put_line('x'); end;", "ORA-06550"},
      {deep.c_str(), "ORA-00900"},
      {tall.c_str(), "ORA-00900"},
      {nested.c_str(), "ORA-00900"},
      {"grant nothing to app", "ORA-01919"},
      {"grant execute on app.t to app", "ORA-00990"},
      {"select id from app.t where count(*) > 1", "ORA-00934"},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(client_.Execute(test.sql).substr(0, 9), test.begins)
        << std::string(test.sql).substr(0, 80);
  }
  EXPECT_EQ(client_.Value("select count(*) from app.t where id in (1, 2)"), "2");
  std::vector<Row> rows;
  EXPECT_EQ(client_.Query("select id from app.t", &rows, 2),
            "ORA-01007: variable not in select list");
  Client stranger;
  EXPECT_EQ(stranger.Execute("commit"), "ORA-01012: not logged on");
  OraText text[8];
  EXPECT_EQ(OCIErrorGet(stranger.error, 1, nullptr, nullptr, text, 8, kHtypeError), kSuccess);
  EXPECT_STREQ(reinterpret_cast<char*>(text), "ORA-010");
  EXPECT_EQ(OCIErrorGet(stranger.error, 2, nullptr, nullptr, text, 8, kHtypeError), kNoData);
}

// Processor time, so that a busy machine does not matter: four times the chain, about four times
// the time, and not sixteen.
TEST_F(SessionTest, LongChainsTakeTimeByTheirLength) {
  const auto time_of = [this](const std::string& chain, int length) {
    std::string sql = "select count(*) from dual where dummy = 'X'";
    for (int i = 0; i < length; ++i) sql += chain + std::to_string(i) + "'";
    const std::clock_t begin = std::clock();
    EXPECT_EQ(client_.Value(sql), "1");
    return static_cast<double>(std::clock() - begin);
  };
  for (const char* chain : {" or dummy = 'q", " and dummy <> 'q"}) {
    const double quarter = time_of(chain, 4000);
    EXPECT_LT(time_of(chain, 16000), 10 * quarter + CLOCKS_PER_SEC / 10.0) << chain;
  }
}

TEST_F(SessionTest, ACutTakesBackWhatIsOpenAndNothingCommitsAfterIt) {
  ASSERT_EQ(client_.Execute("insert into app.t values (3, 'open')"), "");
  EXPECT_EQ(Tool("cut SRC"), 0);
  EXPECT_EQ(client_.Execute("commit").substr(0, 9), "ORA-03113");
  EXPECT_EQ(client_.Execute("select 1 from dual").substr(0, 9), "ORA-03114");
  EXPECT_EQ(client_.Disconnect().substr(0, 9), "ORA-03114");
  ASSERT_EQ(client_.ConnectSys("SRC"), "");
  EXPECT_EQ(client_.Value("select count(*) from app.t"), "2");
}

TEST_F(SessionTest, ASecondWriterWaitsAndGivesUp) {
  setenv("QUILLMERE_SANDBOX_LOCK_WAIT_MS", "50", 1);
  Client second;
  ASSERT_EQ(second.ConnectSys("SRC"), "");
  ASSERT_EQ(client_.Execute("update app.t set v = 'mine' where id = 1"), "");
  EXPECT_EQ(second.Execute("update app.t set v = 'yours' where id = 2").substr(0, 9), "ORA-00054");
  EXPECT_EQ(second.Value("select v from app.t where id = 1"), "abcdef") << "readers never wait";
  ASSERT_EQ(client_.Execute("commit"), "");
  EXPECT_EQ(second.Execute("update app.t set v = 'yours' where id = 2"), "");
}

TEST_F(SessionTest, SessionsOfManyThreads) {
  std::atomic<int> failures = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t, &failures] {
      for (int i = 0; i < 5; ++i) {
        Client client;
        const std::string id = std::to_string(100 + t * 10 + i);
        failures += client.ConnectSys("SRC").empty() ? 0 : 1;
        failures += client.Execute("insert into app.t values (" + id + ", 'x')").empty() ? 0 : 1;
        failures += client.Value("select v from app.t where id = " + id) == "x" ? 0 : 1;
        failures += client.Disconnect().empty() ? 0 : 1;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(client_.Value("select count(*) from app.t"), "22");
}

TEST_F(SessionTest, AnyBytesAreAnsweredWithAnError) {
  const std::vector<std::string> seeds = {
      "insert into app.t values (7, 'x' || to_char(sysdate, 'YYYY'))",
      "update app.t set v = upper('a''b') where id between 1 and 2 and v is not null or id in "
      "(1,2)",
      "delete from app.t where v like '%a_' escape '\\' and not (id <> 5)",
      "create table app.m (a number(5,2) default 1 not null, b timestamp(3) with time zone)",
      "alter table app.t add constraint c foreign key (id) references app.t (id) on delete cascade",
      "select a.owner, count(*) from dba_tables a where exists (select 1 from dual) group by "
      "a.owner",
      "begin dbms_logmnr.start_logmnr(options=>dbms_logmnr.new + dbms_logmnr.x, startscn=>5); end;",
  };
  static constexpr char kBytes[] = "'\"();,.*+-/=<>|:%\\ \n0aZ_$\x80\xFF";
  std::mt19937 random(7);
  for (int i = 0; i < 3000; ++i) {
    std::string sql = seeds[random() % seeds.size()];
    for (unsigned change = random() % 4; change <= 4 && !sql.empty(); ++change) {
      const std::size_t at = random() % sql.size();
      switch (random() % 3) {
        case 0:
          sql[at] = kBytes[random() % (sizeof(kBytes) - 1)];
          break;
        case 1:
          sql.erase(at, random() % 6);
          break;
        default:
          sql.insert(at, sql.substr(random() % sql.size(), random() % 12));
          break;
      }
    }
    const std::string answer = client_.Execute(sql);
    EXPECT_TRUE(answer.empty() || (answer.starts_with("ORA-") && !answer.starts_with("ORA-00600")))
        << sql << "\n"
        << answer;
  }
  EXPECT_EQ(client_.Execute("rollback"), "");
}

TEST_F(SessionTest, TheToolSaysWhatItDidAndWhatWentWrong) {
  std::string output;
  EXPECT_EQ(Tool("create SRC", &output), 1);
  EXPECT_NE(output.find("exists already"), std::string::npos);
  EXPECT_EQ(Tool("create ../x", &output), 2);
  EXPECT_EQ(Tool("nothing", &output), 2);
  WriteFile("good.sql",
            "-- a comment; with a semicolon;\ncreate table app.s (a varchar2(9));\n"
            "insert into app.s values ('a;\nb');\ninsert into app.s values (';');\n"
            "begin dbms_logmnr.add_logfile(logfilename=>'" +
                DatabaseFile("SRC") +
                "', options=>DBMS_LOGMNR.NEW); end;\nselect count(*) from app.s\n");
  EXPECT_EQ(Tool("sql SRC " + (folder_ / "good.sql").string(), &output), 0) << output;
  EXPECT_NE(output.find("2 rows changed"), std::string::npos) << output;
  WriteFile("bad.sql", "insert into app.s values ('c');\n\nselect\n nope from dual;\n");
  EXPECT_EQ(Tool("sql SRC " + (folder_ / "bad.sql").string(), &output), 1);
  EXPECT_NE(output.find("line 3: ORA-00904"), std::string::npos) << output;
  EXPECT_NE(output.find("rolled back"), std::string::npos) << output;
  WriteFile("open.sql", "delete from app.s;\ninsert into app.s values ('c);\n");
  EXPECT_EQ(Tool("sql SRC " + (folder_ / "open.sql").string(), &output), 1);
  EXPECT_NE(output.find("inside a literal that begins in line 2"), std::string::npos) << output;
  EXPECT_EQ(client_.Value("select count(*) from app.s"), "2");
  EXPECT_EQ(Tool("diff SRC DST", &output), 1);
  EXPECT_NE(output.find("APP.S is only in the first"), std::string::npos) << output;
  WriteFile("dst.sql",
            "create user app identified by x;\ncreate table app.s2 (a varchar2(9));\n"
            "insert into app.s2 values (';');\ninsert into app.s2 values (';');\n");
  EXPECT_EQ(Tool("sql DST " + (folder_ / "dst.sql").string(), &output), 0) << output;
  const std::string diff = "diff SRC DST app --exclude app.t --map app.s=app.s2";
  EXPECT_EQ(Tool(diff, &output), 1);
  EXPECT_NE(output.find("- APP.S: A='a;\nb'"), std::string::npos) << output;
  EXPECT_NE(output.find("+ APP.S: A=';'"), std::string::npos) << output;
  ASSERT_EQ(client_.ExecuteAll(
                {"delete from app.s where a <> ';'", "insert into app.s values (';')", "commit"}),
            "");
  EXPECT_EQ(Tool(diff, &output), 0) << output;
  EXPECT_EQ(Tool("diff SRC NOPE", &output), 2);
  EXPECT_EQ(Tool("scn SRC", &output), 0);
  EXPECT_EQ(output, client_.Value("select current_scn from v$database") + "\n");
}

}  // namespace
}  // namespace quillmere::sandbox_test
