// SPDX-License-Identifier: MIT
#include "ui/jobs/T_jobmgrform.h"

#include <QAction>
#include <QFrame>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/jobs/batch_delegate.h"
#include "ui/jobs/job_pages.h"
#include "ui/jobs/job_state_icon.h"
#include "ui/jobs/way_out_runner.h"
#include "ui/toolkit/hints.h"
#include "ui/toolkit/menu_entry.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "workspace/job_operations.h"

namespace quillmere {
namespace {

constexpr int kRefreshMs = 10'000;

QString PageHint() {
  return TJobMgrForm::tr("Jobs manager: Design, mangage and monitor");
}

bool IsTableNode(JobNode kind) {
  return kind == JobNode::Include || kind == JobNode::Exclude;
}

QString WhatToDoWithoutJobs(const DataSourceRegistry& registry) {
  if (registry.CountInUse() < kSourcesForAJob) {
    return TJobMgrForm::tr(
        "No jobs yet. A job copies the changes of one data source to another: register both with "
        "OpenDbMgr in the Database menu, then choose New in the Job menu");
  }
  return TJobMgrForm::tr("No jobs yet. Choose New in the Job menu to make one");
}

QString WhatToDoWithoutTables(const SyncJob& job, JobNode kind) {
  const MutexLock lock(job.config_mutex);
  if (!job.config.table_list_fetched) {
    return TJobMgrForm::tr(
        "The tables have not been read from the source yet: select the job and "
        "choose Refresh");
  }
  if (kind == JobNode::Exclude) return TJobMgrForm::tr("No table is excluded");
  return TJobMgrForm::tr("No table is included: choose them under Exclude");
}

}  // namespace

TJobMgrForm::TJobMgrForm(UiContext& context, QWidget* parent, std::chrono::milliseconds sweep_pause)
    : QWidget(parent),
      context_(context),
      jobs_(context.workspace.Jobs()),
      tree_(&context.workspace.Watch()),
      job_rows_(&context.workspace.Watch()),
      frame_(context.memory, QStringLiteral("jobs"), tr("All Jobs"), this),
      actions_(this),
      worker_(context.workspace, sweep_pause, this) {
  setObjectName(QStringLiteral("JobMgrForm"));
  frame_.Tools().setObjectName(QStringLiteral("ToolBar1"));
  frame_.Tree().setObjectName(QStringLiteral("JobMgrTV"));
  frame_.List().setObjectName(QStringLiteral("JobMgrLV"));
  frame_.List().setAccessibleName(tr("Jobs and tables"));
  frame_.Head().setObjectName(QStringLiteral("TableTreeHeaderPnl"));
  frame_.HeadMenuButton().setObjectName(QStringLiteral("OptionsImg"));
  frame_.Filter().setObjectName(QStringLiteral("JobMgrFilter"));
  actions_.FillToolBar(frame_.Tools());

  auto* bottom = new QFrame(this);
  bottom->setObjectName(QStringLiteral("PnlBottom"));
  bottom->hide();
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(&frame_, 1);
  column->addWidget(bottom);

  frame_.Tree().setModel(&tree_);
  frame_.List().setItemDelegate(new BatchDelegate(JobRows::kBatchRole, this));
  MakeDetails();
  MakeMenus();
  ConnectActions();
  refresh_timer_.setObjectName(QStringLiteral("TimerRefresh"));
  connect(&refresh_timer_, &QTimer::timeout, this, &TJobMgrForm::OnTimerRefresh);
  refresh_timer_.start(kRefreshMs);
}

TJobMgrForm::~TJobMgrForm() {
  worker_.End();
}

void TJobMgrForm::MakeDetails() {
  ways_ = new WayOutRunner(context_.workspace, worker_.Engine(), this);
  connect(ways_, &WayOutRunner::Done, this, &TJobMgrForm::Rebuild);
  connect(ways_, &WayOutRunner::StopAsked, this, [this] { RequestSelected(JobRequest::Stop); });
  connect(&worker_, &JobWorker::JobsChanged, ways_, &WayOutRunner::OnJobsChanged);
  head_ = new JobHead(this);
  frame_.AddAbove(head_);
  pages_ = new JobPages(context_, *ways_, this);
  frame_.AddBelow(pages_);
}

void TJobMgrForm::MakeMenus() {
  const auto make = [this](const char* name) {
    auto* menu = new QMenu(this);
    menu->setObjectName(QLatin1StringView(name));
    return menu;
  };
  job_new_menu_ = make("PMJobNew");
  AddEntry(*job_new_menu_, "JobNew", *actions_.FileNew);
  job_menu_ = make("PMJobMgr");
  AddEntry(*job_menu_, "Open2", *actions_.FileOpen);
  AddEntry(*job_menu_, "Refresh2", *actions_.Refresh);
  AddEntry(*job_menu_, "Delete2", *actions_.FileDelete);
  job_menu_->addSeparator();
  AddEntry(*job_menu_, "JobRun", *actions_.RunRun);
  AddEntry(*job_menu_, "Pause2", *actions_.RunPause);
  AddEntry(*job_menu_, "JobStop", *actions_.RunStop);
  table_menu_ = make("PMJobMeta");
  AddEntry(*table_menu_, "ChangRemoteOwner1", *actions_.ChangeRemoteOwner);
  AddEntry(*table_menu_, "Exclude1", *actions_.Exclude);
  AddEntry(*table_menu_, "Include1", *actions_.Include);
  AddEntry(*table_menu_, "Migrate1", *actions_.Migrate);
  table_menu_->addSeparator();
  AddEntry(*table_menu_, "Compared1", *actions_.Compared);
  QMenu* const tree_menu = make("PMTree");
  AddEntry(*tree_menu, "expand1", *actions_.expand);
  AddEntry(*tree_menu, "collapse1", *actions_.collapse);
  frame_.HeadMenuButton().setMenu(tree_menu);
}

void TJobMgrForm::ConnectActions() {
  const auto on = [this](QAction* action, auto run) {
    connect(action, &QAction::triggered, this, [this, run] {
      Q_EMIT Acting();
      run();
    });
  };
  on(actions_.FileNew, [this] { NewJob(); });
  on(actions_.FileOpen, [this] { EditSelected(); });
  on(actions_.FileDelete, [this] { DeleteSelected(); });
  on(actions_.Refresh, [this] { RefreshSelected(); });
  on(actions_.RunRun, [this] { RequestSelected(JobRequest::Run); });
  on(actions_.RunPause, [this] { RequestSelected(JobRequest::Pause); });
  on(actions_.RunStop, [this] { RequestSelected(JobRequest::Stop); });
  on(actions_.Include, [this] { FilterSelected(TableFilter::Include); });
  on(actions_.Exclude, [this] { FilterSelected(TableFilter::Exclude); });
  on(actions_.ChangeRemoteOwner, [this] { FilterSelected(TableFilter::ChangeOwner); });
  on(actions_.Compared, [this] { ClearSelectedMarks(); });
  on(actions_.expand, [this] { frame_.Tree().expandAll(); });
  on(actions_.collapse, [this] { frame_.Tree().collapseAll(); });

  connect(frame_.Tree().selectionModel(), &QItemSelectionModel::currentChanged, this,
          &TJobMgrForm::OnNodeChanged);
  frame_.Tree().setContextMenuPolicy(Qt::CustomContextMenu);
  connect(&frame_.Tree(), &QWidget::customContextMenuRequested, this, &TJobMgrForm::ShowTreeMenu);
  frame_.List().setContextMenuPolicy(Qt::CustomContextMenu);
  connect(&frame_.List(), &QWidget::customContextMenuRequested, this, &TJobMgrForm::ShowListMenu);
  connect(&frame_.List(), &QAbstractItemView::doubleClicked, this, &TJobMgrForm::OnListActivated);
  connect(&frame_.List(), &QAbstractItemView::activated, this, &TJobMgrForm::OnListActivated);
  connect(&frame_, &ExplorerFrame::Back, this, [this] { Select({JobNode::Job, Current().job}); });
  connect(&worker_, &JobWorker::JobsChanged, this, &TJobMgrForm::OnJobsChanged);
  connect(&worker_, &JobWorker::MessageLost, this, &TJobMgrForm::MessageLost);
}

void TJobMgrForm::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (shown_) {
    Rebuild();
    return;
  }
  shown_ = true;
  ResumeInterrupted(context_.workspace, worker_.Engine());
  tree_.Update(jobs_);
  TellHealth();
  frame_.Tree().expand(tree_.Root());
  SelectRoot();
}

void TJobMgrForm::TellHealth() {
  Q_EMIT JobsSeen();
  const HealthCounts counts = tree_.Counts();
  if (counts == told_) return;
  told_ = counts;
  Q_EMIT HealthChanged(counts);
}

JobNodeRef TJobMgrForm::Current() const {
  return tree_.NodeOf(frame_.Tree().currentIndex());
}

JobState TJobMgrForm::StateOf(const JobNodeRef& node) const {
  return node.job == JobList::kNotFound ? JobState::Empty : jobs_.State(node.job);
}

void TJobMgrForm::Select(const JobNodeRef& node) {
  const QModelIndex index = tree_.IndexOf(node);
  QTreeView& view = frame_.Tree();
  if (!index.isValid()) return;
  if (view.currentIndex() == index) {
    ShowList(node);
  } else {
    view.setCurrentIndex(index);
  }
  view.scrollTo(index);
}

void TJobMgrForm::OnNodeChanged() {
  const JobNodeRef node = Current();
  if (node.kind == JobNode::None) return UpdateActions();
  frame_.Filter().clear();
  frame_.Tree().expand(frame_.Tree().currentIndex());
  ShowList(node);
}

void TJobMgrForm::ShowList(const JobNodeRef& node) {
  UpdateActions();
  ShowDetails(node);
  if (node.kind == JobNode::Include) return ShowTables(node, included_, QStringLiteral("included"));
  if (node.kind == JobNode::Exclude) return ShowTables(node, excluded_, QStringLiteral("excluded"));
  if (node.kind != JobNode::None) ShowJobs(node);
}

void TJobMgrForm::ShowDetails(const JobNodeRef& node) {
  const bool of_job = node.job != JobList::kNotFound;
  if (of_job) {
    head_->ShowJob(jobs_.At(node.job), context_.workspace.Watch().Look(node.job),
                   context_.workspace.ProgramSettings().loss_warning_hours);
  }
  head_->setVisible(of_job);
  if (node.kind == JobNode::Job) {
    pages_->ShowJob(node.job);
  } else {
    pages_->ShowNone();
  }
}

void TJobMgrForm::ShowJobs(const JobNodeRef& node) {
  job_rows_.Fill(jobs_, node.job);
  frame_.List().SetEmptyText(WhatToDoWithoutJobs(context_.workspace.Registry()));
  frame_.List().ShowRows(job_rows_, QStringLiteral("jobs"), false);
  frame_.Filter().SetModel(&job_rows_);
  const bool all = node.kind == JobNode::AllJobs;
  frame_.SetBack({});
  SetHint(&frame_.List(),
          all ? tr("%1. Enter or a double click goes to the job").arg(PageHint()) : PageHint());
  frame_.SetCountText(all ? tr("%Ln job(s)", nullptr, Plural(job_rows_.SourceRowCount()))
                          : QString());
  frame_.SetNote(all ? NoteOfInterrupted() : NoteOf(node.job));
  frame_.SetOneRow(!all);
  // A list that could not be read is not an empty one.
  frame_.ShowFirst(all && job_rows_.SourceRowCount() == 0 &&
                   context_.workspace.Catalogue().WhyListNotRead().empty());
}

void TJobMgrForm::ShowJob(std::size_t job) {
  KeepExpanded();
  Select({JobNode::Job, job});
  frame_.Tree().setFocus(Qt::OtherFocusReason);
}

void TJobMgrForm::ShowTables(const JobNodeRef& node, TableRows& rows, const QString& layout) {
  const SyncJob& job = jobs_.At(node.job);
  rows.Fill(job);
  actions_.Compared->setVisible(rows.AnyMarked());
  frame_.List().SetEmptyText(WhatToDoWithoutTables(job, node.kind));
  frame_.List().ShowRows(rows, layout, true);
  frame_.Filter().SetModel(&rows);
  frame_.SetCountText(tr("%Ln table(s)", nullptr, Plural(rows.SourceRowCount())));
  frame_.SetNote({});
  frame_.SetOneRow(false);
  frame_.ShowFirst(false);
  frame_.SetBack(OneLine(NameOf(job)));
  SetHint(&frame_.List(), PageHint());
}

// Keeps the selection: the same node while its job is there, else the one in its place.
void TJobMgrForm::Rebuild() {
  const JobNodeRef node = Current();
  const QModelIndex current = frame_.Tree().currentIndex();
  const bool job_node = node.kind == JobNode::Job;
  const int row = current.row();
  KeepExpanded();
  if (Current() == node) return ShowList(node);
  if (tree_.IndexOf(node).isValid()) return Select(node);
  const int siblings = tree_.rowCount(tree_.Root());
  if (job_node && siblings > 0) {
    return Select(tree_.NodeOf(tree_.index(std::min(row, siblings - 1), 0, tree_.Root())));
  }
  SelectRoot();
}

// Updates the tree; what was expanded is expanded afterwards.
void TJobMgrForm::KeepExpanded() {
  QTreeView& view = frame_.Tree();
  const QModelIndex root = tree_.Root();
  const bool root_expanded = view.isExpanded(root);
  std::vector<JobNodeRef> expanded;
  for (int row = 0; row < tree_.rowCount(root); ++row) {
    const QModelIndex job = tree_.index(row, 0, root);
    if (view.isExpanded(job)) expanded.push_back(tree_.NodeOf(job));
  }
  const bool replaced = tree_.Update(jobs_);
  TellHealth();
  if (!replaced) return;
  view.setExpanded(tree_.Root(), root_expanded);
  for (const JobNodeRef& node : expanded) {
    const QModelIndex index = tree_.IndexOf(node);
    if (index.isValid()) view.expand(index);
  }
}

void TJobMgrForm::UpdateActions() {
  const JobNodeRef node = Current();
  actions_.Show(ActionsOfNode(node.kind, StateOf(node)));
}

void TJobMgrForm::OnJobsChanged(const std::vector<std::size_t>& jobs) {
  if (!shown_) return;
  tree_.UpdateStates(jobs_, jobs);
  TellHealth();
  const JobNodeRef node = Current();
  const bool concerned =
      node.kind == JobNode::AllJobs || std::find(jobs.begin(), jobs.end(), node.job) != jobs.end();
  if (concerned) ShowList(node);
}

void TJobMgrForm::OnTimerRefresh() {
  if (!shown_) return;
  tree_.UpdateStates(jobs_);  // a job gets behind while nothing happens
  TellHealth();
  const JobNodeRef node = Current();
  if (RepaintsOnTimer(node.kind, StateOf(node))) Rebuild();
}

void TJobMgrForm::OnListActivated(const QModelIndex& index) {
  if (Current().kind != JobNode::AllJobs || !index.isValid()) return;
  Select({JobNode::Job, job_rows_.JobOf(job_rows_.SourceRow(index))});
}

QMenu* TJobMgrForm::MenuOf(JobNode kind) const {
  if (kind == JobNode::AllJobs) return job_new_menu_;
  return kind == JobNode::Job ? job_menu_ : nullptr;
}

// Of the selected node only: a right press selects nothing, and a menu beside another job's name
// would act on the wrong one.
void TJobMgrForm::ShowTreeMenu(const QPoint& place) {
  QTreeView& view = frame_.Tree();
  const JobNodeRef node = Current();
  if (view.indexAt(place) != view.currentIndex()) return;
  OfferRow({});
  QMenu* const menu = MenuOf(node.kind);
  if (menu != nullptr && !menu->isEmpty()) menu->popup(view.viewport()->mapToGlobal(place));
}

// Behind the menu's own entry: what the job of that row offers at its node, which it goes to first.
void TJobMgrForm::OfferRow(const QModelIndex& row) {
  qDeleteAll(std::exchange(row_entries_, {}));
  if (!row.isValid()) return;
  const JobNodeRef job{JobNode::Job, job_rows_.JobOf(job_rows_.SourceRow(row))};
  const JobActions offered = ActionsOfNode(job.kind, StateOf(job));
  row_entries_ << job_new_menu_->addSeparator();
  for (const auto& [action, shown] : {std::pair(actions_.FileOpen, offered.file_open),
                                      {actions_.Refresh, offered.refresh},
                                      {actions_.FileDelete, offered.file_delete},
                                      {actions_.RunRun, offered.run},
                                      {actions_.RunPause, offered.pause},
                                      {actions_.RunStop, offered.stop}}) {
    if (!shown) continue;
    QAction* const entry = job_new_menu_->addAction(action->icon(), action->text());
    row_entries_ << entry;
    connect(entry, &QAction::triggered, this, [this, job, action = action] {
      Select(job);
      if (Current() == job) action->trigger();
    });
  }
}

void TJobMgrForm::ShowListMenu(const QPoint& place) {
  const JobNode kind = Current().kind;
  QMenu* const menu = IsTableNode(kind) ? table_menu_ : MenuOf(kind);
  if (kind == JobNode::AllJobs) OfferRow(frame_.List().indexAt(place));
  if (menu != nullptr) menu->popup(frame_.List().viewport()->mapToGlobal(place));
}

}  // namespace quillmere
