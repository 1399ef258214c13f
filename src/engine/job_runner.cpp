// SPDX-License-Identifier: MIT
#include "engine/job_runner.h"

#include <algorithm>
#include <exception>

#include "engine/follow.h"
#include "engine/job_view.h"
#include "engine/pass.h"
#include "engine/position_guard.h"
#include "jobs/held_file.h"

namespace quillmere {
namespace {

// Down to the disk: what an operator has asked for stays so whatever happens.
bool WriteRecord(EngineContext& context, std::size_t index, JobState state, std::string& error) {
  const SyncJob& job = context.jobs.At(index);
  JobList::Progress progress;
  context.jobs.State(index, &progress);
  RunRecordWriter writer(context.files, context.catalogue.FolderOf(JobView(job).name));
  return writer.Write(MakeRunRecord(job, state, progress), error) && writer.Flush(error);
}

// After every change of state: the record, then the window.
bool RecordAndNotify(EngineContext& context, std::size_t index, JobState state) {
  std::string error;
  const bool recorded = WriteRecord(context, index, state, error);
  if (!recorded) context.listener.OnError(index, error);
  context.listener.OnJobChanged(index, false);
  return recorded;
}

// What a stop could not record is recorded before the position row changes: behind that a death
// would bring back the run before, and its row is gone.
bool RecordTheStop(EngineContext& context, std::size_t index, std::string& error) {
  const JobFolder folder = context.catalogue.FolderOf(NameOf(context.jobs.At(index)));
  FileFacts facts;
  return context.files.Look(folder.File(JobFile::Record), facts).Missing() ||
         WriteRecord(context, index, JobState::Stopped, error);
}

// Of the start before; empty when there is none.
std::string JobIdOf(const EngineContext& context, std::size_t index) {
  SourceFile source;
  const JobFolder folder = context.catalogue.FolderOf(NameOf(context.jobs.At(index)));
  return ReadSourceFile(context.files, folder, source) ? source.job_id : std::string();
}

// False: it is still on disk.
bool ForgetHold(EngineContext& context, std::size_t index, std::string& error) {
  if (context.jobs.HeldBecause(index).empty()) return true;
  const JobFolder folder = context.catalogue.FolderOf(NameOf(context.jobs.At(index)));
  if (!KeepHeldFile(context.files, folder, {}, error)) return false;
  context.jobs.Hold(index, {});
  return true;
}

// Before others are written in their place, the files that a held job left alone so far are kept.
// Then it is held no more.
bool KeepWhatIsHeld(EngineContext& context, std::size_t index, std::string& error) {
  if (context.jobs.HeldBecause(index).empty()) return true;
  const JobFolder folder = context.catalogue.FolderOf(NameOf(context.jobs.At(index)));
  SourceFile source;
  const bool source_is_good = static_cast<bool>(ReadSourceFile(context.files, folder, source));
  return context.catalogue.KeepHeldFiles(
             index, {JobFile::Record, JobFile::CommitPoint, JobFile::Batch}, error) &&
         (source_is_good || folder.KeepBad(context.files, {JobFile::Source}, error)) &&
         ForgetHold(context, index, error);
}

// A job that is started anew, or was stopped, has no pass behind it that would have to be settled.
bool RemoveCommitPoint(EngineContext& context, std::size_t index, std::string& error) {
  const SyncJob& job = context.jobs.At(index);
  const JobFolder folder = context.catalogue.FolderOf(NameOf(job));
  const std::filesystem::path path = folder.File(JobFile::CommitPoint);
  FileFacts facts;
  if (context.files.Look(path, facts).Missing()) return true;
  bool harmless = false;
  if (ForgetCommitPoint(context.files, folder, MakeRunRecord(job, JobState::Stopped, {}),
                        harmless)) {
    return true;
  }
  error = "Can not remove " + PathText(path) + ". Remove it, then start the job";
  return false;
}

}  // namespace

JobRunner::JobRunner(EngineContext context) : context_(std::move(context)) {}

void JobRunner::Step(std::size_t index) try {
  switch (context_.jobs.State(index)) {
    case JobState::Starting:
      return Start(index);
    case JobState::Pausing:
      return Pause(index);
    case JobState::Stopping:
      return Reset(index);
    case JobState::Started:
      if (IsDue(index)) {
        context_.jobs.At(index).run.pass_asked = false;
        Pass(context_, index, memories_[index], end_requested_).Run();
      }
      return;
    default:
      return;
  }
} catch (const std::exception& failure) {
  // Out of memory, in all likelihood. The commit point, if there is one, stays: what the
  // destination took of this pass is taken back or settled when the program starts again.
  context_.jobs.ReplaceState(index, JobState::Started, JobState::Pausing);
  try {
    context_.listener.OnError(
        index, NameOf(context_.jobs.At(index)) + ": the step was given up: " + failure.what() +
                   ". End the program and start it again before the job goes on");
  } catch (const std::exception&) {
    // There is not even enough for telling. The job rests all the same.
  }
}

// A clock that was set back by a day keeps no job waiting for longer than its interval. What it is
// slewed by does not matter.
bool JobRunner::IsDue(std::size_t index) {
  constexpr std::int64_t kLeastSetBack = 60'000;  // ms
  JobRun& run = context_.jobs.At(index).run;
  const LocalTime now = context_.clock.Now();
  const std::int64_t ahead = now.ms - context_.clock.Steady().count();
  std::optional<std::int64_t>& before = memories_[index].clock_ahead;
  if (before && *before - ahead >= kLeastSetBack) {
    const JobView view(context_.jobs.At(index));
    run.next_due = std::min(run.next_due, AddMinutes(now, view.interval_minutes));
  }
  before = ahead;
  return now >= run.next_due || run.pass_asked;
}

bool JobRunner::FindPositions(std::size_t index, Positions& positions, bool& found,
                              std::vector<FootingLine>& footing) {
  OracleSession source(context_.oci);
  std::string error;
  FollowResult result = FollowResult::Failed;
  source.StopWhen([this] { return EndRequested(); });
  PositionGuard guard(context_, index, memories_[index]);
  const std::string old_job_id = guard.InUse() ? JobIdOf(context_, index) : std::string();
  if (!source.Connect(JobView(context_.jobs.At(index)).source)) {
    error = "Connect source fail : " + source.LastError();
  } else if (KeepWhatIsHeld(context_, index, error)) {
    result = WayOf(context_, index, memories_[index])->Start(source, positions, error);
  }
  found = result == FollowResult::Done;
  // A start that the program's end broke off is not told of: the job is as it was.
  if (result == FollowResult::Later || (!found && source.Stopped())) return false;
  if (found && guard.InUse()) {
    found = RecordTheStop(context_, index, error) &&
            guard.Start(old_job_id, positions.cutoff_scn, error);
  }
  if (found) found = RemoveCommitPoint(context_, index, error);
  if (!found) context_.listener.OnError(index, error);
  const SyncJob& job = context_.jobs.At(index);
  // A job that follows rows asks nothing more than is required.
  if (found && FollowOf(job) == Follow::Commits) footing = ReadFooting(source, job);
  if (source.Stopped()) footing.clear();
  return true;
}

void JobRunner::Start(std::size_t index) {
  SyncJob& job = context_.jobs.At(index);
  const JobView view(job);
  Positions positions;
  bool found = false;
  std::vector<FootingLine> footing;
  if (!FindPositions(index, positions, found, footing)) return;
  if (!found) {
    context_.jobs.ReplaceState(index, JobState::Starting, JobState::Stopped);
    RecordAndNotify(context_, index, JobState::Stopped);
    context_.listener.OnError(index, "Job " + view.name + " start failed.");
    return;
  }
  job.run = {};
  job.run.positions = positions;
  memories_[index].definitions = {};
  memories_[index].clock_ahead.reset();
  // By commits the first pass runs as soon as there is something that it may read.
  if (FollowOf(job) == Follow::Rows) {
    job.run.next_due = AddMinutes(context_.clock.Now(), view.interval_minutes);
  }
  {
    const MutexLock lock(job.config_mutex);
    job.config.has_runned = true;
  }
  // A stop that was asked for meanwhile is served by the next step.
  context_.jobs.ReplaceState(index, JobState::Starting, JobState::Started, JobList::Progress{});
  RecordAndNotify(context_, index, JobState::Started);
  context_.listener.OnInformation(index, "Job " + view.name + " started.");
  if (footing.empty()) return;
  for (FootingLine& line : ChosenFooting(job)) footing.push_back(std::move(line));
  for (const FootingLine& line : footing) {
    context_.listener.OnInformation(
        index, view.name + ": " + line.subject + (line.warning ? " warning: " : ": ") + line.text);
  }
}

void JobRunner::Pause(std::size_t index) {
  if (!context_.jobs.ReplaceState(index, JobState::Pausing, JobState::Paused)) return;
  RecordAndNotify(context_, index, JobState::Paused);
  context_.listener.OnInformation(
      index, "Job " + JobView(context_.jobs.At(index)).name + " temporary stopped.");
}

void JobRunner::Reset(std::size_t index) {
  JobList::Progress progress;
  context_.jobs.State(index, &progress);
  progress.batch_remaining = 0;
  if (!context_.jobs.ReplaceState(index, JobState::Stopping, JobState::Stopped, progress)) return;
  std::string error;
  // A record that still has a pass in it must not lose its commit point.
  if (KeepWhatIsHeld(context_, index, error) &&
      RecordAndNotify(context_, index, JobState::Stopped)) {
    RemoveCommitPoint(context_, index, error);
  }
  if (!error.empty()) context_.listener.OnError(index, error);
  context_.listener.OnInformation(index, JobView(context_.jobs.At(index)).name + " resetted.");
}

bool RequestRun(EngineContext& context, std::size_t index, std::string& reason) {
  const JobState state = context.jobs.State(index);
  if (!TablesFetched(context.jobs.At(index))) {
    reason = "Not get table list yet, refresh first please.";
    return false;
  }
  if (state == JobState::Stopped) {
    context.jobs.ReplaceState(index, JobState::Stopped, JobState::Starting);
  } else if (state == JobState::Paused) {
    const std::string held = context.jobs.HeldBecause(index);
    if (!held.empty() && !context.jobs.AsksAgain(index)) {
      reason = NameOf(context.jobs.At(index)) + " is held: " + held;
      return false;
    }
    if (!ForgetHold(context, index, reason)) return false;
    if (FollowOf(context.jobs.At(index)) == Follow::Commits) {
      context.jobs.At(index).run.next_due = {};  // at once
    }
    // The record first: as soon as the state is Started, the file is the worker's.
    if (!WriteRecord(context, index, JobState::Started, reason)) return false;
    context.jobs.ReplaceState(index, JobState::Paused, JobState::Started);
  }
  return true;
}

void RequestPause(JobList& jobs, std::size_t index) {
  jobs.ReplaceState(index, JobState::Started, JobState::Pausing);
}

void RequestStop(JobList& jobs, std::size_t index) {
  jobs.ReplaceState(index, JobState::Started, JobState::Stopping);
  jobs.ReplaceState(index, JobState::Paused, JobState::Stopping);
}

}  // namespace quillmere
