// SPDX-License-Identifier: MIT
#include "cli/job_drive.h"

#include <algorithm>
#include <string>

#include "cli/command.h"
#include "cli/watch_events.h"

namespace quillmere::cli {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kTurn{100};  // how late a request to end may be noticed
constexpr milliseconds kEndTurn{20};
constexpr std::chrono::seconds kProgressPause{1};

// Statements of all jobs since each was started.
struct Totals {
  std::int64_t applied = 0;
  std::int64_t blocked = 0;
  std::int64_t remaining = 0;
};

Totals Count(const JobList& jobs) {
  Totals totals;
  for (std::size_t index = 0; index < jobs.Count(); ++index) {
    JobList::Progress progress;
    if (jobs.State(index, &progress) == JobState::Empty) continue;
    const SyncJob& job = jobs.At(index);
    totals.applied += job.run.applied_count;
    totals.blocked += job.run.blocked_count;
    totals.remaining += progress.batch_remaining;
  }
  return totals;
}

}  // namespace

JobDrive::JobDrive(Workspace& workspace, const Options& options)
    : workspace_(workspace), options_(options), engine_(workspace.EngineFor(queue_)) {}

int JobDrive::Run() {
  begin_ = steady_clock::now();
  next_progress_ = begin_ + kProgressPause;
  next_limit_ = begin_ + MessageLog::kLimitPause;
  last_progress_ = begin_;
  const Totals totals = Count(workspace_.Jobs());
  last_handled_ = totals.applied + totals.blocked;
  const std::vector<std::size_t> driven = RunningJobs();

  JobRunner runner(engine_);
  bool none_runs = false;
  {
    HWorkThread worker(runner, workspace_.Jobs(), options_.sweep_pause);
    service_.Ready();
    while (!ShallEnd() && !none_runs) {
      PrintMessages(kTurn);
      DoPeriodicWork();
      none_runs = RunningJobs().empty();
    }
    ending_ = true;
    service_.Ending();
    worker.Terminate();
    while (!worker.WaitFor(milliseconds(0))) PrintMessages(kEndTurn);
  }
  PrintMessages(milliseconds(0));
  if (options_.progress) PrintProgress(steady_clock::now());
  std::string reason;
  if (!workspace_.SaveJobs(reason)) return Fail(reason);
  if (none_runs) return Fail("No job runs any more");
  return AnyInTrouble(driven) ? kInTrouble : kDone;
}

bool JobDrive::ShallEnd() {
  if (end_request_.Came()) return true;
  return options_.time && steady_clock::now() - begin_ >= *options_.time;
}

std::vector<std::size_t> JobDrive::RunningJobs() const {
  const JobList& jobs = workspace_.Jobs();
  std::vector<std::size_t> running;
  for (std::size_t index = 0; index < jobs.Count(); ++index) {
    if (IsRunning(jobs.State(index))) running.push_back(index);
  }
  return running;
}

bool JobDrive::AnyInTrouble(const std::vector<std::size_t>& jobs) const {
  return std::any_of(jobs.begin(), jobs.end(), [this](std::size_t index) {
    const Health health = workspace_.Watch().Look(index).health;
    return health == Health::Failing || health == Health::Held;
  });
}

void JobDrive::PrintMessages(milliseconds wait) {
  for (const MessageQueue::Message& message : queue_.Take(wait)) {
    if (!message.pass && !workspace_.Log().Add(message.text, message.error) && !log_lost_) {
      log_lost_ = true;
      PrintMessage({"error.log cannot be written: messages are only shown here", true});
    }
    PrintMessage(message);
  }
}

void JobDrive::PrintMessage(const MessageQueue::Message& message) {
  if (options_.json) {
    PrintText(EventText(workspace_, message));
  } else if (!message.pass) {
    PrintLine((message.error ? "ERROR " : "") + message.text);
  }
}

// A reader who has gone, or who does not read while the program is to end, loses lines: they are in
// error.log, too.
void JobDrive::PrintLine(std::string_view text) {
  PrintText(FormatTimeStamp(workspace_.TimeSource().Now()) + " " + OneLine(text) + "\n");
}

void JobDrive::PrintText(const std::string& line) {
  if (output_lost_) return;
  const auto give_up = [this] { return ending_ || ShallEnd(); };
  if (Write(Stream::Output, line, give_up)) return;
  output_lost_ = true;
  Write(Stream::Error, "quillmere-cli: The output cannot be written, see error.log\n", give_up);
}

void JobDrive::PrintProgress(Time now) {
  const Totals totals = Count(workspace_.Jobs());
  const std::int64_t handled = totals.applied + totals.blocked;
  const auto passed = std::chrono::duration_cast<milliseconds>(now - last_progress_).count();
  // A job that is started anew counts from 0 again.
  const std::int64_t done = std::max<std::int64_t>(handled - last_handled_, 0);
  const std::int64_t rate = passed > 0 ? done * 1000 / passed : 0;
  last_handled_ = handled;
  last_progress_ = now;
  if (options_.json) {
    return PrintText(ProgressEvent(workspace_, {handled + totals.remaining, totals.applied,
                                                totals.blocked, totals.remaining, rate}));
  }
  PrintLine(
      "progress captured=" + std::to_string(handled + totals.remaining) +
      " applied=" + std::to_string(totals.applied) + " blocked=" + std::to_string(totals.blocked) +
      " remaining=" + std::to_string(totals.remaining) + " rate=" + std::to_string(rate) + "/s");
}

void JobDrive::DoPeriodicWork() {
  const Time now = steady_clock::now();
  service_.Alive(now);
  for (const WatchMessage& told : workspace_.Hook().TakeMessages()) {
    workspace_.Log().Add(told.text, told.error);
    PrintMessage({told.text, told.error});
  }
  if (options_.progress && now >= next_progress_) {
    PrintProgress(now);
    next_progress_ += kProgressPause;
    if (next_progress_ <= now) next_progress_ = now + kProgressPause;
  }
  if (now >= next_limit_) {
    workspace_.Log().LimitFiles();
    next_limit_ = now + MessageLog::kLimitPause;
  }
}

}  // namespace quillmere::cli
