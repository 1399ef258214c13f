// SPDX-License-Identifier: MIT
// The band at the window's top: the program's sign and the button with the options.
#pragma once

#include <QFrame>

class QMenu;
class QToolButton;

namespace quillmere {

class Banner final : public QFrame {
  Q_OBJECT

 public:
  static constexpr int kHeight = 48;

  // caption: what the program works on.
  Banner(const QString& caption, QWidget* parent);

  void SetMenu(QMenu* menu);

 private:
  QToolButton* options_ = nullptr;
};

}  // namespace quillmere
