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
