// SPDX-License-Identifier: MIT
// Says what the end of the program waits for, when that takes longer than a moment: a program whose
// window has gone is taken for one that has ended. User-interface thread.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QString>
#include <memory>

#include "ui/main_dialogs/splash.h"

namespace quillmere {

class Farewell {
  Q_DECLARE_TR_FUNCTIONS(Farewell)

 public:
  Farewell() { began_.start(); }

  // Again and again while it waits; comes back after some milliseconds.
  void Wait(const QString& what);

 private:
  QElapsedTimer began_;
  QString said_;
  std::unique_ptr<Splash> window_;
};

}  // namespace quillmere
