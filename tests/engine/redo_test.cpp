// SPDX-License-Identifier: MIT
// From mined text to the statement that runs on the destination.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "engine/redo_assembler.h"
#include "engine/rewriter.h"
#include "engine/statement_safety.h"
#include "support/config_of.h"

namespace quillmere {
namespace {

const std::string kTail = " and ROWID = 'AAABBBAAACCCDDDEEE'";

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

struct AssemblyCase {
  std::string what;
  std::vector<std::string> pieces;  // at SCN 1, 2, ...
  std::vector<std::string> found;
  bool broken_off = false;
};

const std::string kInsert = "insert into \"A\".\"B\"(\"X\") values (";
const std::string kUpdate = "update \"A\".\"B\" set \"X\" = '1' where \"K\" = '2'";
const std::string kDelete = "delete from \"A\".\"B\" where \"K\" = '2'";
const std::string kLong(2000, 'x');

TEST(RedoAssembler, FindsStatementsInRows) {
  const std::string temporary = "/* No SQL_REDO for temporary tables */";
  const std::string apostrophe = kInsert + "'O'Brien')";
  const std::string audit = kInsert + "'" + kLong;
  for (const AssemblyCase& c : std::vector<AssemblyCase>{
           {"an insert", {kInsert + "'1');"}, {"1 " + kInsert + "'1')"}},
           {"semicolons and quotes inside a literal",
            {kInsert + "'a;b''c;');"},
            {"1 " + kInsert + "'a;b''c;')"}},
           {"a literal split in the middle of an escaped quote",
            {kInsert + "'it'", "'s; all", "');"},
            {"3 " + kInsert + "'it''s; all')"}},
           {"a name with a semicolon and an apostrophe",
            {"insert into \"A;\".\"O'B\" values ('1');"},
            {"1 insert into \"A;\".\"O'B\" values ('1')"}},
           {"one in a row of its own and one over three",
            {"insert into A.B values (1);", "insert into", " A.B values (", "2);"},
            {"1 insert into A.B values (1)", "4 insert into A.B values (2)"}},
           {"two in one row, blanks before and behind",
            {" insert into A.B values (1); insert into A.B values (2);\n "},
            {"1 insert into A.B values (1)", "1 insert into A.B values (2)"}},
           {"line feeds stay inside literals and are blanks outside",
            {"insert into\nA.B\nvalues ('a\nb');\nA\n;\n"},
            {"1 insert into A.B values ('a\nb')", "1 A "}},
           {"empty rows between", {"", "  ", kInsert + "1);", ""}, {"3 " + kInsert + "1)"}},
           {"comments where a statement would begin",
            {temporary, kInsert + "1);" + temporary, "-- can't; say", kInsert + "2);"},
            {"1 comment:" + temporary, "2 " + kInsert + "1)", "2 comment:" + temporary,
             "3 comment:-- can't; say", "4 " + kInsert + "2)"}},
           {"comments inside a statement",
            {kInsert + "'", "-- a", "/* b */');"},
            {"3 " + kInsert + "'-- a/* b */')"}},
           {"an apostrophe left as it is does not swallow what follows",
            {apostrophe + ";", kUpdate + ";", apostrophe + ";", "DELETE FROM \"A\".\"B\" WHERE K;"},
            {"1 unfinished:" + apostrophe + ";", "2 " + kUpdate, "3 unfinished:" + apostrophe + ";",
             "4 DELETE FROM \"A\".\"B\" WHERE K"}},
           {"it is the last", {apostrophe + ";"}, {"1 unfinished:" + apostrophe + ";"}},
           {"nor does one of many pieces, with a last piece that may be full",
            {audit, kLong + "'s');", kInsert + "'1');"},
            {"1 unfinished:" + audit + kLong + "'s');", "3 " + kInsert + "'1')"}},
           {"nor one without a semicolon",
            {audit + "')", kInsert + "',');"},
            {"1 unfinished:" + audit + "')", "2 " + kInsert + "',')"}},
           {"a literal that goes on with a statement's text",
            {audit, kInsert + "''1'');" + kLong, kUpdate.substr(0, 23) + "''','');"},
            {"3 " + audit + kInsert + "''1'');" + kLong + kUpdate.substr(0, 23) + "''','')"}},
           {"a literal that ends with a statement's text",
            {audit, "delete from \"A\".\"B\" where \"K\" = ''2''' || '');"},
            {"2 " + audit + "delete from \"A\".\"B\" where \"K\" = ''2''' || '')"}},
           {"text that is no statement's beginning goes on",
            {kInsert + "'", "insert into \"A\" is an idea", "update \"A\".\"B\" is none",
             "insert into A.B(X)", "');"},
            {"5 " + kInsert +
             "'insert into \"A\" is an ideaupdate \"A\".\"B\" is noneinsert into A.B(X)')"}},
           {"the rows break off inside a long literal", {audit}, {}, true},
           {"the rows end without a semicolon", {kDelete}, {"1 unfinished:" + kDelete}}}) {
    SCOPED_TRACE(c.what);
    RedoAssembler assembler;
    Taken taken;
    std::int64_t scn = 0;
    for (const std::string& piece : c.pieces) EXPECT_TRUE(assembler.Add(++scn, piece, taken));
    EXPECT_EQ(assembler.Finish(taken), !c.broken_off);
    EXPECT_EQ(taken.found, c.found);
  }
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

struct SafetyCase {
  std::string what, mined, kept;
  Safety safety = Safety::Safe;
  RowFacts facts = {};
};

TEST(StatementSafety, JudgesByTextAndRow) {
  const std::string address = "ROWID = 'AAABBBAAACCCDDDEEE'";
  for (const SafetyCase& c : std::vector<SafetyCase>{
           {"insert", kInsert + "'1')", kInsert + "'1')"},
           {"update", kUpdate + kTail, kUpdate},
           {"delete, upper case", "DELETE FROM A.B where X = 1" + kTail,
            "DELETE FROM A.B where X = 1"},
           {"no row address", kDelete, "", Safety::NoRowAddress},
           {"shorter than the cut", "delete from A.B", "", Safety::NoRowAddress},
           {"what looks like one ends a literal",
            "delete from A.B where X = 'y and ROWID = ''AAABBBAAACCCDDDEEE'", "",
            Safety::NoRowAddress},
           {"one of another length", kDelete + " and ROWID = 'AAABBBAAACCCDDDEEEF'", "",
            Safety::NoRowAddress},
           {"one that does not close", kDelete + " and ROWID = 'AAABBBAAACCCDDDEEEF", "",
            Safety::NoRowAddress},
           {"a delete that ends like an insert", "delete from A.B where X = TO_DATE('1')", "",
            Safety::NoRowAddress},
           {"an update that does", "update \"A\".\"B\" set X = HEXTORAW('1')", "",
            Safety::NoRowAddress},
           {"an insert that does not end", kInsert + "'1'", "", Safety::NoRowAddress},
           {"undo of an insert", "delete from \"A\".\"B\" where " + address, "",
            Safety::RowAddressAlone},
           {"undo of an update", "update \"A\".\"B\" set \"X\" = '1' where " + address, "",
            Safety::RowAddressAlone},
           {"no owner", "insert into B(X) values ('1')", "", Safety::NoTable},
           {"nothing", "", "", Safety::NoTable},
           {"a name too long", "delete from A." + std::string(81, 'N') + " where X" + kTail, "",
            Safety::NoTable},
           {"dropped table", "delete from \"A\".\"OBJ# 73640\" where X = 1" + kTail, "",
            Safety::UnknownObject},
           {"unknown owner", "insert into \"UNKNOWN\".\"B\"(\"X\") values ('1')", "",
            Safety::UnknownObject},
           {"names much like it", "delete from \"UNKNOWN2\".\"OBJ# 1A\" where X = 1" + kTail,
            "delete from \"UNKNOWN2\".\"OBJ# 1A\" where X = 1"},
           {"unknown column", "insert into \"A\".\"B\"(\"COL 12\") values (HEXTORAW('c1'))", "",
            Safety::UnknownColumn},
           {"names and values much like it",
            "insert into \"A\".\"B\"(\"COL 1X\",\"COL \") values ('COL 1','x')",
            "insert into \"A\".\"B\"(\"COL 1X\",\"COL \") values ('COL 1','x')"},
           {"a type not supported", kInsert + "Unsupported Type)", "", Safety::UnsupportedType},
           {"in a condition", "update \"A\".\"B\" set X = 1 where \"U\" = Unsupported Type" + kTail,
            "", Safety::UnsupportedType},
           {"in literals and names",
            "insert into \"A\".\"B\"(\"Unsupported Type\") values ('it''s an Unsupported Type')",
            "insert into \"A\".\"B\"(\"Unsupported Type\") values ('it''s an Unsupported Type')"},
           {"status 2", kUpdate + kTail, "", Safety::NotExecutable, {.not_executable = true}},
           {"status 2 with a better reason",
            kInsert + "Unsupported Type)",
            "",
            Safety::UnsupportedType,
            {.not_executable = true}}}) {
    SCOPED_TRACE(c.what);
    const Judgement verdict = JudgeStatement(c.mined, c.facts);
    EXPECT_EQ(verdict.safety, c.safety) << WhyUnsafe(verdict.safety);
    EXPECT_EQ(verdict.kept, c.kept);
  }
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

struct RewriteCase {
  std::string what, statement, to_execute, counted;
  std::string kept = {};  // where quotes are kept, if that is something else
};

TEST_F(Rewriter, AcceptsAndRewrites) {
  const std::string long_name(80, 'N');
  for (const RewriteCase& c : std::vector<RewriteCase>{
           {"insert", "insert into \"SHOP\".\"ORDERS\"(\"ID\") values ('1')",
            "INSERT INTO SHOP.ORDERS(\"ID\") values ('1')", "ORDERS"},
           {"delete to another owner", "delete from \"SHOP\".\"ITEMS\" where \"ID\" = '1'",
            "DELETE FROM ARCHIVE.ITEMS where \"ID\" = '1'", "ITEMS"},
           {"update keeps two blanks",
            "update \"SHOP\".\"ITEMS\" set \"A\" = '1' where \"ID\" = '1'",
            "UPDATE  ARCHIVE.ITEMS set \"A\" = '1' where \"ID\" = '1'", "ITEMS"},
           {"unquoted, upper case", "UPDATE SHOP.ORDERS set A = 1", "UPDATE  SHOP.ORDERS set A = 1",
            "ORDERS"},
           {"blanks around the table", "INSERT INTO SHOP. ORDERS (ID) values (1)",
            "INSERT INTO SHOP.ORDERS(ID) values (1)", "ORDERS"},
           {"blanks behind a name in quotes",
            "insert into \"SHOP\".\"ORDERS\"  (\"ID\") values ('1')",
            "INSERT INTO SHOP.ORDERS(\"ID\") values ('1')", "ORDERS"},
           {"no list", "insert into \"SHOP\".\"ORDERS\" values ('1')",
            "INSERT INTO SHOP.ORDERS values ('1')", "ORDERS"},
           {"name of 80 bytes in quotes", "delete from SHOP.\"" + long_name + "\" where A = 1",
            "DELETE FROM SHOP." + long_name + " where A = 1", ""},
           {"table that the job does not list", "delete from SHOP.NEW where A = 1",
            "DELETE FROM SHOP.NEW where A = 1", ""},
           {"no destination owner", "delete from SHOP.EMPTYOWNER where A = 1",
            "DELETE FROM SHOP.EMPTYOWNER where A = 1", "EMPTYOWNER"},
           {"names with a dot, a blank and a parenthesis", "update \"A.B\".\"T (1\" set A = 1",
            "UPDATE  AB.T (1 set A = 1", "T (1", "UPDATE  AB.\"T (1\" set A = 1"},
           {"small letters", "delete from \"shop\".\"a_1\" where A = 1",
            "DELETE FROM shop.a_1 where A = 1", "", "DELETE FROM \"shop\".\"a_1\" where A = 1"},
           {"names of capital letters and more", "delete from \"SHOP\".\"A_1$#\" where A = 1",
            "DELETE FROM SHOP.A_1$# where A = 1", ""},
           {"a digit first", "delete from \"SHOP\".\"1A\" where A = 1",
            "DELETE FROM SHOP.1A where A = 1", "", "DELETE FROM SHOP.\"1A\" where A = 1"},
           {"an owner as the operator typed it", "delete from \"SHOP\".\"MOVED\" where A = 1",
            "DELETE FROM shop.MOVED where A = 1", "MOVED"},
           {"quotes that were not there", "delete from shop.a where A = 1",
            "DELETE FROM shop.a where A = 1", ""},
           {"dots and parentheses in values",
            "insert into \"SHOP\".\"ORDERS\"(\"A\") values ('x.(y')",
            "INSERT INTO SHOP.ORDERS(\"A\") values ('x.(y')", "ORDERS"},
           {"name of 80 bytes", "delete from SHOP." + long_name + " where A = 1",
            "DELETE FROM SHOP." + long_name + " where A = 1", ""}}) {
    SCOPED_TRACE(c.what);
    std::string to_execute = "left over from the statement before";
    const ParsedStatement parsed = ParseStatement(c.statement);
    const Verdict verdict = Decide(job_, parsed);
    ASSERT_EQ(verdict.decision, Decision::Accepted);
    Rewrite(parsed, verdict.owner, NameQuotes::Dropped, to_execute);
    EXPECT_EQ(to_execute, c.to_execute);
    Rewrite(parsed, verdict.owner, NameQuotes::Kept, to_execute);
    EXPECT_EQ(to_execute, c.kept.empty() ? c.to_execute : c.kept);
    EXPECT_EQ(verdict.table == nullptr ? "" : verdict.table->name, c.counted);
  }
}

TEST_F(Rewriter, Blocks) {
  const std::string too_long(81, 'N');
  for (const RewriteCase& c : std::vector<RewriteCase>{
           {"excluded", "insert into \"SHOP\".\"SECRET\"(\"A\") values ('1')", "", "SECRET"},
           {"unknown owner", "insert into \"OTHER\".\"ORDERS\"(\"A\") values ('1')", "", ""},
           {"owner in another case", "delete from Shop.ORDERS where A = 1", "", ""},
           {"system owner, though listed", "delete from \"SYS\".\"TAB$\" where A = 1", "", ""},
           {"empty", "", "", ""},
           {"blanks", "   ", "", ""},
           {"no dot", "insert into ORDERS(A) values (1)", "", ""},
           {"no table", "delete from SHOP.", "", ""},
           {"quote never closed", "delete from \"SHOP.ORDERS where A = 1", "", ""},
           {"only a verb", "insert", "", ""},
           {"owner too long", "delete from " + too_long + ".ORDERS where A = 1", "", ""},
           {"table too long", "delete from SHOP." + too_long + " where A = 1", "", ""}}) {
    SCOPED_TRACE(c.what);
    const Verdict verdict = Decide(job_, ParseStatement(c.statement));
    EXPECT_EQ(verdict.decision, c.counted.empty() ? Decision::Blocked : Decision::Excluded);
    EXPECT_EQ(verdict.table == nullptr ? "" : verdict.table->name, c.counted);
  }
}

TEST_F(Rewriter, SurvivesAnyText) {
  std::mt19937 random(7);
  const std::string alphabet = "insertdeleteupdate \"'.();SHOPORDERS\n\0";
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    for (auto n = random() % 60; n > 0; --n) text += alphabet[random() % alphabet.size()];
    const ParsedStatement parsed = ParseStatement(text);
    std::string to_execute;
    Rewrite(parsed, Decide(job_, parsed).owner, NameQuotes::Kept, to_execute);
    Taken taken;
    RedoAssembler assembler;
    assembler.Add(0, text, taken);
    assembler.Finish(taken);
    JudgeStatement(text);
  }
}

}  // namespace
}  // namespace quillmere
