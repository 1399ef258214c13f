// SPDX-License-Identifier: MIT
#include <sys/wait.h>
#include <unistd.h>

#include "sandbox/client.h"

namespace quillmere::sandbox_test {

namespace {

const std::vector<std::string> kSetUp = {
    "create user app identified by app",
    "create table app.t (id number primary key, v varchar2(20))",
};

class TransactionTest : public SandboxTest {
 protected:
  TransactionTest() {
    EXPECT_EQ(client_.ConnectSys("SRC"), "");
    EXPECT_EQ(client_.ExecuteAll(kSetUp), "");
  }

  std::string Count(Client* client) { return client->Value("select count(*) from app.t"); }

  Client client_;
};

TEST_F(TransactionTest, EveryWayToEndATransaction) {
  struct Case {
    const char* name;
    std::function<void(Client*)> end;
    const char* rows;
  };
  const Case cases[] = {
      {"commit",
       [](Client* c) {
         c->Execute("commit");
         c->Drop();
       },
       "1"},
      {"commit on success",
       [](Client* c) {
         c->Execute("update app.t set v='x'", oci::kCommitOnSuccess);
         c->Drop();
       },
       "1"},
      {"end of session", [](Client* c) { c->Disconnect(); }, "1"},
      {"DDL",
       [](Client* c) {
         c->Execute("create table app.other (a number)");
         c->Drop();
       },
       "1"},
      {"failing DDL",
       [](Client* c) {
         c->Execute("drop table app.nothing");
         c->Drop();
       },
       "1"},
      {"rollback",
       [](Client* c) {
         c->Execute("rollback");
         c->Disconnect();
       },
       "0"},
      {"detach", [](Client* c) { c->Drop(); }, "0"},
      {"server handle freed", [](Client* c) { OCIHandleFree(c->server, oci::kHtypeServer); }, "0"},
      {"service context freed", [](Client* c) { OCIHandleFree(c->svcctx, oci::kHtypeSvcCtx); },
       "0"},
      {"session handle freed", [](Client* c) { OCIHandleFree(c->session, oci::kHtypeSession); },
       "0"},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    Client writer;
    ASSERT_EQ(writer.ConnectSys("SRC"), "");
    ASSERT_EQ(writer.Execute("insert into app.t values (1, 'a')"), "");
    EXPECT_EQ(Count(&writer), "1") << "a session sees its own changes";
    EXPECT_EQ(Count(&client_), "0") << "nobody else sees them";
    test.end(&writer);
    EXPECT_EQ(Count(&client_), test.rows);
    EXPECT_EQ(client_.ExecuteAll({"delete from app.t", "commit"}), "");
  }
}

TEST_F(TransactionTest, AFailingStatementLeavesNothingOfItself) {
  ASSERT_EQ(
      client_.ExecuteAll({"create table app.c (t number references app.t)",
                          "insert into app.t values (1, 'a')", "insert into app.t values (2, 'b')",
                          "insert into app.c values (2)"}),
      "");
  const std::string before = client_.Value("select sum(id) from app.t");
  EXPECT_EQ(client_.Execute("update app.t set id = 5").substr(0, 9), "ORA-00001");
  EXPECT_EQ(client_.Execute("delete from app.t").substr(0, 9), "ORA-02292");
  EXPECT_EQ(client_.Execute("update app.t set v = v / id").substr(0, 9), "ORA-01722");
  EXPECT_EQ(client_.Value("select sum(id) from app.t"), before);
  EXPECT_EQ(client_.Value("select count(*) from app.t where v in ('a', 'b')"), "2");
  EXPECT_EQ(client_
                .Execute("update app.t set id = id + 1 where id = 1"
                         " or id > 99")
                .substr(0, 9),
            "ORA-00001");
  EXPECT_EQ(client_.ExecuteAll({"delete from app.c", "update app.t set id = id + 1"}), "")
      << "keys are judged when the statement is through";
}

TEST_F(TransactionTest, SavepointsTakeBackTheirPart) {
  EXPECT_EQ(
      client_.ExecuteAll({"savepoint empty", "insert into app.t values (1, 'a')", "savepoint one",
                          "insert into app.t values (2, 'b')", "rollback to savepoint one"}),
      "");
  EXPECT_EQ(Count(&client_), "1");
  EXPECT_EQ(client_.Execute("rollback to empty"), "");
  EXPECT_EQ(client_.Execute("delete from app.t"), "") << "changes nothing, and takes nothing back";
  EXPECT_EQ(client_.Execute("insert into app.t values (3, 'c')"), "");
  EXPECT_EQ(client_.Execute("rollback to empty"), "");
  EXPECT_EQ(Count(&client_), "0");
  EXPECT_EQ(client_.Execute("rollback to one").substr(0, 9), "ORA-01086");
}

TEST_F(TransactionTest, ADyingProcessTakesItsWorkAlong) {
  const pid_t child = fork();
  if (child == 0) {
    Client writer;
    const bool worked = writer.ConnectSys("SRC").empty() &&
                        writer.Execute("insert into app.t values (1, 'a')").empty();
    _exit(worked ? 7 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_EQ(WEXITSTATUS(status), 7);
  EXPECT_EQ(Count(&client_), "0");
  EXPECT_EQ(client_.Execute("insert into app.t values (1, 'b')"), "") << "its lock is gone too";
}

// An open query must not tie its session to the state it began with.
TEST_F(TransactionTest, ASessionSeesItsCommitsWhileAQueryIsOpen) {
  ASSERT_EQ(client_.Execute("select username from dba_users"),
            "ORA-24374: define not done before "
            "fetch or execute and fetch");
  void* handle = nullptr;
  OCIHandleAlloc(client_.env, &handle, oci::kHtypeStmt, 0, nullptr);
  auto* stmt = static_cast<oci::OCIStmt*>(handle);
  const std::string sql = "select username from dba_users";
  OCIStmtPrepare(stmt, client_.error, reinterpret_cast<const oci::OraText*>(sql.data()),
                 static_cast<oci::ub4>(sql.size()), oci::kNtvSyntax, oci::kDefault);
  ASSERT_EQ(OCIStmtExecute(client_.svcctx, stmt, client_.error, 0, 0, nullptr, nullptr, 0),
            oci::kSuccess);
  ASSERT_EQ(client_.ExecuteAll({"insert into app.t values (1, 'a')", "commit"}), "");
  EXPECT_EQ(Count(&client_), "1");
  OCIHandleFree(handle, oci::kHtypeStmt);
}

TEST_F(TransactionTest, QueriesOutliveTheTransactionTheyBeganIn) {
  ASSERT_EQ(client_.ExecuteAll(
                {"insert into app.t values (1, 'a')", "insert into app.t values (2, 'b')"}),
            "");
  void* handle = nullptr;
  OCIHandleAlloc(client_.env, &handle, oci::kHtypeStmt, 0, nullptr);
  auto* stmt = static_cast<oci::OCIStmt*>(handle);
  const std::string sql = "select id from app.t order by id";
  char id = 0;
  oci::OCIDefine* define = nullptr;
  const oci::ub4 none = 0;
  OCIStmtPrepare(stmt, client_.error, reinterpret_cast<const oci::OraText*>(sql.data()),
                 static_cast<oci::ub4>(sql.size()), oci::kNtvSyntax, oci::kDefault);
  OCIAttrSet(stmt, oci::kHtypeStmt, const_cast<oci::ub4*>(&none), 0, oci::kAttrPrefetchRows,
             client_.error);
  OCIDefineByPos(stmt, &define, client_.error, 1, &id, 1, oci::kSqltChr, nullptr, nullptr, nullptr,
                 oci::kDefault);
  ASSERT_EQ(OCIStmtExecute(client_.svcctx, stmt, client_.error, 1, 0, nullptr, nullptr, 0),
            oci::kSuccess);
  EXPECT_EQ(id, '1');
  ASSERT_EQ(client_.ExecuteAll({"rollback", "insert into app.t values (3, 'c')", "commit"}), "");
  ASSERT_EQ(OCIStmtFetch2(stmt, client_.error, 1, oci::kFetchNext, 0, 0), oci::kSuccess);
  EXPECT_EQ(id, '2');
  EXPECT_EQ(OCIStmtFetch2(stmt, client_.error, 1, oci::kFetchNext, 0, 0), oci::kNoData);
  OCIHandleFree(handle, oci::kHtypeStmt);
}

}  // namespace
}  // namespace quillmere::sandbox_test
