// SPDX-License-Identifier: MIT
// The modal dialog of what waits for a database: what is being done, how far it is, and Cancel.
// User-interface thread.
#pragma once

#include <QCoreApplication>
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <functional>
#include <string_view>

class QPushButton;

namespace quillmere {

class ProgressWindow final : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(ProgressWindow)

 public:
  // cancel: called once, for the button, Escape or the closing of the window; none of them closes
  // it, for the work decides when it is over.
  ProgressWindow(QWidget* parent, const QString& title, std::function<void()> cancel);

  // total 0: how far it is, is not known.
  void ShowStep(std::string_view what, std::size_t done, std::size_t total);
  void ShowResult(std::string_view line);

  // It has been on screen with what it says.
  bool Painted() const { return painted_; }

  void reject() override { Cancel(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void Cancel();

  const std::function<void()> cancel_;
  QLabel what_;
  QLabel result_;
  QProgressBar bar_;
  QPushButton* button_ = nullptr;
  bool painted_ = false;
};

}  // namespace quillmere
