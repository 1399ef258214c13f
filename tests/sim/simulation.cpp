// SPDX-License-Identifier: MIT
#include "sim/simulation.h"

#include <new>

#include "sim/job_under_test.h"
#include "workspace/job_operations.h"
#include "workspace/job_tables.h"
#include "workspace/position_table.h"

namespace quillmere::sim {
namespace {

constexpr double kOpenSeconds[] = {1, 10, 60, 150};
constexpr std::size_t kWorlds = std::size(kOpenSeconds);
constexpr std::int64_t kRound = 61'000;

SourceShape ShapeOf(std::uint64_t seed, std::size_t world, bool by_rows) {
  SourceShape shape{.seed = seed + by_rows};
  shape.straddling = seed % 2 == 0 ? Straddling::WholeOrNothing : Straddling::PartInside;
  shape.log = {.groups = 3, .bytes = 60'000, .archived = true, .archives_kept = 100'000};
  shape.habits = {.per_second = .7, .mean_seconds = kOpenSeconds[world % kWorlds]};
  if (!by_rows && world / kWorlds == 1) shape.containers = 2;
  if (!by_rows && world / kWorlds == 2) shape.threads = 3, shape.lag_ms = 3000;
  if (!by_rows && world / kWorlds == 3) {
    // Seen from an instance that commits less, or hardly anything.
    shape.threads = 2 + seed % 2;
    shape.instance = 1;
    shape.lag_ms = 4700;
    shape.habits.on_idle_thread = seed % 2 == 0 ? .02 : .45;
  }
  if (world >= 4 * kWorlds) shape.habits.per_second = .05;
  if (!by_rows) return shape;
  // By rows only what is in the online logs can be taken, and no change that has the SCN of the
  // job's start.
  shape.log = {.bytes = 1'000'000'000};
  shape.habits = {.per_second = shape.habits.per_second, .mean_seconds = 0, .shares_scn = 0};
  shape.habits.long_text = shape.habits.temporary = 0;
  return shape;
}

}  // namespace

Simulation::Simulation(const Plan& plan, Counts& counts, bool places, std::ostream* trace)
    : plan_(plan), counts_(counts), places_(places), trace_(trace) {}

Simulation::~Simulation() = default;

void Simulation::Trace(std::string_view what, std::string_view text) const {
  if (trace_ == nullptr) return;
  // A job's id is another one each time.
  const std::size_t id = text.find("OPS.QUILLMERE_POSITION ");
  const std::size_t end = id == text.npos ? text.size() : text.find('\'', id);
  *trace_ << operation_ << ' ' << what << ' ' << text.substr(0, end) << '\n';
}

void Simulation::Wrong(const Job& job, const std::string& what) {
  if (wrong_.empty()) wrong_ = job.name + ": " + what;
}

void Simulation::Begin() {
  const bool places = std::exchange(places_, false);  // this is no place for faults
  const Event world = plan_.empty() ? Event{} : plan_[0];
  const auto seed = static_cast<std::uint64_t>(world.first);
  for (const std::size_t i : {0U, 1U}) {
    sources_.push_back(std::make_unique<SourceModel>(
        ShapeOf(seed, static_cast<std::size_t>(world.second), i == 1), client_.Now()));
    sources_[i]->on_commit = [this, i](const Transaction& one) {
      if (one.container == 0) histories_[i].Add(one, i == 0 ? Follow::Commits : Follow::Rows);
    };
    client_.Add(std::string(kSources[i]), *sources_[i]);
  }
  for (std::size_t i = 0; i < 4; ++i) {
    jobs_.push_back(std::make_unique<Job>(i, histories_[i / 2]));
    Job& job = *jobs_.back();
    client_.Add(job.Destination(), job.destination);
    job.destination.on_commit = [this, &job](auto arrived) { OnCommit(job, arrived); };
  }
  client_.fault = [this](std::string_view call, std::string_view text) {
    return OnCall(call, text);
  };
  disk_ = std::make_unique<testing::MemoryFiles>();
  Reopen();
  DataSourceRegistry& registry = program_->workspace->Registry();
  std::string error;
  const auto add = [&](std::string_view name) {
    DataSource source;
    source.name = name;
    source.user_id = source.password = "u";
    source.state = ConnectionState::Registered;
    registry.Add(std::move(source));
  };
  for (const std::string_view name : kSources) add(name);
  for (const auto& job : jobs_) add(job->Destination());
  if (!registry.Save(error)) wrong_ = error;
  if (noted_ != nullptr) noted_->clear();
  places_ = places;
}

std::string Simulation::Run() {
  Begin();
  for (std::size_t i = 1; i < plan_.size() && wrong_.empty(); ++i) {
    Play(plan_[i]);
    if (dead_) {
      Die();
    } else if (given_up_) {
      Reopen();
    }
    Check();
  }
  if (wrong_.empty() && !stop_here_) Rest();
  for (const auto& job : jobs_) job->CheckModes(*disk_, wrong_);
  program_.reset();
  if (wrong_.empty() && client_.LiveHandles() != 0) wrong_ = "handles of the client are not freed";
  return wrong_;
}

void Simulation::Tick(std::int64_t ms) {
  clock_.now = LocalTime{client_.Now() + ms};
  for (const auto& source : sources_) source->RunUntil(client_.Now());
}

void Simulation::Pass(std::int64_t ms) {
  Tick(ms);
  ++counts_.passes;
  stepping_ = true;
  for (std::size_t i = 0; i < program_->workspace->Jobs().Count() && !dead_; ++i) {
    program_->runner.Step(i);
  }
  stepping_ = false;
  if (!dead_) program_->workspace->Log().LimitFiles();
}

// Three transactions that are at work together, all at one moment.
void Simulation::Burst(std::size_t number, std::int64_t changes) {
  SourceModel& source = *sources_[number];
  std::uint32_t open[3];
  for (std::uint32_t& transaction : open) transaction = source.Begin();
  for (std::int64_t i = 0; i <= changes; ++i) {
    const auto operation = static_cast<sim::Operation>(i % 5 % 3);
    source.Do(open[i % 3], operation, static_cast<std::uint8_t>(i % 2));
  }
  for (const std::size_t i : {1U, 2U, 0U}) source.Commit(open[i]);
}

// Nothing goes wrong any more, and nobody works on the sources.
void Simulation::Rest() {
  armed_.clear();
  next_armed_ = ~std::uint64_t{0};
  clock_.jumped_ms = 0;
  places_ = false;
  noted_ = nullptr;
  for (const auto& source : sources_) source->SendUsersHome();
  Reopen();
  JobList* list = &program_->workspace->Jobs();
  for (const auto& job : jobs_) {
    const std::size_t index = job->IndexIn(*list);
    if (index != JobList::kNotFound) SeeTheMoment(*job, index);
  }
  std::size_t due = 0;
  // Who rests is at its end, and so is what only waits to be removed once more.
  const auto at_rest = [&](const Job& job, std::size_t index) {
    return index == JobList::kNotFound || list->State(index) == JobState::Stopped ||
           (job.half_removed && !list->HeldBecause(index).empty());
  };
  // What a destination refuses it goes on refusing; every second operator does something about it.
  for (const auto& job : jobs_) {
    if (job->number % 2 == operation_ % 2) job->destination.refused.reset();
  }
  for (const History& history : histories_) due += history.Size();
  for (std::size_t round = 0; round < 30 + due / 20 && wrong_.empty(); ++round) {
    bool done = round > 1;
    for (const auto& job : jobs_) {
      const std::size_t index = job->IndexIn(*list);
      if (at_rest(*job, index)) continue;
      done &= job->ledger.Next() == histories_[job->number / 2].Size();
      if (list->State(index) == JobState::Started && job->refusals != job->destination.Refusals()) {
        PlayOnJob({"pause"}, *job, index);
      } else if (list->State(index) == JobState::Paused) {
        if (job->destination.refused) PlayOnJob({"skip"}, *job, index);
        const bool no_tables = job->last_error.ends_with("refresh first please.");
        if (no_tables) PlayOnJob({"refresh"}, *job, index);
        PlayOnJob({"run"}, *job, index);
      }
      job->refusals = job->destination.Refusals();
    }
    if (done) return;
    Pass(kRound);
    Check();
  }
  for (const auto& job : jobs_) {
    const std::size_t index = job->IndexIn(*list);
    if (at_rest(*job, index)) continue;
    const std::size_t size = histories_[job->number / 2].Size();
    if (job->ledger.Next() == size) continue;
    Wrong(*job, "does not come to an end: " + std::to_string(size - job->ledger.Next()) +
                    " statements left, " + std::string(StateName(list->State(index))) + " " +
                    list->HeldBecause(index) + " " + job->last_error);
  }
}

}  // namespace quillmere::sim
