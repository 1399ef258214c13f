// SPDX-License-Identifier: MIT
// Stands between the engine and whoever listens to it, so that the watch hears of every pass,
// whichever face the program has.
#pragma once

#include "engine/runner_listener.h"
#include "watch/health_hook.h"
#include "watch/job_watch.h"

namespace quillmere {

// All of it must outlive the listener. Called as any listener is.
class WatchedListener final : public RunnerListener {
 public:
  WatchedListener(JobWatch& watch, RunnerListener& face, HealthHook* hook = nullptr)
      : watch_(watch), face_(face), hook_(hook) {}

  void OnJobChanged(std::size_t job, bool batch_fetched) override {
    face_.OnJobChanged(job, batch_fetched);
  }
  void OnError(std::size_t job, std::string_view text) override { face_.OnError(job, text); }
  void OnInformation(std::size_t job, std::string_view text) override {
    face_.OnInformation(job, text);
  }
  void OnPassEnd(std::size_t job, const PassReport& report) override;

 private:
  JobWatch& watch_;
  RunnerListener& face_;
  HealthHook* const hook_;  // told, too, where there is one
};

}  // namespace quillmere
