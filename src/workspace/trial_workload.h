// SPDX-License-Identifier: MIT
// Somebody at work on the source of a trial: a transaction, a pause, the next one, until there have
// been enough or the object ends. On a thread and with an OCI environment of its own.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "foundation/mutex.h"
#include "oracle/H_oracle.h"

namespace quillmere {

class TrialWorkload {
 public:
  static constexpr std::chrono::milliseconds kPause{1000};
  static constexpr int kMostTransactions = 3600;

  // ended: called once, on the thread, with why, unless the object's end is the reason. library
  // must outlive it.
  using Ended = std::function<void(const std::string& why, bool error)>;
  TrialWorkload(OciLibrary& library, LogOn log_on, Ended ended,
                std::chrono::milliseconds pause = kPause, int most = kMostTransactions);

  // Ends behind the exchange in hand; a transaction that is open then is taken back.
  ~TrialWorkload();
  TrialWorkload(const TrialWorkload&) = delete;
  TrialWorkload& operator=(const TrialWorkload&) = delete;

 private:
  void Work();
  bool Ending();
  bool EndedInPause();
  bool Transact(int number, std::string& error);

  OciLibrary& library_;
  const LogOn log_on_;
  const Ended ended_;
  const std::chrono::milliseconds pause_;
  const int most_;
  Mutex mutex_;
  Condition changed_;
  bool end_ GUARDED_BY(mutex_) = false;
  std::thread thread_;
};

// What the transaction of that number does; tables and first rows are those of TrialDefinitions.
std::vector<std::string> TrialTransaction(int number);

}  // namespace quillmere
