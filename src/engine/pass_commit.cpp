// SPDX-License-Identifier: MIT
// The end of a pass on the destination: the point it can go back to, the commit, and the way back.
#include "engine/pass.h"
#include "oracle/follow_queries.h"

namespace quillmere {

bool Pass::OpenCommitPoint() {
  commit_point_ = Record();
  std::string error;
  if (WriteCommitPoint(context_.files, folder_, commit_point_, error)) return true;
  // Going on without it could apply a batch twice after a crash.
  Error(error);
  return false;
}

// What the destination commits, the record and the position row say.
bool Pass::ReadyToCommit(OracleSession& destination) {
  if (record_failed_) WriteRecord();
  std::string error;
  if (record_failed_ || !record_.Flush(error)) {
    if (!record_failed_) Error(error);
    return false;
  }
  if (!guard_.InUse() || guard_.Write(destination, progress_.batch_remaining, error)) return true;
  Error(error);
  return false;
}

// Ends the destination session, which commits, and at once forgets the commit point: a kill between
// the two doubles the pass, unless the job has a position row. False when it is not known to have
// committed.
bool Pass::CommitDestination(OracleSession& destination) {
  // Made beforehand: nothing may come between the commit and the removal, or fail there.
  const std::filesystem::path path = folder_.File(JobFile::CommitPoint);
  std::string error;
  bool taken = !abandoned_;
  if (taken && !ReadyToCommit(destination)) {
    taken = false;
    if (!destination.Execute(follow::kRollback)) destination.Abandon();
  } else if (taken && !destination.EndSession()) {
    if (guard_.InUse()) {
      LeaveUnsettled(destination.LastError());
      return false;
    }
    taken = false;
    TellOfLoss(destination);
  }
  if (!taken) {
    ReturnToCommitPoint();
    // A record on disk that says more than the server took must not outlive the commit point.
    if (record_failed_ || !record_.Flush(error)) return false;
  }
  ForgetThePoint(path);
  return destination_committed_;
}

// Tried again before the next capture.
bool Pass::ForgetThePoint(const std::filesystem::path& path) {
  bool harmless = false;
  if (ForgetCommitPoint(context_.files, folder_, Record(), harmless)) return true;
  Error("Can not remove " + PathText(path) +
        (harmless ? ". It does no harm, but nothing more is captured until it is gone"
                  : ". Remove it before the program is started again, or this pass is applied "
                    "twice"));
  return false;
}

void Pass::ReturnToCommitPoint() {
  destination_committed_ = false;
  for (const auto& [table, tally] : tallies_) {
    table->totalsynced = table->totalsynced - tally.applied;
    table->RecordsBlocked = table->RecordsBlocked - tally.blocked;
  }
  TakeCountsOf(commit_point_);
  context_.jobs.SetProgress(index_, progress_);
  WriteRecord();
  context_.listener.OnJobChanged(index_, false);
}

}  // namespace quillmere
