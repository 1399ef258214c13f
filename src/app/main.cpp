// SPDX-License-Identifier: MIT
// quillmere: the window program.
#include <CLI/CLI.hpp>
#include <QApplication>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "app/end_signals.h"
#include "foundation/version.h"
#include "ui/main/program_window.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "workspace/program_folder.h"
#include "workspace/working_folder.h"

namespace quillmere {
namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

int RunWindow(const Workspace::Options& options, int argc, char** argv) {
  const QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Quillmere"));
  QApplication::setDesktopFileName(QStringLiteral("quillmere"));
  QApplication::setWindowIcon(Icon("app"));
  std::string reason;
  auto opening = std::make_unique<Opening>(options.folder);
  const std::unique_ptr<Workspace> workspace = opening->Open(options, reason);
  if (workspace == nullptr) {
    opening->HideSplash();
    ShowFailure(nullptr, reason);
    return kFailed;
  }
  opening->Tell(Splash::tr("Making the windows"));
  ProgramWindow window(*workspace, std::move(opening));
  const EndSignals signals([&window] { window.RequestEnd(); });
  window.Show();
  QApplication::exec();
  if (window.Finish(reason)) return 0;
  if (!window.EndRequested()) {
    ShowFailure(nullptr, TMainForm::tr("The jobs could not be saved: %1").arg(Translated(reason)));
  }
  return kFailed;
}

int Run(int argc, char** argv) {
  CLI::App app("Replicates Oracle databases: jobs, data sources and their tables in a window.",
               "quillmere");
  app.set_version_flag("--version", std::string("quillmere ") + ProgramVersion());
  Workspace::Options options;
  std::string folder;
  CLI::Option* named = app.add_option("--workdir", folder,
                                      "working folder, made when missing (default: the current one "
                                      "when it is one, else a folder of the user's data)")
                           ->type_name("DIR");
  app.add_option("--client", options.client, "client library: oracle, sandbox or a path")
      ->type_name("CLIENT");
  app.add_flag("--debug", options.debug, "more messages; what is mined and executed goes to a log");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongUsage;
  }
  const WorkingFolder chosen = ChooseWorkingFolder(
      named->count() > 0 ? std::optional<std::filesystem::path>(folder) : std::nullopt, ".",
      UserDataFolder());
  options.folder = chosen.folder;
  options.folder_origin = chosen.why;
  options.create_folder = true;
  options.program_folder = ProgramFolder();
  return RunWindow(options, argc, argv);
}

}  // namespace
}  // namespace quillmere

int main(int argc, char** argv) {
  try {
    return quillmere::Run(argc, argv);
  } catch (const std::exception& failure) {
    std::cerr << "Given up: " << failure.what() << '\n';
    return 1;
  }
}
