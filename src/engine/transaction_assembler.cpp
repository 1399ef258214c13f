// SPDX-License-Identifier: MIT
#include "engine/transaction_assembler.h"

#include <bit>
#include <cstring>
#include <functional>
#include <utility>

#include "foundation/quote_scanner.h"

namespace quillmere {
namespace {

constexpr std::int64_t kInsert = 1;
constexpr std::int64_t kUpdate = 3;
constexpr std::int64_t kMissingScn = 34;
constexpr std::size_t kMostObjects = std::size_t{1} << 24;

std::string Named(const MinedRow& row) {
  return "transaction " + std::string(row.transaction) + ", SCN " + std::to_string(row.scn);
}

bool IsComment(std::string_view text) {
  return text.starts_with("/*") || text.starts_with("--");
}

std::string_view WithoutEnd(std::string_view text) {
  const std::string_view trimmed = text.substr(0, text.find_last_not_of(" \r\n\t") + 1);
  return trimmed.ends_with(';') ? trimmed.substr(0, trimmed.size() - 1) : trimmed;
}

// A line feed between tokens is a blank: the batch file needs its line ends for itself. False when
// the quotes do not pair, or the text ends before its end.
bool MakeOneLine(std::string& statement) {
  QuoteScanner scanner;
  std::size_t from = 0;
  std::size_t found = 0;
  while ((found = scanner.Find(statement, from, ';', '\n')) != std::string_view::npos) {
    if (statement[found] == ';') return false;
    statement[found] = ' ';
    from = found + 1;
  }
  return !scanner.Inside();
}

}  // namespace

CommitSink::Next TransactionAssembler::OnRow(const MinedRow& row, std::string& reason) {
  if (row.operation_code == kMissingScn) {
    reason = "the server reports that redo is missing (MISSING_SCN, SCN " +
             std::to_string(row.scn) + ")";
    return Next::Fail;
  }
  const bool same =
      row.commit_scn == transaction_.commit_scn && row.transaction == transaction_.xid;
  if (!same) {
    if (!Finish(reason)) return Next::Fail;
    if (row.commit_scn != transaction_.commit_scn && taken_ >= most_) {
      stopped_at_ = row.commit_scn;
      return Next::Enough;
    }
    if (!BeginTransaction(row, reason)) return Next::Fail;
  }
  return AddPiece(row, reason) ? Next::GoOn : Next::Fail;
}

bool TransactionAssembler::BeginTransaction(const MinedRow& row, std::string& reason) {
  if (row.commit_scn == MinedRow::kNoScn) {
    reason = "a change without a commit SCN (" + Named(row) + ")";
    return false;
  }
  if (row.commit_scn < transaction_.commit_scn) {
    reason = "commit SCNs fall from " + std::to_string(transaction_.commit_scn) + " to " +
             std::to_string(row.commit_scn) + " (" + Named(row) + ")";
    return false;
  }
  if (row.commit_scn != transaction_.commit_scn) ended_at_scn_.clear();
  if (ended_at_scn_.contains(row.transaction)) {
    reason = "a transaction comes twice (" + Named(row) + ")";
    return false;
  }
  transaction_ = {std::string(row.transaction), row.commit_scn, std::string(row.commit_time)};
  return true;
}

bool TransactionAssembler::Finish(std::string& reason) {
  if (!open_change_.empty()) {
    reason = "the redo ends inside a statement (transaction " + transaction_.xid + ")";
    return false;
  }
  if (transaction_.commit_scn != MinedRow::kNoScn) EndTransaction();
  return true;
}

bool TransactionAssembler::AddPiece(const MinedRow& row, std::string& reason) {
  if (!open_change_.empty() && open_change_ != row.change) {
    reason = "a statement does not go on where it should (" + Named(row) + ")";
    return false;
  }
  if (open_text_.size() + row.text.size() > kMostBytes) {
    reason = "a statement of the redo is longer than " + std::to_string(kMostBytes) + " bytes (" +
             Named(row) + ")";
    return false;
  }
  open_text_ += row.text;
  if (row.goes_on) {
    open_change_ = row.change;
    return true;
  }
  open_change_.clear();
  const bool taken = TakeChange(row, reason);
  open_text_.clear();
  return taken;
}

bool TransactionAssembler::TakeChange(const MinedRow& row, std::string& reason) {
  const bool is_change = row.operation_code >= kInsert && row.operation_code <= kUpdate;
  if (is_change && IsComment(open_text_)) {
    taker_.OnComment(row.scn, open_text_);
    return true;
  }
  if (is_change && row.undoes) {
    Undo(row);
    return true;
  }
  if (!is_change || WithoutEnd(open_text_).empty()) {
    untold_.push_back({row.scn, ObjectOf(row), std::string(row.operation), Untold::NoStatement});
    return true;
  }
  if (changes_.size() >= most_) {
    reason = "transaction " + transaction_.xid + " has more than " + std::to_string(most_) +
             " statements, which is the limit of a batch. Raise the limit in the settings, or stop "
             "the job, copy the tables and start it anew";
    return false;
  }
  TakeStatement(row);
  return true;
}

void TransactionAssembler::TakeStatement(const MinedRow& row) {
  open_text_.resize(WithoutEnd(open_text_).size());
  const bool whole = MakeOneLine(open_text_);
  Judgement judgement = JudgeStatement(open_text_, {.not_executable = row.not_executable});
  if (!whole) judgement = {Safety::Unfinished, {}};
  const bool safe = judgement.safety == Safety::Safe;
  changes_.emplace_back(taker_.Store(safe ? judgement.kept : std::string_view(open_text_)),
                        KeyOf(row.row));
  if (!safe) asides_.push_back({changes_.size() - 1, row.scn, ObjectOf(row), judgement.safety});
}

void TransactionAssembler::Undo(const MinedRow& row) {
  if (!undone_.emplace(row.change).second) return;
  IndexChanges();
  if (Change* const change = NewestAt(KeyOf(row.row))) {
    change->Cancel();
    return;
  }
  untold_.push_back(
      {row.scn, ObjectOf(row), std::string(row.operation), Untold::UndoWithoutChange});
}

// Brings the index up to the newest change; it doubles as the changes do.
void TransactionAssembler::IndexChanges() {
  const std::size_t slots = std::bit_ceil(changes_.size() + 1);
  if (newest_.size() < slots) {
    newest_.assign(slots, 0);
    before_.clear();
  }
  while (before_.size() < changes_.size()) {
    std::uint32_t& newest = newest_[changes_[before_.size()].Row() & (newest_.size() - 1)];
    before_.push_back(newest);
    newest = static_cast<std::uint32_t>(before_.size());
  }
}

TransactionAssembler::Change* TransactionAssembler::NewestAt(RowKey row) {
  if (changes_.empty()) return nullptr;
  std::uint32_t* place = &newest_[row & (newest_.size() - 1)];
  while (*place != 0) {
    Change& change = changes_[*place - 1];
    if (change.Cancelled()) {
      *place = before_[*place - 1];  // never looked at again
      continue;
    }
    if (change.Row() == row) return &change;
    place = &before_[*place - 1];
  }
  return nullptr;
}

void TransactionAssembler::EndTransaction() {
  bool told = false;
  const auto tell = [&] {
    if (!std::exchange(told, true)) taker_.OnTransaction(transaction_);
  };
  auto aside = asides_.begin();
  // Each is given up as it goes: the batch has an entry for it then.
  for (std::size_t i = 0; !changes_.empty(); ++i, changes_.pop_front()) {
    const Change& change = changes_.front();
    const Aside* const is_aside =
        aside != asides_.end() && aside->change == i ? &*aside++ : nullptr;
    if (change.Cancelled()) continue;
    tell();
    ++taken_;
    if (is_aside == nullptr) {
      taker_.OnStatement(change.Text());
      continue;
    }
    const Object& object = objects_[is_aside->object];
    taker_.OnSetAside(is_aside->scn, object.owner, object.table, is_aside->why, change.Text());
  }
  for (const UntoldChange& change : untold_) {
    const Object& object = objects_[change.object];
    tell();
    taker_.OnUntold(change.scn, object.owner, object.table, change.operation, change.why);
  }
  ended_at_scn_.insert(transaction_.xid);
  transaction_.xid.clear();
  asides_.clear();
  untold_.clear();
  undone_.clear();
  newest_.clear();
  before_.clear();
}

std::size_t TransactionAssembler::ObjectOf(const MinedRow& row) {
  const auto is = [&](const Object& object) {
    return object.table == row.table && object.owner == row.owner;
  };
  if (latest_object_ < objects_.size() && is(objects_[latest_object_])) return latest_object_;
  const auto [place, is_new] = places_.try_emplace(
      std::string(row.owner).append(1, '\0').append(row.table), objects_.size());
  if (is_new && objects_.size() < kMostObjects) {
    objects_.push_back({std::string(row.owner), std::string(row.table)});
  }
  return latest_object_ = std::min(place->second, objects_.size() - 1);
}

TransactionAssembler::RowKey TransactionAssembler::KeyOf(std::string_view row) {
  return std::hash<std::string_view>{}(row);
}

TransactionAssembler::Change::Change(std::string_view text, RowKey row)
    : text_{}, row_{}, size_(static_cast<std::uint32_t>(text.size()) & 0x7FFFFFFF), cancelled_(0) {
  const char* const begin = text.data();
  std::memcpy(text_.data(), &begin, sizeof begin);
  std::memcpy(row_.data(), &row, sizeof row);
}

std::string_view TransactionAssembler::Change::Text() const {
  const char* begin = nullptr;
  std::memcpy(&begin, text_.data(), sizeof begin);
  return {begin, size_};
}

TransactionAssembler::RowKey TransactionAssembler::Change::Row() const {
  RowKey row = 0;
  std::memcpy(&row, row_.data(), sizeof row);
  return row;
}

}  // namespace quillmere
