// SPDX-License-Identifier: MIT
#include "ui/jobs/job_actions.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

struct JobQuestions {
  Q_DECLARE_TR_FUNCTIONS(JobQuestions)
};

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

QString RequestQuestion(JobRequest request, JobState state, std::string_view job_name) {
  const QString name = ToQt(job_name);
  switch (request) {
    case JobRequest::Run:
      return (state == JobState::Paused ? JobQuestions::tr("Continue %1?")
                                        : JobQuestions::tr("Run %1?"))
          .arg(name);
    case JobRequest::Pause:
      return JobQuestions::tr("Pause %1?").arg(name);
    case JobRequest::Stop:
      break;
  }
  return JobQuestions::tr(
             "Stop %1?\n\nWhat waits to be synchronized is given up. The next run begins with the "
             "changes made from then on.")
      .arg(name);
}

QString MarkQuestion(std::string_view owner, const std::vector<BlockedTable>& tables) {
  constexpr std::size_t kTold = 12;
  QStringList lines;
  for (std::size_t i = 0; i < std::min(tables.size(), kTold); ++i) {
    lines << ToQt(owner) + u'.' + ToQt(tables[i].name) + QStringLiteral(": ") +
                 Grouped(tables[i].changes);
  }
  if (tables.size() > kTold) {
    lines << JobQuestions::tr("and %Ln more", nullptr, Plural(tables.size() - kTold));
  }
  return JobQuestions::tr(
             "Changes of these tables were blocked before, and are missing on the "
             "destination:\n\n%1\n\nMark the tables \"compare\", until they have been compared?")
      .arg(lines.join(u'\n'));
}

QString WhyNoFilter(const std::vector<std::string_view>& owners) {
  if (owners.empty()) return JobQuestions::tr("Plsease select a item first");
  const bool alike = std::all_of(owners.begin(), owners.end(),
                                 [&](std::string_view owner) { return owner == owners.front(); });
  return alike ? QString() : JobQuestions::tr("can only select one owner's table");
}

}  // namespace quillmere
