// SPDX-License-Identifier: MIT
// From the thread that runs the jobs to the window. A changed job is posted: it waits in a set of
// jobs until the window comes by. A message is sent: the worker waits until the window has taken
// it.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

#include "engine/runner_listener.h"
#include "foundation/mutex.h"

namespace quillmere {

// Made and destroyed by the window, destroyed after the worker's end. Until then the window goes on
// taking messages, or the worker would wait for ever.
class WorkerBridge final : public RunnerListener {
 public:
  // Ask the window to come. Called on the worker's thread with no lock held, and each not again
  // before the window has come.
  struct Calls {
    std::function<void()> changes;
    std::function<void()> message;
  };

  // The text is valid during the call only.
  using Taker = std::function<void(std::string_view text, bool error)>;

  explicit WorkerBridge(Calls calls) : calls_(std::move(calls)) {}

  // The worker's.
  void OnJobChanged(std::size_t job, bool batch_fetched) override;
  void OnError(std::size_t, std::string_view text) override { Send(text, true); }
  void OnInformation(std::size_t, std::string_view text) override { Send(text, false); }

  // The window's. The jobs that changed since the last call, each once.
  std::vector<std::size_t> TakeChanges();

  // Hands over the message that waits; false when there is none. The taker runs without a lock.
  bool TakeMessage(const Taker& take);

 private:
  enum class Message { None, Waiting, BeingTaken };

  void Send(std::string_view text, bool error);

  const Calls calls_;
  Mutex mutex_;
  std::vector<bool> changed_ GUARDED_BY(mutex_);      // by job
  std::vector<std::size_t> jobs_ GUARDED_BY(mutex_);  // those of them that are true
  Condition taken_;
  Message message_ GUARDED_BY(mutex_) = Message::None;
  std::string_view text_ GUARDED_BY(mutex_);  // its sender's, who waits
  bool error_ GUARDED_BY(mutex_) = false;
};

}  // namespace quillmere
