// SPDX-License-Identifier: MIT
// The parts that are easier to try by themselves than through a client.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <sstream>

#include "sandbox/redo/redo_text.h"
#include "sandbox/session/session.h"
#include "sandbox/sql/parser.h"
#include "sandbox/store/sqlite_functions.h"
#include "sandbox/tool/script.h"
#include "sandbox/values/decimal.h"
#include "sandbox/values/rowid.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

TEST(DecimalTest, OneValueHasOneText) {
  struct Case {
    const char* text;
    const char* canonical;  // "" : no number
  };
  const Case cases[] = {
      {"0", "0"},
      {"-0.000", "0"},
      {"+007.50", "7.5"},
      {".5", ".5"},
      {"5.", "5"},
      {"1e3", "1000"},
      {"12.5E-3", ".0125"},
      {" 8 ", "8"},
      {"1e-131", "0"},
      {"1e126", ""},
      {"9e125", nullptr},
      {"", ""},
      {"-", ""},
      {".", ""},
      {"1.2.3", ""},
      {"1e", ""},
      {"0x10", ""},
      {"1 2", ""},
      {"1e99999999999", ""},
      {"--1", ""},
      {"1234567890123456789012345678901234567890.5", "1234567890123456789012345678901234567891"},
      {"99999999999999999999999999999999999999999", "100000000000000000000000000000000000000000"},
  };
  EXPECT_EQ(Decimal::Parse("-1e-130")->Text(), "-." + std::string(129, '0') + "1");
  for (const Case& test : cases) {
    const auto number = Decimal::Parse(test.text);
    if (test.canonical == nullptr) {
      EXPECT_EQ(number->Text().size(), 126U);
      continue;
    }
    EXPECT_EQ(number ? number->Text() : "", test.canonical) << test.text;
    if (number) {
      EXPECT_EQ(Decimal::Parse(number->Text())->Text(), number->Text()) << test.text;
    }
  }
}

// The order of texts in indexes must be the order of values.
TEST(DecimalTest, TextsCompareLikeDifferences) {
  std::mt19937 random(3);
  const auto any = [&random] {
    std::string text = random() % 2 == 0 ? "-" : "";
    text += std::to_string(random() % (random() % 3 == 0 ? 10U : 100000U));
    if (random() % 2 == 0) text += "." + std::to_string(random() % 1000);
    if (random() % 4 == 0) text += "e" + std::to_string(static_cast<int>(random() % 40) - 20);
    return *Decimal::Parse(text);
  };
  for (int i = 0; i < 5000; ++i) {
    const Decimal a = any();
    const Decimal b = random() % 8 == 0 ? a : any();
    Decimal difference;
    ASSERT_TRUE(Decimal::Add(a, b.Negated(), &difference).ok());
    const int order = CompareDecimalTexts(a.Text(), b.Text());
    const int wants = difference.IsZero() ? 0 : difference.IsNegative() ? -1 : 1;
    EXPECT_EQ(order < 0 ? -1 : order > 0 ? 1 : 0, wants) << a.Text() << " ? " << b.Text();
  }
}

TEST(DecimalTest, DivisionUndoesMultiplication) {
  std::mt19937_64 random(4);
  for (int i = 0; i < 1000; ++i) {
    const Decimal a(static_cast<std::int64_t>(random() % 1000000007));
    const Decimal b(static_cast<std::int64_t>(random() % 99991) - 50000);
    if (b.IsZero()) continue;
    Decimal product;
    Decimal back;
    ASSERT_TRUE(Decimal::Multiply(a, b, &product).ok());
    ASSERT_TRUE(Decimal::Divide(product, b, &back).ok());
    EXPECT_EQ(back.Text(), a.Text());
  }
}

TEST(DateTimeTest, WhatIsWrittenByAMaskIsReadBackByIt) {
  std::mt19937 random(5);
  const char* const masks[] = {"YYYY-MM-DD HH24:MI:SS.FF", "DD-MON-YYYY HH:MI:SS.FF9 AM",
                               "Mon DD, YYYY, HH24.MI.SSXFF", "YYYYMMDDHH24MISSFF9",
                               "DD.MM.YYYY HH12:MI:SS.FF PM TZH:TZM"};
  for (int i = 0; i < 2000; ++i) {
    DateTime value;
    value.year = 1970;
    value = value.PlusSeconds(static_cast<long long>(random()) * 50 - 60000000000LL);
    value.nanosecond = static_cast<int>(random() % 1000000000);
    const char* mask = masks[random() % 5];
    if (std::string_view(mask).ends_with("TZM")) {
      value.offset_minutes = static_cast<int>(random() % 1500) - 750;
    }
    std::string text;
    DateTime back;
    ASSERT_TRUE(FormatDateTime(value, mask, &text).ok());
    ASSERT_TRUE(ParseDateTime(text, mask, &back).ok()) << text << " by " << mask;
    EXPECT_EQ(back.Canonical(Kind::TimestampTz), value.Canonical(Kind::TimestampTz))
        << text << " by " << mask;
    DateTime stored;
    ASSERT_TRUE(DateTime::FromCanonical(value.Canonical(Kind::TimestampTz), &stored));
    EXPECT_EQ(stored.Canonical(Kind::TimestampTz), value.Canonical(Kind::TimestampTz));
  }
  DateTime ignored;
  for (const char* text : {"", "2020", "2020-01-01 00:00:0x", "2020-01-01 00:00:00.12345678"}) {
    EXPECT_FALSE(DateTime::FromCanonical(text, &ignored)) << text;
  }
}

TEST(TextTest, CutsBetweenCharacters) {
  struct Case {
    std::string text;
    std::size_t bytes;
    std::size_t cut;
  };
  const std::string euro = "\xE2\x82\xAC";
  const Case cases[] = {
      {"abc", 5, 3},
      {"abc", 2, 2},
      {"a" + euro, 4, 4},
      {"a" + euro, 3, 1},
      {"a" + euro, 2, 1},
      {euro + euro, 3, 3},
      {"", 4, 0},
      {"\x80\x80\x80\x80\x80\x80", 4, 4},  // no characters at all: cut where asked
  };
  for (const Case& test : cases) EXPECT_EQ(CutAtCharacter(test.text, test.bytes), test.cut);
  std::string mixed;
  for (int i = 0; i < 5000; ++i) mixed += i % 3 == 0 ? euro : i % 3 == 1 ? "x" : "\x82";
  std::string joined;
  for (const std::string& piece : SplitRedo(mixed)) {
    EXPECT_LE(piece.size(), kRedoPieceBytes);
    EXPECT_FALSE(piece.empty());
    joined += piece;
  }
  EXPECT_EQ(joined, mixed);
  EXPECT_EQ(SplitRedo(std::string(8000, 'x')).size(), 2U);
}

TEST(RowAddressTest, IsAlwaysEighteenCharactersAndItsOwn) {
  std::vector<std::string> seen;
  for (const std::int64_t table : {1LL, 64LL, 4095LL}) {
    for (const std::int64_t row : {1LL, 63LL, 64LL, 1LL << 40}) {
      seen.push_back(RowAddress(table, row));
      EXPECT_EQ(seen.back().size(), 18U);
    }
  }
  std::sort(seen.begin(), seen.end());
  EXPECT_EQ(std::unique(seen.begin(), seen.end()), seen.end());
}

TEST(RedoRecordTest, DamagedBytesAreRefusedOrHarmless) {
  RedoRecord record;
  record.operation = RedoOperation::Update;
  record.row = {std::string("1"), std::nullopt, std::string(300, 'x'), std::string()};
  record.changes = {{0, std::string("2")}, {3, std::nullopt}};
  const std::string bytes = EncodeRecord(record);
  RedoRecord back;
  ASSERT_TRUE(DecodeRecord(record.operation, bytes, &back));
  EXPECT_EQ(back.row, record.row);
  EXPECT_EQ(back.changes, record.changes);
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_FALSE(DecodeRecord(record.operation, bytes.substr(0, size), &back)) << size;
  }
  EXPECT_FALSE(DecodeRecord(record.operation, bytes + "x", &back));
  std::mt19937 random(6);
  for (int i = 0; i < 5000; ++i) {
    std::string damaged = bytes;
    damaged[random() % damaged.size()] = static_cast<char>(random());
    damaged[random() % 8] = static_cast<char>(random());
    if (!DecodeRecord(record.operation, damaged, &back)) continue;
    for (const auto& [column, value] : back.changes) EXPECT_LT(column, back.row.size());
  }
}

// A database in a folder of its own, and a session on it.
class LocalSessionTest : public ::testing::Test {
 protected:
  LocalSessionTest() {
    std::string pattern = (std::filesystem::temp_directory_path() / "sandboxXXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    EXPECT_TRUE(FindDatabasePath(folder_, "X", &path_));
    EXPECT_TRUE(CreateDatabase(path_, "sandbox").ok());
    std::shared_ptr<Link> link;
    EXPECT_TRUE(Link::AttachFile(path_, &link).ok());
    EXPECT_TRUE(Session::Open(link, {"SYS", "", true, true}, &session_).ok());
    EXPECT_EQ(Execute("create table t (a number)"), 0);
  }
  ~LocalSessionTest() override {
    session_.reset();
    std::filesystem::remove_all(folder_);
  }

  int Execute(const std::string& sql) {
    StatementResult result;
    return session_->Execute(sql, &result).code();
  }

  std::filesystem::path folder_;
  DatabasePath path_;
  std::unique_ptr<Session> session_;
};

// A cut that comes after the statement arrived and before it commits.
TEST_F(LocalSessionTest, NoCommitCanFollowACut) {
  EXPECT_EQ(Execute("insert into t values (1)"), 0);
  std::unique_ptr<CutFlag> flag;
  ASSERT_TRUE(CutFlag::Open(path_.cut, &flag).ok());
  ASSERT_TRUE(flag->Raise().ok());
  EXPECT_EQ(session_->Commit().code(), 3113);
  EXPECT_FALSE(session_->InTransaction());
  std::ostringstream out;
  std::istringstream script("select count(*) n from t");
  EXPECT_TRUE(RunScript(folder_.string(), "X", script, out, out));
  EXPECT_TRUE(out.str().starts_with("N\n0\n")) << out.str();
}

TEST_F(LocalSessionTest, ChangesEndWithTheNumbersForThem) {
  std::unique_ptr<SqliteConnection> connection;
  ASSERT_TRUE(OpenDatabase(path_, &connection).ok());
  for (const char* scn : {"9223372036854775807", "-1"}) {
    ASSERT_TRUE(connection->Exec(std::string("UPDATE qm_meta SET scn = ") + scn).ok());
    EXPECT_EQ(Execute("insert into t values (1)"), 19706) << scn;
    EXPECT_FALSE(session_->InTransaction());
  }
  EXPECT_EQ(Execute("select count(*) from t"), 0);
}

TEST(ParserTest, KnowsWhatItRefusesByOraclesNumbers) {
  struct Case {
    const char* sql;
    int code;  // 0: understood
  };
  const Case cases[] = {
      {"select", 936},
      {"select 1", 923},
      {"select 1 from", 903},
      {"select 1 from dual where", 936},
      {"select 1 from dual where 1 in 1", 906},
      {"select 1 from dual where 1 is nil", 908},
      {"select 1 from dual order", 924},
      {"select 1 from dual order by 0", 1785},
      {"select * from dual d where d.x = 'a' /* end */ -- really", 0},
      {"select d.*, 1 as one, 'x' \"Two\" from sys.dual d", 0},
      {"insert t values (1)", 925},
      {"insert into values (1)", 903},
      {"insert into t (a) (1)", 926},
      {"insert into t (a values (1)", 907},
      {"insert into t values (1 2)", 917},
      {"insert into t select 1 from dual", 900},
      {"update t", 971},
      {"update t x set a 1", 927},
      {"update t set 1 = 1", 1747},
      {"update O.T set \"A\" = 'x' where \"B\" IS NULL and ROWID = 'AAA'", 0},
      {"delete o.t x where x.a = 1", 0},
      {"create table t", 906},
      {"create table t (a)", 902},
      {"create table t (a number,)", 904},
      {"create table t (a number check (a > 0))", 900},
      {"create table t (a number default)", 936},
      {"create table t (a number) storage (initial 1)", 922},
      {"create table t (select number)", 904},
      {"create table t (\"select\" number, constraint c unique (\"select\"))", 0},
      {"create table t (a number references p on delete nothing)", 905},
      {"create global temporary table t (a number)", 900},
      {"create view v as select 1 from dual", 900},
      {"create index on t (a)", 953},
      {"create index i t (a)", 969},
      {"create user u", 988},
      {"create user u identified by", 988},
      {"create user u identified by p default tablespace users quota unlimited on users", 0},
      {"create user u identified by p bogus clause", 922},
      {"alter user u identified by p and so on", 922},
      {"create index i on t (upper(a))", 907},
      {"alter table t modify a number", 900},
      {"grant dba", 905},
      {"drop table t cascade", 905},
      {"drop view v", 900},
      {"rollback to savepoint", 931},
      {"commit work", 0},
      {"begin dbms_logmnr.end_logmnr; end;", 0},
      {"begin dbms_logmnr.end_logmnr(); end", 6550},
      {"#", 911},
      {"select \"\" from dual", 1741},
      {"select \"a from dual", 1740},
  };
  for (const Case& test : cases) {
    Statement statement;
    const Status status = ParseStatement(test.sql, &statement);
    EXPECT_EQ(status.code(), test.code) << test.sql << ": " << status.message();
  }
}

}  // namespace
}  // namespace quillmere::sandbox
