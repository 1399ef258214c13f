// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "ui/databases/list_texts.h"
#include "ui/databases/schema_texts.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(DatabaseTexts, ActionsAreVisibleByNodeAndConnection) {
  struct Row {
    const char* what;
    NodeKind kind;
    bool connected;
    VisibleActions visible;
  };
  const std::vector<Row> rows = {
      {"nothing", NodeKind::None, false, {}},
      {"root", NodeKind::Root, true, {}},
      {"not connected", NodeKind::DataSource, false, {.connect = true}},
      {"connected", NodeKind::DataSource, true, {.disconnect = true, .refresh = true}},
      {"keys", NodeKind::PrimaryKey, true, {.meta = true}},
      {"indexes", NodeKind::Index, false, {.meta = true}},
      {"tables", NodeKind::Table, true, {.meta = true}},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(VisibleActionsFor(row.kind, row.connected), row.visible) << row.what;
  }
  EXPECT_TRUE(MayOpenManager(19));
  EXPECT_FALSE(MayOpenManager(20));
}

TEST(DatabaseTexts, CountsSayWhatIsShownOfHowMany) {
  struct Row {
    DatabaseNode node;
    ListCounts counts;
    const char* text;
  };
  const std::vector<Row> rows = {
      {{NodeKind::Root, ""}, {1, 1, 0}, "1 data source"},
      {{NodeKind::Index, "A"}, {1, 1, 1}, "1 index"},
      {{NodeKind::Table, "A"}, {12, 2500, 0}, "12 of 2,500 tables"},
      {{NodeKind::PrimaryKey, "A"}, {9, 9, 3}, "9 primary keys, 3 selected"},
      {{NodeKind::DataSource, "A"}, {3, 3, 1}, "Connected"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ToBytes(CountText(row.node, row.counts, ConnectionState::Connected)), row.text);
  }
  EXPECT_EQ(ConnectionText(ConnectionState::Disconnected), "DisConnected");
  EXPECT_EQ(ConnectionText(ConnectionState::Registered), "");
  const DatabaseNode tables{NodeKind::Table, "HQ"};
  EXPECT_THAT(ToBytes(EmptyText(tables, ConnectionState::Connected)), HasSubstr("refresh"));
  EXPECT_THAT(ToBytes(EmptyText(tables, ConnectionState::Disconnected)),
              HasSubstr("connect to it"));
}

TEST(DatabaseTexts, ADropSaysWhatGoesAlong) {
  EXPECT_EQ(DropCountLine(ObjectKind::Table, 3), "3 Table(s) to drop:");
  EXPECT_EQ(DropCountLine(ObjectKind::PrimaryKey, 1), "1 primary key(s) to drop:");
  EXPECT_EQ(DropCountLine(ObjectKind::Index, 2), "2 indexe(s) to drop:");
  const auto advice = [](ObjectKind kind, std::size_t count, bool cascade) {
    return ToBytes(DropAdvice(kind, count, "SHOP_HQ", cascade));
  };
  EXPECT_THAT(advice(ObjectKind::Table, 3, false),
              AllOf(StartsWith("3 tables of SHOP_HQ will be dropped with all their rows. This "
                               "cannot be undone."),
                    HasSubstr("stays and is reported as failed")));
  EXPECT_THAT(advice(ObjectKind::Table, 1, true),
              AllOf(StartsWith("1 table of SHOP_HQ will be dropped with all its rows."),
                    HasSubstr("that reference it are dropped, too")));
  EXPECT_THAT(advice(ObjectKind::PrimaryKey, 1, false),
              HasSubstr("with it every foreign key that references it, whoever owns it"));
}

TEST(DatabaseTexts, AMigrationSaysWhatItsOptionsDo) {
  EXPECT_EQ(MigrateCountLine(ObjectKind::Index, 2), "2 indexe(s) to migrate:");
  struct Row {
    const char* what;
    ObjectKind kind;
    const char* target;
    MigrateOptions options;
    bool prompt;
    testing::Matcher<std::string> text;
  };
  const auto table = ObjectKind::Table;
  const std::vector<Row> rows = {
      {"no target", table, "", {true, true, true}, true, StartsWith("Choose the data source")},
      {"plain",
       table,
       "COPY",
       {},
       false,
       AllOf(StartsWith("2 tables of HQ will be created on COPY. No rows"),
             HasSubstr("is left as it is"), Not(HasSubstr("undone")))},
      {"key", table, "COPY", {false, true, false}, false, HasSubstr("on COPY, with primary keys.")},
      {"key and indexes",
       table,
       "COPY",
       {false, true, true},
       false,
       AllOf(HasSubstr("with primary keys and indexes"), Not(HasSubstr("only together")))},
      {"indexes alone",
       table,
       "COPY",
       {false, false, true},
       false,
       AllOf(HasSubstr("only together with primary keys"), Not(HasSubstr("and indexes")))},
      {"drop",
       table,
       "COPY",
       {true, false, false},
       false,
       AllOf(HasSubstr("with all its rows"), HasSubstr("This cannot be undone."))},
      {"drop a key",
       ObjectKind::PrimaryKey,
       "COPY",
       {true, false, false},
       false,
       AllOf(HasSubstr("is dropped first. This cannot be undone."), Not(HasSubstr("rows")))},
      {"prompt", table, "COPY", {}, true, HasSubstr("\"Prompt Before Drop\" changes nothing")},
  };
  for (const Row& row : rows) {
    MigratePlan plan;
    plan.kind = row.kind;
    plan.count = 2;
    plan.source = "HQ";
    plan.target = row.target;
    plan.choices = {row.options, row.prompt};
    EXPECT_THAT(ToBytes(MigrateAdvice(plan)), row.text) << row.what;
  }
}

TEST(DatabaseTexts, ARunIsSummedUpUnlessAllWasDone) {
  const auto summary = [](std::size_t succeeded, std::size_t failed, bool cancelled, bool logged,
                          std::size_t total) {
    SchemaRun run;
    run.succeeded = succeeded;
    run.failed = failed;
    run.cancelled = cancelled;
    run.logged = logged;
    run.first_failure = "Drop Table T failed, reason: no";
    return RunSummary(run, total);
  };
  EXPECT_EQ(summary(3, 0, false, true, 3), "");
  EXPECT_THAT(summary(0, 1, false, true, 1), StartsWith("Drop Table T failed, reason: no\n"));
  EXPECT_THAT(summary(3, 2, false, true, 5),
              StartsWith("2 of 5 failed, the first one with:\nDrop Table T failed"));
  EXPECT_THAT(
      summary(3, 1, true, true, 9),
      AllOf(HasSubstr("1 of 9 failed"), HasSubstr("3 of 9 were done and stay done, 5 were")));
  EXPECT_EQ(summary(0, 0, true, true, 9), "Cancelled, nothing was changed");
  EXPECT_THAT(summary(3, 0, false, false, 3), HasSubstr("error.log cannot be written"));
}

}  // namespace
}  // namespace quillmere
