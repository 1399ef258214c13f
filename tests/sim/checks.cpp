// SPDX-License-Identifier: MIT
// What must be so after every event of a simulation, and at every commit.
#include "sim/job_under_test.h"
#include "workspace/position_table.h"

namespace quillmere::sim {

std::size_t Simulation::MinedUpTo(const Job& job, std::size_t index) const {
  const JobRun& run = program_->workspace->Jobs().At(index).run;
  const bool finished = job.follow == Follow::Rows && run.batch_pending == 0;
  return histories_[job.number / 2].Below(
      finished ? run.positions.mining_start_scn : run.positions.cutoff_scn, job.follow);
}

std::size_t Simulation::BehindIt(const Job& job, std::size_t index) const {
  JobList::Progress progress;
  static_cast<void>(program_->workspace->Jobs().State(index, &progress));
  const bool finished =
      job.follow == Follow::Rows && program_->workspace->Jobs().At(index).run.batch_pending == 0;
  return MinedUpTo(job, index) - (finished ? 0 : progress.batch_remaining);
}

void Simulation::Check() {
  if (told_ == std::exchange(told_before_, told_)) {
    for (auto& [place, fault] : came_) ++place->silent[fault];
  }
  came_.clear();
  if (!wrong_.empty() || program_ == nullptr) return;
  const std::uint64_t faults = Faults(Fault::Switch);
  undisturbed_ = faults == std::exchange(faults_before_, faults);
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
  SyncJob& found = list.At(index);
  const std::size_t refusals = job.destination.Refusals();
  const bool refused = refusals != std::exchange(job.seen_refusals, refusals);
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
  CheckTables(job, found);
  CheckKept(job, index);
  if (refused && undisturbed_ && !job.ledger.IsUpToRefused(*job.destination.refused)) {
    Wrong(job, "did not come as far as what is refused");
  }
}

// What a death took of the counts of tables is gone; else they are as true as the job's.
void Simulation::CheckTables(Job& job, SyncJob& found) {
  std::vector<Ledger::Counts> counts = Job::TablesOf(found);
  for (std::size_t i = 0; i < kTableCount; ++i) {
    counts[i].applied -= job.ledger.Tables()[i].applied;
    counts[i].blocked -= job.ledger.Tables()[i].blocked;
    if (job.tables_unclear || counts[i] == job.tables[i]) continue;
    Wrong(job, "counts of " + std::string(kTables[i]) + " are wrong by " +
                   std::to_string(counts[i].applied - job.tables[i].applied) + " applied, " +
                   std::to_string(counts[i].blocked - job.tables[i].blocked) + " blocked");
  }
  job.tables = std::move(counts);
  job.tables_unclear = false;
}

// What must be set aside is known by the choices that it was mined with.
void Simulation::SeeMined(Job& job, std::size_t index, const std::vector<Ledger::Choice>& choices) {
  const History& history = histories_[job.number / 2];
  const std::size_t mined = MinedUpTo(job, index);
  for (; job.mined < mined; ++job.mined) {
    const History::Due& due = history[job.mined];
    if (due.aside && choices[due.arrival.table].carried) {
      job.aside.push_back("-- SCN " + std::to_string(due.scn) + ", ");
    }
  }
}

void Simulation::TakeChoices(Job& job, std::size_t index, bool are_saved) {
  // One that starts anew has its ledger from before.
  if (job.ledger.Running() && !job.starting) SeeMined(job, index, job.ledger.choices);
  job.TakeChoices(program_->workspace->Jobs().At(index), are_saved);
}

// What was not applied is kept for the operator.
void Simulation::CheckKept(Job& job, std::size_t index) {
  const std::string folder = "/work/jobs/" + NameOf(program_->workspace->Jobs().At(index)) + '/';
  SeeMined(job, index, job.ledger.choices);
  if (job.aside_seen < job.aside.size()) {
    const std::string kept = disk_->Content(folder + "setaside.sql");
    for (; job.aside_seen < job.aside.size(); ++job.aside_seen) {
      if (kept.find(job.aside[job.aside_seen]) != kept.npos) continue;
      return Wrong(job, "has not set aside " + job.aside[job.aside_seen]);
    }
  }
  const std::size_t skipped = job.skipped + job.ledger.LeftOut();
  if (skipped == 0) return;
  const std::string kept = disk_->Content(folder + "skipped.sql");
  std::size_t count = 0;
  for (std::size_t at = 0; (at = kept.find(": why\n", at)) != kept.npos; ++at) ++count;
  if (count < skipped) Wrong(job, "has skipped what is not in skipped.sql");
}

void Simulation::OnCommit(Job& job, std::span<const Arrival> arrived) {
  counts_.statements += arrived.size();
  Trace("commit", std::to_string(arrived.size()));
  const auto see = [&] {
    job.committed_at = operation_;
    job.faults_at_commit = FileFaults();
    job.in_the_moment = false;
  };
  if (!arrived.empty()) {
    committed_at_ = operation_;
    see();
  }
  if (program_ == nullptr) return;
  const std::size_t index = job.IndexIn(program_->workspace->Jobs());
  const bool passes = index != JobList::kNotFound && job.ledger.Running() && stepping_ &&
                      program_->workspace->Jobs().State(index) != JobState::Starting &&
                      !program_->workspace->Jobs().At(index).run.unsettled;
  job.ledger.Look();
  const std::size_t upto = passes ? BehindIt(job, index) : job.ledger.Next();
  if (upto != job.ledger.Next()) see();  // also when all of it was left out
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
  ++told_;
  if (job->last_error.size() > 500) job->last_error.clear();
  job->last_error.append(text).append(" ");
}

void Simulation::OnInformation(std::size_t index, std::string_view text) {
  if (Job* const job = JobAt(index); !dead_ && job != nullptr && text.ends_with(" started.")) {
    job->BeginLedger(program_->workspace->Jobs().At(index));
    job->starting = false;
    const bool stays = program_->workspace->Jobs().State(index) == JobState::Started;
    job->runs = stays && job->last_error.empty();  // its record could be written
  }
  Tell();
  if (dead_) return;
  told_ += text.find("not known") != text.npos ? 1 : 0;
  Trace("information", text);
  program_->workspace->Log().Add(text, false);
}

}  // namespace quillmere::sim
