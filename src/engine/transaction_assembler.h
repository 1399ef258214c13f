// SPDX-License-Identifier: MIT
// Puts the rows of committed redo together into whole transactions.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/statement_safety.h"
#include "oracle/commit_miner.h"

namespace quillmere {

// Rows come transaction by transaction in the order of the commits; anything else fails, for then
// the server did not do what the positions rest on. Pieces are joined by the row's own mark, not by
// its text. A row that undoes cancels the newest change of its transaction at the same object and
// address that is still there. What is left goes to the taker when the transaction has ended.
class TransactionAssembler final : public CommitSink {
 public:
  // One statement may not grow beyond this many bytes.
  static constexpr std::size_t kMostBytes = std::size_t{1} << 28;

  struct Transaction {
    std::string xid;
    std::int64_t commit_scn = MinedRow::kNoScn;
    std::string commit_time;
  };

  // Why a change is not there as a statement.
  enum class Untold { NoStatement, UndoWithoutChange };

  class Taker {
   public:
    virtual ~Taker() = default;
    // Keeps the text until the batch is given up; what it returns is passed to OnStatement.
    virtual std::string_view Store(std::string_view text) = 0;
    // A transaction of which something is left, then that: its statements and those set aside in
    // order, and what could not be told as a statement.
    virtual void OnTransaction(const Transaction& transaction) = 0;
    virtual void OnStatement(std::string_view stored) = 0;
    virtual void OnSetAside(std::int64_t scn, std::string_view owner, std::string_view table,
                            Safety why, std::string_view stored) = 0;
    virtual void OnUntold(std::int64_t scn, std::string_view owner, std::string_view table,
                          std::string_view operation, Untold why) = 0;
    virtual void OnComment(std::int64_t scn, std::string_view text) = 0;
  };

  // Past most_statements the next change of the commit SCN ends the run; one transaction must not
  // have more. taker must outlive the assembler.
  TransactionAssembler(Taker& taker, std::size_t most_statements)
      : taker_(taker), most_(most_statements) {}

  Next OnRow(const MinedRow& row, std::string& reason) override;

  // After the last row. False and the reason when the rows broke off.
  bool Finish(std::string& reason);

  // The commit SCN before which the run stopped; kNoScn when it did not.
  std::int64_t StoppedAt() const { return stopped_at_; }

 private:
  // Object and address of a row, as good as unique: a hash.
  using RowKey = std::uint64_t;
  // In 20 bytes: a transaction may have a million of them.
  class Change {
   public:
    Change(std::string_view text, RowKey row);
    std::string_view Text() const;
    RowKey Row() const;
    bool Cancelled() const { return cancelled_ != 0; }
    void Cancel() { cancelled_ = 1; }

   private:
    std::array<std::uint32_t, 2> text_, row_;
    std::uint32_t size_ : 31;
    std::uint32_t cancelled_ : 1;
  };
  struct Object {
    std::string owner, table;
  };
  struct Aside {
    std::size_t change;
    std::int64_t scn;
    std::size_t object;
    Safety why;
  };
  struct UntoldChange {
    std::int64_t scn;
    std::size_t object;
    std::string operation;
    Untold why;
  };

  bool BeginTransaction(const MinedRow& row, std::string& reason);
  void EndTransaction();
  bool AddPiece(const MinedRow& row, std::string& reason);
  bool TakeChange(const MinedRow& row, std::string& reason);
  void TakeStatement(const MinedRow& row);
  void Undo(const MinedRow& row);
  // The newest change that is still there at the row, or null.
  Change* NewestAt(RowKey row);
  void IndexChanges();
  std::size_t ObjectOf(const MinedRow& row);
  static RowKey KeyOf(std::string_view row);

  Taker& taker_;
  const std::size_t most_;
  std::size_t taken_ = 0;  // statements of the transactions that have ended
  std::int64_t stopped_at_ = MinedRow::kNoScn;

  Transaction transaction_;
  std::set<std::string, std::less<>> ended_at_scn_;  // XIDs that ended at the present commit SCN
  std::deque<Change> changes_;                       // of the present transaction
  std::deque<Aside> asides_;
  std::vector<UntoldChange> untold_;
  std::set<std::string, std::less<>> undone_;  // rows that undo come in pieces, too

  // Made at the first row that undoes: the place of the newest change of each slot, and for each
  // change that of the one before it in its slot. Places from 1; 0 is none.
  std::vector<std::uint32_t> newest_;
  std::deque<std::uint32_t> before_;

  std::vector<Object> objects_;
  std::unordered_map<std::string, std::size_t> places_;  // in objects_
  std::size_t latest_object_ = 0;

  std::string open_text_;    // pieces of a change that goes on
  std::string open_change_;  // which one
};

}  // namespace quillmere
