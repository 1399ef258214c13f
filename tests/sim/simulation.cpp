// SPDX-License-Identifier: MIT
#include "sim/simulation.h"

#include <new>

#include "sim/job_under_test.h"
#include "workspace/job_operations.h"
#include "workspace/job_tables.h"
#include "workspace/position_table.h"

namespace quillmere::sim {
namespace {

constexpr std::string_view kSources[] = {"SRC0", "SRC1"};
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
  if (!by_rows) return shape;
  // By rows only what is in the online logs can be taken, and no change that has the SCN of the
  // job's start.
  shape.log = {.bytes = 1'000'000'000};
  shape.habits = {.per_second = .7, .mean_seconds = 0, .shares_scn = 0};
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

// --- The run ------------------------------------------------------------------------------------

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
    job.destination.strict = false;
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

void Simulation::Play(const Event& event) {
  if (trace_ != nullptr) Trace("*", TextOf({event}));
  for (std::size_t i = 0; i < kFaultCount; ++i) {
    if (kFaults[i] != event.verb) continue;
    const std::uint64_t at = operation_ + static_cast<std::uint64_t>(event.first) + 1;
    armed_.push_back({at, static_cast<Fault>(i), event.second, event.text});
    next_armed_ = std::min(next_armed_, at);
    return;
  }
  if (event.verb == "pass") return Pass(event.first);
  if (event.verb == "burst") return Burst(static_cast<std::size_t>(event.first), event.second);
  if (event.verb == "switch") {
    return sources_[static_cast<std::size_t>(event.first)]->Thread(0).SwitchSoon();
  }
  if (event.verb == "stall") {
    SourceModel& source = *sources_[static_cast<std::size_t>(event.first)];
    // On a cluster one that hangs for longer is taken for idle.
    const std::int64_t least = source.Threads().size() > 1 ? 45'000 : event.second;
    const std::int64_t until = client_.Now() + std::min(least, event.second);
    return source.Thread(0).Stall(client_.Now(), until);
  }
  if (event.verb == "jump") {
    clock_.jumped_ms += event.first;
  } else if (event.verb == "backup") {
    backup_ = std::make_unique<SourceModel>(*sources_[0]);
  } else if (event.verb == "restore" && backup_ != nullptr) {
    sources_[0]->RestoreFrom(*backup_, event.first != 0);
    for (const std::size_t i : {0U, 1U}) jobs_[i]->ledger.End();
  } else if (event.verb == "restart") {
    std::string unsaved;
    program_->workspace->SaveJobs(unsaved);
    if (!dead_) Reopen();
  } else {
    Job& job = *jobs_[static_cast<std::size_t>(event.first)];
    const std::size_t index = job.IndexIn(program_->workspace->Jobs());
    if (index != JobList::kNotFound) return PlayOnJob(event, job, index);
    if (event.verb == "add") Add(job);
  }
}

bool Simulation::Hear(const Outcome& outcome) {
  return outcome.done;
}

void Simulation::Add(Job& job) {
  Workspace& workspace = *program_->workspace;
  std::size_t index = 0;
  JobProperties properties{
      job.name, "d", std::string(kSources[job.number / 2]), job.Destination(), 0, true, job.follow};
  if (sources_[job.number / 2]->Shape().containers > 1) properties.container = kContainers[0];
  const bool added = Hear(AddJob(workspace, properties, index, place_));
  job.Forget();
  if (job.number % 2 == 1 && index != JobList::kNotFound && !dead_) {
    Hear(UsePositionTable(workspace, index, "OPS"));
  }
  job.there = added && !dead_ ? Job::There::Yes : Job::There::Unclear;
  if (index != JobList::kNotFound) job.TakeChoices(workspace.Jobs().At(index), false);
}

void Simulation::PlayOnJob(const Event& event, Job& job, std::size_t index) {
  Workspace& workspace = *program_->workspace;
  JobList& list = workspace.Jobs();
  const JobState state = list.State(index);
  std::string reason;
  if (event.verb == "run") {
    if (!Rests(state)) return;
    const Outcome asked = RunJob(workspace, program_->engine, index);
    if (!Hear(asked)) ++job.told, job.last_error = asked.text;
    if (IsRunning(list.State(index))) job.asked = Job::Asked::ToRun;
    if (list.State(index) != JobState::Starting) return;
    job.starting = true;
    job.last_error.clear();
  } else if (event.verb == "pause") {
    RequestPause(list, index);
    if (list.State(index) == JobState::Pausing) job.asked = Job::Asked::ToRest;
  } else if (event.verb == "stop") {
    RequestStop(list, index);
    if (list.State(index) == JobState::Stopping) job.AskedToStop();
  } else if (event.verb == "refresh") {
    const bool refreshed = Hear(RefreshTables(workspace, index, place_));
    job.TakeChoices(list.At(index), refreshed && !dead_);
  } else if (event.verb == "exclude" || event.verb == "include" || event.verb == "owner") {
    TableChoice choice{.owner = "SHOP", .owner_saving = OwnerSaving::AtOnce};
    choice.tables = {std::string(kTables[static_cast<std::size_t>(event.second)])};
    if (event.verb == "exclude") choice.filter = TableFilter::Exclude;
    if (event.verb == "owner") choice.filter = TableFilter::ChangeOwner, choice.new_owner = "COPY";
    const FilterResult result = FilterTables(workspace, index, choice);
    if (!result.refused.empty()) return;
    job.TakeChoices(list.At(index), result.unsaved.empty() && !dead_);
  } else if (event.verb == "edit" || event.verb == "rename") {
    JobProperties properties = PropertiesOf(list.At(index));
    if (event.verb == "edit") properties.interval = static_cast<std::int32_t>(event.second);
    if (event.verb == "rename") properties.name[1] = static_cast<char>('a' + event.second);
    properties.zero_allowed = true;
    Hear(EditJob(workspace, index, properties, place_));
  } else if (event.verb == "container") {
    JobProperties properties = PropertiesOf(list.At(index));
    properties.container = event.text;
    properties.zero_allowed = true;
    job.last_error = EditJob(workspace, index, properties, place_).text;
  } else if (event.verb == "expect") {
    const std::string is =
        std::string(StateName(state)) + ' ' + list.HeldBecause(index) + job.last_error;
    if (is.find(event.text) == is.npos) Wrong(job, "is not as expected: " + is);
    if (event.second != 0) stop_here_ = true;
  } else if (event.verb == "remove" && state == JobState::Stopped) {
    const bool removed = Hear(DeleteJob(workspace, index));
    job.there = removed && !dead_ ? Job::There::No : Job::There::Unclear;
    job.Forget();
  }
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
  std::size_t due = 0;
  for (const History& history : histories_) due += history.Size();
  for (std::size_t round = 0; round < 30 + due / 20 && wrong_.empty(); ++round) {
    bool done = round > 1;
    for (const auto& job : jobs_) {
      const std::size_t index = job->IndexIn(*list);
      if (index == JobList::kNotFound || list->State(index) == JobState::Stopped) continue;
      done &= job->ledger.Next() == histories_[job->number / 2].Size();
      if (list->State(index) == JobState::Paused) PlayOnJob({"run"}, *job, index);
    }
    if (done) return;
    Pass(kRound);
    Check();
  }
  for (const auto& job : jobs_) {
    const std::size_t index = job->IndexIn(*list);
    if (index == JobList::kNotFound || list->State(index) == JobState::Stopped) continue;
    const std::size_t size = histories_[job->number / 2].Size();
    if (job->ledger.Next() == size) continue;
    Wrong(*job, "does not come to an end: " + std::to_string(size - job->ledger.Next()) +
                    " statements left, " + std::string(StateName(list->State(index))) + " " +
                    list->HeldBecause(index) + " " + job->last_error);
  }
}

// --- Death and what comes after -----------------------------------------------------------------

void Simulation::Die() {
  ++counts_.deaths;
  const std::uint64_t dice = Random::Mixed(operation_);
  client_.Die(static_cast<std::int64_t>(dice % 2 * 3000));
  if (power_) {
    program_.reset();
    const auto seed = static_cast<std::uint64_t>(*power_);
    Random random(seed);
    disk_ = disk_->AfterPowerCut(
        [&] { return seed == 1 || (seed > 1 && random.Chance(seed % 2 == 0 ? .5 : .9)); });
    power_.reset();
  }
  Reopen();
}

void Simulation::DieWhileOpening() {
  program_.reset();  // it holds files of the disk
  ++counts_.deaths;
  client_.Die();
  if (power_) disk_ = disk_->AfterPowerCut([] { return false; }), power_.reset();
}

std::uint64_t Simulation::FileFaults() const {
  std::uint64_t faults = 0;
  for (auto kind = Fault::NoSpace; kind <= Fault::Denied;) {
    faults += counts_.of_kind[static_cast<std::size_t>(kind)];
    kind = static_cast<Fault>(static_cast<int>(kind) + 1);
  }
  return faults;
}

// What can not be read makes the program tell so and go on with less. Nothing may be lost by that:
// a pass is made then, and it is started once more.
void Simulation::Reopen() {
  for (;;) {
    program_.reset();
    disk_->Release();
    disk_->on_operation = [this](const testing::FileOperation& operation) {
      return OnFile(operation);
    };
    dead_ = given_up_ = false;
    const std::uint64_t before = FileFaults();
    Trace("open");
    for (const auto& job : jobs_) job->may_go_back |= job->HasCommitPoint(*disk_);
    Workspace::Options options;
    options.folder = "/work";
    options.oci = &api_;
    options.clock = &clock_;
    options.files = disk_.get();
    options.user = "operator";
    std::string reason;
    auto workspace = Workspace::Open(options, reason);
    if (dead_) {
      workspace.reset();
      DieWhileOpening();
      continue;
    }
    if (workspace == nullptr) {
      if (FileFaults() == before && wrong_.empty()) wrong_ = "can not be opened: " + reason;
      if (!wrong_.empty()) return;
      continue;
    }
    const std::size_t world = plan_.empty() ? 0 : static_cast<std::size_t>(plan_[0].second);
    if (world % 2 == 1) workspace->ProgramSettings().most_statements = 60;
    program_ = std::make_unique<Program>(std::move(workspace), *this);
    if (FileFaults() == before) break;
    for (const auto& job : jobs_) {
      JobList& list = program_->workspace->Jobs();
      const std::size_t index = job->IndexIn(list);
      if (index == JobList::kNotFound || list.State(index) != JobState::Paused) continue;
      if (job->choices_unclear) job->TakeChoices(list.At(index), false);
      SeeTheMoment(*job, index);
      PlayOnJob({"run"}, *job, index);
    }
    Pass(1500);
    if (dead_) DieWhileOpening();
  }
  for (const auto& job : jobs_) TakeUp(*job);
}

void Simulation::TakeUp(Job& job) {
  JobList& list = program_->workspace->Jobs();
  const std::size_t index = job.IndexIn(list);
  const bool there = index != JobList::kNotFound;
  if (job.there != Job::There::Unclear && there != (job.there == Job::There::Yes)) {
    return Wrong(job, there ? "is back after it was removed" : "is gone after a restart");
  }
  const bool unclear = job.there == Job::There::Unclear;
  job.there = there ? Job::There::Yes : Job::There::No;
  if (!there) return;
  SyncJob& found = list.At(index);
  const std::vector<Ledger::Choice> loaded = Job::ChoicesOf(found);
  if (!job.choices_unclear && !unclear && loaded != job.saved) {
    return Wrong(job, "comes back with other tables than were saved");
  }
  job.TakeChoices(found, !job.choices_unclear && !unclear);
  const JobState state = list.State(index);
  if (state == JobState::Stopped) {
    if (job.runs) Wrong(job, "comes back stopped");
    return;
  }
  job.ledger.Look();
  if (job.starting && BehindIt(job, index) != job.ledger.Next()) job.BeginLedger(found);
  job.starting = false;
  if (job.asked == Job::Asked::ToRun) job.asked = Job::Asked::Nothing;
  job.told += list.HeldBecause(index).empty() ? 0 : 1;
}

// --- What must be so ----------------------------------------------------------------------------

std::size_t Simulation::BehindIt(const Job& job, std::size_t index) const {
  const JobList& list = program_->workspace->Jobs();
  JobList::Progress progress;
  static_cast<void>(list.State(index, &progress));
  const JobRun& run = list.At(index).run;
  const bool finished = job.follow == Follow::Rows && run.batch_pending == 0;
  const History& history = histories_[job.number / 2];
  if (finished) return history.Below(run.positions.mining_start_scn, job.follow);
  return history.Below(run.positions.cutoff_scn, job.follow) - progress.batch_remaining;
}

void Simulation::Check() {
  if (!wrong_.empty() || program_ == nullptr) return;
  for (const auto& job : jobs_) {
    const std::size_t index = job->IndexIn(program_->workspace->Jobs());
    if (index != JobList::kNotFound) CheckJob(*job, index);
  }
}

// Without a position row a pass that was committed may count as not done.
void Simulation::SeeTheMoment(Job& job, std::size_t index) {
  const bool may = job.may_go_back && job.ledger.Running() &&
                   PositionOwnerOf(program_->workspace->Jobs().At(index)).empty();
  const std::size_t behind = may ? BehindIt(job, index) : job.ledger.Next();
  if (behind == job.ledger.Before() && behind != job.ledger.Next()) {
    job.ledger.GoBack();
    ++counts_.moments;
  }
  job.may_go_back = false;
}

void Simulation::CheckJob(Job& job, std::size_t index) {
  JobList& list = program_->workspace->Jobs();
  const JobState state = list.State(index);
  const SyncJob& found = list.At(index);
  if (job.destination.Damaged() != 0) Wrong(job, "texts arrive damaged");
  if (state == JobState::Stopped || state == JobState::Starting) return;
  if (job.asked == Job::Asked::ToRest && state == JobState::Started) {
    Wrong(job, "runs although it was paused");
  }
  if (job.asked == Job::Asked::ToRun && state == JobState::Paused && job.told == 0) {
    Wrong(job, "rests without a word");
  }
  job.ledger.Look();
  if (!job.ledger.Running()) return;
  SeeTheMoment(job, index);
  if (found.run.unsettled) return;
  const auto both = [](auto is, std::size_t should) {
    return std::to_string(is) + " instead of " + std::to_string(should);
  };
  const std::size_t behind = BehindIt(job, index);
  if (behind != job.ledger.Next()) {
    return Wrong(job, "stands at statement " + both(behind, job.ledger.Next()) + " " +
                          job.last_error + list.HeldBecause(index));
  }
  const auto applied = static_cast<std::size_t>(found.run.applied_count.Get());
  const auto blocked = static_cast<std::size_t>(found.run.blocked_count.Get());
  if (applied != job.ledger.Applied())
    Wrong(job, "counts applied " + both(applied, job.ledger.Applied()));
  if (blocked != job.ledger.Blocked())
    Wrong(job, "counts blocked " + both(blocked, job.ledger.Blocked()));
}

void Simulation::OnCommit(Job& job, std::span<const Arrival> arrived) {
  counts_.statements += arrived.size();
  Trace("commit", std::to_string(arrived.size()));
  if (!arrived.empty()) committed_at_ = operation_;
  if (program_ == nullptr) return;
  const std::size_t index = job.IndexIn(program_->workspace->Jobs());
  const bool passes = index != JobList::kNotFound && job.ledger.Running() && stepping_ &&
                      program_->workspace->Jobs().State(index) != JobState::Starting &&
                      !program_->workspace->Jobs().At(index).run.unsettled;
  job.ledger.Look();
  const std::size_t upto = passes ? BehindIt(job, index) : job.ledger.Next();
  const std::string wrong = job.ledger.Commit(arrived, upto);
  if (!wrong.empty()) Wrong(job, wrong);
}

Simulation::Job* Simulation::JobAt(std::size_t index) {
  for (const auto& job : jobs_) {
    if (job->IndexIn(program_->workspace->Jobs()) == index) return job.get();
  }
  return nullptr;
}

void Simulation::OnError(std::size_t index, std::string_view text) {
  Tell();
  if (dead_) return;
  Trace("error", text);
  program_->workspace->Log().Add(text, true);
  Job* const job = JobAt(index);
  if (job == nullptr) return;
  ++job->told;
  if (job->last_error.size() > 500) job->last_error.clear();
  job->last_error.append(text).append(" ");
}

void Simulation::OnInformation(std::size_t index, std::string_view text) {
  if (Job* const job = JobAt(index); !dead_ && job != nullptr && text.ends_with(" started.")) {
    job->BeginLedger(program_->workspace->Jobs().At(index));
    job->starting = false;
    job->runs = job->last_error.empty();  // its record could be written
  }
  Tell();
  if (dead_) return;
  Trace("information", text);
  program_->workspace->Log().Add(text, false);
}

}  // namespace quillmere::sim
