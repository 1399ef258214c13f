// SPDX-License-Identifier: MIT
// From the thread that runs the jobs to the window. Both changed jobs and messages wait here until
// the window comes by; the worker waits for nothing.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/runner_listener.h"
#include "foundation/mutex.h"

namespace quillmere {

// Made and destroyed by the window, destroyed after the worker's end.
class WorkerBridge final : public RunnerListener {
 public:
  // Ask the window to come. Called on the worker's thread with no lock held, and each not again
  // before the window has come.
  struct Calls {
    std::function<void()> changes;
    std::function<void()> message;
  };

  struct Message {
    std::size_t job = 0;
    std::string text;
    bool error = false;
  };

  explicit WorkerBridge(Calls calls) : calls_(std::move(calls)) {}

  // The worker's.
  void OnJobChanged(std::size_t job, bool batch_fetched) override;
  void OnError(std::size_t job, std::string_view text) override { Send(job, text, true); }
  void OnInformation(std::size_t job, std::string_view text) override { Send(job, text, false); }

  // The window's. The jobs that changed since the last call, each once.
  std::vector<std::size_t> TakeChanges();

  // In the order of their sending, each once.
  std::deque<Message> TakeMessages();

 private:
  void Send(std::size_t job, std::string_view text, bool error);

  const Calls calls_;
  Mutex mutex_;
  std::vector<bool> changed_ GUARDED_BY(mutex_);      // by job
  std::vector<std::size_t> jobs_ GUARDED_BY(mutex_);  // those of them that are true
  std::deque<Message> messages_ GUARDED_BY(mutex_);
};

}  // namespace quillmere
