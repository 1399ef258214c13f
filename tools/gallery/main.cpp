// SPDX-License-Identifier: MIT
// quillmere-gallery: pictures of every window of the program, for the manual and for whoever works
// on the windows. Needs no display. The same pictures each time.
#include <QApplication>
#include <QTextStream>

#include "gallery/example_folder.h"
#include "gallery/scenes.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/language.h"
#include "workspace/program_folder.h"

namespace quillmere {
namespace {

int TakePictures(const QString& folder, const QString& language) {
  if (!QDir().mkpath(folder)) {
    QTextStream(stderr) << "Can not make the folder " << folder << '\n';
    return 1;
  }
  ExampleFolder example(ProgramFolder());
  std::string reason;
  if (!example.Make(reason)) {
    QTextStream(stderr) << QString::fromStdString(reason) << '\n';
    return 1;
  }
  const std::unique_ptr<Workspace> empty = example.OpenEmpty(reason);
  if (empty == nullptr) {
    QTextStream(stderr) << QString::fromStdString(reason) << '\n';
    return 1;
  }
  const std::unique_ptr<Workspace> stuck = example.OpenStuck(reason);
  if (stuck == nullptr) {
    QTextStream(stderr) << QString::fromStdString(reason) << '\n';
    return 1;
  }
  int taken = 0;
  bool failed = false;
  WindowMemory memory(example.Opened().Folder());
  Appearance appearance(example.Opened().Files(), memory);
  if (language == QStringLiteral("de")) UseLanguage(Language::German);
  DatabaseThread databases;
  UiContext context{example.Opened(), memory, appearance, databases};
  UiContext newcomer{*empty, memory, appearance, databases};
  UiContext held_up{*stuck, memory, appearance, databases};
  const auto take = [&](Appearance::Scheme scheme, const QString& suffix, auto&& scenes) {
    appearance.SetScheme(scheme);
    Studio studio{QDir(folder), suffix};
    scenes(studio);
    taken += studio.Taken();
    failed = failed || studio.Failed();
  };
  const auto all = [&](Studio& studio) {
    TakeAll(context, studio);
    TakeEmpty(newcomer, studio);
    TakeStuck(held_up, studio);
  };
  take(Appearance::Scheme::Light, {}, all);
  take(Appearance::Scheme::Dark, "-dark", all);
  take(Appearance::Scheme::Light, {},
       [&](Studio& studio) { TakeSkin(context, studio, ProgramFolder() / "skin" / "redfox.qss"); });
  QTextStream(stdout) << taken << " pictures in " << folder << '\n';
  return failed ? 1 : 0;
}

}  // namespace
}  // namespace quillmere

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_SCALE_FACTOR", argc > 3 ? argv[3] : "1");
  const QApplication application(argc, argv);
  QApplication::setApplicationName("Quillmere");
  QApplication::setWindowIcon(quillmere::Icon("app"));
  QApplication::setCursorFlashTime(0);
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() < 2 || arguments.size() > 4) {
    QTextStream(stderr) << "usage: quillmere-gallery FOLDER [en|de [SCALE]] [-reverse]\n";
    return 2;
  }
  return quillmere::TakePictures(arguments[1], arguments.value(2));
}
