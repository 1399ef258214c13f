// SPDX-License-Identifier: MIT
// Creating, changing and deleting jobs. User-interface thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "workspace/outcome.h"
#include "workspace/workspace.h"

namespace quillmere {

// What an operator enters of a job.
struct JobProperties {
  std::string name, description, source, destination;
  std::int32_t interval = 0;  // minutes
  bool zero_allowed = false;  // an interval of 0 is meant: due on every sweep
};

JobProperties PropertiesOf(const SyncJob& job);

// Without the blanks around the four texts.
JobProperties Trimmed(JobProperties properties);

// The minutes entered as text; what is no number counts as 0.
std::int32_t ParseInterval(std::string_view text);

// Why trimmed properties cannot be stored, whatever their job; empty when they can.
std::string WhyPropertiesRefused(const JobProperties& trimmed, std::size_t data_sources);

// The same with the rules for names: for the job at index, or a new one (JobList::kNotFound).
std::string WhyJobRefused(const Workspace& workspace, const JobProperties& trimmed,
                          std::size_t index);

// "Job" and the smallest number from 1 that no job has.
std::string ProposeJobName(const JobList& jobs);

// What a description reads as after the next start: the file drops blanks at the ends of lines and
// empty lines, makes tabs blanks and breaks lines that are too long for it.
std::string DescriptionAsKept(std::string_view description);

// Makes a stopped job, reads its tables from the source and saves the catalogue. The job stays when
// its tables could not be read: table_list_fetched is false then, and the outcome's text and the
// log say why. index: where it stands, or kNotFound.
Outcome AddJob(Workspace& workspace, const JobProperties& properties, std::size_t& index);

// Stores changed properties of a stopped or paused job. When the source changed, its tables are
// read anew; if that fails, table_list_fetched is false, and the outcome's text and the log say
// why.
Outcome EditJob(Workspace& workspace, std::size_t index, const JobProperties& properties);

// A stopped job only. Its files go; its folder stays when there is anything else in it.
Outcome DeleteJob(Workspace& workspace, std::size_t index);

// Why the jobs keep a window from closing; empty when they do not. The first is asked by the job
// explorer, the second by the main window.
std::string WhyExplorerStaysOpen(const JobList& jobs);
std::string WhyMainWindowStaysOpen(const JobList& jobs);

}  // namespace quillmere
