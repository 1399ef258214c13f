// SPDX-License-Identifier: MIT
#include "ui/main/tray.h"

#include <QAction>
#include <QApplication>
#include <QWidget>
#include <utility>

#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kReachableMs = 2000;

// Neither the program nor a job needs anybody.
bool IsQuiet(Health health) {
  return HealthMark(health).empty();
}

}  // namespace

Tray::Tray(UiContext& context, QWidget& window)
    : QObject(&window), context_(context), window_(window), menu_(&window) {
  setObjectName(QStringLiteral("Tray"));
  MakeMenu();
  icon_.setContextMenu(&menu_);
  icon_.setIcon(Icon("app"));
  connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason why) {
    if (why == QSystemTrayIcon::Trigger) ShowWindow();
  });
  connect(&icon_, &QSystemTrayIcon::messageClicked, this, &Tray::ShowWindow);
  connect(&reachable_, &QTimer::timeout, this, &Tray::KeepReachable);
  Look();
}

void Tray::MakeMenu() {
  menu_.setObjectName(QStringLiteral("TrayMenu"));
  QAction* const show = menu_.addAction(Icon("app"), tr("&Show the window"));
  show->setObjectName(QStringLiteral("TrayShow"));
  connect(show, &QAction::triggered, this, &Tray::ShowWindow);
  QAction* const leave = menu_.addAction(Icon("exit"), tr("&Exit"));
  leave->setObjectName(QStringLiteral("TrayExit"));
  // What keeps the window open is told in front of it.
  connect(leave, &QAction::triggered, this, [this] {
    ShowWindow();
    window_.close();
  });
}

void Tray::Hide() {
  if (!MayHide()) return;
  icon_.show();
  // No other window that is closed meanwhile is the last one.
  QApplication::setQuitOnLastWindowClosed(false);
  window_.hide();
  reachable_.start(kReachableMs);
}

void Tray::ShowWindow() {
  reachable_.stop();
  QApplication::setQuitOnLastWindowClosed(true);
  window_.show();
  if (window_.isMinimized()) window_.showNormal();
  window_.raise();
  window_.activateWindow();
}

// The desktop's tray may go while the window is hidden.
void Tray::KeepReachable() {
  if (!MayHide()) ShowWindow();
}

void Tray::Look() {
  HealthCounts counts;
  const QString news = NoteChanges(counts);
  const QString words = HealthWords(counts);
  if (shown_ != words) {
    shown_ = words;
    const auto worst = WorstOf(counts);
    const std::string_view quiet = counts[Health::UpToDate] > 0 ? "up-to-date" : "";
    icon_.setIcon(MarkedIcon("app", worst ? HealthMark(*worst) : quiet));
    icon_.setToolTip(words.isEmpty() ? QStringLiteral("Quillmere")
                                     : tr("Quillmere - %1").arg(words));
  }
  if (!icon_.isVisible() && MayHide()) icon_.show();
  if (news.isEmpty() || !icon_.isVisible() || window_.isActiveWindow()) return;
  const auto worst = WorstOf(counts);
  icon_.showMessage(QStringLiteral("Quillmere"), news,
                    worst ? QSystemTrayIcon::Warning : QSystemTrayIcon::Information);
}

// Of jobs that began or ceased to need somebody: what an operator asked for is no news.
QString Tray::NoteChanges(HealthCounts& counts) {
  const Workspace& workspace = context_.workspace;
  QStringList news;
  for (std::size_t index = 0; index < workspace.Jobs().Count(); ++index) {
    if (workspace.Jobs().State(index) == JobState::Empty) continue;
    const Health now = workspace.Watch().Look(index).health;
    ++counts[now];
    const std::string name = NameOf(workspace.Jobs().At(index));
    Seen& seen = seen_[index];
    if (std::exchange(seen.name, name) != name) seen.health = now;
    const Health was = std::exchange(seen.health, now);
    if (was == now || (IsQuiet(was) && IsQuiet(now))) continue;
    news << tr("%1: %2, was %3", "a job, its health now and before")
                .arg(OneLine(name), Translated(HealthName(now)), Translated(HealthName(was)));
  }
  constexpr int kMostLines = 5;
  if (news.size() > kMostLines) {
    const int more = static_cast<int>(news.size()) - kMostLines;
    news = news.mid(0, kMostLines) << tr("and %Ln more", nullptr, more);
  }
  return news.join(u'\n');
}

}  // namespace quillmere
