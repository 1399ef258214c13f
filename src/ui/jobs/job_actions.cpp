// SPDX-License-Identifier: MIT
#include "ui/jobs/job_actions.h"

#include <algorithm>

namespace quillmere {
namespace {

JobActions ActionsOfJob(JobState state) {
  JobActions actions;
  actions.file_open = Rests(state);
  actions.file_delete = state == JobState::Stopped;
  actions.refresh = Rests(state);
  actions.run = Rests(state);
  actions.pause = state == JobState::Started;
  actions.stop = state == JobState::Started || state == JobState::Paused;
  return actions;
}

}  // namespace

std::string_view NodeTag(JobNode node) {
  switch (node) {
    case JobNode::AllJobs:
      return "ALLJOBS";
    case JobNode::Job:
      return "JobName";
    case JobNode::Include:
      return "IncludeTable";
    case JobNode::Exclude:
      return "ExcludeTable";
    case JobNode::None:
      break;
  }
  return {};
}

JobActions ActionsOfNode(JobNode node, JobState state) {
  JobActions actions;
  switch (node) {
    case JobNode::None:
    case JobNode::AllJobs:
      break;
    case JobNode::Job:
      return ActionsOfJob(state);
    case JobNode::Include:
      actions.exclude = Rests(state);
      actions.change_remote_owner = Rests(state);
      break;
    case JobNode::Exclude:
      actions.include = Rests(state);
      break;
  }
  return actions;
}

bool RepaintsOnTimer(JobNode node, JobState state) {
  if (node == JobNode::None) return false;
  return node == JobNode::AllJobs || state == JobState::Started;
}

std::string RequestQuestion(JobRequest request, JobState state, std::string_view job_name) {
  const std::string name(job_name);
  switch (request) {
    case JobRequest::Run:
      return (state == JobState::Paused ? "Continue " : "Run ") + name + "?";
    case JobRequest::Pause:
      return "Pause " + name + "?";
    case JobRequest::Stop:
      break;
  }
  return "Stop " + name +
         "?\n\nWhat waits to be synchronized is given up. The next run begins with the changes "
         "made "
         "from then on.";
}

std::string MarkQuestion(std::string_view owner, const std::vector<BlockedTable>& tables) {
  constexpr std::size_t kTold = 12;
  std::string lines;
  for (std::size_t i = 0; i < std::min(tables.size(), kTold); ++i) {
    lines +=
        "\n" + std::string(owner) + "." + tables[i].name + ": " + std::to_string(tables[i].changes);
  }
  if (tables.size() > kTold) lines += "\nand " + std::to_string(tables.size() - kTold) + " more";
  return "Changes of these tables were blocked before, and are missing on the destination:\n" +
         lines + "\n\nMark the tables \"compare\", until they have been compared?";
}

std::string WhyNoFilter(const std::vector<std::string_view>& owners) {
  if (owners.empty()) return "Plsease select a item first";
  const bool alike = std::all_of(owners.begin(), owners.end(),
                                 [&](std::string_view owner) { return owner == owners.front(); });
  return alike ? "" : "can only select one owner's table";
}

}  // namespace quillmere
