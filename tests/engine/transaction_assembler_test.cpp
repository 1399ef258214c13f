// SPDX-License-Identifier: MIT
#include "engine/transaction_assembler.h"

#include "foundation/byte_arena.h"
#include "support/stored_text.h"

namespace quillmere {
namespace {

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

// Rows are given a line each: transaction, commit SCN or "-", row, marks, ":" and the values; a
// whole text begins with "=", "\\n" is a line feed in it. Before them may stand "most" and how many
// statements a run may have.
TEST(TransactionAssembler, MakesWholeTransactionsOfRows) {
  ExpectCases(TABLES "/transactions.txt", [](const std::string& given) {
    std::istringstream lines(given);
    std::string line, reason;
    std::size_t most = 1000;
    if (given.starts_with("most ") && std::getline(lines, line)) most = std::stoul(line.substr(5));
    Notes notes;
    TransactionAssembler assembler(notes, most);
    auto next = CommitSink::Next::GoOn;
    for (int number = 0; next == CommitSink::Next::GoOn && std::getline(lines, line); ++number) {
      std::istringstream words(line);
      std::string xid, scn, row, word, text, change = std::to_string(number);
      MinedRow mined{.operation_code = 1, .owner = "S", .table = "T"};
      words >> xid >> scn >> row;
      while (words >> word && word != ":") {
        if (word == "undo") mined.undoes = true;
        if (word == "more") mined.goes_on = true;
        if (word == "change") words >> change;
        if (word == "code") words >> mined.operation_code;
      }
      std::getline(words >> std::ws, text);
      for (std::size_t at; (at = text.find("\\n")) != text.npos;) text.replace(at, 2, "\n");
      if (text.starts_with('=')) {
        text.erase(0, 1);
      } else {
        text = "insert into \"S\".\"T\"(" + text + ") values (" + text + ");";
      }
      if (scn != "-") mined.commit_scn = std::stoll(scn);
      mined.operation = mined.operation_code == 10 ? "LOB_WRITE" : "INSERT";
      mined.transaction = xid;
      mined.change = change;
      mined.row = row;
      mined.text = text;
      next = assembler.OnRow(mined, reason);
    }
    if (next == CommitSink::Next::GoOn) assembler.Finish(reason);
    if (!reason.empty()) notes.words += "\nfails: " + reason;
    if (assembler.StoppedAt() == MinedRow::kNoScn) return notes.words;
    return notes.words + "\nstopped at " + std::to_string(assembler.StoppedAt());
  });
}

}  // namespace
}  // namespace quillmere
