// SPDX-License-Identifier: MIT
#include "workspace/job_operations.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <limits>
#include <utility>

#include "foundation/text.h"
#include "workspace/job_tables.h"

namespace quillmere {
namespace {

void StoreProperties(Workspace& workspace, SyncJob& job, const JobProperties& properties) {
  const MutexLock lock(job.config_mutex);
  JobConfig& config = job.config;
  config.description = properties.description;
  config.sync_interval = properties.interval;
  config.follow = properties.follow;
  config.container = properties.container;
  config.src_database_name = properties.source;
  config.des_database_name = properties.destination;
  ResolveLogOns(config, [&](std::string_view name) { return workspace.LogOnOf(name); });
}

void RaiseTableListChanged(SyncJob& job, bool raised) {
  const MutexLock lock(job.config_mutex);
  job.config.table_list_changed = raised;
}

bool SaveChanged(Workspace& workspace, SyncJob& job, std::string& reason) {
  RaiseTableListChanged(job, true);
  const bool saved = workspace.SaveJobs(reason);
  RaiseTableListChanged(job, false);
  return saved;
}

// The text of a failure, which the log has, too.
std::string RefreshFromNewSource(Workspace& workspace, std::size_t index, DatabaseWork& work) {
  SyncJob& job = workspace.Jobs().At(index);
  {
    const MutexLock lock(job.config_mutex);
    job.config.table_list_fetched = false;
  }
  const Outcome read = ReadTables(workspace, index, work);
  const bool refreshed = read.done;
  workspace.Log().Add("Refresh filter info of " + NameOf(job) + (refreshed ? " ok." : " failed."),
                      !refreshed);
  return read.text;
}

void NoteChanges(Workspace& workspace, const JobProperties& old, const JobProperties& now) {
  const auto minutes = [](const JobProperties& job) {
    return std::to_string(job.interval) + " min";
  };
  for (const auto& [what, before, after] : std::initializer_list<std::array<std::string, 3>>{
           {"name", old.name, now.name},
           {"description", old.description, now.description},
           {"source", old.source, now.source},
           {"destination", old.destination, now.destination},
           {"interval", minutes(old), minutes(now)},
           {"follow", std::string(FollowName(old.follow)), std::string(FollowName(now.follow))},
           {"container", old.container, now.container}}) {
    if (before == after) continue;
    workspace.Actions().Note("edit", "job " + old.name + " " + what, before.empty() ? "-" : before,
                             after.empty() ? "-" : after);
  }
}

bool IsOfName(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' || c == '#';
}

// Whatever job they are of.
JobRefusal WhyPropertiesRefused(const JobProperties& trimmed, Entry entry) {
  const bool zero_is_meant = trimmed.interval == 0 && trimmed.zero_allowed;
  if (trimmed.interval <= 0 && !zero_is_meant) {
    return {"Synchronize Interval must > 0", JobField::Interval};
  }
  for (const auto& [text, field] : {std::pair(&trimmed.name, JobField::Name),
                                    {&trimmed.description, JobField::Description},
                                    {&trimmed.source, JobField::Source},
                                    {&trimmed.destination, JobField::Destination}}) {
    if (text->empty() && entry == Entry::Confirmed) {
      return {"Obligatory field can not be empty", field};
    }
  }
  if (!trimmed.source.empty() && trimmed.source == trimmed.destination) {
    return {"Data Source Can't be same", JobField::Destination};
  }
  const std::string& container = trimmed.container;
  if (!container.empty() && trimmed.follow == Follow::Rows) {
    return {"Only a job that follows commits can follow a container", JobField::Container};
  }
  if (!std::all_of(container.begin(), container.end(), IsOfName)) {
    return {container + " is no name of a container", JobField::Container};
  }
  return {};
}

}  // namespace

JobProperties PropertiesOf(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  const JobConfig& config = job.config;
  return {config.name,
          config.description,
          config.src_database_name,
          config.des_database_name,
          config.sync_interval,
          false,
          config.follow,
          config.container};
}

Follow FollowOfNewJobs(const Settings& settings) {
  return settings.new_jobs_follow_commits ? Follow::Commits : Follow::Rows;
}

std::string_view WhatFollowingMeans(Follow follow) {
  if (follow == Follow::Commits) {
    return "Whole transactions in the order of their commits, none of them missed however long it "
           "stays open.";
  }
  return "Change by change as they stand in the redo; changes of transactions that stay open over "
         "a pass can be missed without a word.";
}

JobProperties Trimmed(JobProperties properties) {
  for (std::string* text :
       {&properties.name, &properties.description, &properties.source, &properties.destination}) {
    *text = std::string(Trim(*text));
  }
  properties.container = UpperCase(Trim(properties.container));
  return properties;
}

std::int32_t ParseInterval(std::string_view text) {
  std::int32_t value = 0;
  return ParseNumber(Trim(text), value) ? value : 0;
}

JobRefusal WhyJobRefused(const Workspace& workspace, const JobProperties& trimmed,
                         std::size_t index, Entry entry) {
  if (entry == Entry::Confirmed && workspace.Registry().CountInUse() < kSourcesForAJob) {
    return {"At least 2 data sources needed, add them first please", JobField::DataSources};
  }
  JobRefusal refused = WhyPropertiesRefused(trimmed, entry);
  // A name that stays is not judged: it was good enough so far.
  const bool name_stays =
      index != JobList::kNotFound && PropertiesOf(workspace.Jobs().At(index)).name == trimmed.name;
  const bool judged = !name_stays && (entry == Entry::Confirmed || !trimmed.name.empty());
  if (!refused && judged)
    refused.reason = workspace.Catalogue().WhyNameRefused(trimmed.name, index);
  return refused;
}

std::string DescriptionAsKept(std::string_view description) {
  // As deep as it stands in the file of jobs.
  XmlDocument written;
  written.Root().AddChild("jobs").AddChild("job").AddChild("description", FoldForXml(description));
  XmlDocument read;
  if (!read.Parse(written.Text())) return {};
  const XmlNode* jobs = read.Root().Child("jobs");
  const XmlNode* job = jobs == nullptr ? nullptr : jobs->Child("job");
  return job == nullptr ? std::string() : std::string(job->ChildValue("description"));
}

std::string ProposeJobName(const JobList& jobs) {
  for (std::size_t number = 1;; ++number) {
    std::string name = "Job" + std::to_string(number);
    if (jobs.IndexOf(name) == JobList::kNotFound) return name;
  }
}

Outcome AddJob(Workspace& workspace, const JobProperties& properties, std::size_t& index,
               DatabaseWork& work) {
  index = JobList::kNotFound;
  const JobProperties trimmed = Trimmed(properties);
  std::string reason = WhyNotAdded(workspace.Catalogue().WhyListNotRead());
  if (!reason.empty()) return Outcome::Refused(std::move(reason));
  if (JobRefusal refused = WhyJobRefused(workspace, trimmed, index)) {
    return Outcome::Refused(std::move(refused.reason));
  }
  FileSystem& files = workspace.Files();
  const JobFolder folder = workspace.Catalogue().FolderOf(trimmed.name);
  if (!folder.Make(files, reason) ||
      !folder.SetOldFilesAside(files, workspace.TimeSource().Now(), reason)) {
    return Outcome::Refused(std::move(reason));
  }
  JobList& jobs = workspace.Jobs();
  const std::size_t slot = jobs.Claim();
  SyncJob& job = jobs.At(slot);
  StoreProperties(workspace, job, trimmed);
  {
    const MutexLock lock(job.config_mutex);
    job.config.name = trimmed.name;
    job.config.database_type = "ORACLE";
    job.config.error_log_path = PathText(folder.File(JobFile::ErrorLog));
  }
  jobs.SetState(slot, JobState::Stopped, {});
  workspace.Watch().Forget(slot);
  index = slot;
  const Outcome read = ReadTables(workspace, slot, work);
  if (!SaveChanged(workspace, job, reason)) return Outcome::Refused(std::move(reason));
  std::string text = "A job created, name is " + trimmed.name;
  workspace.Log().Add(text, false);
  TellOverlap(workspace, slot);
  workspace.Actions().Note("add", "job " + trimmed.name, {},
                           "from " + trimmed.source + " to " + trimmed.destination + ", " +
                               std::to_string(trimmed.interval) + " min, " +
                               std::string(FollowName(trimmed.follow)));
  if (!read) text += ". " + read.text;
  return Outcome::Done(std::move(text));
}

Outcome EditJob(Workspace& workspace, std::size_t index, const JobProperties& properties,
                DatabaseWork& work) {
  JobList& jobs = workspace.Jobs();
  SyncJob& job = jobs.At(index);
  const JobState state = jobs.State(index);
  const JobProperties old = PropertiesOf(job);
  const JobProperties trimmed = Trimmed(properties);
  if (!Rests(state)) return Outcome::Refused(WhyBusy(old.name));
  if (JobRefusal refused = WhyJobRefused(workspace, trimmed, index)) {
    return Outcome::Refused(std::move(refused.reason));
  }
  std::string reason;
  const bool container_changed = trimmed.container != old.container;
  const bool source_changed = trimmed.source != old.source;
  if ((source_changed || trimmed.destination != old.destination) && state != JobState::Stopped) {
    return Outcome::Refused(
        "You can't change data source after a job is runned, Stop the job first please.");
  }
  if ((trimmed.follow != old.follow || container_changed) && state != JobState::Stopped) {
    return Outcome::Refused("What " + old.name +
                            " follows can be changed while it is stopped only");
  }
  if (trimmed.name != old.name) {
    if (!workspace.Catalogue().Rename(index, trimmed.name, workspace.TimeSource().Now(), reason)) {
      return Outcome::Refused(std::move(reason));
    }
    workspace.Log().Add(old.name + "'s name changed to " + trimmed.name, false);
  }
  StoreProperties(workspace, job, trimmed);
  workspace.RefreshJobLogOns();  // it may be held for a data source that it has no more
  NoteChanges(workspace, old, trimmed);
  std::string problem;
  if (source_changed || container_changed) problem = RefreshFromNewSource(workspace, index, work);
  if (source_changed || trimmed.destination != old.destination) TellOverlap(workspace, index);
  if (!SaveChanged(workspace, job, reason)) return Outcome::Refused(std::move(reason));
  return Outcome::Done(std::move(problem));
}

Outcome DeleteJob(Workspace& workspace, std::size_t index) {
  JobList& jobs = workspace.Jobs();
  const std::string name = PropertiesOf(jobs.At(index)).name;
  if (jobs.State(index) != JobState::Stopped) {
    return Outcome::Refused("Job " + name + " is not stopped. Stop it first");
  }
  std::string reason;
  const bool removed = workspace.Catalogue().Remove(index, reason);
  if (!removed) workspace.Log().Add(reason, true);
  std::string save_reason;
  const bool saved = workspace.SaveJobs(save_reason);
  if (!saved) return Outcome::Refused(std::move(save_reason));
  std::string text = "job: " + name + " deleted.";
  workspace.Log().Add(text, false);
  workspace.Watch().Forget(index);
  workspace.Actions().Note("remove", "job " + name);
  return removed ? Outcome::Done(std::move(text)) : Outcome::Refused(text + " " + reason);
}

Outcome RunJob(Workspace& workspace, EngineContext& engine, std::size_t index) {
  const SyncJob& job = workspace.Jobs().At(index);
  std::string unregistered = workspace.WhyUnregistered(job);
  if (TablesFetched(job) && !unregistered.empty()) return Outcome::Refused(unregistered);
  std::string reason;
  const JobState before = workspace.Jobs().State(index);
  const std::string state(StateName(before));
  if (before == JobState::Stopped) workspace.Watch().BeginAnew(index);
  if (!RequestRun(engine, index, reason)) return Outcome::Refused(std::move(reason));
  workspace.Actions().Note("run", "job " + NameOf(job), state, "Started");
  return Outcome::Done();
}

void ResumeInterrupted(Workspace& workspace, EngineContext& engine) {
  if (!workspace.ProgramSettings().resume_jobs) return;
  for (const std::size_t index : workspace.Interrupted()) {
    if (workspace.Jobs().State(index) != JobState::Paused) continue;
    const std::string name = NameOf(workspace.Jobs().At(index));
    const Outcome run = RunJob(workspace, engine, index);
    workspace.Log().AddOf(name,
                          run ? name + " goes on by itself, as the settings say"
                              : name + " does not go on by itself: " + run.text,
                          !run);
  }
}

void PauseJob(Workspace& workspace, std::size_t index) {
  workspace.Actions().Note("pause", "job " + NameOf(workspace.Jobs().At(index)));
  RequestPause(workspace.Jobs(), index);
}

void StopJob(Workspace& workspace, std::size_t index) {
  workspace.Actions().Note("stop", "job " + NameOf(workspace.Jobs().At(index)));
  RequestStop(workspace.Jobs(), index);
}

std::string WhyExplorerStaysOpen(const JobList& jobs) {
  for (std::size_t index = 0; index < jobs.Count(); ++index) {
    if (IsRunning(jobs.State(index))) {
      return PropertiesOf(jobs.At(index)).name + " is running, do not close the application";
    }
  }
  return {};
}

std::string WhyMainWindowStaysOpen(const JobList& jobs) {
  for (std::size_t index = 0; index < jobs.Count(); ++index) {
    JobList::Progress progress;
    const JobState state = jobs.State(index, &progress);
    if (state == JobState::Started || (state == JobState::Paused && progress.batch_remaining > 0)) {
      return "Some job is running or has records to synchronize, stop them first";
    }
  }
  return {};
}

}  // namespace quillmere
