// SPDX-License-Identifier: MIT
// Keys under changes, values at the edge of their columns, exchanges with the server, damage.
#include <sys/stat.h>

#include <chrono>
#include <fstream>

#include "sandbox/client.h"

namespace quillmere::sandbox_test {

namespace {

using namespace oci;

class ConstraintTest : public SandboxTest {
 protected:
  ConstraintTest() { EXPECT_EQ(client_.ConnectSys("SRC"), ""); }

  struct Step {
    const char* sql;
    const char* answer;  // the error's beginning, "" for none; of a query its value
  };

  void Run(const std::vector<Step>& steps) {
    for (const Step& step : steps) {
      const std::string sql = step.sql;
      const std::string wants = step.answer;
      const bool query = sql.starts_with("select");
      const std::string got = query ? client_.Value(sql) : client_.Execute(sql);
      EXPECT_EQ(wants.empty() || query ? got : got.substr(0, wants.size()), wants) << sql;
    }
  }

  Client client_;
};

TEST_F(ConstraintTest, ForeignKeysOverEveryRoad) {
  Run({
      {"create table p (a number, b varchar2(5), constraint pk primary key (a, b))", ""},
      {"create table c (id number, y varchar2(5), x number,"
       " constraint fk foreign key (y, x) references p (b, a))",
       ""},
      {"create table k (id number references p)", "ORA-02256"},
      {"insert into p values (1, 'one')", ""},
      {"insert into c values (1, 'one', 1)", ""},
      {"insert into c values (2, null, 7)", ""},  // a key with a NULL in it binds nothing
      {"insert into c values (3, 'one', 2)", "ORA-02291: integrity constraint (SYS.FK)"},
      {"update c set x = 2 where id = 1", "ORA-02291"},
      {"update p set a = 2", "ORA-02292: integrity constraint (SYS.FK)"},
      {"update p set a = 1", ""},
      {"delete from p", "ORA-02292"},
      {"delete from c where id = 1", ""},
      {"update p set a = 2", ""},
      {"alter table c add constraint bad foreign key (y, x) references p", "ORA-02267"},
      {"insert into c values (9, 'two', 9)", "ORA-02291"},
      {"alter table c drop constraint fk", ""},
      {"insert into c values (9, 'two', 9)", ""},
      {"alter table c add constraint fk foreign key (x, y) references p", "ORA-02298"},
      {"create table tree (id number primary key, up number references tree on delete cascade)",
       ""},
      {"insert into tree values (1, 1)", ""},
      {"insert into tree values (2, 1)", ""},
      {"insert into tree values (3, 2)", ""},
      {"insert into tree values (4, null)", ""},
      {"delete from tree where id = 1", ""},
      {"select count(*) from tree", "1"},
      {"create table loose (id number, up number references tree on delete set null)", ""},
      {"insert into loose values (1, 4)", ""},
      {"delete from tree", ""},
      {"select count(*) from loose where up is null", "1"},
      {"drop table tree", "ORA-02449"},
      {"drop table tree cascade constraints", ""},
      {"insert into loose values (1, 4)", ""},
  });
}

TEST_F(ConstraintTest, UniqueKeysAndNulls) {
  Run({
      {"create table u (a number, b varchar2(5), constraint uk unique (a, b))", ""},
      {"insert into u values (1, 'x')", ""},
      {"insert into u values ('1.0', 'x')", "ORA-00001: unique constraint (SYS.UK) violated"},
      {"insert into u values (1, null)", ""},
      {"insert into u values (1, null)", "ORA-00001"},
      {"insert into u values (null, null)", ""},
      {"insert into u values (null, null)", ""},
      {"update u set b = null where b = 'x'", "ORA-00001"},
      {"alter table u drop constraint uk", ""},
      {"insert into u values (1, null)", ""},
      {"alter table u add constraint uk unique (a, b)", "ORA-02299"},
      {"create unique index ui on u (a, b)", "ORA-01452"},
      {"alter table u add constraint pk primary key (a)", "ORA-01449"},
      {"delete from u where a is null or b is null", ""},
      {"create unique index ui on u (a)", ""},
      {"insert into u values (1, 'y')", "ORA-00001: unique constraint (SYS.UI) violated"},
      {"drop index ui", ""},
      {"insert into u values (1, 'y')", ""},
      {"alter table u add constraint pk primary key (a)", "ORA-02437"},
      {"select count(*) from dba_indexes where table_name = 'U'", "0"},
      {"update u set a = a + length(b) - 1 where 1 = 1", ""},
      {"select count(*) from dba_constraints where table_name = 'U'", "0"},
  });
}

TEST_F(ConstraintTest, ValuesAtTheEdgeOfTheirColumns) {
  Run({
      {"create table e (n number(4,1), i integer, z number(2,-2), s varchar2(3), m varchar2(3 "
       "char),"
       " w nvarchar2(2), c char(4), r raw(2), t timestamp(0), x number default 5 + 1,"
       " y varchar2(9) default 'it''s')",
       ""},
      {"insert into e (n) values (999.94)", ""},
      {"select n from e", "999.9"},
      {"update e set n = 999.95", "ORA-01438"},
      {"update e set i = 2.5", ""},
      {"select i from e", "3"},
      {"update e set z = 9950", "ORA-01438"},
      {"update e set z = 9949", ""},
      {"select z from e", "9900"},
      {"update e set s = '\xC3\xA9\xC3\xA9'",
       "ORA-12899: value too large for column "
       "\"SYS\".\"E\".\"S\" (actual: 4, maximum: 3)"},
      {"update e set m = '\xC3\xA9\xC3\xA9\xC3\xA9', w = n'\xC3\xA9\xC3\xA9', c = '\xC3\xA9'", ""},
      {"update e set w = 'abc'", "ORA-12899"},
      {"select c || '|' from e", "\xC3\xA9  |"},
      {"update e set r = hextoraw('010203')", "ORA-12899"},
      {"update e set r = '0102'", ""},
      {"update e set t = '2020-12-31 23:59:59.5'", ""},
      {"select t from e", "2021-01-01 00:00:00.000000"},
      {"select y || x from e", "it's6"},
      {"update e set x = default, y = default", ""},
      {"alter table e add (q date default sysdate not null, v varchar2(2))", ""},
      {"select count(*) from e where q <= sysdate and v is null", "1"},
      {"alter table e add (g number not null)", "ORA-01758"},
      {"insert into e (n, x) values (1, default)", ""},
      {"insert into e (n) values (n)", "ORA-00984"},
      {"create table bad (a number default b)", "ORA-00984"},
      {"create table bad (a number(3,200))", "ORA-01728"},
      {"create table bad (a varchar2(0))", "ORA-01723"},
  });
}

// Rows fetched ahead cost no exchange of their own; the latency makes exchanges visible.
TEST_F(ConstraintTest, PrefetchSavesExchanges) {
  ASSERT_EQ(client_.Execute("create table f (a number)"), "");
  for (int i = 0; i < 40; ++i) ASSERT_EQ(client_.Execute("insert into f values (1)"), "");
  ASSERT_EQ(client_.Execute("commit"), "");
  setenv("QUILLMERE_SANDBOX_LATENCY_US", "3000", 1);
  Client slow;
  ASSERT_EQ(slow.ConnectSys("SRC"), "");
  unsetenv("QUILLMERE_SANDBOX_LATENCY_US");
  const auto fetch_all = [&slow](ub4 prefetch, int* rows) {
    void* handle = nullptr;
    OCIHandleAlloc(slow.env, &handle, kHtypeStmt, 0, nullptr);
    auto* stmt = static_cast<OCIStmt*>(handle);
    const std::string sql = "select a from f";
    char a = 0;
    OCIDefine* define = nullptr;
    OCIStmtPrepare(stmt, slow.error, reinterpret_cast<const OraText*>(sql.data()),
                   static_cast<ub4>(sql.size()), kNtvSyntax, kDefault);
    OCIAttrSet(stmt, kHtypeStmt, &prefetch, 0, kAttrPrefetchRows, slow.error);
    OCIDefineByPos(stmt, &define, slow.error, 1, &a, 1, kSqltChr, nullptr, nullptr, nullptr, 0);
    const auto start = std::chrono::steady_clock::now();
    OCIStmtExecute(slow.svcctx, stmt, slow.error, 0, 0, nullptr, nullptr, 0);
    for (*rows = 0; OCIStmtFetch2(stmt, slow.error, 1, kFetchNext, 0, 0) == kSuccess;) ++*rows;
    const auto time = std::chrono::steady_clock::now() - start;
    OCIHandleFree(handle, kHtypeStmt);
    return time;
  };
  int rows = 0;
  const auto one_by_one = fetch_all(0, &rows);
  EXPECT_EQ(rows, 40);
  // Lower bounds only: a busy machine makes it longer, never shorter.
  EXPECT_GE(one_by_one, std::chrono::milliseconds(41 * 3));
  const auto together = fetch_all(100, &rows);
  EXPECT_EQ(rows, 40);
  EXPECT_LT(together, one_by_one);
}

TEST_F(ConstraintTest, AFileThatIsNoDatabaseOrDamagedSaysSo) {
  const auto connect = [](const char* name) {
    Client client;
    return client.ConnectSys(name).substr(0, 9);
  };
  WriteFile("sandbox/TEXT.db", std::string(5000, 'x'));
  WriteFile("sandbox/EMPTY.db", "");
  EXPECT_EQ(connect("TEXT"), "ORA-01578");
  EXPECT_EQ(connect("EMPTY"), "ORA-01130");
  EXPECT_EQ(connect("SRC\n"), "ORA-12154");
  EXPECT_EQ(connect(""), "ORA-12154");
  ASSERT_EQ(client_.ExecuteAll({"create table d (a varchar2(100))", "insert into d values ('x')"}),
            "");
  ASSERT_EQ(client_.Disconnect(), "");
  {
    std::fstream file(DatabaseFile("SRC"), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(100);
    const std::string noise(4096 * 3, '\x5A');
    file.write(noise.data(), static_cast<std::streamsize>(noise.size()));
  }
  std::error_code ignored;
  std::filesystem::remove(DatabaseFile("SRC") + "-wal", ignored);
  EXPECT_EQ(connect("SRC").substr(0, 4), "ORA-");
  struct stat info {};
  ASSERT_EQ(stat(DatabaseFile("DST").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777U, 0600U);
  std::string bytes(
      std::istreambuf_iterator<char>(std::ifstream(DatabaseFile("DST"), std::ios::binary).rdbuf()),
      {});
  EXPECT_EQ(bytes.find("sandbox"), std::string::npos) << "the password is not in the file";
}

}  // namespace
}  // namespace quillmere::sandbox_test
