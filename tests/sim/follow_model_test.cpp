// SPDX-License-Identifier: MIT
// The source model against a brute-force reading of its redo, and against a reference of following
// by commits, which loses nothing on it; when one of its rules is left out, something is lost.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

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

TEST(MiningTest, RefusesLogsAsAServerDoes) {
  SourceShape shape{.habits = {.per_second = 0}};
  shape.log.members = 2;
  SourceModel source(shape);
  Mining mining(source);
  EXPECT_EQ(mining.Start(1000), 1292);
  EXPECT_EQ(mining.Open(), 1306);
  EXPECT_EQ(mining.Add(MemberName(0, 2, 0)), 0);
  EXPECT_EQ(mining.Add(MemberName(0, 2, 1)), 1289) << "the same log's second member";
  EXPECT_EQ(mining.Start(999), 1291);
  EXPECT_EQ(mining.Start(1000), 0);
  source.ResetLogs();
  EXPECT_EQ(mining.Add(MemberName(0, 2, 0)), 1284) << "never used since RESETLOGS";
}

TEST(SourceModelTest, HoldsNoMoreThanItsLogs) {
  SourceShape shape{.habits = {.per_second = 20, .mean_seconds = 1}};
  shape.log.bytes = 100'000;
  SourceModel source(shape);
  std::size_t most = 0;
  for (int i = 1; i <= 600; ++i) {
    source.RunUntil(i * 1000);
    most = std::max(most, source.ChangesHeld());
  }
  EXPECT_GT(source.Switches(), 50U);
  EXPECT_LT(most, 3 * 100'000 / 200 + 500) << "200 bytes of redo a change";
}

TEST(SourceModelTest, IsTheSameForTheSameSeedAndAnotherAfterARestore) {
  SourceModel source(SourceShape{}), twin(SourceShape{});
  source.RunUntil(100'000);
  twin.RunUntil(100'000);
  const SourceModel backup = source;
  source.RunUntil(200'000);
  twin.RunUntil(200'000);
  EXPECT_EQ(source.CurrentScn(), twin.CurrentScn());
  EXPECT_EQ(source.ChangesHeld(), twin.ChangesHeld());
  source.RestoreFrom(backup, false);
  EXPECT_LT(source.CurrentScn(), twin.CurrentScn());
  EXPECT_EQ(source.OldestOpen(), -1);
  source.RunUntil(300'000);
  twin.RunUntil(300'000);
  EXPECT_NE(source.CurrentScn(), twin.CurrentScn());
  EXPECT_EQ(source.ResetlogsScn(), 1);
  source.RestoreFrom(backup, true);
  EXPECT_GT(source.ResetlogsScn(), 1000);
  EXPECT_EQ(source.Threads()[0].Online()[0].sequence, 1);
  EXPECT_EQ(source.ChangesHeld(), 0U);
}

// --- Following by commits, a reference ----------------------------------------------------------

using Broken = std::set<std::string>;

// Transactions by number, in the order they were applied.
using Applied = std::vector<std::pair<std::uint32_t, std::vector<Arrival>>>;

class ByCommits {
 public:
  ByCommits(SourceModel& source, const Broken& broken, std::uint64_t seed)
      : source_(source), broken_(broken), random_(seed) {}

  void Run(std::int64_t interval_ms, int passes) {
    Source(20'000);
    while (!Start()) Source(300);
    for (int i = 0; i < passes && !stuck; ++i) {
      static constexpr int kPerCent[] = {1, 5, 100, 100, 100, 300};
      Source(interval_ms * kPerCent[random_.Below(6)] / 100);
      if (random_.Chance(.2)) Restart();
      Pass();
    }
  }

  Applied applied;
  bool stuck = false;
  std::int64_t first = 0, cutoff = 0;

 private:
  struct Reading {
    std::int64_t at, s, a, n;
  };
  struct Idle {
    std::int64_t written = -1, since = 0;
  };

  void Source(std::int64_t ms) { source_.RunUntil(source_.Now() + ms); }
  bool Has(const char* fault) const { return broken_.contains(fault); }
  void Restart() { readings_.clear(), idle_.clear(); }

  void Read() {
    Reading reading{};
    if (Has("order")) reading.n = source_.CurrentScn() + 1, Source(3000);
    reading.s = source_.CurrentScn();
    Source(50);
    reading.a = source_.OldestOpen();
    Source(50);
    if (!Has("order")) reading.n = source_.CurrentScn() + (Has("same") ? 0 : 1);
    reading.at = source_.Now();
    if (reading.a == -1) reading.a = reading.s;
    if (reading.a == 0) reading.a = mine_;
    if (reading.a != 0) readings_.push_back(reading);
  }

  // The newest reading that is 5 s older, for an instance may lag behind the others that long.
  const Reading* Before(const Reading* reading) const {
    const Reading* before = nullptr;
    for (const Reading& one : readings_) {
      if (reading != nullptr && one.at + 5000 <= reading->at) before = &one;
    }
    return before;
  }

  // From where on everything that commits at or above its N was begun; 0: not known.
  std::int64_t Watermark(const Reading& reading) const {
    if (source_.Threads().size() == 1 || Has("lag")) return std::min(reading.a, reading.s);
    const Reading* before = Before(&reading);
    const Reading* further = Before(before);
    if (further == nullptr) return 0;
    return std::min(Has("own oldest") ? reading.a : before->a, further->s);
  }

  bool Start() {
    Read();
    if (readings_.empty() || Watermark(readings_.back()) == 0) return false;
    mine_ = Watermark(readings_.back());
    cutoff = first = readings_.back().n;
    return true;
  }

  bool Written(std::size_t thread, std::int64_t n) {
    const std::int64_t written = source_.Threads()[thread].LastWritten();
    Idle& idle = idle_[thread];
    if (idle.written != written) idle = {written, source_.Now()};
    // A log writer that stalls looks idle: only a thread that nobody works on may count as idle.
    const bool may_be_idle = thread != 0 || Has("idle");
    return written >= n || Has("stall") || (may_be_idle && source_.Now() - idle.since >= 60'000);
  }

  void Pass() {
    Read();
    Source(100);
    const Reading* use = nullptr;
    for (const Reading& reading : readings_) {
      bool usable = reading.n > cutoff && Watermark(reading) != 0;
      usable &= Has("young") || source_.Now() - reading.at >= 5000;
      for (std::size_t t = 0; t < source_.Threads().size(); ++t) usable &= Written(t, reading.n);
      if (usable) use = &reading;
    }
    if (use == nullptr) return;
    const Reading chosen = *use;
    std::int64_t next_mine = Watermark(Has("mixed") ? readings_.back() : chosen);
    if (Has("watermark")) next_mine = cutoff;
    Applied batch;
    if (!Mine(chosen.n, batch)) return;
    if (random_.Chance(.1)) return Restart();  // killed: nothing of it was begun
    applied.insert(applied.end(), batch.begin(), batch.end());
    mine_ = next_mine;
    cutoff = chosen.n;
    if (!random_.Chance(.1)) return;
    Restart();
    if (Has("settle")) mine_ = cutoff;
  }

  // The logs from M on, each (thread, sequence) once, online before archived. False: a hole.
  bool AddLogs(Mining& mining) {
    bool whole = true;
    for (std::size_t t = 0; t < source_.Threads().size(); ++t) {
      const RedoThread& thread = source_.Threads()[t];
      std::set<std::int64_t> sequences;
      std::int64_t oldest = kOpenEnd;
      const auto add = [&](const LogFile& file, const std::string& name) {
        if (file.next <= mine_ || mining.Add(name) != 0) return;
        sequences.insert(file.sequence);
        oldest = std::min(oldest, file.first);
      };
      for (std::size_t g = 0; g < thread.Online().size(); ++g) {
        add(thread.Online()[g], MemberName(t, g, 0));
      }
      for (const LogFile& file : thread.Archived()) {
        add(file, ArchiveName(t, file.sequence, source_.ResetlogsScn()));
      }
      const auto count = static_cast<std::int64_t>(sequences.size());
      whole &= oldest <= mine_ && *sequences.rbegin() - *sequences.begin() + 1 == count;
    }
    return whole || Has("hole");
  }

  bool Mine(std::int64_t upto, Applied& batch) {
    Mining mining(source_);
    stuck = !AddLogs(mining) || mining.Start(mine_) != 0;
    if (stuck) return false;
    mining.Open(cutoff, upto);
    const std::uint64_t switches = source_.Switches();
    std::uint32_t number = 0;
    std::vector<Change> changes;  // of one transaction
    while (const MinedRow* row = mining.Next()) {
      if (number != row->transaction->number) Take(number, changes, batch);
      number = row->transaction->number;
      const Change& change = *row->change;
      if (row->csf != 0 || change.operation > Operation::Update) continue;
      if (row->rollback == 0 || Has("undo")) {
        changes.push_back(change);
      } else {
        const auto undone = std::find_if(changes.rbegin(), changes.rend(), [&](const Change& one) {
          return one.table == change.table && one.row == change.row;
        });
        if (undone != changes.rend()) changes.erase(std::next(undone).base());
      }
      if (random_.Chance(.02)) Source(static_cast<std::int64_t>(random_.Below(500)));
    }
    Take(number, changes, batch);
    return switches == source_.Switches() || Has("recheck");
  }

  static void Take(std::uint32_t number, std::vector<Change>& changes, Applied& batch) {
    if (!changes.empty()) batch.push_back({number, {changes.begin(), changes.end()}});
    changes.clear();
  }

  SourceModel& source_;
  const Broken& broken_;
  Random random_;
  std::vector<Reading> readings_;
  std::map<std::size_t, Idle> idle_;
  std::int64_t mine_ = 0;
};

struct World {
  const char* name;
  double mean_seconds;
  std::int64_t interval_ms;
  std::int64_t stall_ms = 0;
  std::size_t threads = 1, instance = 0;
  std::int64_t lag_ms = 0;
  bool ample_redo = true;
};

constexpr World kWorlds[] = {{"short", 2, 60'000},
                             {"as long as an interval", 60, 60'000, 200'000},
                             {"long", 200, 20'000, 300'000},
                             {"back to back", 20, 2'000},
                             {"cluster", 20, 20'000, 40'000, 3, 0, 3000},
                             {"cluster, on the idle instance", 100, 20'000, 0, 2, 1, 3000},
                             {"cluster with small logs", 20, 20'000, 0, 2, 0, 0, false}};

struct Verdict {
  std::size_t changes = 0, lost = 0, doubled = 0, torn = 0, disordered = 0, stuck = 0;
  std::size_t Wrong() const { return lost + doubled + torn + disordered; }
};

void Judge(const World& world, std::uint64_t seed, const Broken& broken, Verdict& verdict) {
  SourceShape shape{.seed = seed, .straddling = kBehaviours[seed % 2], .threads = world.threads};
  shape.instance = world.instance;
  shape.lag_ms = world.lag_ms;
  shape.log = {.bytes = 60'000, .archived = world.ample_redo, .archives_kept = 1000};
  shape.habits = {.per_second = 1, .mean_seconds = world.mean_seconds, .no_statement = .02};
  SourceModel source(shape);
  std::map<std::uint32_t, std::pair<std::int64_t, std::vector<Arrival>>> truth;
  source.on_commit = [&](const Transaction& one) {
    truth[one.number] = {one.commit_scn, one.Arrivals()};
  };
  const std::int64_t stall = world.interval_ms * static_cast<std::int64_t>(2 + seed % 20);
  source.Thread(0).Stall(stall, stall + world.stall_ms);
  ByCommits follower(source, broken, seed);
  follower.Run(world.interval_ms, 40);
  verdict.stuck += follower.stuck ? 1 : 0;
  std::map<std::uint32_t, std::vector<Arrival>> arrived;
  std::int64_t commit_scn = 0;
  for (const auto& [number, arrivals] : follower.applied) {
    verdict.doubled += arrived.emplace(number, arrivals).second ? 0 : 1;
    verdict.disordered += truth[number].first < commit_scn ? 1 : 0;
    commit_scn = truth[number].first;
  }
  for (const auto& [number, committed] : truth) {
    const bool due = committed.first >= follower.first && committed.first < follower.cutoff;
    const std::vector<Arrival> wanted = due ? committed.second : std::vector<Arrival>{};
    verdict.changes += wanted.size();
    verdict.lost += wanted.size() - std::min(wanted.size(), arrived[number].size());
    verdict.torn += arrived[number] == wanted ? 0 : 1;
  }
}

TEST(FollowByCommitsTest, LosesNothing) {
  for (const World& world : kWorlds) {
    Verdict verdict;
    for (std::uint64_t seed = 0; seed < 20; ++seed) Judge(world, seed, {}, verdict);
    EXPECT_EQ(verdict.Wrong(), 0U) << world.name << ": lost " << verdict.lost << ", doubled "
                                   << verdict.doubled << ", torn " << verdict.torn;
    EXPECT_GT(verdict.changes, 1'000U) << world.name;
    EXPECT_EQ(verdict.stuck != 0, !world.ample_redo) << world.name;
  }
}

TEST(FollowByCommitsTest, EveryRuleLeftOutIsNoticed) {
  const std::pair<const char*, Broken> variants[] = {
      {"N without + 1", {"same"}},
      {"N read before S and A", {"order"}},
      {"a stalled log writer not looked at", {"stall"}},
      {"that, and no age", {"stall", "young"}},
      {"mining from C instead of M", {"watermark"}},
      {"U and M from different readings", {"mixed"}},
      {"a restart that sets M to C", {"settle"}},
      {"a stalled log writer taken for an idle one", {"idle"}},
      {"an instance that lags not thought of", {"lag"}},
      {"only the SCN taken from the reading before", {"own oldest"}},
      {"undo rows taken for changes", {"undo"}},
      {"a hole in the logs mined over", {"hole"}},
      {"logs that are used again while they are read", {"recheck"}}};
  for (const auto& [name, broken] : variants) {
    Verdict verdict;
    for (std::uint64_t i = 0; i < 20 * std::size(kWorlds) && verdict.Wrong() == 0; ++i) {
      Judge(kWorlds[i % std::size(kWorlds)], i / std::size(kWorlds), broken, verdict);
    }
    EXPECT_GT(verdict.Wrong(), 0U) << name;
  }
}

}  // namespace
}  // namespace quillmere::sim
