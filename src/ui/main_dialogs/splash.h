// SPDX-License-Identifier: MIT
// Shown while the windows are made; its end is that of the object. It waits for nothing.
#pragma once

#include <QWidget>

class QLabel;

namespace quillmere {

class Splash : public QWidget {
  Q_OBJECT

 public:
  Splash();

  // On screen with what is done next, before that is begun.
  void Tell(const QString& step);

 private:
  QLabel* step_;
};

}  // namespace quillmere
