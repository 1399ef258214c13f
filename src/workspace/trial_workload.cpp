// SPDX-License-Identifier: MIT
#include "workspace/trial_workload.h"

#include <utility>

namespace quillmere {

std::vector<std::string> TrialTransaction(int number) {
  constexpr int kCustomers = 6, kProducts = 4, kShippedBehind = 3, kPriceEvery = 5;
  const std::string id = std::to_string(number);
  const std::string customer = std::to_string(1 + number % kCustomers);
  const std::string product = std::to_string(1 + number % kProducts);
  std::vector<std::string> all = {
      "insert into SHOP.ORDERS values (" + id + ", " + customer + ", " + product +
          ", sysdate, 'new')",
      "update SHOP.CUSTOMERS set CREDIT = CREDIT - 1.5 where ID = " + customer};
  if (number > kShippedBehind) {
    all.push_back("update SHOP.ORDERS set STATUS = 'shipped' where ID = " +
                  std::to_string(number - kShippedBehind));
  }
  if (number % kPriceEvery == 0) {
    all.push_back("update SHOP.PRODUCTS set PRICE = PRICE + 0.1 where ID = " + product);
  }
  return all;
}

TrialWorkload::TrialWorkload(OciLibrary& library, LogOn log_on, Ended ended,
                             std::chrono::milliseconds pause, int most)
    : library_(library),
      log_on_(std::move(log_on)),
      ended_(std::move(ended)),
      pause_(pause),
      most_(most),
      thread_([this] { Work(); }) {}

TrialWorkload::~TrialWorkload() {
  {
    const MutexLock lock(mutex_);
    end_ = true;
  }
  changed_.NotifyAll();
  thread_.join();
}

bool TrialWorkload::EndedInPause() {
  const Condition::Time limit = std::chrono::steady_clock::now() + pause_;
  const MutexLock lock(mutex_);
  while (!end_ && changed_.WaitUntil(mutex_, limit)) continue;
  return end_;
}

bool TrialWorkload::Ending() {
  const MutexLock lock(mutex_);
  return end_;
}

bool TrialWorkload::Transact(int number, std::string& error) {
  OracleSession session(library_);
  session.StopWhen([this] { return Ending(); });
  bool done = session.Connect(log_on_);
  for (const std::string& statement : TrialTransaction(number)) {
    done = done && session.Execute(statement);
  }
  if (done && session.EndSession()) return true;
  error = session.LastError();
  session.Abandon();
  return false;
}

void TrialWorkload::Work() {
  for (int number = 1; number <= most_; ++number) {
    std::string error;
    if (!Transact(number, error)) {
      if (Ending()) return;
      return ended_("The changes on " + log_on_.name + " have ended: " + error, true);
    }
    if (EndedInPause()) return;
  }
  ended_("The changes on " + log_on_.name + " have ended: there have been enough to look at",
         false);
}

}  // namespace quillmere
