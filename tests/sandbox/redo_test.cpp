// SPDX-License-Identifier: MIT
// What is mined, and that it makes the same tables elsewhere.
#include <random>

#include "sandbox/client.h"

namespace quillmere::sandbox_test {

namespace {

// What a program does with mined text: cut the tail, execute elsewhere. Both ends must agree.
TEST_F(SandboxTest, ReplayedRedoMakesTheSameTables) {
  const char* const tables = R"(
    create table app.keyed (id number(6) primary key, s varchar2(60), n number, d date,
        t timestamp(9), r raw(20), c char(5), l clob)
    create table app.loose (a varchar2(30), b number(10,3), z timestamp(6) with time zone)
  )";
  Client target;
  ASSERT_EQ(target.ConnectSys("DST"), "");
  target.Run("create user app identified by app");
  client_.Run("create user app identified by app");
  target.Run(tables);
  client_.Run(tables);
  const long long before = std::stoll(client_.Ask("select current_scn from v$database"));
  std::mt19937 random(20261122);
  const auto below = [&random](unsigned n) { return static_cast<int>(random() % n); };
  const auto text = [&](unsigned most) {
    static const char* const kPieces[] = {"''", ";", "\n",       "\"", "--", "/*",
                                          "a",  " ", "\xC3\xBC", "0",  "\\", "and ROWID = ''AAA''"};
    std::string value;
    for (int i = below(most); i > 0; --i) value += kPieces[below(12)];
    // Longer than a piece of the redo, and every offset of its cut against two bytes.
    for (int i = below(20) == 0 ? 2000 + below(9) : 0; most > 8 && i > 0; --i) value += "\xC3\xA9";
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
            maybe("'x" + std::to_string(below(99)) + "'") + "," + maybe(text(9)) + ")",
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
