// SPDX-License-Identifier: MIT
// The users of a source model: transactions that begin, work, go back to savepoints and end.
#pragma once

#include <cstdint>
#include <map>
#include <queue>
#include <vector>

#include "sim/random.h"

namespace quillmere::sim {

class SourceModel;

struct Habits {
  double per_second = 2;    // transactions that begin; 0: nobody works
  double mean_seconds = 5;  // that one stays open
  std::uint64_t most_changes = 10;
  double rolled_back = .1, savepoint = .05, shares_scn = .3;  // shares of transactions, changes
  double long_text = .01, temporary = .02, no_statement = 0;  // shares of changes
  double on_idle_thread = .02;                                // share of transactions
};

class Workload {
 public:
  Workload(const Habits& habits, std::uint64_t seed, std::int64_t now);

  // When something happens next, and doing it.
  std::int64_t NextTime() const { return events_.empty() ? kNever : events_.top().time; }
  void Step(SourceModel& source);
  void SendHome() { habits_.per_second = 0; }
  // All users start anew.
  void Restart(std::uint64_t seed, std::int64_t now);

 private:
  static constexpr std::int64_t kNever = INT64_MAX;
  static constexpr std::uint32_t kBirth = 0;
  struct Event {
    std::int64_t time;
    std::uint64_t order;
    std::uint32_t transaction;
    bool operator<(const Event& other) const {
      return time != other.time ? time > other.time : order > other.order;
    }
  };
  struct Plan {
    std::int64_t end;
    std::uint64_t changes_left;
    std::size_t savepoint = kNoSavepoint;
  };
  static constexpr std::size_t kNoSavepoint = ~std::size_t{0};

  void At(std::int64_t time, std::uint32_t transaction);
  void GiveBirth(SourceModel& source, std::int64_t now);
  void Change(SourceModel& source, std::uint32_t transaction, Plan& plan);
  void End(SourceModel& source, std::uint32_t transaction);

  Habits habits_;
  Random random_;
  std::priority_queue<Event> events_;
  std::map<std::uint32_t, Plan> plans_;
  std::uint64_t order_ = 0;
};

}  // namespace quillmere::sim
