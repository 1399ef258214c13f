// SPDX-License-Identifier: MIT
// What should be on a destination: everything that a source committed, in order, and how far a job
// has come in it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "jobs/sync_job.h"
#include "sim/change.h"

namespace quillmere::sim {

// All statements that a source committed, in the order of the commits.
class History {
 public:
  struct Due {
    std::int64_t commit_scn;
    std::size_t thread;
    std::int64_t scn;
    Arrival arrival;
    bool aside, last;  // unsafe; of its transaction
  };
  // By rows there is what was taken back, too.
  void Add(const Transaction& transaction, Follow follow);
  // How many statements a position has behind it.
  std::size_t Below(std::int64_t scn, Follow follow) const;
  std::size_t Size() const { return due_.size(); }
  const Due& operator[](std::size_t index) const { return due_[index]; }

 private:
  std::vector<Due> due_;
};

// Arrivals in a table of the owner COPY bear its number + this.
inline constexpr std::uint8_t kCopied = 8;

// One job's way through it since its start.
class Ledger {
 public:
  Ledger(const History& history, Follow follow) : history_(history), follow_(follow) {}

  struct Choice {
    bool carried = true, copied = false;
    bool operator==(const Choice&) const = default;
  };
  // What the operator wants of each table; what is decided stays so.
  std::vector<Choice> choices = std::vector<Choice>(kTableCount);

  void Begin(std::int64_t scn);
  void End() {
    running_ = false;
    left_out_ = 0;
  }
  bool Running() const { return running_; }
  // The destination has committed what arrived, and the job says how many statements are behind it.
  // What is wrong with that, or nothing.
  std::string Commit(std::span<const Arrival> arrived, std::size_t upto);
  // An operator leaves out what comes next, of a job by commits the whole transaction. Not sure: it
  // was cut off.
  void Skip(bool sure);
  // Of those that were cut off, how many were left out; of all starts.
  std::size_t LeftOut() const { return left_out_; }
  // Whether the destination was right to commit no more than it has, when it refuses a change.
  bool IsUpToRefused(std::int64_t id) const;
  // Where it was before the last commit that took it further.
  void GoBack();
  // A commit may yet come with an SCN that was read before.
  void Look();
  struct Counts {
    std::int64_t applied = 0, blocked = 0;
    bool operator==(const Counts&) const = default;
  };
  const std::vector<Counts>& Tables() const { return tables_; }
  std::size_t Before() const { return before_; }
  std::size_t Next() const { return next_; }
  std::size_t Applied() const { return applied_; }
  std::size_t Blocked() const { return next_ - first_ - applied_; }

 private:
  const History& history_;
  const Follow follow_;
  // Whether an operator had it left out; what was cut off shows by what arrives.
  bool IsSkipped(std::size_t index, bool arrives);

  struct Skipped {
    std::size_t first, end;
    std::optional<bool> holds;
  };
  std::vector<Skipped> skipped_;
  std::size_t left_out_ = 0;
  bool running_ = false;
  std::int64_t scn_ = 0;  // of the start
  std::size_t first_ = 0, before_ = 0, next_ = 0, applied_ = 0, applied_before_ = 0;
  std::vector<Counts> tables_ = std::vector<Counts>(kTableCount), tables_before_ = tables_;
};

}  // namespace quillmere::sim
