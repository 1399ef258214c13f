// SPDX-License-Identifier: MIT
// The death of the simulation's program, and what is there when it is opened again.
#include "sim/job_under_test.h"
#include "workspace/position_table.h"

namespace quillmere::sim {

void Simulation::Die() {
  ++counts_.deaths;
  const std::uint64_t dice = Random::Mixed(operation_);
  for (const auto& job : jobs_) job->SeeDeath(operation_, FileFaults());
  client_.Die(static_cast<std::int64_t>(dice % 2 * 3000));
  if (power_) {
    program_.reset();
    const auto seed = static_cast<std::uint64_t>(*power_);
    Random random(seed);
    disk_ = disk_->AfterPowerCut(
        [&] { return seed == 1 || (seed > 1 && random.Chance(seed % 2 == 0 ? .5 : .9)); });
    power_.reset();
    after_power_ = true;
  }
  Reopen();
}

void Simulation::DieWhileOpening() {
  program_.reset();  // it holds files of the disk
  for (const auto& job : jobs_) job->SeeDeath(operation_, FileFaults());
  ++counts_.deaths;
  client_.Die();
  if (!power_) return;
  disk_ = disk_->AfterPowerCut([] { return false; });
  power_.reset();
  after_power_ = true;
}

std::uint64_t Simulation::Faults(Fault last) const {
  std::uint64_t faults = 0;
  for (auto kind = Fault::NoSpace; kind <= last;) {
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
    for (const auto& job : jobs_) {
      job->SeeEnd(before);
      job->may_go_back |= job->in_the_moment && job->HasCommitPoint(*disk_);
    }
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
    told_ += reason.empty() ? 0 : 1;
    if (workspace == nullptr) {
      if (FileFaults() == before && wrong_.empty()) wrong_ = "can not be opened: " + reason;
      if (!wrong_.empty()) return;
      continue;
    }
    const std::size_t world = plan_.empty() ? 0 : static_cast<std::size_t>(plan_[0].second);
    if (world % 2 == 1) workspace->ProgramSettings().most_statements = 60;
    program_ = std::make_unique<Program>(std::move(workspace), *this);
    MessageLog& log = program_->workspace->Log();
    const auto count = [this, &log](bool) { told_ += log.Entries().back().error ? 1 : 0; };
    for (const MessageEntry& entry : log.Entries()) told_ += entry.error ? 1 : 0;
    log.SetListener(count);
    if (FileFaults() == before) break;
    WithWhatCouldBeRead();
    if (!wrong_.empty()) return;
    if (dead_) DieWhileOpening();
  }
  for (const auto& job : jobs_) TakeUp(*job);
  after_power_ = false;
}

void Simulation::WithWhatCouldBeRead() {
  Workspace& workspace = *program_->workspace;
  JobList& list = workspace.Jobs();
  for (const auto& job : jobs_) {
    const std::size_t index = job->IndexIn(list);
    job->tables_unclear = true;
    if (index == JobList::kNotFound && job->there == Job::There::Yes &&
        workspace.Catalogue().WhyListNotRead().empty()) {
      return Wrong(*job, "is not there, without a word");
    }
    if (index == JobList::kNotFound) continue;
    if (job->runs && list.State(index) == JobState::Stopped && list.HeldBecause(index).empty()) {
      return Wrong(*job, "comes back stopped, without a word");
    }
    if (list.State(index) != JobState::Paused) continue;
    if (job->choices_unclear) TakeChoices(*job, index, false);
    SeeTheMoment(*job, index);
    PlayOnJob({"run"}, *job, index);
  }
  std::string unsaved;
  told_ += workspace.SaveJobs(unsaved) ? 0 : 1;
  if (!dead_) Pass(1500);
}

void Simulation::TakeUp(Job& job) {
  JobList& list = program_->workspace->Jobs();
  const std::size_t index = job.IndexIn(list);
  const bool there = index != JobList::kNotFound;
  if (job.there != Job::There::Unclear && there != (job.there == Job::There::Yes)) {
    return Wrong(job, there ? "is back after it was removed" : "is gone after a restart");
  }
  const bool unclear = job.there == Job::There::Unclear;
  // What could not be saved for sure is gone with a power cut, or stays for good.
  const bool sure = !unclear || after_power_;
  job.there = !there ? Job::There::No : sure ? Job::There::Yes : Job::There::Unclear;
  if (!there) return job.Forget();
  SyncJob& found = list.At(index);
  const std::vector<Ledger::Choice> loaded = Job::ChoicesOf(found);
  if (!job.choices_unclear && !unclear && loaded != job.saved) {
    return Wrong(job, "comes back with other tables than were saved");
  }
  const std::vector<Ledger::Choice> before = job.ledger.choices;
  job.TakeChoices(found, !job.choices_unclear && !unclear);
  job.tables_unclear = true;
  const JobState state = list.State(index);
  if (state == JobState::Stopped) {
    if (job.runs) Wrong(job, "comes back stopped");
    return;
  }
  job.aside_seen = 0;
  job.ledger.Look();
  const bool other = !job.ledger.Running() || BehindIt(job, index) != job.ledger.Next();
  if (job.starting && other) job.BeginLedger(found);
  if (job.ledger.Running()) SeeMined(job, index, before);
  job.starting = false;
  if (job.asked == Job::Asked::ToRun) job.asked = Job::Asked::Nothing;
  job.told += list.HeldBecause(index).empty() ? 0 : 1;
}

}  // namespace quillmere::sim
