// SPDX-License-Identifier: MIT
// All jobs of a workspace, addressed by index, with the one lock that guards their states; and
// their files (job_catalogue.h). Owned by the workspace.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/mutex.h"
#include "jobs/job_catalogue.h"
#include "jobs/sync_job.h"

namespace quillmere {

// A record never moves in memory and its index never changes while the list lives: the list may
// grow while the worker walks it. A slot whose state is Empty holds no job and is used again. Any
// thread may call everything, but one thread alone adds and removes jobs.
class JobList {
 public:
  static constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

  struct Progress {
    std::uint32_t batch_applied = 0;
    std::uint32_t batch_remaining = 0;
  };

  std::size_t Count() const;  // slots, empty ones included

  // index must be below Count.
  SyncJob& At(std::size_t index);
  const SyncJob& At(std::size_t index) const;

  // The first live job of that name (exact comparison), or kNotFound. Takes each job's
  // configuration lock: not to be called with one held.
  std::size_t IndexOf(std::string_view name) const;

  // The index of a record of this list, live or not; kNotFound when it is none.
  std::size_t IndexOf(const SyncJob& job) const;

  JobState State(std::size_t index, Progress* progress = nullptr) const;
  void SetState(std::size_t index, JobState state);
  void SetState(std::size_t index, JobState state, Progress progress);
  void SetProgress(std::size_t index, Progress progress);

  // Writes only over the expected state, test and write under one lock: a request that came in
  // meanwhile is never overwritten. The progress is written in any case. False: state was another.
  bool ReplaceState(std::size_t index, JobState expected, JobState state,
                    std::optional<Progress> progress = std::nullopt);

  // Why the job can not be continued, a mark beside its state; empty when it can. It goes with the
  // program, when the job is started anew, and with the job.
  std::string HeldBecause(std::size_t index) const;
  // asks_again: it can be continued all the same, for its next pass finds out whether it is still
  // so.
  bool AsksAgain(std::size_t index) const;
  void Hold(std::size_t index, std::string reason, bool asks_again = false);

  // All records that hold a job, in index order.
  std::vector<SyncJob*> LiveJobs();

  // A free slot (the lowest, else a new one), still Empty: the caller fills the record and then
  // sets its state, which makes it a job.
  std::size_t Claim();

  // Frees the slot and what the record holds. The job must rest.
  void Remove(std::size_t index);

 private:
  struct Slot {
    SyncJob job;
    JobState state = JobState::Empty;
    Progress progress;
    std::string held;
    bool asks_again = false;
  };

  mutable Mutex mutex_;
  std::deque<Slot> slots_ GUARDED_BY(mutex_);
};

}  // namespace quillmere
