// SPDX-License-Identifier: MIT
// From the thread that runs the jobs to the one that prints: bounded, so a reader who does not keep
// up slows the jobs down and never fills the memory.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/runner_listener.h"
#include "foundation/mutex.h"
#include "jobs/job_list.h"

namespace quillmere::cli {

class MessageQueue final : public RunnerListener {
 public:
  struct Message {
    std::string text;
    bool error = false;
    std::size_t job = JobList::kNotFound;           // of no job
    std::optional<PassReport> pass = std::nullopt;  // instead of a text
  };

  explicit MessageQueue(std::size_t capacity) : capacity_(capacity) {}

  // The worker's: waits while the queue is full. Whoever ends the worker goes on taking until it
  // has ended.
  void OnJobChanged(std::size_t, bool) override {}
  void OnError(std::size_t job, std::string_view text) override {
    Put({std::string(text), true, job});
  }
  void OnInformation(std::size_t job, std::string_view text) override {
    Put({std::string(text), false, job});
  }
  void OnPassEnd(std::size_t job, const PassReport& report) override {
    if (report.outcome != PassReport::Outcome::Later) Put({{}, false, job, report});
  }

  // All that waits; waits itself up to the time given for the first one.
  std::vector<Message> Take(std::chrono::milliseconds time);

 private:
  void Put(Message message);

  const std::size_t capacity_;
  Mutex mutex_;
  Condition changed_;
  std::vector<Message> messages_ GUARDED_BY(mutex_);
};

}  // namespace quillmere::cli
