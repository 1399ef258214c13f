// SPDX-License-Identifier: MIT
// The events of a plan: what the operator does, what comes over the sources, what is to go wrong.
#include "sim/job_under_test.h"
#include "workspace/job_operations.h"
#include "workspace/job_tables.h"
#include "workspace/position_table.h"
#include "workspace/skip_statement.h"

namespace quillmere::sim {

void Simulation::Play(const Event& event) {
  if (trace_ != nullptr) Trace("*", TextOf({event}));
  for (std::size_t i = 0; i < kFaultCount; ++i) {
    if (kFaults[i] == event.verb) return Arm(static_cast<Fault>(i), event);
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
    told_ += program_->workspace->SaveJobs(unsaved) ? 0 : 1;
    if (!dead_) Reopen();
  } else {
    Job& job = *jobs_[static_cast<std::size_t>(event.first)];
    const std::size_t index = job.IndexIn(program_->workspace->Jobs());
    if (index != JobList::kNotFound) return PlayOnJob(event, job, index);
    if (event.verb == "add") Add(job);
  }
}

bool Simulation::Hear(const Outcome& outcome) {
  if (!outcome.text.empty() && !dead_) ++told_;
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
  job.half_removed = false;
  if (job.number % 2 == 1 && index != JobList::kNotFound && !dead_) {
    Hear(UsePositionTable(workspace, index, "OPS"));
  }
  job.there = added && !dead_ ? Job::There::Yes : Job::There::Unclear;
  if (index != JobList::kNotFound) TakeChoices(job, index, false);
}

// What was said to be left out is; what was cut off may be.
void Simulation::Skip(Job& job, std::size_t index) {
  const std::uint64_t faults = Faults(Fault::Power);
  const bool done = Hear(SkipStatement(*program_->workspace, index, "why"));
  const bool sure = done && !dead_;
  if (sure || dead_ || Faults(Fault::Power) != faults) job.ledger.Skip(sure);
  job.skipped += sure ? 1 : 0;
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
  } else if (event.verb == "poison") {
    // One of the next statements the destination will not take.
    const History& history = histories_[job.number / 2];
    const std::size_t at = job.ledger.Next() + static_cast<std::size_t>(event.second);
    if (job.ledger.Running() && at < history.Size())
      job.destination.refused = history[at].arrival.id;
  } else if (event.verb == "skip") {
    Skip(job, index);
  } else if (event.verb == "refresh") {
    const bool refreshed = Hear(RefreshTables(workspace, index, place_));
    TakeChoices(job, index, refreshed && !dead_);
  } else if (event.verb == "exclude" || event.verb == "include" || event.verb == "owner") {
    TableChoice choice{.owner = "SHOP", .owner_saving = OwnerSaving::AtOnce};
    choice.tables = {std::string(kTables[static_cast<std::size_t>(event.second)])};
    if (event.verb == "exclude") choice.filter = TableFilter::Exclude;
    if (event.verb == "owner") choice.filter = TableFilter::ChangeOwner, choice.new_owner = "COPY";
    const FilterResult result = FilterTables(workspace, index, choice);
    told_ += result.refused.empty() && result.unsaved.empty() ? 0 : 1;
    if (!result.refused.empty()) return;
    TakeChoices(job, index, result.unsaved.empty() && !dead_);
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
    if (job.there == Job::There::No) return job.Forget();
    job.asked = Job::Asked::Nothing;  // it may be back as it was
    job.half_removed = true;
    job.choices_unclear = true;
  }
}

}  // namespace quillmere::sim
