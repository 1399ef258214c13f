// SPDX-License-Identifier: MIT
// Tells changes of the jobs' health to a command of the operator's: one run for each change, one
// at a time, on a thread of its own. Whatever becomes of the command, no job and no window waits
// for it.
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "foundation/mutex.h"
#include "watch/hook_process.h"
#include "watch/job_watch.h"

namespace quillmere {

// Any thread, but for Use and End, which are one thread's. All that it is made with must outlive
// it.
class HealthHook {
 public:
  struct Limits {
    std::chrono::milliseconds run{30'000};  // then the command's process group is ended
    std::chrono::milliseconds end{2'000};   // the same for one that runs when the program ends
    std::chrono::milliseconds look{1'000};  // between two looks at all jobs
    std::size_t waiting = 100;              // changes; above that the oldest is dropped
  };

  HealthHook(const JobList& jobs, const JobWatch& watch, const Clock& clock, std::string folder);
  HealthHook(const JobList& jobs, const JobWatch& watch, const Clock& clock, std::string folder,
             const Limits& limits);
  ~HealthHook();  // End
  HealthHook(const HealthHook&) = delete;
  HealthHook& operator=(const HealthHook&) = delete;

  // The command as it stands in the settings; empty: none. Told is what changes from now on.
  void Use(const std::string& command);

  // A job may not be as it was. Takes notice at once and comes back.
  void Look(std::size_t job);

  // What the operator is to be told, since the last call.
  std::vector<WatchMessage> TakeMessages();

  // What waits is not told any more; a command that runs has a moment left, see Limits.
  void End();

 private:
  struct Seen {
    std::string name;
    Health health = Health::Stopped;
  };

  void Work();
  void LookAtAll() REQUIRES(mutex_);
  void LookAt(std::size_t job) REQUIRES(mutex_);
  bool TakeNext(std::string& event) REQUIRES(mutex_);
  void Begin(const std::string& event);
  void Attend();
  void NoteEnd(const std::string& problem);
  void EndProcess();

  const JobList& jobs_;
  const JobWatch& watch_;
  const Clock& clock_;
  const std::string folder_;
  const Limits limits_;
  Mutex mutex_;
  Condition changed_;
  bool end_ GUARDED_BY(mutex_) = false;
  bool in_use_ GUARDED_BY(mutex_) = false;
  std::map<std::size_t, Seen> seen_ GUARDED_BY(mutex_);
  std::deque<std::string> events_ GUARDED_BY(mutex_);
  bool dropped_ GUARDED_BY(mutex_) = false;  // and told
  std::vector<WatchMessage> messages_ GUARDED_BY(mutex_);
  // The thread's.
  std::vector<std::string> words_;  // set before it begins
  HookProcess process_;
  std::chrono::steady_clock::time_point limit_;
  bool failed_ = false;  // and told
  std::thread thread_;
};

}  // namespace quillmere
