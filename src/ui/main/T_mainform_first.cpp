// SPDX-License-Identifier: MIT
// What the main window does for a folder that is still empty.
#include <QMetaObject>
#include <memory>
#include <utility>

#include "ui/databases/T_dbmgrform.h"
#include "ui/jobs/T_jobmgrform.h"
#include "ui/main/T_mainform.h"
#include "ui/main/first_minute.h"
#include "ui/sources/Dbconnection.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "ui/waiting/waiting.h"
#include "workspace/sandbox_trial.h"

namespace quillmere {

QWidget* TMainForm::MakeFirst() {
  auto* first = new FirstMinute(context_, this);
  connect(first, &FirstMinute::SourceAsked, this, &TMainForm::RegisterSource);
  connect(first, &FirstMinute::JobAsked, this,
          [this] { job_manager_->Actions().FileNew->trigger(); });
  connect(first, &FirstMinute::TrialAsked, this, &TMainForm::TrySandbox);
  return first;
}

void TMainForm::RegisterSource() {
  TDbConnForm form(context_, this);
  form.StartNew();
  form.exec();
  if (form.Changed()) database_manager_->ShowRegistry();
  for (FirstMinute* const first : findChildren<FirstMinute*>()) first->Refresh();
}

void TMainForm::TrySandbox() {
  SandboxTrial trial;
  Waiting waiting(context_, this, tr("Sandbox databases"));
  waiting.KeepDialog();
  Outcome made = MakeSandboxTrial(context_.workspace, waiting, trial);
  waiting.EndDialog();
  database_manager_->ShowRegistry();
  if (!made) {
    if (!made.cancelled) ShowFailure(this, made.text);
    return;
  }
  job_manager_->ShowJob(trial.index);
  pages_->setCurrentIndex(0);
  MessageLog& log = context_.workspace.Log();
  log.Add(made.text + ". While this window is open, orders are entered on " + trial.source +
              " every second, for an hour at most",
          false);
  ShowTip(Translated(made.text));
  connect(this, &TMainForm::WorkloadSaid, this, &TMainForm::TellOfWorkload,
          static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::UniqueConnection));
  workload_ = std::make_unique<TrialWorkload>(
      context_.workspace.Oci(), TrialLogOn(trial.source),
      [this](const std::string& why, bool error) { Q_EMIT WorkloadSaid(why, error); });
}

void TMainForm::TellOfWorkload(const std::string& why, bool error) {
  context_.workspace.Log().Add(why, error);
}

}  // namespace quillmere
