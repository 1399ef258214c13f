// SPDX-License-Identifier: MIT
// Creating, changing and deleting jobs. User-interface thread, but for what takes values only. An
// index is that of a job that is there; what an operation does, it has also saved, unless the
// outcome says why not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "workspace/database_work.h"
#include "workspace/outcome.h"
#include "workspace/workspace.h"

namespace quillmere {

// What an operator enters of a job.
struct JobProperties {
  std::string name, description, source, destination;
  std::int32_t interval = 0;  // minutes
  bool zero_allowed = false;  // an interval of 0 is meant: due on every sweep
  Follow follow = Follow::Rows;
  std::string container{};  // by commits, when the source is the root of a container database
};

JobProperties PropertiesOf(const SyncJob& job);

// The way that a new job follows its source unless it is told otherwise.
Follow FollowOfNewJobs(const Settings& settings);

// In one sentence what arrives that way, and what can be missed.
std::string_view WhatFollowingMeans(Follow follow);

// Without the blanks around the texts; a container in capitals, as the server has it.
JobProperties Trimmed(JobProperties properties);

// The minutes entered as text; what is no number counts as 0.
std::int32_t ParseInterval(std::string_view text);
inline constexpr std::size_t kSourcesForAJob = 2;
inline constexpr std::int32_t kLongestInterval = 10000;  // that a face offers, in minutes

// What is to be mended. DataSources: there are not enough of them.
enum class JobField { Name, Description, Source, Destination, Interval, DataSources, Container };

struct JobRefusal {
  std::string reason;
  JobField field = JobField::Name;
  explicit operator bool() const { return !reason.empty(); }
};

// What is not there yet is refused only when the rest is confirmed.
enum class Entry { Confirmed, BeingTyped };

// Why trimmed properties cannot be stored as those of the job at index, or of a new one
// (JobList::kNotFound). Nothing is refused when they can.
JobRefusal WhyJobRefused(const Workspace& workspace, const JobProperties& trimmed,
                         std::size_t index, Entry entry = Entry::Confirmed);

// "Job" and the smallest number from 1 that no job has.
std::string ProposeJobName(const JobList& jobs);

// What a description reads as after the next start: the file drops blanks at the ends of lines and
// empty lines, makes tabs blanks and breaks lines that are too long for it.
std::string DescriptionAsKept(std::string_view description);

// Makes a stopped job, reads its tables from the source and saves the catalogue. The
// job stays when its tables could not be read: table_list_fetched is false then, and the outcome's
// text and the log say why. index: where it stands, or kNotFound when nothing was made; a job that
// could not be saved stands there all the same.
Outcome AddJob(Workspace& workspace, const JobProperties& properties, std::size_t& index,
               DatabaseWork& work);

// Stores changed properties of a stopped or paused job. When the source changed, its tables are
// read anew; if that fails, table_list_fetched is false, and the outcome's text and
// the log say why. Data sources, the way to follow and the container change only while the job is
// stopped. What is refused leaves everything as it was; what cannot be saved is in force.
Outcome EditJob(Workspace& workspace, std::size_t index, const JobProperties& properties,
                DatabaseWork& work);

// A stopped job only. Its files go; its folder stays when there is anything else in it. Files that
// cannot be removed are told; the job is gone then, too.
Outcome DeleteJob(Workspace& workspace, std::size_t index);

// Asks the engine to start a stopped job or to continue a paused one. Refused while a data source
// of the job is not registered, or its tables were never read.
Outcome RunJob(Workspace& workspace, EngineContext& engine, std::size_t index);

// The same for each job that was at work when the program ended, if the settings say so. What
// became of it is a line in the log. Once, when the engine is at work.
void ResumeInterrupted(Workspace& workspace, EngineContext& engine);

// Ask the engine to pause a started job, or to stop a started or paused one.
void PauseJob(Workspace& workspace, std::size_t index);
void StopJob(Workspace& workspace, std::size_t index);

// Why the jobs keep a window from closing; empty when they do not. The first is asked by the job
// explorer, the second by the main window.
std::string WhyExplorerStaysOpen(const JobList& jobs);
std::string WhyMainWindowStaysOpen(const JobList& jobs);

}  // namespace quillmere
