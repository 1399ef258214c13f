// SPDX-License-Identifier: MIT
// How the window waits for a database: in a modal dialog that shows every step and can be left,
// while the work is done on the database thread.
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <string_view>

#include "ui/H_global.h"
#include "workspace/database_work.h"

class QWidget;

namespace quillmere {

class ProgressWindow;
class WaitingTask;

// For one operation of workspace/. User-interface thread.
class Waiting final : public DatabaseWork {
 public:
  // parent: of the dialog. Both must outlive it.
  Waiting(UiContext& context, QWidget* parent, const QString& title);
  ~Waiting() override;

  // Results and details as they come, on the user-interface thread.
  void SetListener(std::function<void(std::string_view line, bool failed)> listener) {
    listener_ = std::move(listener);
  }

  // For an operation of several parts: the dialog stays on screen between them until EndDialog, and
  // behind a Cancel none begins.
  void KeepDialog() { keeps_ = true; }
  void EndDialog();

  // The dialog is on screen and painted when the part begins, and gone when this returns. Events
  // are served meanwhile; what is done by key or mouse reaches nothing but the dialog. False after
  // a Cancel during a connection attempt, which comes back at once.
  bool Run(LogLines& log, Part part) override;

  bool AllLogged() const override { return all_logged_; }

 private:
  bool Wait(const std::shared_ptr<WaitingTask>& task, const bool& left, LogLines& log, Part part);

  DatabaseThread& databases_;
  QWidget* const parent_;
  const QString title_;
  std::function<void(std::string_view, bool)> listener_;
  bool all_logged_ = true;
  bool keeps_ = false;
  bool left_ = false;  // by the operator
  std::function<void()> cancel_;
  std::unique_ptr<ProgressWindow> window_;
};

}  // namespace quillmere
