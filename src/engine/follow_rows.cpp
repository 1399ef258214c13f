// SPDX-License-Identifier: MIT
#include "engine/follow_rows.h"

#include <algorithm>
#include <limits>

#include "engine/redo_assembler.h"
#include "engine/rewriter.h"
#include "jobs/run_state_files.h"

namespace quillmere {
namespace {

// Puts rows together and takes in the statements of those below the cut-off.
class RowSink final : public RedoSink, private RedoAssembler::Taker {
 public:
  RowSink(const SyncJob& job, Intake& intake, CaptureWatcher* watcher)
      : job_(job), intake_(intake), watcher_(watcher), cutoff_scn_(job.run.positions.cutoff_scn) {}

  bool OnRedo(std::int64_t scn, std::string_view text, std::string& reason) override {
    largest_scn_ = std::max(largest_scn_, scn);
    if (!assembler_.Add(scn, text, *this)) {
      reason = "a statement of the redo is longer than " +
               std::to_string(RedoAssembler::kMostBytes) + " bytes (" + OpenStatement() + ")";
      return false;
    }
    const std::size_t size = job_.run.pending_batch.Size();
    const bool enough = watcher_ != nullptr && watcher_->Enough(size);
    if (size < std::numeric_limits<std::int32_t>::max() && !enough) return true;
    reason = "the batch holds too many statements; stop the job and start it anew";
    return false;
  }

  bool OnEnd(std::string& reason) override {
    if (assembler_.Finish(*this)) return true;
    reason = "the redo ends inside a statement (" + OpenStatement() + ")";
    return false;
  }

  std::int64_t LargestScn() const { return largest_scn_; }

 private:
  void OnStatement(std::int64_t scn, std::string_view mined) override {
    if (scn < cutoff_scn_) intake_.Take(scn, mined);
  }
  void OnUnfinished(std::int64_t scn, std::string_view mined) override {
    if (scn < cutoff_scn_) intake_.TakeUnfinished(scn, mined);
  }
  void OnComment(std::int64_t scn, std::string_view text) override {
    if (scn < cutoff_scn_) intake_.PassOver(scn, text);
  }

  // The one that went wrong, which need not be the one of the last row.
  std::string OpenStatement() const {
    const ParsedStatement parsed = ParseStatement(assembler_.Open());
    std::string text = "SCN " + std::to_string(assembler_.OpenScn());
    if (parsed.table.empty()) return text;
    return text + ", " + std::string(parsed.owner) + "." + std::string(parsed.table);
  }

  const SyncJob& job_;
  Intake& intake_;
  CaptureWatcher* const watcher_;
  const std::int64_t cutoff_scn_;
  RedoAssembler assembler_;
  std::int64_t largest_scn_ = -1;
};

// A name without quotes is another name to the destination, unless it is plain.
std::string WarningOfNames(const SyncJob& job) {
  constexpr std::size_t kMostNamed = 3;
  std::string names;
  std::size_t count = 0;
  const MutexLock lock(job.config_mutex);
  for (const auto& [owner, schema] : job.config.schemas) {
    for (const JobTable& table : schema.Tables()) {
      const bool owner_kept = table.desowner.empty() || table.desowner == owner;
      if (!table.includeflag || !(NeedsQuotes(table.name) || (owner_kept && NeedsQuotes(owner)))) {
        continue;
      }
      if (++count <= kMostNamed) names += (count == 1 ? "" : ", ") + owner + "." + table.name;
    }
  }
  if (count == 0) return {};
  return "tables whose names need quotes: " + std::to_string(count) + " (" + names +
         (count > kMostNamed ? ", ..." : "") +
         "). A job that follows rows writes names without quotes, so the destination refuses "
         "changes of these tables or takes another table for them: exclude them";
}

}  // namespace

FollowRows::FollowRows(EngineContext& context, std::size_t index, CaptureWatcher* watcher)
    : context_(context),
      index_(index),
      job_(context.jobs.At(index)),
      watcher_(watcher),
      intake_(context, index, watcher) {}

FollowResult FollowRows::Start(OracleSession& source, Positions& positions, std::string& error) {
  std::int64_t scn = 0;
  if (!source.ReadCurrentScn(scn)) {
    error = "GetLastScn fail : " + source.LastError();
    return FollowResult::Failed;
  }
  positions = {scn, scn};
  const std::string warning = WarningOfNames(job_);
  if (!warning.empty()) context_.listener.OnError(index_, NameOf(job_) + ": " + warning);
  return FollowResult::Done;
}

FollowResult FollowRows::Capture(OracleSession& source, std::string& error) {
  if (!source.SetLogs(job_.run.positions.mining_start_scn)) {
    error = "SetLogs fail : " + source.LastError();
    return FollowResult::Failed;
  }
  if (!Mine(source)) {
    error = std::string(kMiningFailed) + source.LastError();
    return FollowResult::Failed;
  }
  return FollowResult::Done;
}

bool FollowRows::Keep(std::string& error) {
  if (!job_.run.pending_batch.Empty()) {
    if (!intake_.Keep(error)) return false;
    // Without its file the batch would not survive a restart: mine it again rather.
    if (!WriteBatchFile(context_.files, context_.catalogue.FolderOf(NameOf(job_)),
                        job_.run.pending_batch, error)) {
      return false;
    }
  }
  intake_.Tell();
  return true;
}

bool FollowRows::Mine(OracleSession& source) {
  JobRun& run = job_.run;
  run.next_positions = run.positions;
  RowSink sink(job_, intake_, watcher_);
  if (!source.MineRedo(sink)) return false;
  if (sink.LargestScn() == -1) return true;
  // Wraps around like the 64-bit addition it is instead of being undefined.
  const auto behind_largest =
      static_cast<std::int64_t>(static_cast<std::uint64_t>(sink.LargestScn()) + 1);
  run.next_positions = {run.positions.cutoff_scn, behind_largest};
  return true;
}

void FollowRows::Finish() {
  JobRun& run = job_.run;
  // A batch that was read back has brought no positions. It holds exactly the rows below the
  // cut-off; mining from there next finds everything above it once.
  const Positions behind_cutoff{run.positions.cutoff_scn, run.positions.cutoff_scn};
  run.positions = run.next_positions.value_or(behind_cutoff);
}

}  // namespace quillmere
