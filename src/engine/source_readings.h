// SPDX-License-Identifier: MIT
// Up to which SCN a source may be read: what following by commits knows of it from its readings.
// Pure: no database, no clock of its own. Internal to engine/.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "foundation/clock.h"
#include "oracle/commit_miner.h"

namespace quillmere {

// What a reading is made of, asked for in this order on one connection.
struct ReadingAnswers {
  std::int64_t scn_before = 0;
  std::int64_t oldest_open = CommitMiner::kNoneOpen;
  std::int64_t scn_after = 0;
};

// Everything that commits at or above upto was begun at or above mine_from.
struct Reading {
  std::int64_t mine_from = 0;
  std::int64_t upto = 0;
};

// The SCN behind it; wraps around instead of being undefined.
constexpr std::int64_t Behind(std::int64_t scn) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(scn) + 1);
}

// The readings of one job since its start, or since the program's. One thread at a time.
class SourceReadings {
 public:
  // An open thread whose redo has not moved for as long counts as idle; the only one after longer,
  // for a log writer that hangs looks the same, and nobody else's redo moves meanwhile.
  static constexpr std::chrono::seconds kIdleAfter{60};
  static constexpr std::chrono::seconds kOnlyOneIdleAfter{600};
  // An instance of a cluster may lag behind the others, in what it says of the SCN, by less.
  static constexpr std::chrono::seconds kMostLag{5};

  // How far each thread has written its redo: to be asked for before a reading.
  void NoteThreads(const std::vector<RedoThread>& threads, SteadyTime now);

  // Takes a reading; now is when its last answer came. While a transaction does not say where it
  // began, known_mine_from stands in for it; without that nothing is taken, and false returned.
  bool Take(const ReadingAnswers& answers, SteadyTime now,
            std::optional<std::int64_t> known_mine_from);

  // The newest reading above the cut-off that is old enough and whose redo is on disk.
  std::optional<Reading> NewestUsable(std::int64_t cutoff, SteadyTime now,
                                      SteadyTime least_age) const;

  // The newest one that says from where to mine, however young. With several threads open that
  // takes two older ones.
  std::optional<Reading> Newest() const;

 private:
  struct Taken {
    std::int64_t scn_before = 0;
    std::int64_t oldest = 0;  // the SCN before, when none was open
    std::int64_t upto = 0;
    bool several_threads = false;
    SteadyTime when{};
  };
  struct ThreadProgress {
    std::int64_t scn = 0;
    SteadyTime since{};
    bool open = false;
  };

  // Null when there is none that is as much older.
  const Taken* Before(const Taken& taken) const;
  std::optional<Reading> Understood(const Taken& taken) const;
  std::int64_t WrittenUpTo(SteadyTime now) const;

  std::vector<Taken> taken_;  // oldest first
  std::map<std::int64_t, ThreadProgress> threads_;
  std::size_t open_threads_ = 0;
};

}  // namespace quillmere
