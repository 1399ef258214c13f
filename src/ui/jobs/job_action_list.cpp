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

QAction* Make(QWidget* form, const char* name, const QString& caption, const char* icon,
              const QKeySequence& shortcut = {}) {
  auto* action = new QAction(Icon(icon), caption, form);
  action->setObjectName(QLatin1StringView(name));
  action->setShortcut(shortcut);
  form->addAction(action);
  return action;
}

struct Button {
  QAction* action;
  const char* name;
  QString tooltip;
  QString hint;
};

void AddButton(QToolBar& bar, const Button& button) {
  button.action->setToolTip(button.tooltip);
  QWidget* const widget = AddKeepingPlace(bar, *button.action);
  widget->setObjectName(QLatin1StringView(button.name));
  widget->setAccessibleDescription(button.tooltip);
  SetHint(widget, button.hint);
}

}  // namespace

JobActionList::JobActionList(QWidget* form)
    : FileNew(Make(form, "FileNew", tr("&New"), "job-new", Qt::CTRL | Qt::Key_N)),
      FileOpen(Make(form, "FileOpen", tr("&Open"), "job-open", Qt::CTRL | Qt::Key_O)),
      FileDelete(Make(form, "FileDelete", tr("&Delete"), "job-delete", Qt::CTRL | Qt::Key_D)),
      RunRun(Make(form, "RunRun", tr("&Run"), "run", Qt::CTRL | Qt::Key_R)),
      RunPause(Make(form, "RunPause", tr("&Pause"), "pause", Qt::CTRL | Qt::Key_P)),
      RunStop(Make(form, "RunStop", tr("&Stop"), "stop", Qt::CTRL | Qt::Key_S)),
      ChangeRemoteOwner(Make(form, "ChangeRemoteOwner", tr("ChangeRemoteOwner"), "owner")),
      Include(Make(form, "Include", tr("Include"), "include")),
      Exclude(Make(form, "Exclude", tr("Exclude"), "exclude")),
      Compared(Make(form, "Compared", tr("Compared"), "compared")),
      Migrate(Make(form, "Migrate", tr("Migrate"), "migrate")),
      Refresh(Make(form, "Refresh", tr("Refresh"), "refresh")),
      expand(Make(form, "expand", tr("expand"), "expand")),
      collapse(Make(form, "collapse", tr("collapse"), "collapse")) {
  ChangeRemoteOwner->setIconText(tr("ChangeOwner"));
  Show({});
}

void JobActionList::FillToolBar(QToolBar& bar) {
  AddButton(bar,
            {FileNew, "ToolButton1", tr("create a job"),
             tr("Add a job to synchronize source database's record to destination database.")});
  AddButton(bar, {FileOpen, "ToolButton2", tr("update job info"),
                  tr("Change the configuration of a job.")});
  AddButton(bar, {Refresh, "ToolButton13", tr("refresh table list of source database"),
                  tr("Refresh all shema tables from source.")});
  AddButton(bar, {FileDelete, "ToolButton3", tr("delete a job"),
                  tr("Drop a job configuration, nothing is left.")});
  before_run_ = AddSeparatorKeepingPlace(bar);
  AddButton(bar, {RunRun, "ToolButton5", tr("run a job"), tr("Start a job to begin synchronize.")});
  AddButton(bar, {RunPause, "ToolButton6", tr("stop a job"),
                  tr("Stop a job,then you can change the configuration without losing any data.")});
  AddButton(bar, {RunStop, "ToolButton7", tr("reset  a job"),
                  tr("Reset a job, all status is cleared, but configuration is not changed.")});
  before_tables_ = AddSeparatorKeepingPlace(bar);
  AddButton(bar, {Include, "ToolButton9", tr("include  owner and table"),
                  tr("Choose the owner's tables which you want to synchronized.")});
  AddButton(bar, {Exclude, "ToolButton10", tr("exclue owner and table"),
                  tr("Choose the owner's tables which you not want to synchronized.")});
  AddButton(bar, {ChangeRemoteOwner, "ToolButton11", tr("change table owner on remote "),
                  tr("Choose the tables which will be renamed after synchronized.")});
  AddButton(bar, {Migrate, "ToolButton12", tr("migrate a table"),
                  tr("Directly Migrate a table's data to destination .")});
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
