// SPDX-License-Identifier: MIT
// The function table of the models, driven by the program's own sessions and engine.
#include <gtest/gtest.h>

#include "oracle/follow_queries.h"
#include "oracle/text_query.h"
#include "sim/model_oci.h"

namespace quillmere::sim {
namespace {

// All rows of a query, with as many columns as asked for; "failed" and why in one row.
Rows Query(OracleSession& session, std::string_view sql, std::size_t columns) {
  TextQuery query(session, kListLabels);
  constexpr oci::sb4 k = 16'000;
  const bool open = columns == 14 ? query.Open(sql, {k, k, k, k, k, k, k, k, k, k, k, k, k, k})
                    : columns > 5 ? query.Open(sql, {k, k, k, k, k, k, k})
                                  : query.Open(sql, {k, k, k, k, k});
  Rows rows;
  if (!open) return {{"failed", session.LastError()}};
  TextQuery::Row status;
  while ((status = query.Fetch()) == TextQuery::Row::Fetched) {
    rows.emplace_back();
    for (std::size_t i = 0; i < columns; ++i) rows.back().emplace_back(query.Raw(i));
  }
  if (status == TextQuery::Row::Failed) return {{"failed", session.LastError()}};
  return rows;
}

class ModelOciTest : public ::testing::Test {
 protected:
  void Connect(const SourceShape& shape) {
    source_.emplace(shape, oci_.Now());
    oci_.Add("SRC", *source_);
    oci_.Add("DES", destination_);
    destination_.AddTable("SHOP.ORDERS", 0);
    ASSERT_TRUE(session_.Connect({"SRC", "u", "p", true})) << session_.LastError();
  }
  // The number of the ORA error, 0 for none.
  static int Run(OracleSession& session, std::string_view sql) {
    if (session.Execute(sql)) return 0;
    return std::stoi(session.LastError().substr(session.LastError().find("ORA-") + 4, 5));
  }

  HandClock clock_;
  std::optional<SourceModel> source_;
  DestinationModel destination_;
  ModelOci oci_{clock_};
  OciLibrary library_{oci_.Api()};
  OracleSession session_{library_};
};

TEST_F(ModelOciTest, AnswersTheQueriesOfFollowingByCommits) {
  SourceShape shape{.threads = 2, .log = {.groups = 2, .members = 2, .archived = true}};
  shape.habits.per_second = 0;
  shape.background_redo = false;
  Connect(shape);
  oci_.source_ms = oci_.round_trip_ms = 0;
  const std::uint32_t transaction = source_->Begin();
  source_->Do(transaction, Operation::Insert, 0);  // SCN 1001
  source_->Thread(0).WriteAll();
  source_->Thread(0).Switch(1002);
  source_->Thread(0).Switch(1003);
  EXPECT_EQ(Query(session_, follow::kReadScn, 1), Rows{{"1001"}});
  EXPECT_EQ(Query(session_, follow::kOldestOpen, 1), Rows{{"0"}});
  clock_.TurnMinutes(120);
  EXPECT_EQ(Query(session_, follow::kOldestOpen, 1), Rows{{"1001"}});
  EXPECT_EQ(Query(session_, follow::FillIn(follow::kOldestSession, {"1001"}), 7),
            (Rows{{"2", "1", "1", "1", "SHOP", "desk-7", "till"}}));
  EXPECT_EQ(Query(session_, follow::kIdentity, 2), (Rows{{"1234567890", "1"}}));
  EXPECT_EQ(Query(session_, follow::kThreads, 4),
            (Rows{{"1", "OPEN", "1001", "1"}, {"2", "OPEN", "999", "1"}}));
  const Rows online = Query(session_, follow::kOnlineLogs, 5);
  ASSERT_EQ(online.size(), 8U);
  EXPECT_EQ(online[3],
            (std::vector<std::string>{"1", "4", "1003", "CURRENT", "/redo/t1_g2_m2.log"}));
  EXPECT_EQ(Query(session_, follow::kLogsNow, 3)[0], (std::vector<std::string>{"1", "3", "1002"}));
  EXPECT_EQ(Query(session_, follow::FillIn(follow::kArchivedLogs, {"1001"}), 5),
            (Rows{{"1", "2", "1000", "1002", "/archive/1_2_1.arc"}}));
  EXPECT_EQ(Query(session_, "select 1 from nothing", 1)[0][0], "failed");
}

TEST_F(ModelOciTest, ContentsAreWholeTransactionsInCommitOrder) {
  SourceShape shape;
  shape.log.bytes = 100'000'000;
  shape.habits = {.per_second = 20, .savepoint = .2, .long_text = .05, .no_statement = .05};
  Connect(shape);
  struct Expected {
    std::string xid;
    std::int64_t scn;
    std::vector<Change> changes;
  };
  std::vector<Expected> expected;
  source_->on_commit = [&](const Transaction& committed) {
    expected.push_back({committed.Xid(), committed.commit_scn, committed.changes});
  };
  source_->RunUntil(oci_.Now() + 60'000);
  source_->on_commit = nullptr;
  source_->RunUntil(oci_.Now() + 64'000);
  ASSERT_TRUE(session_.SetLogs(1000)) << session_.LastError();
  const std::string from = std::to_string(expected[100].scn);
  const std::string below = std::to_string(expected[900].scn);
  const Rows rows = Query(session_, follow::FillIn(follow::kContents, {from, below}), 14);
  std::size_t row = 0;
  for (const Expected& one : expected) {
    if (one.scn < expected[100].scn || one.scn >= expected[900].scn) continue;
    for (const Change& change : one.changes) {
      std::string joined;
      using follow::Column;
      bool more = true;
      for (; more; ++row) {
        ASSERT_LT(row, rows.size());
        ASSERT_EQ(rows[row][Column::Xid], one.xid);
        ASSERT_EQ(rows[row][Column::CommitScn], std::to_string(one.scn));
        ASSERT_EQ(rows[row][Column::Rollback], change.undo ? "1" : "0");
        joined += rows[row][Column::SqlRedo];
        more = rows[row][Column::Csf] == "1";
      }
      ASSERT_EQ(joined, Redo(change));
    }
  }
  EXPECT_EQ(row, rows.size());
}

TEST_F(ModelOciTest, ADestinationIsAsStrictAsAServer) {
  Connect({});
  using follow::FillIn;
  const std::string insert = "INSERT INTO SHOP.ORDERS(\"ID\",\"V\") values ('1','7')";
  const std::string add = FillIn(follow::kInsertPosition, {"OPS", "j1", "100", "0"});
  const std::string lock = FillIn(follow::kLockPosition, {"OPS", "j1"});
  const std::string update = FillIn(follow::kUpdatePosition, {"OPS", "120", "3", "j1"});
  OracleSession session(library_);
  ASSERT_TRUE(session.Connect({"DES", "u", "p", false}));
  const std::pair<std::string, int> steps[] = {
      {std::string(follow::kBackToSavepoint), 1086},
      {insert, 0},
      {insert, 1},
      {std::string(follow::kSavepoint), 0},
      {"UPDATE  SHOP.ORDERS set \"V\" = '8' where \"ID\" = '1' and \"V\" = '7'", 0},
      {"DELETE FROM SHOP.ORDERS where \"ID\" = '1' and \"V\" = '8'", 0},
      {std::string(follow::kBackToSavepoint), 0},
      {"INSERT INTO SHOP.OTHER(\"ID\",\"V\") values ('1','7')", 942},
      {"drop everything", 900},
      {add, 942},
      {FillIn(follow::kCreatePositions, {"OPS"}), 0},  // commits
      {add, 0}};
  for (const auto& [sql, code] : steps) EXPECT_EQ(Run(session, sql), code) << sql;
  ASSERT_TRUE(session.EndSession());
  session.Disconnect();
  EXPECT_EQ(destination_.Journal(), (std::vector<Arrival>{{0, 7}}));

  // A program dies with its row locked: the next one waits, at most 5 s, and finds it taken back.
  for (const std::int64_t noticed_after : {3'000, 9'000}) {
    OracleSession dead(library_);
    ASSERT_TRUE(dead.Connect({"DES", "u", "p", false}));
    EXPECT_EQ(Run(dead, update), 0);
    oci_.Die(noticed_after);
    ASSERT_TRUE(session.Connect({"DES", "u", "p", false}));
    EXPECT_EQ(noticed_after <= 5'000 || Run(session, lock) == 30006, true);
    const std::int64_t asked = oci_.Now();
    EXPECT_EQ(Query(session, lock, 2), (Rows{{"100", "0"}}));
    EXPECT_GT(oci_.Now(), asked);
    session.Disconnect();
  }
  // An answer that is lost: the session's end was served all the same.
  oci_.fault = [](std::string_view call, std::string_view) -> std::optional<ModelOci::Fault> {
    if (call != "SessionEnd") return std::nullopt;
    return ModelOci::Fault{.served_before = true};
  };
  ASSERT_TRUE(session.Connect({"DES", "u", "p", false}));
  EXPECT_EQ(Run(session, update), 0);
  EXPECT_FALSE(session.EndSession());
  oci_.fault = nullptr;
  ASSERT_TRUE(session.Connect({"DES", "u", "p", false}));
  EXPECT_EQ(Query(session, lock, 2), (Rows{{"120", "3"}}));
}

}  // namespace
}  // namespace quillmere::sim
