// SPDX-License-Identifier: MIT
#include "ui/main/program_window.h"

#include <QApplication>
#include <QDialog>

namespace quillmere {
namespace {

// Before the form, which is made in these colours.
Appearance& Restored(Appearance& appearance, MessageLog& log) {
  std::string problem;
  appearance.Restore(problem);
  if (!problem.empty()) log.Add(problem, true);
  return appearance;
}

std::unique_ptr<Splash> Shown() {
  auto splash = std::make_unique<Splash>();
  splash->Tell(QStringLiteral("Making the windows"));
  return splash;
}

}  // namespace

ProgramWindow::ProgramWindow(Workspace& workspace, std::chrono::milliseconds sweep_pause)
    : workspace_(workspace),
      memory_(workspace.Folder()),
      appearance_(workspace.Files(), memory_),
      context_{workspace, memory_, Restored(appearance_, workspace.Log())},
      splash_(Shown()),
      form_(context_, sweep_pause) {
  SayWhatIsMissing();
}

ProgramWindow::~ProgramWindow() = default;

void ProgramWindow::Show() {
  form_.show();
  splash_.reset();
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
  form_.EndWorker();
  return workspace_.SaveJobs(reason);
}

}  // namespace quillmere
