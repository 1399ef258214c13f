// SPDX-License-Identifier: MIT
// Drives the jobs of a workspace on the worker thread and prints what happens.
#pragma once

#include <chrono>
#include <optional>

#include "cli/message_queue.h"
#include "cli/service_notice.h"
#include "cli/terminal.h"
#include "engine/work_thread.h"
#include "workspace/workspace.h"

namespace quillmere::cli {

class JobDrive {
 public:
  struct Options {
    std::optional<std::chrono::milliseconds> time;  // until a signal when there is none
    std::chrono::milliseconds sweep_pause = HWorkThread::kSweepPause;
    bool progress = false;
    bool json = false;
  };

  JobDrive(Workspace& workspace, const Options& options);

  // What requests are made with before Run.
  EngineContext& Engine() { return engine_; }

  // Returns the exit status. Messages go to standard output, a line each, and to the log.
  int Run();

 private:
  using Time = std::chrono::steady_clock::time_point;

  bool ShallEnd();
  void PrintMessages(std::chrono::milliseconds wait);
  void PrintMessage(const MessageQueue::Message& message);
  void PrintLine(std::string_view text);
  void PrintText(const std::string& line);
  bool AnyInTrouble(const std::vector<std::size_t>& jobs) const;
  std::vector<std::size_t> RunningJobs() const;
  void PrintProgress(Time now);
  void DoPeriodicWork();

  static constexpr std::size_t kMostWaiting = 1000;

  Workspace& workspace_;
  const Options options_;
  EndRequest end_request_;
  ServiceNotice service_;
  MessageQueue queue_{kMostWaiting};
  EngineContext engine_;
  Time begin_;
  Time next_progress_;
  Time next_limit_;
  Time last_progress_;
  std::int64_t last_handled_ = 0;
  bool ending_ = false;
  bool output_lost_ = false;
  bool log_lost_ = false;
};

}  // namespace quillmere::cli
