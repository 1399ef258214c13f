// SPDX-License-Identifier: MIT
#include "engine/transaction_assembler.h"

#include <gmock/gmock.h>

#include "foundation/byte_arena.h"

namespace quillmere {
namespace {

using ::testing::HasSubstr;

constexpr std::int64_t kInsert = 1;
constexpr std::int64_t kLob = 10;

// Writes down what it is given, a word each: "T<xid>@<scn>", a statement's ID, "aside",
// "untold:..".
struct Notes final : TransactionAssembler::Taker {
  std::string_view Store(std::string_view text) override { return arena.Copy(text); }
  void OnTransaction(const TransactionAssembler::Transaction& transaction) override {
    words += "T" + transaction.xid + "@" + std::to_string(transaction.commit_scn) + " ";
  }
  void OnStatement(std::string_view stored) override {
    const std::size_t begin = stored.find('(') + 1;
    words += std::string(stored.substr(begin, stored.find(')') - begin)) + " ";
  }
  void OnSetAside(std::int64_t scn, std::string_view, std::string_view table, Safety,
                  std::string_view) override {
    words += "aside:" + std::string(table) + "@" + std::to_string(scn) + " ";
  }
  void OnUntold(std::int64_t, std::string_view, std::string_view table, std::string_view operation,
                TransactionAssembler::Untold why) override {
    words += why == TransactionAssembler::Untold::NoStatement ? "untold:" : "undo:";
    words += std::string(table) + ":" + std::string(operation) + " ";
  }
  void OnComment(std::int64_t, std::string_view) override { words += "comment "; }

  ByteArena arena;
  std::string words;
};

// A row of redo with what most have in common.
struct Row {
  const char* xid = "A";
  std::int64_t commit_scn = 10;
  std::string text = {};  // the values; a whole text when it begins with '='
  const char* row = "r1";
  bool undoes = false;
  bool goes_on = false;
  std::int64_t code = kInsert;
  const char* change = nullptr;  // null: one of its own
};

struct Case {
  const char* name;
  std::vector<Row> rows;
  std::string words;
  std::string reason = {};
  std::size_t most = 1000;
  std::int64_t stopped_at = MinedRow::kNoScn;
};

std::string TextOf(const Row& row) {
  if (row.text.starts_with('=')) return row.text.substr(1);
  return "insert into \"S\".\"T\"(" + row.text + ") values (" + row.text + ");";
}

TEST(TransactionAssembler, MakesWholeTransactionsOfRows) {
  const std::vector<Case> cases = {
      {"two of one commit SCN, one later",
       {{"A", 10, "1"}, {"A", 10, "2"}, {"B", 10, "3"}, {"C", 11, "4"}},
       "TA@10 1 2 TB@10 3 TC@11 4 "},
      {"pieces are joined by their mark, whatever their text",
       {{.text = "=insert into \"S\".\"T\"('it''s; ", .goes_on = true, .change = "c"},
        {.text = "=insert into \"S\".\"T\"(') values ('it''s;');", .change = "c"}},
       "TA@10 'it''s; insert into \"S\".\"T\"(' "},
      {"line feeds between tokens are blanks, in literals they stay",
       {{.text = "=insert into \"S\".\"T\"(\n1)\nvalues ('\n');"}},
       "TA@10  1 "},
      {"quotes that do not pair, and what comes behind",
       {{.text = "=insert into \"S\".\"T\"(1) values ('it's');"}, {.text = "2"}},
       "TA@10 aside:T@0 2 "},
      {"a temporary table's rows leave no transaction",
       {{.text = "=/* No SQL_REDO for temporary tables */"}, {"B", 11, "1"}},
       "comment TB@11 1 "},
      {"undo takes back the newest at that row, in reverse order",
       {{.text = "1"},
        {.text = "2", .row = "r2"},
        {.text = "3"},
        {.row = "r1", .undoes = true},
        {.row = "r2", .undoes = true},
        {.text = "4"}},
       "TA@10 1 4 "},
      {"pieces of one undo take back one change",
       {{.text = "1"},
        {.text = "2"},
        {.undoes = true, .change = "u"},
        {.undoes = true, .change = "u"}},
       "TA@10 1 "},
      {"a transaction that is undone as a whole leaves nothing",
       {{.text = "1"}, {.undoes = true}, {"B", 11, "2"}},
       "TB@11 2 "},
      {"undo does not reach into another transaction",
       {{"A", 10, "1"}, {"B", 11, "", "r1", true}},
       "TA@10 1 TB@11 undo:T:INSERT "},
      {"what changes rows without a statement",
       {{.text = "1"}, {.text = "=", .code = kLob}, {.text = "="}},
       "TA@10 1 untold:T:LOB_WRITE untold:T:INSERT "},
      {"commit SCNs that fall", {{"A", 10, "1"}, {"B", 9, "2"}}, "TA@10 1 ", "fall from 10 to 9"},
      {"no commit SCN", {{"A", MinedRow::kNoScn, "1"}}, "", "without a commit SCN"},
      {"a transaction that comes twice",
       {{"A", 10, "1"}, {"B", 10, "2"}, {"A", 10, "3"}},
       "TA@10 1 TB@10 2 ",
       "comes twice"},
      {"missing redo", {{.text = "=", .code = 34}}, "", "MISSING_SCN"},
      {"an end inside a statement",
       {{.text = "1", .goes_on = true}},
       "",
       "ends inside a statement"},
      {"another change inside a statement",
       {{.text = "1", .goes_on = true, .change = "c"}, {.text = "2", .change = "d"}},
       "",
       "does not go on"},
      {"past the limit the next commit SCN ends the run",
       {{"A", 10, "1"}, {"A", 10, "2"}, {"B", 10, "3"}, {"C", 12, "4"}, {"D", 13, "5"}},
       "TA@10 1 2 TB@10 3 ",
       "",
       2,
       12},
      {"one transaction past the limit",
       {{.text = "1"}, {.text = "2"}},
       "",
       "A has more than 1",
       1},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    Notes notes;
    TransactionAssembler assembler(notes, test.most);
    std::string reason;
    bool good = true;
    bool enough = false;
    for (std::size_t i = 0; i < test.rows.size() && good && !enough; ++i) {
      const Row& row = test.rows[i];
      const std::string text = TextOf(row);
      const std::string change = row.change != nullptr ? row.change : std::to_string(i);
      MinedRow mined{.commit_scn = row.commit_scn,
                     .transaction = row.xid,
                     .operation_code = row.code,
                     .operation = row.code == kLob ? "LOB_WRITE" : "INSERT",
                     .undoes = row.undoes,
                     .goes_on = row.goes_on,
                     .owner = "S",
                     .table = "T",
                     .change = change,
                     .row = row.row,
                     .text = text};
      const CommitSink::Next next = assembler.OnRow(mined, reason);
      good = next != CommitSink::Next::Fail;
      enough = next == CommitSink::Next::Enough;
    }
    if (good && !enough) good = assembler.Finish(reason);
    EXPECT_EQ(notes.words, test.words);
    EXPECT_EQ(good, test.reason.empty());
    EXPECT_THAT(reason, HasSubstr(test.reason));
    EXPECT_EQ(assembler.StoppedAt(), test.stopped_at);
  }
}

}  // namespace
}  // namespace quillmere
