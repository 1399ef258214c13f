// SPDX-License-Identifier: MIT
// From mined text to the statement that runs on the destination.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "engine/redo_assembler.h"
#include "engine/rewriter.h"
#include "engine/statement_safety.h"
#include "support/config_of.h"
#include "support/stored_text.h"

namespace quillmere {
namespace {

// What the rows were taken for: "SCN text", "SCN unfinished:text", "SCN comment:text".
struct Taken final : RedoAssembler::Taker {
  void OnStatement(std::int64_t scn, std::string_view text) override { Note(scn, "", text); }
  void OnUnfinished(std::int64_t scn, std::string_view text) override {
    Note(scn, "unfinished:", text);
  }
  void OnComment(std::int64_t scn, std::string_view text) override { Note(scn, "comment:", text); }
  void Note(std::int64_t scn, std::string_view kind, std::string_view text) {
    found.push_back(std::to_string(scn) + " " + std::string(kind) + std::string(text));
  }
  std::vector<std::string> found;
};

const std::string kInsert = "insert into \"A\".\"B\"(\"X\") values (";
const std::string kDelete = "delete from \"A\".\"B\" where \"K\" = '2'";
const std::string kLong(2000, 'x');

// The rows are given a line each, at SCN 1, 2, ...; "\\n" is a line feed in a row.
TEST(RedoAssembler, FindsStatementsInRows) {
  ExpectCases(TABLES "/assembler.txt", [](const std::string& given) {
    RedoAssembler assembler;
    Taken taken;
    std::istringstream rows(given);
    std::int64_t scn = 0;
    for (std::string row; std::getline(rows, row);) {
      for (std::size_t at; (at = row.find("\\n")) != row.npos;) row.replace(at, 2, "\n");
      EXPECT_TRUE(assembler.Add(++scn, row, taken));
    }
    if (!assembler.Finish(taken)) taken.found.push_back("broken off");
    std::string found;
    for (const std::string& line : taken.found) found += line + "\n";
    return found;
  });
}

TEST(RedoAssembler, AStatementMayNotGrowWithoutEnd) {
  RedoAssembler assembler(4000);
  Taken taken;
  EXPECT_TRUE(assembler.Add(1, kLong, taken) && assembler.Add(2, kLong, taken));
  EXPECT_FALSE(assembler.Add(3, "x", taken));
  EXPECT_EQ(assembler.OpenScn(), 1);
}

// However the server cuts its rows, the statements are the same.
TEST(RedoAssembler, TheCutOfRowsDoesNotMatter) {
  std::mt19937 random(4711);
  const std::string alphabet = "a;'\"\n (),";
  std::string text;
  std::vector<std::string> expected;
  for (int i = 0; i < 300; ++i) {
    std::string value;
    for (int n = static_cast<int>(random() % 40); n > 0; --n) {
      const char c = alphabet[random() % alphabet.size()];
      value += c == '\'' ? std::string("''") : std::string(1, c);
    }
    expected.push_back("0 " + kInsert + "'" + value + "')");
    text += kInsert + "'" + value + "');";
  }
  for (int round = 0; round < 200; ++round) {
    RedoAssembler assembler;
    Taken taken;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t length = 1 + random() % 97;
      ASSERT_TRUE(assembler.Add(0, std::string_view(text).substr(at, length), taken));
      at += length;
    }
    ASSERT_EQ(taken.found, expected);
    ASSERT_TRUE(assembler.Open().empty());
  }
}

// As a server cuts: where a piece is full. Tables that audit others hold statements, which may
// begin where a piece does; changes of other tables may have an apostrophe that is left as it is.
TEST(RedoAssembler, AnApostropheBreaksItsOwnChangeOnly) {
  std::mt19937 random(11);
  constexpr std::size_t kFull = 4000;
  RedoAssembler assembler;
  Taken taken;
  std::vector<std::string> expected;
  for (int scn = 0; scn < 3000; ++scn) {
    const bool audit = random() % 3 == 0;
    const bool broken = !audit && random() % 3 == 0;
    std::string change = kInsert + "'";
    if (audit) change.resize(kFull * (1 + random() % 2), 'a');
    if (audit) change += kInsert + "''1''); " + kDelete.substr(0, 30);
    change += std::string(random() % 6000, 'b') + (broken ? "'s" : "") + "','1')";
    expected.push_back(std::to_string(scn) + (broken ? " unfinished:" : " ") + change);
    if (broken) expected.back() += ';';
    change += ';';
    for (std::size_t at = 0; at < change.size(); at += kFull) {
      ASSERT_TRUE(assembler.Add(scn, std::string_view(change).substr(at, kFull), taken));
    }
  }
  assembler.Finish(taken);
  const auto [wrong, right] =
      std::mismatch(taken.found.begin(), taken.found.end(), expected.begin(), expected.end());
  EXPECT_EQ(wrong, taken.found.end()) << wrong->substr(0, 90) << "\n" << right->substr(0, 90);
  EXPECT_EQ(taken.found.size(), expected.size());
}

TEST(StatementSafety, JudgesByTextAndRow) {
  ExpectCases(TABLES "/safety.txt", [](const std::string& given) {
    const std::size_t end = given.find("\nnot executable");
    const std::string_view mined = std::string_view(given).substr(0, end);
    const Judgement judged = JudgeStatement(mined, {.not_executable = end != given.npos});
    EXPECT_EQ(judged.safety == Safety::Safe, !judged.kept.empty());
    return judged.kept.empty() ? "unsafe: " + std::string(WhyUnsafe(judged.safety))
                               : std::string(judged.kept);
  });
}

class Rewriter : public ::testing::Test {
 protected:
  Rewriter() {
    JobSchema& shop = config_.schemas["SHOP"];
    shop.Append({.name = "ORDERS", .desowner = "SHOP"});
    shop.Append({.name = "ITEMS", .desowner = "ARCHIVE"});
    shop.Append({.name = "SECRET", .desowner = "SHOP", .includeflag = false});
    shop.Append({.name = "EMPTYOWNER"});
    shop.Append({.name = "MOVED", .desowner = "shop"});
    config_.schemas["shop"];
    config_.schemas["A.B"].Append({.name = "T (1", .desowner = "AB"});
    config_.schemas["SYS"].Append({.name = "TAB$", .desowner = "SYS"});
  }
  SyncJob job_;
  JobConfig& config_ = ConfigOf(job_);
};

TEST_F(Rewriter, DecidesAndRewrites) {
  ExpectCases(TABLES "/rewriter.txt", [&](const std::string& statement) {
    const ParsedStatement parsed = ParseStatement(statement);
    const Verdict verdict = Decide(job_, parsed);
    const std::string counted = verdict.table == nullptr ? "" : " " + verdict.table->name;
    if (verdict.decision == Decision::Blocked) return "blocked" + counted;
    if (verdict.decision == Decision::Excluded) return "excluded" + counted;
    std::string dropped = "left over from the statement before", kept;
    Rewrite(parsed, verdict.owner, NameQuotes::Dropped, dropped);
    Rewrite(parsed, verdict.owner, NameQuotes::Kept, kept);
    return dropped + (kept == dropped ? "" : "\nor " + kept) + "\ncounted" + counted;
  });
}

}  // namespace
}  // namespace quillmere
