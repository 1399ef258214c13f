// SPDX-License-Identifier: MIT
#include "ui/jobs/job_action_list.h"

#include <QAction>
#include <QToolBar>
#include <QToolButton>

#include "ui/toolkit/hints.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/kept_place.h"

namespace quillmere {
namespace {

QAction* Make(QWidget* form, const char* name, const char* caption, const char* icon,
              const QKeySequence& shortcut = {}) {
  auto* action = new QAction(Icon(icon), QLatin1StringView(caption), form);
  action->setObjectName(QLatin1StringView(name));
  action->setShortcut(shortcut);
  form->addAction(action);
  return action;
}

struct Button {
  QAction* action;
  const char* name;
  const char* tooltip;
  const char* hint;
};

void AddButton(QToolBar& bar, const Button& button) {
  button.action->setToolTip(QLatin1StringView(button.tooltip));
  QWidget* const widget = AddKeepingPlace(bar, *button.action);
  widget->setObjectName(QLatin1StringView(button.name));
  widget->setAccessibleDescription(QLatin1StringView(button.tooltip));
  SetHint(widget, QLatin1StringView(button.hint));
}

}  // namespace

JobActionList::JobActionList(QWidget* form)
    : FileNew(Make(form, "FileNew", "&New", "job-new", Qt::CTRL | Qt::Key_N)),
      FileOpen(Make(form, "FileOpen", "&Open", "job-open", Qt::CTRL | Qt::Key_O)),
      FileDelete(Make(form, "FileDelete", "&Delete", "job-delete", Qt::CTRL | Qt::Key_D)),
      RunRun(Make(form, "RunRun", "&Run", "run", Qt::CTRL | Qt::Key_R)),
      RunPause(Make(form, "RunPause", "&Pause", "pause", Qt::CTRL | Qt::Key_P)),
      RunStop(Make(form, "RunStop", "&Stop", "stop", Qt::CTRL | Qt::Key_S)),
      ChangeRemoteOwner(Make(form, "ChangeRemoteOwner", "ChangeRemoteOwner", "owner")),
      Include(Make(form, "Include", "Include", "include")),
      Exclude(Make(form, "Exclude", "Exclude", "exclude")),
      Compared(Make(form, "Compared", "Compared", "compared")),
      Migrate(Make(form, "Migrate", "Migrate", "migrate")),
      Refresh(Make(form, "Refresh", "Refresh", "refresh")),
      expand(Make(form, "expand", "expand", "expand")),
      collapse(Make(form, "collapse", "collapse", "collapse")) {
  ChangeRemoteOwner->setIconText(QStringLiteral("ChangeOwner"));
  Show({});
}

void JobActionList::FillToolBar(QToolBar& bar) {
  AddButton(bar, {FileNew, "ToolButton1", "create a job",
                  "Add a job to synchronize source database's record to destination database."});
  AddButton(bar,
            {FileOpen, "ToolButton2", "update job info", "Change the configuration of a job."});
  AddButton(bar, {Refresh, "ToolButton13", "refresh table list of source database",
                  "Refresh all shema tables from source."});
  AddButton(bar, {FileDelete, "ToolButton3", "delete a job",
                  "Drop a job configuration, nothing is left."});
  before_run_ = AddSeparatorKeepingPlace(bar);
  AddButton(bar, {RunRun, "ToolButton5", "run a job", "Start a job to begin synchronize."});
  AddButton(bar, {RunPause, "ToolButton6", "stop a job",
                  "Stop a job,then you can change the configuration without losing any data."});
  AddButton(bar, {RunStop, "ToolButton7", "reset  a job",
                  "Reset a job, all status is cleared, but configuration is not changed."});
  before_tables_ = AddSeparatorKeepingPlace(bar);
  AddButton(bar, {Include, "ToolButton9", "include  owner and table",
                  "Choose the owner's tables which you want to synchronized."});
  AddButton(bar, {Exclude, "ToolButton10", "exclue owner and table",
                  "Choose the owner's tables which you not want to synchronized."});
  AddButton(bar, {ChangeRemoteOwner, "ToolButton11", "change table owner on remote ",
                  "Choose the tables which will be renamed after synchronized."});
  AddButton(bar, {Migrate, "ToolButton12", "migrate a table",
                  "Directly Migrate a table's data to destination ."});
  ShowSeparators();
}

void JobActionList::Show(const JobActions& visible) {
  FileNew->setVisible(visible.file_new);
  FileOpen->setVisible(visible.file_open);
  FileDelete->setVisible(visible.file_delete);
  Refresh->setVisible(visible.refresh);
  RunRun->setVisible(visible.run);
  RunPause->setVisible(visible.pause);
  RunStop->setVisible(visible.stop);
  Include->setVisible(visible.include);
  Exclude->setVisible(visible.exclude);
  ChangeRemoteOwner->setVisible(visible.change_remote_owner);
  Compared->setVisible(false);  // who shows tables knows whether there is any
  Migrate->setVisible(visible.migrate);
  ShowSeparators();
}

// One that parts nothing would be a line in the empty part of the bar.
void JobActionList::ShowSeparators() {
  if (before_run_ == nullptr) return;
  const bool runs = RunRun->isVisible() || RunPause->isVisible() || RunStop->isVisible();
  before_run_->setVisible(runs);
  before_tables_->setVisible(Include->isVisible() || Exclude->isVisible() ||
                             ChangeRemoteOwner->isVisible());
}

}  // namespace quillmere
