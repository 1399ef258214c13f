// From mined text to the statement that runs on the destination.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "engine/redo_assembler.h"
#include "engine/rewriter.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kTail = " and ROWID = 'AAABBBAAACCCDDDEEE'";

struct Taken final : RedoAssembler::Taker {
  void OnStatement(std::string_view text) override { statements.emplace_back(text); }
  void OnUnsafeStatement(std::string_view mined) override {
    statements.emplace_back("unsafe:" + std::string(mined));
  }
  std::vector<std::string> statements;
};

struct AssemblyCase {
  std::string what;
  std::vector<std::string> pieces;
  std::vector<std::string> statements;
  bool unfinished = false;
};

TEST(RedoAssembler, FindsStatementsInRows) {
  const std::vector<AssemblyCase> cases = {
      {"insert loses the semicolon only",
       {"insert into \"A\".\"B\"(\"X\") values ('1');"},
       {"insert into \"A\".\"B\"(\"X\") values ('1')"}},
      {"update loses the row address",
       {"update \"A\".\"B\" set \"X\" = '2' where \"X\" = '1'" + kTail + ";"},
       {"update \"A\".\"B\" set \"X\" = '2' where \"X\" = '1'"}},
      {"semicolons and quotes inside a literal",
       {"insert into A.B values ('a;b''c;');"},
       {"insert into A.B values ('a;b''c;')"}},
      {"a literal split in the middle of an escaped quote",
       {"insert into A.B values ('it'", "'s; all", "');"},
       {"insert into A.B values ('it''s; all')"}},
      {"a name with a semicolon and an apostrophe",
       {"insert into \"A;\".\"O'B\" values ('1');"},
       {"insert into \"A;\".\"O'B\" values ('1')"}},
      {"two statements in a row of their own and one over three",
       {"insert into A.B values (1);", "insert into", " A.B values (", "2);"},
       {"insert into A.B values (1)", "insert into A.B values (2)"}},
      {"two statements in one row, blanks behind",
       {"insert into A.B values (1); insert into A.B values (2);\n "},
       {"insert into A.B values (1)", " insert into A.B values (2)"}},
      {"line feeds stay inside literals and are blanks outside",
       {"insert into A.B\nvalues ('a\nb');"},
       {"insert into A.B values ('a\nb')"}},
      {"empty rows between",
       {"", "  ", "insert into A.B values (1);", ""},
       {"insert into A.B values (1)"}},
      {"no row address",
       {"delete from \"A\".\"B\" where \"X\" = '1234567890123456789012345';"},
       {"unsafe:delete from \"A\".\"B\" where \"X\" = '1234567890123456789012345'"}},
      {"the row address is the only condition",
       {"delete from \"A\".\"B\" where ROWID = 'AAABBBAAACCCDDDEEE';"},
       {"unsafe:delete from \"A\".\"B\" where ROWID = 'AAABBBAAACCCDDDEEE'"}},
      {"shorter than the cut", {"delete from A.B;"}, {"unsafe:delete from A.B"}},
      {"what looks like a row address ends a literal",
       {"delete from A.B where X = 'y and ROWID = ''AAABBBAAACCCDDDEEE';"},
       {"unsafe:delete from A.B where X = 'y and ROWID = ''AAABBBAAACCCDDDEEE'"}},
      {"a row address of another length",
       {"delete from A.B where \"X\" = '1' and ROWID = 'AAABBBAAACCCDDDEEEF';"},
       {"unsafe:delete from A.B where \"X\" = '1' and ROWID = 'AAABBBAAACCCDDDEEEF'"}},
      {"ends inside a literal", {"insert into A.B values ('abc;"}, {}, true},
      {"ends without a semicolon", {"insert into A.B values (1)"}, {}, true},
  };
  for (const AssemblyCase& c : cases) {
    SCOPED_TRACE(c.what);
    RedoAssembler assembler;
    Taken taken;
    for (const std::string& piece : c.pieces) EXPECT_TRUE(assembler.Add(piece, taken));
    EXPECT_EQ(taken.statements, c.statements);
    EXPECT_EQ(assembler.Unfinished(), c.unfinished);
  }
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
    const std::string statement =
        "update \"A\".\"B\" set \"X\" = '" + value + "' where \"K\" = '1'";
    expected.push_back(statement);
    text += statement + kTail + ";";
  }
  for (int round = 0; round < 200; ++round) {
    RedoAssembler assembler;
    Taken taken;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t length = 1 + random() % 97;
      ASSERT_TRUE(assembler.Add(std::string_view(text).substr(at, length), taken));
      at += length;
    }
    ASSERT_EQ(taken.statements, expected);
    ASSERT_FALSE(assembler.Unfinished());
  }
}

class Rewriter : public ::testing::Test {
 protected:
  Rewriter() {
    JobSchema& shop = job_.schemas["SHOP"];
    shop.Append({.name = "ORDERS", .desowner = "SHOP"});
    shop.Append({.name = "ITEMS", .desowner = "ARCHIVE"});
    shop.Append({.name = "SECRET", .desowner = "SHOP", .includeflag = false});
    shop.Append({.name = "EMPTYOWNER"});
    job_.schemas["A.B"].Append({.name = "T (1", .desowner = "AB"});
    job_.schemas["SYS"].Append({.name = "TAB$", .desowner = "SYS"});
  }
  SyncJob job_;
};

struct RewriteCase {
  std::string what, statement, to_execute, counted;
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
           {"table that the job does not list", "delete from SHOP.NEW where A = 1",
            "DELETE FROM SHOP.NEW where A = 1", ""},
           {"no destination owner", "delete from SHOP.EMPTYOWNER where A = 1",
            "DELETE FROM SHOP.EMPTYOWNER where A = 1", "EMPTYOWNER"},
           {"names with a dot, a blank and a parenthesis", "update \"A.B\".\"T (1\" set A = 1",
            "UPDATE  AB.T (1 set A = 1", "T (1"},
           {"dots and parentheses in values",
            "insert into \"SHOP\".\"ORDERS\"(\"A\") values ('x.(y')",
            "INSERT INTO SHOP.ORDERS(\"A\") values ('x.(y')", "ORDERS"},
           {"name of 80 bytes", "delete from SHOP." + long_name + " where A = 1",
            "DELETE FROM SHOP." + long_name + " where A = 1", ""}}) {
    SCOPED_TRACE(c.what);
    std::string to_execute = "left over from the statement before";
    const Rewritten result = RewriteStatement(job_, c.statement, to_execute);
    ASSERT_TRUE(result.accepted);
    EXPECT_EQ(to_execute, c.to_execute);
    EXPECT_EQ(result.table == nullptr ? "" : result.table->name, c.counted);
  }
}

TEST_F(Rewriter, Blocks) {
  const std::string too_long(81, 'N');
  for (const RewriteCase& c : std::vector<RewriteCase>{
           {"excluded", "insert into \"SHOP\".\"SECRET\"(\"A\") values ('1')", "", "SECRET"},
           {"unknown owner", "insert into \"OTHER\".\"ORDERS\"(\"A\") values ('1')", "", ""},
           {"owner in another case", "delete from shop.ORDERS where A = 1", "", ""},
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
    std::string to_execute;
    const Rewritten result = RewriteStatement(job_, c.statement, to_execute);
    EXPECT_FALSE(result.accepted);
    EXPECT_EQ(result.table == nullptr ? "" : result.table->name, c.counted);
  }
}

TEST_F(Rewriter, SurvivesAnyText) {
  std::mt19937 random(7);
  const std::string alphabet = "insertdeleteupdate \"'.();SHOPORDERS\n\0";
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    for (auto n = random() % 60; n > 0; --n) text += alphabet[random() % alphabet.size()];
    std::string to_execute;
    RewriteStatement(job_, text, to_execute);
    Taken taken;
    RedoAssembler assembler;
    assembler.Add(text, taken);
  }
}

}  // namespace
}  // namespace quillmere
