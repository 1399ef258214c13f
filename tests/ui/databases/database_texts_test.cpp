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

TEST(DatabaseTexts, CountsSayWhatIsShownOfHowMany) {
  struct Row {
    NodeKind kind;
    ListCounts counts;
    const char* text;
  };
  for (const Row& row :
       {Row{NodeKind::Root, {1, 1, 0}, "1 data source"}, Row{NodeKind::Index, {1, 1, 1}, "1 index"},
        Row{NodeKind::Table, {12, 2500, 0}, "12 of 2,500 tables"},
        Row{NodeKind::PrimaryKey, {9, 9, 3}, "9 primary keys, 3 selected"},
        Row{NodeKind::DataSource, {3, 3, 1}, "Connected"}}) {
    EXPECT_EQ(ToBytes(CountText({row.kind, "A"}, row.counts, ConnectionState::Connected)),
              row.text);
  }
}

TEST(DatabaseTexts, ADropSaysWhatGoesAlong) {
  struct Row {
    ObjectKind kind;
    std::size_t count;
    bool cascade;
    testing::Matcher<std::string> says;
  };
  for (const Row& row : std::vector<Row>{
           {ObjectKind::Table, 3, false,
            AllOf(StartsWith("3 tables of HQ will be dropped with all their rows. This cannot"),
                  HasSubstr("stays and is reported as failed"))},
           {ObjectKind::Table, 1, true,
            AllOf(StartsWith("1 table of HQ will be dropped with all its rows."),
                  HasSubstr("that reference it are dropped, too"))},
           {ObjectKind::PrimaryKey, 1, false,
            HasSubstr("with it every foreign key that references it, whoever owns it")}}) {
    EXPECT_THAT(ToBytes(DropAdvice(row.kind, row.count, "HQ", row.cascade)), row.says);
  }
}

TEST(DatabaseTexts, AMigrationSaysWhatItsOptionsDo) {
  struct Row {
    const char* what;
    ObjectKind kind;
    const char* target;
    const char* ticked;  // d: drop target, p: prompt, k: with key, i: with indexes
    testing::Matcher<std::string> says;
  };
  const auto table = ObjectKind::Table;
  for (const Row& row : std::vector<Row>{
           {"no target", table, "", "dpki", StartsWith("Choose the data source")},
           {"plain", table, "COPY", "",
            AllOf(StartsWith("2 tables of HQ will be created on COPY. No rows"),
                  HasSubstr("is left as it is"), Not(HasSubstr("undone")))},
           {"key", table, "COPY", "k", HasSubstr("on COPY, with primary keys.")},
           {"key and indexes", table, "COPY", "ki",
            AllOf(HasSubstr("with primary keys and indexes"), Not(HasSubstr("only together")))},
           {"indexes alone", table, "COPY", "i",
            AllOf(HasSubstr("only together with primary keys"), Not(HasSubstr("and indexes")))},
           {"drop", table, "COPY", "d",
            AllOf(HasSubstr("with all its rows"), HasSubstr("This cannot be undone."))},
           {"drop a key", ObjectKind::PrimaryKey, "COPY", "d",
            AllOf(HasSubstr("is dropped first. This cannot be undone."), Not(HasSubstr("rows")))},
           {"prompt", table, "COPY", "p", HasSubstr("\"Prompt Before Drop\" changes nothing")}}) {
    const auto ticked = [&](char option) {
      return std::string_view(row.ticked).find(option) != std::string_view::npos;
    };
    const MigratePlan plan{
        row.kind, 2, "HQ", row.target, {{ticked('d'), ticked('k'), ticked('i')}, ticked('p')}};
    EXPECT_THAT(ToBytes(MigrateAdvice(plan)), row.says) << row.what;
  }
}

TEST(DatabaseTexts, ARunIsSummedUpUnlessAllWasDone) {
  struct Row {
    std::size_t succeeded, failed, total;
    bool cancelled, logged;
    testing::Matcher<std::string> says;
  };
  for (const Row& row : std::vector<Row>{
           {3, 0, 3, false, true, ""},
           {0, 1, 1, false, true, StartsWith("Drop Table T failed, reason: no\n")},
           {3, 2, 5, false, true, StartsWith("2 of 5 failed, the first one with:\nDrop Table T")},
           {3, 1, 9, true, true,
            AllOf(HasSubstr("1 of 9 failed"), HasSubstr("3 of 9 were done and stay done, 5 were"))},
           {0, 0, 9, true, true, "Cancelled, nothing was changed"},
           {3, 0, 3, false, false, HasSubstr("error.log cannot be written")}}) {
    SchemaRun run;
    run.succeeded = row.succeeded;
    run.failed = row.failed;
    run.cancelled = row.cancelled;
    run.logged = row.logged;
    run.first_failure = "Drop Table T failed, reason: no";
    EXPECT_THAT(RunSummary(run, row.total), row.says);
  }
}

}  // namespace
}  // namespace quillmere
