// SPDX-License-Identifier: MIT
// Work beside the window that nobody waits for: it is done on the database thread, and its result
// is shown when it is there. For what takes milliseconds; what may take longer has a dialog
// (waiting.h).
#pragma once

#include <QTimer>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "ui/waiting/database_thread.h"

namespace quillmere {

// User-interface thread. thread outlives it.
class QuietWork {
 public:
  explicit QuietWork(DatabaseThread& thread);

  // work: on the database thread, with nothing but values of its own and what lives as long as the
  // workspace; its result is given to show, unless this is gone by then or other work was begun.
  template <typename Work, typename Show>
  void Begin(Work work, Show show) {
    using Result = decltype(work());
    const auto result = std::make_shared<std::optional<Result>>();
    Run([result, work = std::move(work)]() mutable { result->emplace(work()); },
        [result, show = std::move(show)] { show(std::move(**result)); });
  }

  bool Busy() const { return done_ != nullptr; }

 private:
  void Run(std::function<void()> work, std::function<void()> show);
  void Look();

  DatabaseThread& thread_;
  QTimer turn_;  // while there is work
  std::shared_ptr<std::atomic<bool>> done_;
  std::function<void()> show_;
};

}  // namespace quillmere
