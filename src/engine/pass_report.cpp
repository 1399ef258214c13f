// SPDX-License-Identifier: MIT
// What a pass tells of itself.
#include "engine/pass_report.h"

#include <algorithm>

#include "engine/follow_memory.h"
#include "engine/pass.h"

namespace quillmere {
namespace {

// Behind what is on the destination. By rows the positions move when a batch is worked off; by
// commits they are behind it as soon as it is captured, so what remains of it says more.
std::int64_t ReachedBy(const SyncJob& job, Follow follow, std::uint32_t remaining) {
  const Positions& positions = job.run.positions;
  if (follow == Follow::Rows) return positions.mining_start_scn;
  const PendingBatch& batch = job.run.pending_batch;
  const std::size_t next = batch.Size() - std::min<std::size_t>(remaining, batch.Size());
  const TransactionMarks::Walk transaction(batch.Transactions(), next);
  return transaction.Mark() == nullptr ? positions.cutoff_scn : transaction.Mark()->commit_scn;
}

}  // namespace

// The first error of a pass is its cause; what follows comes of it.
void Pass::Error(const std::string& text) {
  if (report_.problem.error.empty()) report_.problem.error = text;
  context_.listener.OnError(index_, text);
}

void Pass::NoteRefused(const ParsedStatement& parsed) {
  const std::size_t size = job_.run.pending_batch.Size();
  report_.problem = {PassProblem::Where::Statement,
                     {},
                     std::string(parsed.owner),
                     std::string(parsed.table),
                     size - progress_.batch_remaining + 1,
                     size,
                     to_execute_};
}

// What the redo must still be there for when this pass has ended, told of once as long as it lasts.
void Pass::MeasureRoom() {
  if (!memory_.redo_reach || memory_.source_scn == 0) return;
  const std::int64_t needed = job_.run.positions.mining_start_scn;
  report_.room =
      RoomOf(needed, memory_.redo_reach->from_scn, memory_.redo_reach->age, memory_.source_scn);
  if (!report_.room->left) return;
  const auto hours = std::chrono::duration_cast<std::chrono::hours>(*report_.room->left);
  const bool near = hours.count() < context_.settings.loss_warning_hours;
  if (near && !memory_.told_of_loss) {
    context_.listener.OnError(
        index_, "The redo that " + view_.name + " needs next, from SCN " + std::to_string(needed) +
                    " on, is gone from " + view_.source.name + " in " +
                    (hours.count() == 0 ? "less than an hour"
                                        : "about " + std::to_string(hours.count()) + " h") +
                    " unless the job goes on: keep the logs for longer");
  }
  memory_.told_of_loss = near;
}

void Pass::Report(Outcome outcome) {
  report_.outcome = outcome;
  report_.end = context_.clock.Now();
  const Follow follow = FollowOf(job_);
  context_.jobs.State(index_, &progress_);
  report_.reached_scn = ReachedBy(job_, follow, progress_.batch_remaining);
  if (report_.source_scn == 0) report_.source_scn = memory_.source_scn;
  if (outcome != Outcome::Failed) report_.problem = {};
  MeasureRoom();
  report_.definitions = definitions_.Found();
  context_.listener.OnPassEnd(index_, report_);
}

}  // namespace quillmere
