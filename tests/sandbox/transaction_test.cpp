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

}  // namespace
}  // namespace quillmere::sandbox_test
