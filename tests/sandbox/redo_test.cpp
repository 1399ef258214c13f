// SPDX-License-Identifier: MIT
// What is mined, and that it makes the same tables elsewhere.
#include <random>

#include "sandbox/client.h"

namespace quillmere::sandbox_test {

namespace {

class RedoTest : public SandboxTest {
 protected:
  RedoTest() { client_.Run("create user app identified by app"); }

  long long Scn() {
    return std::stoll(client_.Ask("select max(ktuxescnw * power(2,32) + ktuxescnb) from x$ktuxe"));
  }

  // Runs one statement, commits, and gives what was mined of it, the row address made X.
  std::string MinedOf(const std::string& sql) {
    const long long before = Scn();
    EXPECT_EQ(client_.Execute(sql, oci::kCommitOnSuccess), "") << sql;
    std::string all;
    for (std::string text : client_.Mine(before + 1)) {
      if (const std::size_t at = text.rfind("ROWID = '"); at != std::string::npos) {
        EXPECT_EQ(text.size() - (at - 5), 34U) << "the tail must be 33 characters and ';'";
        text.replace(at + 9, 18, "X");
      }
      all += text + "\n";
    }
    return all;
  }
};

TEST_F(RedoTest, StatementsAsLogMinerWritesThem) {
  client_.Run(R"(
    create table app.k (id number primary key, v varchar2(20), d date)
    create table app.w ("Mixed Case" char(3), r raw(4), t timestamp(3), n number(5,2),
        z timestamp with time zone)
    create table app.lob (id number, c clob, b blob)
    create table app.child (id number, k number references app.k on delete cascade)
  )");
  const std::pair<const char*, const char*> cases[] = {
      {"insert into app.k values (1, 'it''s;', date '2020-02-29')",
       "insert into \"APP\".\"K\"(\"ID\",\"V\",\"D\") values ('1','it''s;',TO_DATE('2020-02-29 "
       "00:00:00', 'YYYY-MM-DD HH24:MI:SS'));\n"},
      {"insert into app.k (v, id) values ('', 1e2)",
       "insert into \"APP\".\"K\"(\"ID\",\"V\",\"D\") values ('100',NULL,NULL);\n"},
      {"update app.k set v = v || '\n' || id, d = null where id = 1",
       "update \"APP\".\"K\" set \"V\" = 'it''s;\n1', \"D\" = NULL where \"ID\" = '1' and \"V\" = "
       "'it''s;' and \"D\" = TO_DATE('2020-02-29 00:00:00', 'YYYY-MM-DD HH24:MI:SS') and ROWID = "
       "'X';\n"},
      {"delete from app.k where id > 50",
       "delete from \"APP\".\"K\" where \"ID\" = '100' and \"V\" IS NULL and \"D\" IS NULL and "
       "ROWID = 'X';\n"},
      {"insert into app.w values ('a', hextoraw('0aFF'), timestamp '2020-01-02 03:04:05.6789', "
       "-0.5, to_timestamp_tz('2020-06-01 12:00:00.0 +02:00'))",
       "insert into \"APP\".\"W\"(\"Mixed Case\",\"R\",\"T\",\"N\",\"Z\") values ('a  ',"
       "HEXTORAW('0AFF'),TO_TIMESTAMP('2020-01-02 03:04:05.679000'),'-.5',"
       "TO_TIMESTAMP_TZ('2020-06-01 12:00:00.000000 +02:00'));\n"},
      {"insert into app.lob values (1, 'text', empty_blob())",
       "insert into \"APP\".\"LOB\"(\"ID\",\"C\",\"B\") values ('1',EMPTY_CLOB(),EMPTY_BLOB());\n"
       "update \"APP\".\"LOB\" set \"C\" = 'text' where \"ID\" = '1' and ROWID = 'X';\n"},
      {"insert into app.child values (7, 1)",
       "insert into \"APP\".\"CHILD\"(\"ID\",\"K\") values ('7','1');\n"},
      {"delete app.k",
       "delete from \"APP\".\"CHILD\" where \"ID\" = '7' and \"K\" = '1' and ROWID = 'X';\n"
       "delete from \"APP\".\"K\" where \"ID\" = '1' and \"V\" = 'it''s;\n1' and \"D\" IS NULL and "
       "ROWID = 'X';\n"},
      {"update app.lob set c = 'y' where id = 99", ""},
      {"truncate table app.w", ""},
      {"create table system.own (a number)", ""},
      {"insert into system.own values (1)", ""},
  };
  for (const auto& [sql, mined] : cases) EXPECT_EQ(MinedOf(sql), mined) << sql;
  // Dates come in the formats of the session that mines.
  unsetenv("NLS_DATE_FORMAT");
  Client usual;
  ASSERT_EQ(usual.ConnectSys("SRC"), "");
  EXPECT_NE(usual.Mine(0).at(0).find("TO_DATE('29-FEB-20', 'DD-MON-RR')"), std::string::npos);
}

TEST_F(RedoTest, OnlyWhatIsCommittedInTheOrderOfCommits) {
  client_.Run("create table app.a (x number)");
  const long long before = Scn();
  client_.Run(R"(
    insert into app.a values (1)
    savepoint s
    insert into app.a values (2)
    rollback to s
    insert into app.a values (3)
  )");
  Client other;
  ASSERT_EQ(other.ConnectSys("SRC"), "");
  EXPECT_TRUE(other.Mine(before).empty());
  EXPECT_TRUE(client_.Mine(before).empty()) << "not even for the session whose changes they are";
  EXPECT_EQ(other.Ask("select current_scn from v$database"), std::to_string(before));
  client_.Run("commit");
  const long long after = Scn();
  EXPECT_GT(after, before + 2);
  const std::vector<std::string> mined = other.Mine(before);
  ASSERT_EQ(mined.size(), 2U);
  EXPECT_NE(mined[1].find("'3'"), std::string::npos);
  EXPECT_TRUE(other.Mine(after).empty()) << "later changes have larger numbers than the commit";
  ASSERT_EQ(client_.Execute("insert into app.a values (4)", oci::kCommitOnSuccess), "");
  EXPECT_EQ(other.Mine(after + 1).size(), 1U);
  other.Run(R"(
    select count(*) from v$logmnr_contents -> ORA-01306
    begin dbms_logmnr.start_logmnr(startscn=>1); end; -> ORA-01292
    begin dbms_logmnr.add_logfile(logfilename=>'/none'); end; -> ORA-01284
    begin dbms_logmnr.end_logmnr(); end; -> ORA-01307
  )");
}

TEST_F(RedoTest, LongStatementsComeInPieces) {
  client_.Run("create table app.l (a varchar2(4000), b clob)");
  // Every offset of the cut against the two bytes of the character.
  for (std::string text : {"", "x"}) {
    while (text.size() + 2 <= 4000) text += "\xC3\xA9";
    const std::string twice = text + text;
    const std::string mined = MinedOf("insert into app.l values ('" + text + "', '" + twice + "')");
    EXPECT_EQ(mined, "insert into \"APP\".\"L\"(\"A\",\"B\") values ('" + text +
                         "',EMPTY_CLOB());\nupdate \"APP\".\"L\" set \"B\" = '" + twice +
                         "' where \"A\" = '" + text + "' and ROWID = 'X';\n");
  }
}

// What a program does with mined text: cut the tail, execute elsewhere. Both ends must agree.
TEST_F(RedoTest, ReplayedRedoMakesTheSameTables) {
  const char* const tables = R"(
    create table app.keyed (id number(6) primary key, s varchar2(60), n number, d date,
        t timestamp(9), r raw(20), c char(5), l clob)
    create table app.loose (a varchar2(30), b number(10,3), z timestamp(6) with time zone)
  )";
  Client target;
  ASSERT_EQ(target.ConnectSys("DST"), "");
  target.Run("create user app identified by app");
  target.Run(tables);
  client_.Run(tables);
  const long long before = Scn();
  std::mt19937 random(20261122);
  const auto below = [&random](unsigned n) { return static_cast<int>(random() % n); };
  const auto text = [&](unsigned most) {
    static const char* const kPieces[] = {"''", ";", "\n",       "\"", "--", "/*",
                                          "a",  " ", "\xC3\xBC", "0",  "\\", "and ROWID = ''AAA''"};
    std::string value;
    for (int i = below(most); i > 0; --i) value += kPieces[below(12)];
    return "'" + value + "'";
  };
  const auto number = [&] {
    return (below(2) == 0 ? "-" : "") + std::to_string(below(100000)) + "." +
           std::to_string(below(1000)) + (below(4) == 0 ? "e-12" : "");
  };
  const auto maybe = [&](std::string value) { return below(5) == 0 ? std::string("null") : value; };
  for (int i = 0; i < 400; ++i) {
    const std::string id = std::to_string(below(60));
    const std::string date = "to_date('" + std::to_string(1000 + below(3000)) + "','YYYY') + " +
                             std::to_string(below(9999)) + "/86400";
    const std::string statements[] = {
        "insert into app.keyed values (" + id + "," + maybe(text(8)) + "," + maybe(number()) + "," +
            maybe(date) + ",to_timestamp('2020-01-01 00:00:00." + std::to_string(below(1000000)) +
            "')," + maybe("hextoraw('00ff" + std::to_string(10 + below(89)) + "')") + "," +
            maybe("'x" + std::to_string(below(99)) + "'") + "," + maybe(text(8)) + ")",
        "update app.keyed set s = " + maybe(text(8)) + ", n = n * 3 / 7, c = s where id = " + id +
            " or mod(id, 20) = " + id,
        "delete from app.keyed where id = " + id,
        "insert into app.loose values (" + maybe(text(4)) + "," + maybe(number()) +
            ", to_timestamp_tz('2020-01-01 00:00:00." + std::to_string(below(999)) + " -05:30'))",
        "update app.loose set b = round(b) + " + id + " where b > " + number(),
    };
    // Some fail (duplicate keys, texts too long): they must leave nothing behind.
    (void)client_.Execute(statements[std::max(below(6) - 1, 0)]);
    if (below(9) == 0) client_.Run(below(5) == 0 ? "rollback" : "commit");
  }
  client_.Run("commit");
  const std::vector<std::string> mined = client_.Mine(before + 1);
  EXPECT_GT(mined.size(), 150U);
  for (std::string sql : mined) {
    sql.pop_back();
    if (sql.back() != ')') sql.resize(sql.size() - 33);
    ASSERT_EQ(target.Execute(sql), "") << sql;
  }
  ASSERT_EQ(target.Disconnect(), "");
  std::string output;
  EXPECT_EQ(Tool("diff SRC DST", &output), 0) << output;
}

}  // namespace
}  // namespace quillmere::sandbox_test
