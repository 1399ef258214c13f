// SPDX-License-Identifier: MIT
// The beginning of the window program: its look and the splash window, under which the working
// folder is read however long that takes.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "ui/main_dialogs/splash.h"
#include "ui/toolkit/appearance.h"
#include "ui/toolkit/window_memory.h"
#include "workspace/workspace.h"

namespace quillmere {

// User-interface thread, after the QApplication.
class Opening {
 public:
  // Shows the splash window, in the look that the program has in that folder.
  explicit Opening(const std::filesystem::path& folder);

  // Opens the working folder beside the event loop, which goes on. As Workspace::Open.
  std::unique_ptr<Workspace> Open(const Workspace::Options& options, std::string& reason);

  void Tell(const QString& step) { splash_->Tell(step); }
  void HideSplash() { splash_.reset(); }

  WindowMemory& Memory() { return memory_; }
  Appearance& Look() { return appearance_; }
  const std::string& Problem() const { return problem_; }  // with the look; else empty

 private:
  SystemFiles files_;
  WindowMemory memory_;
  Appearance appearance_;
  std::string problem_;
  std::unique_ptr<Splash> splash_;
};

}  // namespace quillmere
