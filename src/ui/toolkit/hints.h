// SPDX-License-Identifier: MIT
// The longer texts that the main window's status line shows for what is under the mouse.
#pragma once

#include <QObject>
#include <QString>
#include <functional>

class QWidget;

namespace quillmere {

// Of the widget and all in it that has none of its own, for as long as the widget lives; a later
// text takes its place. User-interface thread.
void SetHint(QWidget* widget, const QString& text);

// Watches the mouse over the widgets of an application and tells the hint of the widget under it,
// or of the nearest one around it that has one; empty outside of all. Watches until it is
// destroyed; show is called on the user-interface thread and must stay callable until then.
class HintWatcher : public QObject {
  Q_OBJECT

 public:
  HintWatcher(std::function<void(const QString&)> show, QObject* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::function<void(const QString&)> show_;
};

}  // namespace quillmere
