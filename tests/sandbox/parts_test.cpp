// SPDX-License-Identifier: MIT
// The parts that are easier to try by themselves than through a client.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>

#include "sandbox/redo/redo_text.h"
#include "sandbox/session/session.h"
#include "sandbox/values/decimal.h"
#include "support/temp_folder.h"

namespace quillmere::sandbox {

namespace {

// Against whole numbers of the machine, as thousandths: sums, products, and the order of texts,
// which must be that of the values.
TEST(DecimalTest, AgreesWithWholeNumbers) {
  std::mt19937_64 random(42);
  const auto decimal = [](std::int64_t thousandths) {
    return *Decimal::Parse(std::to_string(thousandths) + "e-3");
  };
  for (int i = 0; i < 5000; ++i) {
    const auto a = static_cast<std::int64_t>(random() % 2000001) - 1000000;
    const auto b = random() % 8 == 0 ? a : static_cast<std::int64_t>(random() % 2001) - 1000;
    Decimal sum;
    Decimal product;
    ASSERT_TRUE(Decimal::Add(decimal(a), decimal(b), &sum).ok());
    EXPECT_EQ(sum.Text(), decimal(a + b).Text());
    ASSERT_TRUE(Decimal::Multiply(decimal(a), Decimal(b), &product).ok());
    EXPECT_EQ(product.Text(), decimal(a * b).Text());
    EXPECT_EQ(product.Rounded(0).Text(),
              Decimal(std::llround(static_cast<double>(a * b) / 1000)).Text());
    EXPECT_EQ(product.Truncated(0).Text(), Decimal(a * b / 1000).Text());
    if (b != 0) {
      Decimal back;
      ASSERT_TRUE(Decimal::Divide(product, Decimal(b), &back).ok());
      EXPECT_EQ(back.Text(), decimal(a).Text());
    }
    const int order = CompareDecimalTexts(decimal(a).Text(), decimal(b).Text());
    EXPECT_EQ(order < 0, a < b) << a << " ? " << b;
    EXPECT_EQ(order > 0, a > b) << a << " ? " << b;
  }
}

TEST(DateTimeTest, WhatIsWrittenByAMaskIsReadBackByIt) {
  std::mt19937 random(5);
  const char* const masks[] = {"YYYY-MM-DD HH24:MI:SS.FF", "DD-MON-YYYY HH:MI:SS.FF9 AM",
                               "Mon DD, YYYY, HH24.MI.SSXFF", "YYYYMMDDHH24MISSFF9",
                               "DD.MM.YYYY HH:MI:SS.FF PM TZH:TZM"};
  for (int i = 0; i < 2000; ++i) {
    DateTime value;
    value = value.PlusSeconds(static_cast<long long>(random()) * 70);
    value.nanosecond = static_cast<int>(random() % 1000000000);
    const std::string mask = masks[random() % 5];
    if (mask.ends_with("TZM")) value.offset_minutes = static_cast<int>(random() % 1500) - 750;
    std::string text;
    DateTime back;
    ASSERT_TRUE(FormatDateTime(value, mask, &text).ok());
    ASSERT_TRUE(ParseDateTime(text, mask, &back).ok()) << text << " by " << mask;
    const std::string canonical = value.Canonical(Kind::TimestampTz);
    EXPECT_EQ(back.Canonical(Kind::TimestampTz), canonical) << text << " by " << mask;
    ASSERT_TRUE(DateTime::FromCanonical(canonical, &back));
    EXPECT_EQ(back.Canonical(Kind::TimestampTz), canonical);
  }
}

TEST(RedoRecordTest, DamagedBytesAreRefused) {
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
}

// A database in a folder of its own, and a session on it.
class LocalSessionTest : public ::testing::Test {
 protected:
  LocalSessionTest() {
    std::shared_ptr<Link> link;
    EXPECT_TRUE(FindDatabasePath(folder_.Path().string(), "X", &path_));
    EXPECT_TRUE(CreateDatabase(path_, "sandbox").ok());
    EXPECT_TRUE(Link::AttachFile(path_, &link).ok());
    EXPECT_TRUE(Session::Open(link, {"SYS", "", true, true}, &session_).ok());
    EXPECT_EQ(Execute("create table t (a number)"), 0);
  }
  ~LocalSessionTest() override { session_.reset(); }

  int Execute(const std::string& sql) {
    StatementResult result;
    return session_->Execute(sql, &result).code();
  }

  TempFolder folder_;
  DatabasePath path_;
  std::unique_ptr<Session> session_;
};

// Who reads the SCN, then the open transaction, then the SCN again must not find the commit in the
// SCN before it is in the file, nor the transaction gone.
TEST_F(LocalSessionTest, ACommitIsInTheFileBeforeItIsShown) {
  std::unique_ptr<SqliteConnection> writer;
  std::unique_ptr<OpenTransaction> shown;
  ASSERT_TRUE(OpenDatabase(path_, &writer).ok());
  ASSERT_TRUE(OpenTransaction::Open(path_.open, &shown).ok());
  Transaction transaction(writer.get(), shown.get(), "X");
  ASSERT_TRUE(transaction.Begin().ok() && transaction.WriteRedo(1, 1, 1, Blob{"x"}).ok());
  std::function<int()> look = [&shown, before = shown->last_scn()] {
    TransactionRecord open;
    return shown->Find(&open) && shown->last_scn() == before ? 0 : 1;
  };
  const auto call = [](void* data) { return (*static_cast<std::function<int()>*>(data))(); };
  sqlite3_commit_hook(writer->handle(), call, &look);
  EXPECT_TRUE(transaction.Commit().ok());
  EXPECT_EQ(shown->last_scn(), transaction.last_scn());
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

}  // namespace
}  // namespace quillmere::sandbox
