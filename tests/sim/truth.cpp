// SPDX-License-Identifier: MIT
#include "sim/truth.h"

#include <algorithm>

namespace quillmere::sim {
namespace {

std::string Shown(const Arrival& arrival) {
  return std::to_string(arrival.table) + ":" + std::to_string(arrival.id);
}

}  // namespace

// An instance that lags behind gives a smaller SCN than one before.
void History::Add(const Transaction& transaction, Follow follow) {
  const auto above = [&](const Due& due) {
    return std::pair(due.commit_scn, due.thread) <=
           std::pair(transaction.commit_scn, transaction.thread);
  };
  auto place = std::partition_point(due_.begin(), due_.end(), above);
  const std::vector<std::uint32_t>& live = transaction.live;
  for (std::uint32_t i = 0; i < transaction.changes.size(); ++i) {
    const Change& change = transaction.changes[i];
    const bool counts = follow == Follow::Rows || std::binary_search(live.begin(), live.end(), i);
    if (!counts || change.operation > Operation::Update) continue;
    const bool aside = change.undo && change.operation != Operation::Insert;
    // An undo brings back what was there before.
    const Arrival arrival = change.undo ? Arrival(change.table, change.old) : Arrival(change);
    const Due due{transaction.commit_scn, transaction.thread, change.scn, arrival, aside, false};
    place = due_.insert(place, due) + 1;
  }
  if (place != due_.begin()) (place - 1)->last = true;
}

std::size_t History::Below(std::int64_t scn, Follow follow) const {
  const auto below = [&](const Due& due) {
    return (follow == Follow::Commits ? due.commit_scn : due.scn) < scn;
  };
  return static_cast<std::size_t>(std::partition_point(due_.begin(), due_.end(), below) -
                                  due_.begin());
}

void Ledger::Begin(std::int64_t scn) {
  running_ = true;
  scn_ = scn;
  first_ = before_ = next_ = applied_ = applied_before_ = 0;
  skipped_.clear();
  Look();
}

void Ledger::Look() {
  if (next_ == first_) first_ = before_ = next_ = history_.Below(scn_, follow_);
}

std::string Ledger::Commit(std::span<const Arrival> arrived, std::size_t upto) {
  if (upto == next_ && arrived.empty()) return {};
  if (!running_) return "statements of a job that does not run are committed";
  if (upto < next_) return "statements are committed again";
  before_ = next_;
  applied_before_ = applied_;
  tables_before_ = tables_;
  for (; next_ < upto; ++next_) {
    if (next_ >= history_.Size()) return "more is committed than there is";
    const Arrival due = history_[next_].arrival;
    const Choice& choice = choices[due.table];
    if (history_[next_].aside) continue;
    const Arrival wanted(static_cast<std::uint8_t>(due.table + (choice.copied ? kCopied : 0)),
                         due.id);
    const bool arrives = !arrived.empty() && arrived.front() == wanted;
    if (!choice.carried || IsSkipped(next_, arrives)) {
      ++tables_[due.table].blocked;
      continue;
    }
    ++applied_;
    ++tables_[due.table].applied;
    if (arrived.empty()) return "lost: " + Shown(wanted);
    if (arrived.front() != wanted) {
      return "wanted " + Shown(wanted) + ", committed " + Shown(arrived.front());
    }
    arrived = arrived.subspan(1);
  }
  if (!arrived.empty()) return "committed too early or twice: " + Shown(arrived.front());
  const bool whole = follow_ == Follow::Rows || next_ == first_ || history_[next_ - 1].last;
  return whole ? "" : "a part of a transaction is committed";
}

void Ledger::GoBack() {
  next_ = before_;
  applied_ = applied_before_;
  tables_ = tables_before_;
}

void Ledger::Skip(bool sure) {
  if (next_ >= history_.Size()) return;
  std::size_t end = next_ + 1;
  while (follow_ == Follow::Commits && !history_[end - 1].last) ++end;
  if (skipped_.empty() || skipped_.back().first != next_) skipped_.push_back({next_, end, {}});
  if (sure) skipped_.back().holds = true;
}

bool Ledger::IsSkipped(std::size_t index, bool arrives) {
  for (Skipped& one : skipped_) {
    if (index < one.first || index >= one.end) continue;
    if (!one.holds) {
      one.holds = !arrives;
      left_out_ += arrives ? 0 : 1;
    }
    if (*one.holds) return true;
  }
  return false;
}

bool Ledger::IsUpToRefused(std::int64_t id) const {
  for (std::size_t i = next_; i < history_.Size(); ++i) {
    const Arrival due = history_[i].arrival;
    if (due.id == id && choices[due.table].carried && !history_[i].aside) return true;
    if (follow_ == Follow::Rows ? choices[due.table].carried && !history_[i].aside
                                : history_[i].last) {
      return false;
    }
  }
  return false;
}

}  // namespace quillmere::sim
