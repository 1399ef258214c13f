// SPDX-License-Identifier: MIT
// When the source stood where: pairs of SCN and time, from which follows how much of the source's
// time is missing on the destination. One thread at a time.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>

#include "foundation/clock.h"

namespace quillmere {

class ScnClock {
 public:
  // The source stood at scn then. Pairs come in the order of time; an SCN below the one before is
  // that of another source, and begins anew.
  void Add(std::int64_t scn, SteadyTime at);

  // All below scn is on the destination. Pairs that nobody will ask for any more go.
  void Reach(std::int64_t scn);

  // How long ago the source stood where the destination is now. Nothing while no pair is old enough
  // to tell.
  std::optional<SteadyTime> Behind(SteadyTime now) const;

  // The destination has all that the source had when the newest pair was taken.
  bool HasAll() const { return !pairs_.empty() && reached_ >= pairs_.back().scn; }

  std::size_t Size() const { return pairs_.size(); }

 private:
  static constexpr std::size_t kMost = 1024;
  struct Pair {
    std::int64_t scn;
    SteadyTime at;
  };
  std::deque<Pair> pairs_;
  std::int64_t reached_ = 0;
};

}  // namespace quillmere
