// SPDX-License-Identifier: MIT
// Takes pictures of windows: each with a frame and title, as on a desktop.
#pragma once

#include <QDir>
#include <QString>
#include <functional>

class QWidget;

namespace quillmere {

class Studio {
 public:
  // suffix: behind the name of each picture, for the colours it is taken in.
  Studio(const QDir& folder, const QString& suffix) : folder_(folder), suffix_(suffix) {}

  // Shows the window if it is not on screen, and takes its picture.
  void Take(QWidget& window, const QString& name);

  // A part of a window, without a frame.
  void TakePart(QWidget& part, const QString& name);

  // Runs what opens a modal dialog and comes back when it is closed; meanwhile the dialog is
  // arranged, its picture taken, and closed.
  void TakeModal(
      const QString& name, const std::function<void()>& open,
      const std::function<void(QWidget& dialog)>& arrange = [](QWidget&) {});

  int Taken() const { return taken_; }
  bool Failed() const { return failed_; }

 private:
  void Save(const QImage& picture, const QString& name);

  const QDir folder_;
  const QString suffix_;
  int taken_ = 0;
  bool failed_ = false;
};

// Until nothing is waiting to be painted or done.
void Settle();

}  // namespace quillmere
