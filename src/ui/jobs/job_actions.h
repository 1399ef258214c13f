// SPDX-License-Identifier: MIT
// Which actions of the job explorer show, and what is asked before a request. Plain functions.
#pragma once

#include <QString>
#include <string>
#include <string_view>
#include <vector>

#include "jobs/sync_job.h"
#include "workspace/job_tables.h"

namespace quillmere {

enum class JobNode { None, AllJobs, Job, Include, Exclude };

// What a node of that kind is tagged with: "ALLJOBS", "JobName", "IncludeTable", "ExcludeTable";
// empty for none.
std::string_view NodeTag(JobNode node);

struct JobActions {
  bool file_new = true;
  bool file_open = false;
  bool file_delete = false;
  bool refresh = false;
  bool run = false;
  bool pause = false;
  bool stop = false;
  bool include = false;
  bool exclude = false;
  bool change_remote_owner = false;
  bool migrate = false;
};

// state: that of the node's job; of no meaning for the root and without a node.
JobActions ActionsOfNode(JobNode node, JobState state);

// The periodic repaint leaves what rests alone; the list of all jobs is always repainted.
bool RepaintsOnTimer(JobNode node, JobState state);

enum class JobRequest { Run, Pause, Stop };

// What the operator is asked before a job in that state is run (or continued), paused or stopped.
QString RequestQuestion(JobRequest request, JobState state, std::string_view job_name);

// What is asked when tables are included of which changes were set aside before.
QString MarkQuestion(std::string_view owner, const std::vector<BlockedTable>& tables);

// Why the filter dialog cannot open for rows of these owners, in selection order; empty when it
// can.
QString WhyNoFilter(const std::vector<std::string_view>& owners);

}  // namespace quillmere
