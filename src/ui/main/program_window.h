// SPDX-License-Identifier: MIT
// The windows of one workspace, in the order in which they must come and go.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "ui/H_global.h"
#include "ui/main/T_mainform.h"
#include "ui/main/opening.h"

namespace quillmere {

// Made after the QApplication and the workspace. User-interface thread.
class ProgramWindow {
 public:
  // opening: whose splash window is on screen until Show.
  ProgramWindow(Workspace& workspace, std::unique_ptr<Opening> opening,
                std::chrono::milliseconds sweep_pause = HWorkThread::kSweepPause);
  explicit ProgramWindow(Workspace& workspace,
                         std::chrono::milliseconds sweep_pause = HWorkThread::kSweepPause);
  ~ProgramWindow();

  TMainForm& Form() { return form_; }

  // In place of the splash window, which has been on screen since the construction began.
  void Show();

  // Leaves the event loop, whatever dialogs are open: they end as if cancelled. For whoever ends
  // the program from outside; the guards are not asked, for there is nobody to answer.
  void RequestEnd();
  bool EndRequested() const { return end_requested_; }

  // After the event loop: hides the window, ends the worker behind the statement in hand, and saves
  // the jobs. False: they could not be saved.
  bool Finish(std::string& reason);

 private:
  void SayWhatIsMissing();

  Workspace& workspace_;
  std::unique_ptr<Opening> opening_;
  DatabaseThread databases_;
  UiContext context_;
  TMainForm form_;
  bool end_requested_ = false;
};

}  // namespace quillmere
