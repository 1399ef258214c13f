// SPDX-License-Identifier: MIT
#include "engine/follow_rows.h"

#include <algorithm>
#include <limits>

#include "engine/redo_assembler.h"
#include "engine/rewriter.h"
#include "engine/set_aside.h"
#include "engine/statement_safety.h"
#include "jobs/run_state_files.h"

namespace quillmere {
namespace {

// Judges complete statements, and takes those of rows below the cut-off.
class BatchSink final : public RedoSink, private RedoAssembler::Taker {
 public:
  BatchSink(EngineContext& context, std::size_t index)
      : context_(context),
        index_(index),
        job_(context.jobs.At(index)),
        cutoff_scn_(job_.run.positions.cutoff_scn) {}

  bool OnRedo(std::int64_t scn, std::string_view text, std::string& reason) override {
    largest_scn_ = std::max(largest_scn_, scn);
    if (!assembler_.Add(scn, text, *this)) {
      reason = "a statement of the redo is longer than " +
               std::to_string(RedoAssembler::kMostBytes) + " bytes (" + OpenStatement() + ")";
      return false;
    }
    if (job_.run.pending_batch.Size() < std::numeric_limits<std::int32_t>::max()) return true;
    reason = "the batch holds too many statements; stop the job and start it anew";
    return false;
  }

  bool OnEnd(std::string& reason) override {
    if (assembler_.Finish(*this)) return true;
    reason = "the redo ends inside a statement (" + OpenStatement() + ")";
    return false;
  }

  // What the operator is to know of a capture that succeeded.
  void Tell() const {
    for (const std::string& line : set_aside_.Messages()) context_.listener.OnError(index_, line);
    if (comments_ == 0) return;
    context_.listener.OnInformation(index_, "Rows of the redo that are no statement left out: " +
                                                std::to_string(comments_) + ". " + first_comment_);
  }

  std::int64_t LargestScn() const { return largest_scn_; }

 private:
  void OnStatement(std::int64_t scn, std::string_view mined) override {
    if (scn >= cutoff_scn_) return;
    const Judgement judgement = JudgeStatement(mined);
    if (judgement.safety != Safety::Safe) return TakeAside(scn, mined, judgement.safety);
    job_.run.pending_batch.Append(judgement.kept);
    if (context_.settings.debug) {
      context_.log.WriteGeneral(std::to_string(scn) + ", " + std::string(judgement.kept));
    }
  }

  void OnUnfinished(std::int64_t scn, std::string_view mined) override {
    if (scn < cutoff_scn_) TakeAside(scn, mined, Safety::Unfinished);
  }

  void OnComment(std::int64_t scn, std::string_view text) override {
    if (scn >= cutoff_scn_ || ++comments_ > 1) return;
    first_comment_ =
        "The first, at SCN " + std::to_string(scn) + ": " + std::string(text.substr(0, 80));
  }

  // In its place the batch gets what is blocked without being looked at.
  void TakeAside(std::int64_t scn, std::string_view mined, Safety why) {
    job_.run.pending_batch.AppendSetAside();
    const ParsedStatement parsed = ParseStatement(mined);
    const bool table_is_known = why != Safety::NoTable && why != Safety::UnknownObject &&
                                !parsed.owner.empty() && !parsed.table.empty();
    if (table_is_known && Decide(job_, parsed).decision != Decision::Accepted) return;
    context_.log.WriteGeneral(std::to_string(scn) + ", not applied: " + std::string(mined));
    set_aside_.Add(scn, parsed.owner, parsed.table, why, mined);
  }

  // The one that went wrong, which need not be the one of the last row.
  std::string OpenStatement() const {
    const ParsedStatement parsed = ParseStatement(assembler_.Open());
    std::string text = "SCN " + std::to_string(assembler_.OpenScn());
    if (parsed.table.empty()) return text;
    return text + ", " + std::string(parsed.owner) + "." + std::string(parsed.table);
  }

  EngineContext& context_;
  const std::size_t index_;
  SyncJob& job_;
  const std::int64_t cutoff_scn_;
  RedoAssembler assembler_;
  SetAside set_aside_;
  std::int64_t largest_scn_ = -1;
  std::size_t comments_ = 0;
  std::string first_comment_;
};

// sqlerror.log holds the latest mining error only.
void WriteSqlErrorFile(const EngineContext& context, std::string_view text) {
  const std::string line = FormatTimeStamp(context.clock.Now()) + " " + std::string(text) + "\n";
  std::string error;
  if (!ReplaceFile(context.files, context.working_folder / "sqlerror.log", line,
                   FileAccess::Everyone, error)) {
    context.log.WriteGeneral(error);
  }
}

}  // namespace

FollowRows::FollowRows(EngineContext& context, std::size_t index)
    : context_(context), index_(index), job_(context.jobs.At(index)) {}

bool FollowRows::Start(OracleSession& source, Positions& positions, std::string& error) {
  std::int64_t scn = 0;
  if (!source.ReadCurrentScn(scn)) {
    error = "GetLastScn fail : " + source.LastError();
    return false;
  }
  positions = {scn, scn};
  return true;
}

bool FollowRows::Capture(OracleSession& source, std::string& error) {
  if (!source.SetLogs(job_.run.positions.mining_start_scn)) {
    error = "SetLogs fail : " + source.LastError();
    return false;
  }
  if (!Mine(source)) {
    WriteSqlErrorFile(context_, source.LastError());
    error = "GetSqlStrings fail : " + source.LastError();
    return false;
  }
  if (job_.run.pending_batch.Empty()) return true;
  // Without its file the batch would not survive a restart: mine it again rather.
  return WriteBatchFile(context_.files, context_.catalogue.FolderOf(NameOf(job_)),
                        job_.run.pending_batch, error);
}

bool FollowRows::Mine(OracleSession& source) {
  JobRun& run = job_.run;
  run.next_positions = run.positions;
  BatchSink sink(context_, index_);
  if (!source.MineRedo(sink)) return false;
  sink.Tell();
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

std::unique_ptr<FollowWay> WayOf(EngineContext& context, std::size_t index) {
  return std::make_unique<FollowRows>(context, index);
}

}  // namespace quillmere
