// SPDX-License-Identifier: MIT
// The job explorer: the window's page on which jobs are made, changed, run and watched.
#pragma once

#include <QTimer>
#include <QWidget>
#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "engine/work_thread.h"
#include "ui/H_global.h"
#include "ui/jobs/job_action_list.h"
#include "ui/jobs/job_head.h"
#include "ui/jobs/job_rows.h"
#include "ui/jobs/job_tree_model.h"
#include "ui/jobs/job_worker.h"
#include "ui/jobs/table_rows.h"
#include "ui/toolkit/explorer_frame.h"
#include "workspace/job_tables.h"

class QMenu;

namespace quillmere {

class JobPages;
class WayOutRunner;

// Owns the worker, which runs from the construction on. It only asks: the worker acts.
class TJobMgrForm : public QWidget {
  Q_OBJECT

 public:
  TJobMgrForm(UiContext& context, QWidget* parent,
              std::chrono::milliseconds sweep_pause = HWorkThread::kSweepPause);
  ~TJobMgrForm() override;

  JobActionList& Actions() { return actions_; }

  // What stands in place of the list of all jobs while there are none; the form's from then on.
  void SetFirst(QWidget* widget) { frame_.SetFirst(widget); }

  // Takes up a job that was made elsewhere, and goes to it.
  void ShowJob(std::size_t job);

  // False: the operator has been told which job keeps the window open. Saves the catalogue when
  // nothing does.
  bool MayClose();

  // Ends the worker behind the statement in hand. Nothing runs afterwards.
  void EndWorker(const std::function<void()>& turn = {}) { worker_.End(turn); }

 Q_SIGNALS:
  // An action begins: whoever chose it in the main menu ought to see what it acts on.
  void Acting();
  // The jobs may not be as they were.
  void JobsSeen();
  // How the jobs are is not as it was.
  void HealthChanged(const HealthCounts& counts);
  // A message could not be written to error.log.
  void MessageLost(const QString& text);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void MakeDetails();
  void MakeMenus();
  void ConnectActions();

  // --- what is shown
  JobNodeRef Current() const;
  JobState StateOf(const JobNodeRef& node) const;
  void Select(const JobNodeRef& node);
  void SelectRoot() { Select({JobNode::AllJobs}); }
  void OnNodeChanged();
  void ShowList(const JobNodeRef& node);
  void ShowDetails(const JobNodeRef& node);
  void ShowJobs(const JobNodeRef& node);
  QString NoteOf(std::size_t job) const;
  QString NoteOfInterrupted() const;
  void ShowTables(const JobNodeRef& node, TableRows& rows, const QString& layout);
  void Rebuild();
  void KeepExpanded();
  void UpdateActions();
  void TellHealth();
  void OnJobsChanged(const std::vector<std::size_t>& jobs);
  void OnTimerRefresh();
  void OnListActivated(const QModelIndex& index);
  void ShowTreeMenu(const QPoint& place);
  void ShowListMenu(const QPoint& place);
  void OfferRow(const QModelIndex& row);
  QMenu* MenuOf(JobNode kind) const;

  // --- what is done (T_jobmgrform_commands.cpp)
  void NewJob();
  void EditSelected();
  void DeleteSelected();
  void RefreshSelected();
  void RequestSelected(JobRequest request);
  void FilterSelected(TableFilter filter);
  void OfferMark(std::size_t job, const TableChoice& choice);
  void ClearSelectedMarks();
  // Takes up owner and tables of the selected rows. False when they are not those of one owner; the
  // operator has been told.
  bool ChooseSelected(TableChoice& choice);

  UiContext& context_;
  JobList& jobs_;
  JobTreeModel tree_;
  JobRows job_rows_;
  IncludedTables included_;
  ExcludedTables excluded_;
  ExplorerFrame frame_;
  JobActionList actions_;
  QMenu* job_new_menu_ = nullptr;
  QMenu* job_menu_ = nullptr;
  QMenu* table_menu_ = nullptr;
  QList<QAction*> row_entries_;  // of the menu of the list of all jobs
  QTimer refresh_timer_{this};
  bool shown_ = false;
  HealthCounts told_;
  JobWorker worker_;  // it may tell of changes at once
  WayOutRunner* ways_ = nullptr;
  JobHead* head_ = nullptr;
  JobPages* pages_ = nullptr;
};

}  // namespace quillmere
