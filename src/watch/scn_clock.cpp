// SPDX-License-Identifier: MIT
#include "watch/scn_clock.h"

#include <algorithm>
#include <iterator>

namespace quillmere {

void ScnClock::Add(std::int64_t scn, SteadyTime at) {
  if (!pairs_.empty() && scn < pairs_.back().scn) pairs_.clear();
  if (!pairs_.empty() && scn == pairs_.back().scn && pairs_.size() > 1) {
    pairs_.back().at = at;
  } else {
    pairs_.push_back({scn, at});
  }
  // The first one says since when a job is stuck; what came soon behind it says the least.
  if (pairs_.size() > kMost) pairs_.erase(std::next(pairs_.begin()));
  Reach(reached_);
}

void ScnClock::Reach(std::int64_t scn) {
  reached_ = scn;
  while (pairs_.size() > 1 && pairs_[1].scn <= scn) pairs_.pop_front();
}

std::optional<SteadyTime> ScnClock::Behind(SteadyTime now) const {
  if (pairs_.empty() || pairs_.front().scn > reached_) return std::nullopt;
  return std::max(now - pairs_.front().at, SteadyTime{0});
}

}  // namespace quillmere
