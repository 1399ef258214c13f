// SPDX-License-Identifier: MIT
// The sandbox behind a gate: its exchanges with a database can be held, let pass one by one, or
// made slow.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "oracle/oci_library.h"

namespace quillmere {

// One at a time; outlives the workspace. Any thread.
class GatedOci {
 public:
  explicit GatedOci(const std::filesystem::path& program_folder);
  const OciApi& Api() const { return api_; }

  // From now on an exchange waits at the gate, unless it is of a spared thread: one that has made
  // any by the time of the call.
  void SpareKnownThreads();
  void Hold();
  void LetGo();
  void LetOnePass();
  int Held() const { return held_; }

  // How many exchanges the thread has made since it was named; it is never held.
  void Watch(std::thread::id thread);
  int OfWatched() const { return of_watched_; }

  // How long each exchange takes, and besides those of statements that contain one of the texts, as
  // if somebody had a lock.
  void SetLatency(std::chrono::milliseconds latency) { latency_ = latency; }
  void SetLocked(std::vector<std::string> texts, std::chrono::milliseconds wait);

  // Before an exchange; statement: its text where it is the execution of one.
  void Pass(std::string_view statement);

 private:
  OciLibrary library_;
  OciApi api_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool holds_ = false;
  int passes_ = 0;
  std::set<std::thread::id> known_, spared_;
  std::thread::id watched_;
  std::vector<std::string> locked_;
  std::chrono::milliseconds lock_wait_{0};
  std::atomic<std::chrono::milliseconds> latency_{};
  std::atomic<int> held_{0}, of_watched_{0};
};

}  // namespace quillmere
