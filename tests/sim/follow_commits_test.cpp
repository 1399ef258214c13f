// SPDX-License-Identifier: MIT
// The engine follows sources of the model by commits, through refusals, requests, restarts, deaths
// and power cuts: what arrives is what was committed, once, whole and in order.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <set>

#include "oracle/follow_queries.h"
#include "sim/engine_on_models.h"

namespace quillmere::sim {
namespace {

constexpr Straddling kBehaviours[] = {Straddling::WholeOrNothing, Straddling::PartInside};
constexpr std::string_view kCommitPoint = "/work/jobs/J/commit.dat";

struct World {
  const char* name;
  double mean_seconds;
  std::int64_t sweep_ms;  // between two looks at the job
  std::int32_t interval;
  std::int64_t stall_ms = 0;
  std::size_t threads = 1;
  std::int64_t lag_ms = 0;
  double per_second = 1;
  std::size_t containers = 1;
  std::size_t instance = 0;  // that is asked
  double on_others = .02;    // share of transactions on each instance but the first
};

constexpr World kWorlds[] = {{"short", 2, 20'000, 1},
                             {"as long as an interval", 60, 30'000, 1, 200'000},
                             {"long", 200, 20'000, 0, 300'000},
                             {"back to back", 20, 2'000, 0},
                             {.name = "one container of two",
                              .mean_seconds = 5,
                              .sweep_ms = 20'000,
                              .interval = 0,
                              .per_second = 2,
                              .containers = 2},
                             {"cluster", 20, 20'000, 0, 40'000, 3, 3000},
                             {.name = "cluster seen from an idle instance",
                              .mean_seconds = 12,
                              .sweep_ms = 7'000,
                              .interval = 0,
                              .threads = 2,
                              .lag_ms = 4500,
                              .per_second = .3,
                              .instance = 1},
                             {.name = "cluster far apart",
                              .mean_seconds = 4,
                              .sweep_ms = 6'000,
                              .interval = 0,
                              .threads = 3,
                              .lag_ms = 4900,
                              .per_second = 1,
                              .instance = 1,
                              .on_others = .45}};

struct Verdict {
  std::size_t changes = 0, lost = 0, doubled = 0, halved = 0, disordered = 0;
  std::size_t deaths = 0, refusals = 0, moments = 0, one_moment = 0;
  std::string first;
  std::size_t Wrong() const { return lost + doubled + halved + disordered; }
};

class Trial {
 public:
  Trial(const World& world, std::uint64_t seed, Follow follow, bool chaos, bool row)
      : follow_(follow),
        world_(world),
        chaos_(chaos),
        row_(row),
        random_(seed),
        on_(Shape(world, seed, follow), follow, world.interval) {
    if (row) on_.config.position_owner = "OPS";
    if (world.containers > 1) on_.config.container = kContainers[0];
    on_.Restart();
    on_.source.on_commit = [this](const Transaction& one) {
      if (one.container != 0) return;
      committed_.push_back({one.commit_scn, one.thread, {}});
      for (const Arrival& arrival : one.Arrivals()) {
        if (arrival.table < 2) committed_.back().arrivals.push_back(arrival);
      }
    };
    const std::int64_t stall = on_.client.Now() + world.stall_ms + 60'000;
    if (world.stall_ms != 0) on_.source.Thread(0).Stall(stall, stall + world.stall_ms);
    on_.settings.most_statements = seed % 3 == 0 ? 60 : 1'000'000;
    on_.destination.on_commit = [this](std::span<const Arrival> arrived) {
      if (arrived.empty()) return;
      journal_.insert(journal_.end(), arrived.begin(), arrived.end());
      commits_.push_back(journal_.size());
    };
  }

  void Run(int sweeps, Verdict& verdict) {
    Tick(20'000);
    on_.life->Run();
    for (int i = 0; i < 60 && on_.life->State() != JobState::Started; ++i) Sweep(1'500);
    Watch();
    const std::int64_t first = Cutoff();
    for (int i = 0; i < sweeps && !one_moment_; ++i) {
      if (chaos_) Trouble();
      static constexpr int kPerCent[] = {1, 5, 100, 100, 100, 300};
      Sweep(world_.sweep_ms * kPerCent[random_.Below(6)] / 100);
    }
    calm_ = true;
    kill_in_ = 0;
    const int calm_sweeps = chaos_ ? 40 : 8;
    for (int i = 0; i < calm_sweeps && !one_moment_; ++i) Sweep(30'000);
    verdict.deaths += deaths_;
    verdict.refusals += refusals_;
    verdict.moments += moments_ + lost_answers_;
    if (one_moment_) {
      ++verdict.one_moment;
      return;
    }
    Judge(first, verdict);
  }

 private:
  struct Committed {
    std::int64_t scn;
    std::size_t thread;
    std::vector<Arrival> arrivals;
  };

  static SourceShape Shape(const World& world, std::uint64_t seed, Follow follow) {
    SourceShape shape{.seed = seed,
                      .straddling = kBehaviours[seed % 2],
                      .threads = world.threads,
                      .containers = follow == Follow::Commits ? world.containers : 1};
    shape.instance = world.instance;
    shape.lag_ms = world.lag_ms;
    shape.log = {.bytes = 60'000, .archived = true, .archives_kept = 1000};
    shape.habits = {.per_second = world.per_second,
                    .mean_seconds = world.mean_seconds,
                    .no_statement = .02,
                    .on_idle_thread = world.on_others};
    // What can not be taken by rows would only stop them.
    if (follow == Follow::Rows) {
      shape.habits.savepoint = shape.habits.long_text = shape.habits.temporary = 0;
      shape.habits.no_statement = 0;
    }
    return shape;
  }

  std::int64_t Cutoff() const { return on_.life->job.run.positions.cutoff_scn; }

  void Tick(std::int64_t ms) {
    on_.Wait(ms);
    on_.source.RunUntil(on_.client.Now());
  }

  // What goes wrong from now on.
  void Watch() {
    on_.destination.refuse = [this](std::string_view sql) {
      const bool refused = chaos_ && !calm_ && !sql.starts_with("rollback") && random_.Chance(.003);
      refusals_ += refused ? 1 : 0;
      return refused ? 54 : 0;
    };
    on_.client.fault = [this](std::string_view call,
                              std::string_view) -> std::optional<ModelOci::Fault> {
      Count();
      if (dead_) return ModelOci::Fault{};
      if (!chaos_ || calm_ || call == "HandleFree") return std::nullopt;
      if (call == "SessionEnd" && random_.Chance(.03)) kill_in_ = 1;  // right behind it
      // Without the row nobody can know what became of an end whose answer is lost.
      const bool answer_lost = row_ && call == "SessionEnd" && random_.Chance(.1);
      if (!answer_lost && !random_.Chance(.0003)) return std::nullopt;
      lost_answers_ += answer_lost ? 1 : 0;
      return ModelOci::Fault{.served_before = answer_lost};
    };
    on_.life->files.on_operation = [this](const testing::FileOperation& operation) {
      Count();
      if (operation.what == "rename" && operation.path.ends_with(kCommitPoint)) {
        committed_before_ = journal_.size();
      }
      return FileStatus{};
    };
  }

  void Count() {
    if (kill_in_ == 0 || --kill_in_ > 0) return;
    on_.life->files.CutOff();
    dead_ = true;
  }

  void Trouble() {
    if (kill_in_ == 0 && random_.Chance(.15)) kill_in_ = 1 + random_.Below(200);
    if (random_.Chance(.05)) RequestPause(on_.life->jobs, on_.life->index);
    if (random_.Chance(.03)) Reborn(false);
    if (on_.life->State() == JobState::Paused) on_.life->Run();
  }

  void Reborn(bool power_cut) {
    if (power_cut) {
      on_.CutPower([this] { return random_.Chance(.5); });
    }
    dead_ = false;
    const bool unsettled = on_.disk->Content(kCommitPoint) != "(none)";
    if (unsettled && journal_.size() != committed_before_) ++moments_;
    one_moment_ |= !row_ && unsettled && journal_.size() != committed_before_;
    on_.Restart();
    Watch();
    on_.life->Run();
  }

  void Sweep(std::int64_t ms) {
    Tick(ms);
    if (calm_ && on_.life->State() == JobState::Paused &&
        on_.life->jobs.HeldBecause(on_.life->index).empty()) {
      on_.life->Run();
    }
    on_.life->Step();
    // Without a savepoint a refusal would take the whole pass back.
    for (const std::string& error : on_.life->errors)
      EXPECT_EQ(error.find("ORA-01086"), error.npos);
    if (!dead_) return;
    ++deaths_;
    on_.client.Die(static_cast<std::int64_t>(random_.Below(2) * 3000));
    Reborn(random_.Chance(.5));
  }

  // What was due, and what became of it. By rows what is behind the mining start is still to come.
  void Judge(std::int64_t first, Verdict& verdict) {
    std::stable_sort(committed_.begin(), committed_.end(),
                     [](const Committed& a, const Committed& b) {
                       return std::pair(a.scn, a.thread) < std::pair(b.scn, b.thread);
                     });
    const Positions& at = on_.life->job.run.positions;
    const std::int64_t end = follow_ == Follow::Commits ? at.cutoff_scn : at.mining_start_scn;
    std::vector<Arrival> wanted;
    std::set<std::size_t> boundaries = {0};
    for (const Committed& one : committed_) {
      if (one.scn < first || one.scn >= end) continue;
      wanted.insert(wanted.end(), one.arrivals.begin(), one.arrivals.end());
      boundaries.insert(wanted.size());
    }
    std::set<std::int64_t> arrived;
    for (const Arrival& arrival : journal_) arrived.insert(arrival.id);
    std::size_t lost = 0;
    for (const Arrival& arrival : wanted) lost += arrived.contains(arrival.id) ? 0 : 1;
    std::size_t halved = 0;
    for (const std::size_t commit : commits_) {
      halved += boundaries.contains(commit) ? 0 : 1;
    }
    verdict.changes += wanted.size();
    verdict.lost += lost;
    verdict.doubled += journal_.size() - arrived.size();
    verdict.halved += halved;
    verdict.disordered += (lost == 0 && journal_ != wanted) + on_.destination.Damaged();
    if (verdict.Wrong() == 0 || !verdict.first.empty()) return;
    verdict.first = "wanted " + std::to_string(wanted.size()) + ", got " +
                    std::to_string(journal_.size()) + ", " +
                    std::string(StateName(on_.life->State())) + " " +
                    on_.life->jobs.HeldBecause(on_.life->index);
    for (const std::string& error : on_.life->errors) verdict.first += "\n  " + error;
  }

  const Follow follow_;
  const World& world_;
  const bool chaos_, row_;
  // What a dead program still tries reaches nothing.
  bool calm_ = false, one_moment_ = false, dead_ = false;
  std::size_t kill_in_ = 0, deaths_ = 0, refusals_ = 0, committed_before_ = 0;
  std::size_t moments_ = 0, lost_answers_ = 0;
  Random random_;
  std::vector<Committed> committed_;
  std::vector<Arrival> journal_;      // what the destination committed
  std::vector<std::size_t> commits_;  // how many they were after each commit that added some
  EngineOnModels on_;
};

// QUILLMERE_SEEDS in the environment: as many instead.
std::uint64_t Seeds(std::uint64_t usual) {
  const char* const asked = std::getenv("QUILLMERE_SEEDS");
  return asked == nullptr ? usual : std::strtoull(asked, nullptr, 10);
}

Verdict Try(const World& world, Follow follow, bool trouble, bool row, std::uint64_t seeds) {
  Verdict verdict;
  for (std::uint64_t seed = 0; seed < seeds; ++seed) {
    Trial(world, seed, follow, trouble, row).Run(40, verdict);
    if (verdict.Wrong() != 0 && follow == Follow::Commits) {
      verdict.first = "seed " + std::to_string(seed) + ": " + verdict.first;
      break;
    }
  }
  std::cout << (follow == Follow::Commits ? "by commits, " : "by rows, ") << world.name
            << (trouble ? ", trouble" : "") << (row ? ", position row: " : ": ") << verdict.changes
            << " changes, " << verdict.lost << " lost, " << verdict.doubled << " doubled, "
            << verdict.halved << " commits inside a transaction, " << verdict.deaths << " deaths, "
            << verdict.refusals << " refusals, " << verdict.one_moment
            << " runs ended in the one moment, " << verdict.moments << " settled by the row\n";
  return verdict;
}

TEST(FollowCommitsTest, LosesDoublesAndHalvesNothing) {
  for (const auto& [trouble, row] : {std::pair(false, false), {true, false}, {true, true}}) {
    for (const World& world : kWorlds) {
      const Verdict verdict = Try(world, Follow::Commits, trouble, row, Seeds(6));
      EXPECT_EQ(verdict.Wrong(), 0U) << world.name << ", " << verdict.first;
      EXPECT_GT(verdict.changes, 500U) << world.name;
    }
  }
}

// The same by rows: were nothing lost, the worlds would prove nothing.
TEST(FollowCommitsTest, TellsOnceOfEachFailureToSayHowLongTheRedoStays) {
  SourceShape shape{.seed = 1};
  shape.log = {.bytes = 60'000, .archived = true, .archives_kept = 1000};
  EngineOnModels on(shape, Follow::Commits, 0);
  int code = 0;
  on.client.fault = [&](auto, std::string_view text) -> std::optional<ModelOci::Fault> {
    const bool reach = text == follow::kArchivedReach || text == follow::kOnlineReach;
    if (code == 0 || !reach) return std::nullopt;
    return ModelOci::Fault{.code = code, .connection_lost = false};
  };
  on.life->Run();
  const auto errors_after = [&](int next) {
    code = next;
    for (int i = 0; i < 4; ++i) on.Wait(20'000), on.life->Step();
    return on.life->errors.size();
  };
  EXPECT_EQ(errors_after(0), 0U);
  EXPECT_EQ(errors_after(942), 1U);
  EXPECT_EQ(errors_after(1031), 2U) << "another one";
  EXPECT_EQ(errors_after(0), 2U);
  EXPECT_EQ(errors_after(1031), 3U) << "again";
  EXPECT_GT(on.life->told.size(), 15U) << "passes went on";
}

TEST(FollowRowsTest, LosesWhatStraddlesAPass) {
  for (const World& world : kWorlds) {
    if (world.mean_seconds < 10) continue;
    const Verdict verdict = Try(world, Follow::Rows, false, false, Seeds(6));
    EXPECT_GT(verdict.lost, verdict.changes / 100) << world.name;
    EXPECT_LT(verdict.lost, verdict.changes) << world.name;
    EXPECT_TRUE(world.threads > 1 || verdict.doubled == 0) << world.name;
    const Verdict settled = Try(world, Follow::Rows, true, true, Seeds(6));
    EXPECT_TRUE(world.threads > 1 || settled.doubled == 0) << world.name << settled.first;
  }
}

}  // namespace
}  // namespace quillmere::sim
