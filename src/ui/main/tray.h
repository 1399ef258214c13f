// SPDX-License-Identifier: MIT
// The program's sign in the desktop's tray: how the jobs are, what changed, and the way back to a
// window that was hidden. User-interface thread.
#pragma once

#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>
#include <map>
#include <optional>
#include <string>

#include "ui/H_global.h"
#include "ui/jobs/job_health.h"

namespace quillmere {

class Tray final : public QObject {
  Q_OBJECT

 public:
  // window: what is hidden and shown; must outlive it.
  Tray(UiContext& context, QWidget& window);

  // Desktops without a tray have no way back to a hidden window.
  bool MayHide() const { return QSystemTrayIcon::isSystemTrayAvailable(); }
  void Hide();
  void ShowWindow();

  // The jobs may not be as they were: shows it, and says what changed while nobody looked.
  void Look();

 private:
  struct Seen {
    std::string name;
    Health health = Health::Stopped;
  };

  void MakeMenu();
  QString NoteChanges(HealthCounts& counts);
  void KeepReachable();

  UiContext& context_;
  QWidget& window_;
  QMenu menu_;
  QSystemTrayIcon icon_;
  QTimer reachable_;
  std::map<std::size_t, Seen> seen_;
  std::optional<QString> shown_;
};

}  // namespace quillmere
