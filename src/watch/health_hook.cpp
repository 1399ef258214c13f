// SPDX-License-Identifier: MIT
#include "watch/health_hook.h"

#include <utility>

#include "watch/health_json.h"

namespace quillmere {
namespace {

using std::chrono::steady_clock;

constexpr std::chrono::milliseconds kTurn{20};  // while a command runs

}  // namespace

HealthHook::HealthHook(const JobList& jobs, const JobWatch& watch, const Clock& clock,
                       std::string folder)
    : HealthHook(jobs, watch, clock, std::move(folder), Limits()) {}

HealthHook::HealthHook(const JobList& jobs, const JobWatch& watch, const Clock& clock,
                       std::string folder, const Limits& limits)
    : jobs_(jobs), watch_(watch), clock_(clock), folder_(std::move(folder)), limits_(limits) {}

HealthHook::~HealthHook() {
  End();
}

void HealthHook::Use(const std::string& command) {
  std::vector<std::string> words;
  std::string error;
  const bool split = SplitCommand(command, words, error);
  if (split && words == words_) return;
  End();
  failed_ = false;
  words_ = split ? std::move(words) : std::vector<std::string>();
  {
    const MutexLock lock(mutex_);
    if (!split) messages_.push_back({true, "The health command is not run: " + error});
    if (words_.empty()) return;
    end_ = false;
    in_use_ = true;
    LookAtAll();
  }
  thread_ = std::thread([this] { Work(); });
}

void HealthHook::End() {
  if (!thread_.joinable()) return;
  {
    const MutexLock lock(mutex_);
    end_ = true;
    in_use_ = false;
    events_.clear();
    seen_.clear();
  }
  changed_.NotifyAll();
  thread_.join();
  words_.clear();
}

void HealthHook::Look(std::size_t job) {
  {
    const MutexLock lock(mutex_);
    if (!in_use_) return;
    LookAt(job);
    if (events_.empty()) return;
  }
  changed_.NotifyAll();
}

void HealthHook::LookAtAll() {
  for (std::size_t job = 0; job < jobs_.Count(); ++job) LookAt(job);
}

// A job that is met for the first time is as it is; only what changes is told.
void HealthHook::LookAt(std::size_t job) {
  if (jobs_.State(job) == JobState::Empty) {
    seen_.erase(job);
    return;
  }
  const std::string name = NameOf(jobs_.At(job));
  const WatchedJob now = watch_.Look(job);
  Seen& seen = seen_[job];
  if (seen.name != name) {
    seen = {name, now.health};
    return;
  }
  const Health was = std::exchange(seen.health, now.health);
  if (was == now.health) return;
  events_.push_back(HealthEvent(folder_, name, clock_.Now(), was, now));
  if (events_.size() <= limits_.waiting) return;
  events_.pop_front();
  if (std::exchange(dropped_, true)) return;
  messages_.push_back({true, "The health command does not keep up: more than " +
                                 std::to_string(limits_.waiting) +
                                 " changes wait for it. The oldest are not told to it"});
}

std::vector<WatchMessage> HealthHook::TakeMessages() {
  const MutexLock lock(mutex_);
  return std::exchange(messages_, {});
}

bool HealthHook::TakeNext(std::string& event) {
  if (events_.empty()) {
    dropped_ = false;
    return false;
  }
  event = std::move(events_.front());
  events_.pop_front();
  return true;
}

void HealthHook::Work() {
  auto next_look = steady_clock::now() + limits_.look;
  for (bool end = false; !end;) {
    std::string event;
    bool next = false;
    {
      const MutexLock lock(mutex_);
      const auto until = process_.Running() ? steady_clock::now() + kTurn : next_look;
      while (!end_ && (process_.Running() || events_.empty()) &&
             changed_.WaitUntil(mutex_, until)) {
        continue;
      }
      end = end_;
      if (!end && steady_clock::now() >= next_look) {
        LookAtAll();
        next_look = steady_clock::now() + limits_.look;
      }
      next = !end && !process_.Running() && TakeNext(event);
    }
    if (next) Begin(event);
    Attend();
  }
  EndProcess();
}

void HealthHook::Begin(const std::string& event) {
  std::string error;
  limit_ = steady_clock::now() + limits_.run;
  if (!process_.Start(words_, event, error)) NoteEnd(error);
}

void HealthHook::Attend() {
  if (!process_.Running()) return;
  if (const auto ended = process_.Look()) return NoteEnd(*ended);
  if (steady_clock::now() < limit_) return;
  process_.Kill();
  NoteEnd("it was not done after " + std::to_string(limits_.run.count() / 1000) +
          " s and was ended");
}

void HealthHook::NoteEnd(const std::string& problem) {
  if (std::exchange(failed_, !problem.empty()) || problem.empty()) return;
  const MutexLock lock(mutex_);
  messages_.push_back({true, "The health command failed: " + problem +
                                 ". That is not told again before it has gone well"});
}

void HealthHook::EndProcess() {
  const auto limit = steady_clock::now() + limits_.end;
  while (process_.Running() && steady_clock::now() < limit) {
    if (!process_.Look()) std::this_thread::sleep_for(kTurn);
  }
  process_.Kill();
}

}  // namespace quillmere
