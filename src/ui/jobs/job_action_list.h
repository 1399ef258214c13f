// SPDX-License-Identifier: MIT
// The actions of the job explorer, for its tool bar, its pop-up menus and the main window's menus.
#pragma once

#include <QCoreApplication>

#include "ui/jobs/job_actions.h"

class QAction;
class QToolBar;
class QWidget;

namespace quillmere {

// Owned by the form. Actions that have nothing to act on are hidden, and their shortcuts rest.
struct JobActionList {
  Q_DECLARE_TR_FUNCTIONS(JobActionList)

 public:
  explicit JobActionList(QWidget* form);

  void Show(const JobActions& visible);

  // The buttons with their names, tooltips and hints.
  void FillToolBar(QToolBar& bar);

  QAction* FileNew;
  QAction* FileOpen;
  QAction* FileDelete;
  QAction* RunRun;
  QAction* RunPause;
  QAction* RunStop;
  QAction* ChangeRemoteOwner;
  QAction* Include;
  QAction* Exclude;
  QAction* Compared;  // shown while a table in the list bears the mark
  QAction* Migrate;   // does nothing
  QAction* Refresh;
  QAction* expand;
  QAction* collapse;

 private:
  void ShowSeparators();

  QAction* before_run_ = nullptr;
  QAction* before_tables_ = nullptr;
};

}  // namespace quillmere
