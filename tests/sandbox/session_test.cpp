// SPDX-License-Identifier: MIT
// Handles, transactions, fetching, the tool, and texts that are no SQL.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <ctime>
#include <fstream>
#include <functional>
#include <random>
#include <sstream>
#include <thread>

#include "sandbox/client.h"

namespace quillmere::sandbox_test {

namespace {

using namespace oci;

class SessionTest : public SandboxTest {
 protected:
  SessionTest() {
    client_.Run(R"(
      create user app identified by app
      create table app.t (id number primary key, v varchar2(20))
      insert into app.t values (1, 'abcdef')
      insert into app.t values (2, null)
      commit
    )");
  }

  static std::string Count(Client& client) { return client.Ask("select count(*) from app.t"); }
};

TEST_F(SessionTest, WrongHandlesAreKnown) {
  OCIStmt* freed = client_.Prepare("commit");
  ASSERT_EQ(OCIHandleFree(freed, kHtypeStmt), kSuccess);
  int other = 0;
  for (void* bad : {static_cast<void*>(freed), static_cast<void*>(nullptr),
                    static_cast<void*>(&other), reinterpret_cast<void*>(~std::uintptr_t{1}),
                    static_cast<void*>(client_.env), static_cast<void*>(client_.error)}) {
    auto* stmt = static_cast<OCIStmt*>(bad);
    EXPECT_EQ(OCIHandleFree(bad, kHtypeStmt), kInvalidHandle);
    EXPECT_EQ(OCIStmtExecute(client_.svcctx, stmt, client_.error, 1, 0, nullptr, nullptr, 0),
              kInvalidHandle);
    EXPECT_EQ(OCIStmtFetch2(stmt, client_.error, 1, kFetchNext, 0, 0), kInvalidHandle);
    EXPECT_EQ(OCIAttrSet(client_.svcctx, kHtypeSvcCtx, bad, 0, kAttrServer, client_.error),
              kInvalidHandle);
    if (bad == client_.error) continue;
    EXPECT_EQ(OCIServerDetach(client_.server, static_cast<OCIError*>(bad), 0), kInvalidHandle);
    EXPECT_EQ(OCIErrorGet(bad, 1, nullptr, nullptr, nullptr, 0, kHtypeError), kInvalidHandle);
  }
  EXPECT_EQ(Count(client_), "2") << "nothing of that did harm";
  Client stranger;
  EXPECT_EQ(stranger.Execute("commit"), "ORA-01012: not logged on");
  OraText text[8];
  EXPECT_EQ(OCIErrorGet(stranger.error, 1, nullptr, nullptr, text, 8, kHtypeError), kSuccess);
  EXPECT_STREQ(reinterpret_cast<char*>(text), "ORA-010");
  EXPECT_EQ(OCIErrorGet(stranger.error, 2, nullptr, nullptr, text, 8, kHtypeError), kNoData);
}

// The session handle of a client that frees its service context twice instead must not stay.
TEST_F(SessionTest, AbandonedSessionHandlesAreTakenOver) {
  Client other;
  EXPECT_EQ(OCIHandleFree(other.svcctx, kHtypeSvcCtx), kSuccess);
  EXPECT_EQ(OCIHandleFree(other.svcctx, kHtypeSession), kInvalidHandle);
  void* next = nullptr;
  EXPECT_EQ(OCIHandleAlloc(other.env, &next, kHtypeSession, 0, nullptr), kSuccess);
  EXPECT_EQ(OCIHandleFree(other.session, kHtypeSession), kInvalidHandle) << "it is taken over";
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
      {"null, indicator", true, false, 2, kSuccess, "ORA-01403", -1, 0},
      {"null, code", false, true, 2, kSuccessWithInfo, "ORA-24345", 0, 1405},
      {"null, both", true, true, 2, kSuccess, "ORA-01403", -1, 1405},
      {"cut, nothing", false, false, 1, kError, "ORA-01406", 0, 0},
      {"cut, indicator", true, false, 1, kError, "ORA-01406", 6, 0},
      {"cut, code", false, true, 1, kSuccessWithInfo, "ORA-24345", 0, 1406},
      {"cut, both", true, true, 1, kSuccessWithInfo, "ORA-24345", 6, 1406},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    OCIStmt* stmt = client_.Prepare("select v from app.t where id=" + std::to_string(test.id));
    char buffer[5] = "....";
    sb2 indicator = 0;
    ub2 code = 0;
    OCIDefineByPos(stmt, nullptr, client_.error, 1, buffer, 4, kSqltChr,
                   test.indicator ? &indicator : nullptr, nullptr, test.code ? &code : nullptr, 0);
    EXPECT_EQ(OCIStmtExecute(client_.svcctx, stmt, client_.error, 1, 0, nullptr, nullptr, 0),
              test.result);
    if (test.result == kSuccess) OCIStmtFetch2(stmt, client_.error, 1, kFetchNext, 0, 0);
    EXPECT_EQ(client_.LastError().substr(0, 9), test.error);
    EXPECT_EQ(indicator, test.wants_indicator);
    EXPECT_EQ(code, test.wants_code);
    EXPECT_STREQ(buffer, test.id == 1 ? "abcd" : "....");
    EXPECT_EQ(OCIStmtFetch2(stmt, client_.error, 1, kFetchNext, 0, 0), kNoData);
    OCIHandleFree(stmt, kHtypeStmt);
  }
  EXPECT_EQ(client_.Ask("select id from app.t", 2), "ORA-01007: variable not in select list");
  EXPECT_EQ(client_.Execute("select id from app.t").substr(0, 9), "ORA-24374");
}

TEST_F(SessionTest, EveryWayToEndATransaction) {
  struct Case {
    const char* name;
    std::function<void(Client&)> end;
    const char* rows;
  };
  const Case cases[] = {
      {"commit", [](Client& c) { c.Execute("commit"); }, "3"},
      {"commit on success",
       [](Client& c) { c.Execute("update app.t set v='x'", kCommitOnSuccess); }, "3"},
      {"end of session", [](Client& c) { c.Disconnect(); }, "3"},
      {"DDL", [](Client& c) { c.Execute("create table app.other (a number)"); }, "3"},
      {"failing DDL", [](Client& c) { c.Execute("drop table app.nothing"); }, "3"},
      {"rollback", [](Client& c) { c.Execute("rollback"), c.Disconnect(); }, "2"},
      {"detach", [](Client&) {}, "2"},
      {"server handle freed", [](Client& c) { OCIHandleFree(c.server, kHtypeServer); }, "2"},
      {"service context freed", [](Client& c) { OCIHandleFree(c.svcctx, kHtypeSvcCtx); }, "2"},
      {"session handle freed", [](Client& c) { OCIHandleFree(c.session, kHtypeSession); }, "2"},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    Client writer;
    ASSERT_EQ(writer.ConnectSys("SRC"), "");
    writer.Run("insert into app.t values (3, 'a')");
    EXPECT_EQ(Count(writer), "3") << "a session sees its own changes";
    EXPECT_EQ(Count(client_), "2") << "nobody else sees them";
    test.end(writer);
    writer.Drop();
    EXPECT_EQ(Count(client_), test.rows);
    client_.Run("delete from app.t where id = 3\ncommit");
  }
  // A process that dies takes its work, and its lock, along.
  const pid_t child = fork();
  if (child == 0) {
    Client writer;
    const bool worked = writer.ConnectSys("SRC").empty() &&
                        writer.Execute("insert into app.t values (3, 'a')").empty();
    _exit(worked ? 7 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_EQ(WEXITSTATUS(status), 7);
  client_.Run(R"(
    select count(*) from v$transaction -> 0
    select count(*) from app.t -> 2
    insert into app.t values (3, 'b')
  )");
}

// An open query ties its session neither to the state it began with nor to its transaction.
TEST_F(SessionTest, QueriesOutliveWhatTheyBeganIn) {
  for (const bool in_transaction : {false, true}) {
    SCOPED_TRACE(in_transaction);
    if (in_transaction) client_.Run("insert into app.t values (0, 'a')");
    OCIStmt* stmt = client_.Prepare("select id from app.t order by id");
    char id = 0;
    ub4 none = 0;
    OCIAttrSet(stmt, kHtypeStmt, &none, 0, kAttrPrefetchRows, client_.error);
    OCIDefineByPos(stmt, nullptr, client_.error, 1, &id, 1, kSqltChr, nullptr, nullptr, nullptr, 0);
    OCIStmtExecute(client_.svcctx, stmt, client_.error, 1, 0, nullptr, nullptr, 0);
    EXPECT_EQ(id, in_transaction ? '0' : '1');
    client_.Run("rollback\ninsert into app.t values (9, 'c')\ncommit");
    EXPECT_EQ(Count(client_), "3");
    EXPECT_EQ(OCIStmtFetch2(stmt, client_.error, 1, kFetchNext, 0, 0), kSuccess);
    EXPECT_EQ(id, in_transaction ? '1' : '2');
    OCIHandleFree(stmt, kHtypeStmt);
    client_.Run("delete from app.t where id = 9\ncommit");
  }
}

TEST_F(SessionTest, SessionsOfManyThreads) {
  std::vector<std::thread> threads;
  std::atomic<int> good = 0;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t, &good] {
      for (int i = 0; i < 5; ++i) {
        Client client;
        const std::string id = std::to_string(100 + t * 10 + i);
        const bool done = client.ConnectSys("SRC").empty() &&
                          client.Execute("insert into app.t values (" + id + ", 'x')").empty() &&
                          client.Ask("select v from app.t where id = " + id) == "x" &&
                          client.Disconnect().empty();
        good += done ? 1 : 0;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(good, 20);
  EXPECT_EQ(Count(client_), "22");
}

// Processor time, so that a busy machine does not matter: four times the chain, about four times
// the time, and not sixteen.
TEST_F(SessionTest, LongChainsTakeTimeByTheirLength) {
  const auto time_of = [this](const std::string& chain, int length) {
    std::string sql = "select count(*) from dual where dummy = 'X'";
    for (int i = 0; i < length; ++i) sql += chain + std::to_string(i) + "'";
    const std::clock_t begin = std::clock();
    EXPECT_EQ(client_.Ask(sql), "1");
    return static_cast<double>(std::clock() - begin);
  };
  for (const char* chain : {" or dummy = 'q", " and dummy <> 'q"}) {
    const double quarter = time_of(chain, 4000);
    EXPECT_LT(time_of(chain, 16000), 10 * quarter + CLOCKS_PER_SEC / 10.0) << chain;
  }
}

TEST_F(SessionTest, DeepExpressionsAreRefused) {
  std::string tall = "id";
  std::string nested = "1";
  for (int i = 0; i < 300; ++i) {
    tall += " + id";
    nested = "(" + nested + (i % 2 == 0 ? " + 1)" : " * 1 - 1)");
  }
  for (const std::string& value : {tall, nested, std::string(5000, '(')}) {
    client_.Run("update app.t set id = " + value + " -> ORA-00900");
  }
}

TEST_F(SessionTest, AFileThatIsNoDatabaseOrDamagedSaysSo) {
  const auto connect = [](const char* name) { return Client().ConnectSys(name).substr(0, 9); };
  std::ofstream(DatabaseFile("TEXT")) << std::string(5000, 'x');
  std::ofstream(DatabaseFile("EMPTY")) << "";
  EXPECT_EQ(connect("TEXT"), "ORA-01578");
  EXPECT_EQ(connect("EMPTY"), "ORA-01130");
  struct stat info {};
  ASSERT_EQ(stat(DatabaseFile("DST").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777U, 0600U);
  std::stringstream bytes;
  bytes << std::ifstream(DatabaseFile("DST"), std::ios::binary).rdbuf();
  EXPECT_EQ(bytes.str().find("sandbox"), std::string::npos) << "the password is not in the file";
}

}  // namespace
}  // namespace quillmere::sandbox_test
