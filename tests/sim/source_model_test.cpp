// SPDX-License-Identifier: MIT
// The source model against a brute-force reading of its redo.
#include <gtest/gtest.h>

#include <algorithm>

#include "sim/mining.h"

namespace quillmere::sim {
namespace {

constexpr Straddling kBehaviours[] = {Straddling::WholeOrNothing, Straddling::PartInside};

// --- LogMiner -----------------------------------------------------------------------------------

// Everything again, from all redo that ever was: what is in the logs and written, in commit order.
// The committed transactions are given in the order of their redo.
std::vector<std::int64_t> BruteForce(const SourceModel& source, std::vector<Transaction> committed,
                                     std::int64_t start,
                                     const std::vector<std::vector<LogFile>>& logs) {
  const auto there = [&](std::size_t thread, std::int64_t scn) {
    return scn >= start && std::any_of(logs[thread].begin(), logs[thread].end(),
                                       [&](const LogFile& log) { return log.Holds(scn); });
  };
  std::vector<std::uint64_t> written;
  for (const RedoThread& thread : source.Threads()) written.push_back(thread.CommitsWritten());
  std::erase_if(committed, [&](const Transaction& one) {
    return written[one.thread] == 0 || written[one.thread]-- == 0 ||
           !there(one.thread, one.commit_scn) ||
           (source.Shape().straddling == Straddling::WholeOrNothing &&
            !there(one.thread, one.start_scn));
  });
  std::stable_sort(committed.begin(), committed.end(), [](const auto& a, const auto& b) {
    return std::pair(a.commit_scn, a.thread) < std::pair(b.commit_scn, b.thread);
  });
  std::vector<std::int64_t> ids;
  for (const Transaction& one : committed) {
    for (const Change& change : one.changes) {
      if (there(one.thread, change.scn)) ids.push_back(change.id);
    }
  }
  return ids;
}

TEST(MiningTest, AgreesWithBruteForceForAnyStartAndAnyLogs) {
  std::size_t rows = 0;
  for (std::uint64_t seed = 0; seed < 60; ++seed) {
    SourceShape shape{.seed = seed, .straddling = kBehaviours[seed % 2], .threads = 1 + seed % 3};
    shape.lag_ms = static_cast<std::int64_t>(seed % 5 * 1000);
    shape.log = {.groups = 2 + seed % 3, .bytes = 8000, .archived = seed % 4 < 2};
    shape.habits = {.per_second = 1, .mean_seconds = 15, .savepoint = .2, .on_idle_thread = .3};
    SourceModel source(shape);
    std::vector<Transaction> committed;
    source.on_commit = [&](const Transaction& one) { committed.push_back(one); };
    Random random(seed);
    for (int i = 0; i < 20; ++i) {
      source.RunUntil(source.Now() + static_cast<std::int64_t>(random.Below(20'000)));
      Mining mining(source);
      std::vector<std::vector<LogFile>> logs(shape.threads);
      for (std::size_t t = 0; t < shape.threads; ++t) {
        const auto add = [&](const LogFile& file, const std::string& name) {
          if (random.Chance(.9) && mining.Add(name) == 0) logs[t].push_back(file);
        };
        const RedoThread& thread = source.Threads()[t];
        for (std::size_t g = 0; g < shape.log.groups; ++g) {
          add(thread.Online()[g], MemberName(t, g, 0));
        }
        for (const LogFile& file : thread.Archived()) {
          add(file, ArchiveName(t, file.sequence, 1));
        }
      }
      const std::int64_t start = source.CurrentScn() - static_cast<std::int64_t>(random.Below(150));
      if (mining.Start(start) != 0) continue;
      std::vector<std::int64_t> mined;
      ASSERT_EQ(mining.Open(), 0);
      while (const MinedRow* row = mining.Next()) {
        if (row->csf == 0) mined.push_back(row->change->id);
      }
      ASSERT_EQ(mined, BruteForce(source, committed, start, logs)) << "seed " << seed;
      rows += mined.size();
    }
  }
  EXPECT_GT(rows, 10'000U);
}

}  // namespace
}  // namespace quillmere::sim
