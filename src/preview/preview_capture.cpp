// SPDX-License-Identifier: MIT
#include "preview/preview_capture.h"

#include <chrono>
#include <exception>
#include <thread>

#include "engine/follow_memory.h"

namespace quillmere {
namespace {

// The source may have to write its redo first, which it does every few seconds.
constexpr int kTries = 50;
constexpr std::chrono::milliseconds kPause{200};

class Watcher final : public CaptureWatcher {
 public:
  Watcher(JobDouble& job, std::vector<BlockedEntry>& blocked)
      : batch_(job.Job().run.pending_batch),
        most_(static_cast<std::size_t>(job.Context().settings.most_statements.load())),
        blocked_(blocked) {}

  void OnBlocked(std::size_t entry, std::string_view owner, std::string_view table,
                 std::string_view why, std::string_view text) override {
    blocked_.push_back({entry, batch_.Store(owner), batch_.Store(table), why, batch_.Store(text)});
  }
  bool Enough(std::size_t entries) override { return had_enough_ = entries >= most_; }
  bool HadEnough() const { return had_enough_; }

 private:
  PendingBatch& batch_;
  const std::size_t most_;
  std::vector<BlockedEntry>& blocked_;
  bool had_enough_ = false;
};

FollowResult Capture(FollowWay& way, JobDouble& job, const OracleSession::StopCondition& stop,
                     std::string& why) {
  LogOn source;
  {
    const MutexLock lock(job.Job().config_mutex);
    source = job.Job().config.source;
  }
  FollowResult result = FollowResult::Later;
  for (int tries = 0; result == FollowResult::Later && tries < kTries; ++tries) {
    if (tries > 0) std::this_thread::sleep_for(kPause);
    OracleSession session(job.Context().oci);
    if (stop) session.StopWhen(stop);
    if (!session.Connect(source)) {
      why = "Connect source fail : " + session.LastError();
      return FollowResult::Failed;
    }
    result = way.Capture(session, why);
  }
  if (result == FollowResult::Later) why = "The source has not written its redo yet";
  return result;
}

}  // namespace

bool CaptureAhead(JobDouble& job, const OracleSession::StopCondition& stop,
                  std::vector<BlockedEntry>& blocked, std::string& why) try {
  Watcher watcher(job, blocked);
  FollowMemory memory;
  const auto way = WayOf(job.Context(), 0, memory, &watcher);
  // A batch that was worked off, and the program ended before the record said so.
  if (job.Job().run.batch_pending != 0) way->Finish();
  if (Capture(*way, job, stop, why) == FollowResult::Done) return true;
  PendingBatch& batch = job.Job().run.pending_batch;
  if (watcher.HadEnough()) {
    why = "Only the first " + std::to_string(batch.Size()) + " changes are shown: there are more";
  } else {
    batch.Clear();
    blocked.clear();
  }
  return false;
} catch (const std::exception& failure) {  // it did not fit into memory
  job.Job().run.pending_batch.Clear();
  blocked.clear();
  why = failure.what();
  return false;
}

}  // namespace quillmere
