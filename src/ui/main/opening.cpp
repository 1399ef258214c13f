// SPDX-License-Identifier: MIT
#include "ui/main/opening.h"

#include <QEventLoop>
#include <atomic>
#include <future>

#include "oracle/nls_defaults.h"
#include "ui/toolkit/language.h"

namespace quillmere {

Opening::Opening(const std::filesystem::path& folder)
    : memory_(folder), appearance_(files_, memory_) {
  UseLanguage(ChosenLanguage(memory_));
  appearance_.Restore(problem_);
  splash_ = std::make_unique<Splash>();
  splash_->Tell(Splash::tr("Reading the working folder"));
}

std::unique_ptr<Workspace> Opening::Open(const Workspace::Options& options, std::string& reason) {
  // Before there is a thread that might look at the environment while it changes.
  SetNlsDefaults();
  std::atomic<bool> opened = false;
  QEventLoop loop;  // outlives the thread that wakes it
  auto opening = std::async(std::launch::async, [&] {
    struct Wake {
      std::atomic<bool>& opened;
      QEventLoop& loop;
      ~Wake() {
        opened = true;
        loop.wakeUp();
      }
    } wake{opened, loop};
    return Workspace::Open(options, reason);
  });
  while (!opened) loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  return opening.get();
}

}  // namespace quillmere
