// SPDX-License-Identifier: MIT
#include "ui/main/program_window.h"

#include <QApplication>
#include <QDialog>
#include <QStringList>

#include "ui/main/farewell.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

QString WhatIsWaitedFor(const JobList& jobs) {
  QStringList names;
  for (std::size_t index = 0; index < jobs.Count(); ++index) {
    if (IsRunning(jobs.State(index))) names << OneLine(NameOf(jobs.At(index)));
  }
  if (names.isEmpty()) return Farewell::tr("Ending: waiting for the exchange in hand");
  return Farewell::tr("Ending: waiting for the databases of %1")
      .arg(names.join(QStringLiteral(", ")));
}

}  // namespace

ProgramWindow::ProgramWindow(Workspace& workspace, std::unique_ptr<Opening> opening,
                             std::chrono::milliseconds sweep_pause)
    : workspace_(workspace),
      opening_(std::move(opening)),
      context_{workspace, opening_->Memory(), opening_->Look(), databases_},
      form_(context_, sweep_pause) {
  if (!opening_->Problem().empty()) workspace_.Log().Add(opening_->Problem(), true);
  SayWhatIsMissing();
}

ProgramWindow::ProgramWindow(Workspace& workspace, std::chrono::milliseconds sweep_pause)
    : ProgramWindow(workspace, std::make_unique<Opening>(workspace.Folder()), sweep_pause) {}

ProgramWindow::~ProgramWindow() = default;

void ProgramWindow::Show() {
  form_.show();
  opening_->HideSplash();
}

void ProgramWindow::SayWhatIsMissing() {
  const OciLibrary& library = workspace_.Oci();
  if (library.Loaded()) return;
  MessageLog& log = workspace_.Log();
  log.Add(library.LoadError(), true);
  log.Add(
      "Without it no data source can be connected: install the Oracle Instant Client, or choose "
      "its library under Options, Settings",
      false);
  log.Add("To try the program without Oracle, start it with --client sandbox", false);
}

void ProgramWindow::RequestEnd() {
  end_requested_ = true;
  // Long work under a progress dialog ends with its present item.
  if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) dialog->reject();
  QCoreApplication::exit(0);
}

bool ProgramWindow::Finish(std::string& reason) {
  form_.hide();
  Farewell farewell;
  form_.EndWorker([&] { farewell.Wait(WhatIsWaitedFor(workspace_.Jobs())); });
  // Nobody waits for these any more, but a connection attempt can not be taken back.
  while (databases_.Busy()) {
    farewell.Wait(Farewell::tr("Ending: waiting for a connection that was left"));
  }
  return workspace_.SaveJobs(reason);
}

}  // namespace quillmere
