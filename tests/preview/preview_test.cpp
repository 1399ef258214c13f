// SPDX-License-Identifier: MIT
#include "preview/preview.h"

#include "engine/engine_fixture.h"
#include "engine/skip.h"

namespace quillmere {
namespace {

class PreviewTest : public EngineTest {
 protected:
  // "i: e-what is executed", "b-why" and "x-" for what was executed before; the disk and the
  // destination are left alone.
  std::vector<std::string> Ahead() {
    const auto before = files.All("/work");
    script_.TakeTranscript();
    auto preview = LookAhead(program_.context, 0);
    EXPECT_EQ(files.All("/work"), before);
    for (const std::string& call : script_.TakeTranscript()) {
      EXPECT_EQ(call.find("DES"), std::string::npos) << call;
    }
    std::vector<std::string> shown;
    for (std::size_t i = 0; i < preview->Size(); ++i) {
      const PreviewEntry entry = preview->At(i);
      const std::string fate = entry.fate == PreviewEntry::Fate::Executed ? "x" : "";
      shown.push_back(fate + (entry.why.empty() ? entry.statement : "b-" + entry.why));
    }
    EXPECT_EQ(preview->ToExecute() + preview->ToBlock() + preview->Next(), shown.size());
    tables_.clear();
    for (const PreviewTable& table : preview->Tables()) {
      tables_ += table.table + ">" + table.to + " " + std::to_string(table.inserts) +
                 std::to_string(table.updates) + std::to_string(table.deletes) +
                 std::to_string(table.blocked) + " ";
    }
    if (shown.empty()) shown.push_back(preview->Why());
    return shown;
  }
  std::string tables_;
};

TEST_F(PreviewTest, IsWhatThePassThenDoes) {
  using Lines = std::vector<std::string>;
  const std::string update = "update \"SHOP\".\"ITEMS\" set \"N\" = '1' where \"N\" = '0'";
  EXPECT_EQ(Ahead(), Lines{"J is stopped: it takes what changes on the source from its start on"});
  StartJob();
  EXPECT_EQ(Ahead(), Lines{"The next pass of J has nothing to execute yet: what has changed since "
                           "the last one comes with the pass after it"});
  script_.Answer(kRedoQuery, {{"90", Insert("1")},
                              {"91", Insert("x", "SECRET")},
                              {"92", update + kRowAddress + ";"},
                              {"93", update + ";"},
                              {"94", "insert into \"OTHER\".\"T\"(\"ID\") values ('1');"},
                              {"95", Insert("2")},
                              {"100", Insert("3")}});
  const std::string updated = "UPDATE  ARCHIVE.ITEMS set \"N\" = '1' where \"N\" = '0'";
  Lines expected = {InsertOf("1"),
                    "b-the job excludes the table",
                    updated,
                    "b-it does not end with a row address, so it could match other rows",
                    "b-the job does not carry its owner",
                    InsertOf("2")};
  EXPECT_EQ(Ahead(), expected);
  EXPECT_EQ(tables_, "T> 0001 ITEMS>ARCHIVE.ITEMS 0101 ORDERS>SHOP.ORDERS 2000 SECRET> 0001 ");
  script_.FailOn("  " + InsertOf("2"), "ORA-00001: unique constraint\n", 1, 0);
  NextPass();
  EXPECT_EQ(Applied(), (Lines{InsertOf("1"), updated}));
  const std::string aside = "b-it was set aside when it was mined; see setaside.sql";
  expected = {"x" + expected[0], "x" + expected[1], "x" + updated,
              "x" + aside,       "x" + expected[4], InsertOf("2")};
  EXPECT_EQ(Ahead(), expected);
  EXPECT_EQ(tables_, "ORDERS>SHOP.ORDERS 1000 ");
  RequestPause(program_.jobs, 0);
  Step();
  NextToSkip next;
  std::string reason;
  ASSERT_TRUE(FindNextToSkip(program_.jobs, 0, next, reason)) << reason;
  ASSERT_TRUE(MarkToSkip(files, program_.catalogue.FolderOf("J"), job_.run, next, reason));
  expected.back() = "b-it is to be skipped";
  EXPECT_EQ(Ahead(), expected);
}

TEST_F(PreviewTest, EndsAndFailsWithoutATrace) {
  StartJob();
  std::vector<std::vector<std::optional<std::string>>> redo;
  for (int i = 0; i < 9; ++i) redo.push_back({"90", Insert(std::to_string(i))});
  script_.Answer(kRedoQuery, redo);
  program_.settings.most_statements = 4;
  EXPECT_EQ(Ahead().size(), 4U);
  script_.FailOn("Fetch", "ORA-01291: missing logfile\n", 1291, 3);
  EXPECT_EQ(Ahead().front(), "GetSqlStrings fail : OCIStmtFetch2 : ORA-01291: missing logfile");
  int asked = 0;
  const auto preview = LookAhead(program_.context, 0, [&] { return ++asked > 8; });
  EXPECT_EQ(preview->What(), Preview::Kind::Failed);
}

}  // namespace
}  // namespace quillmere
