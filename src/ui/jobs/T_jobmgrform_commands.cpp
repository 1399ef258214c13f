// SPDX-License-Identifier: MIT
// What the actions of the job explorer do.
#include <utility>

#include "ui/job_dialogs/T_jobedit.h"
#include "ui/job_dialogs/T_newownerform.h"
#include "ui/jobs/T_jobmgrform.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "ui/waiting/waiting.h"
#include "workspace/job_operations.h"

namespace quillmere {
void TJobMgrForm::NewJob() {
  JobProperties properties;
  properties.name = ProposeJobName(jobs_);
  properties.follow = FollowOfNewJobs(context_.workspace.ProgramSettings());
  TJobEditForm form(context_, this);
  if (!form.Edit(properties, JobList::kNotFound)) return;
  std::size_t index = JobList::kNotFound;
  Waiting waiting(context_, this, tr("New job"));
  const Outcome added = AddJob(context_.workspace, properties, index, waiting);
  KeepExpanded();
  SelectRoot();
  if (!added) ShowFailure(this, added.text);
}

void TJobMgrForm::EditSelected() {
  const JobNodeRef node = Current();
  if (node.kind != JobNode::Job) return;
  JobProperties properties = PropertiesOf(jobs_.At(node.job));
  TJobEditForm form(context_, this);
  if (!form.Edit(properties, node.job)) return;
  Waiting waiting(context_, this, tr("Change of a job"));
  const Outcome edited = EditJob(context_.workspace, node.job, properties, waiting);
  Rebuild();
  if (!edited) ShowNotice(this, edited.text);
}

void TJobMgrForm::DeleteSelected() {
  const JobNodeRef node = Current();
  if (node.kind != JobNode::Job) return;
  if (!Confirm(this, tr("Delete %1?").arg(ToQt(PropertiesOf(jobs_.At(node.job)).name)))) return;
  const Outcome deleted = DeleteJob(context_.workspace, node.job);
  KeepExpanded();
  SelectRoot();
  if (!deleted) ShowFailure(this, deleted.text);
}

void TJobMgrForm::RefreshSelected() {
  const JobNodeRef node = Current();
  if (node.kind != JobNode::Job) return;
  Waiting waiting(context_, this, tr("Refresh"));
  // Whether it failed, and why, stands in the message list.
  static_cast<void>(RefreshTables(context_.workspace, node.job, waiting));
  Rebuild();
}

void TJobMgrForm::RequestSelected(JobRequest request) {
  const JobNodeRef node = Current();
  if (node.kind != JobNode::Job) return;
  const std::string name = PropertiesOf(jobs_.At(node.job)).name;
  if (!Confirm(this, RequestQuestion(request, StateOf(node), name))) return;
  Outcome asked = Outcome::Done();
  switch (request) {
    case JobRequest::Run:
      asked = RunJob(context_.workspace, worker_.Engine(), node.job);
      break;
    case JobRequest::Pause:
      PauseJob(context_.workspace, node.job);
      break;
    case JobRequest::Stop:
      StopJob(context_.workspace, node.job);
      break;
  }
  Rebuild();
  if (!asked) ShowNotice(this, asked.text);
}

bool TJobMgrForm::ChooseSelected(TableChoice& choice) {
  const JobNode kind = Current().kind;
  if (kind != JobNode::Exclude && kind != JobNode::Include) return false;
  const TableRows& rows =
      kind == JobNode::Exclude ? static_cast<const TableRows&>(excluded_) : included_;
  std::vector<std::string_view> owners;
  for (const std::size_t row : frame_.List().SelectedRows()) {
    owners.push_back(rows.RowAt(row).owner);
    choice.tables.emplace_back(rows.RowAt(row).name);
  }
  const QString why = WhyNoFilter(owners);
  if (!why.isEmpty()) {
    ShowNotice(this, why);
    return false;
  }
  choice.owner = owners.front();
  return true;
}

void TJobMgrForm::FilterSelected(TableFilter filter) {
  const JobNodeRef node = Current();
  TableChoice choice;
  choice.filter = filter;
  if (!ChooseSelected(choice)) return;
  TFilterForm form(context_, this);
  if (!form.Execute(node.job, choice)) return;
  if (filter == TableFilter::Include) OfferMark(node.job, choice);
  ShowList(node);
}

// What was set aside while a table was excluded does not come by its inclusion.
void TJobMgrForm::OfferMark(std::size_t job, const TableChoice& choice) {
  const std::vector<BlockedTable> blocked =
      BlockedTables(jobs_.At(job), choice.owner, choice.tables, false);
  if (blocked.empty() || !Confirm(this, MarkQuestion(choice.owner, blocked))) return;
  const FilterResult marked = MarkForComparison(context_.workspace, job, choice.owner, blocked);
  if (!marked.unsaved.empty()) ShowFailure(this, marked.unsaved);
}

void TJobMgrForm::ClearSelectedMarks() {
  const JobNodeRef node = Current();
  TableChoice choice;
  if (!ChooseSelected(choice) ||
      !Confirm(this, tr("Have the selected tables been compared? Their mark is taken away."))) {
    return;
  }
  const FilterResult result =
      ClearCompareMarks(context_.workspace, node.job, choice.owner, choice.tables, false);
  ShowList(node);
  if (!result.unsaved.empty()) ShowFailure(this, result.unsaved);
}

bool TJobMgrForm::MayClose() {
  const std::string why = WhyExplorerStaysOpen(jobs_);
  if (!why.empty()) {
    ShowNotice(this, why);
    return false;
  }
  std::string reason;
  if (context_.workspace.SaveJobs(reason)) return true;
  return Confirm(
      this, tr("The jobs could not be saved: %1\n\nClose all the same?").arg(Translated(reason)));
}

}  // namespace quillmere
