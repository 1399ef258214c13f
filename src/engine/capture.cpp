#include "engine/capture.h"

#include <algorithm>
#include <limits>

#include "engine/job_view.h"
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
      : context_(context), index_(index), job_(context.jobs.At(index)) {}

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
    if (scn >= job_.run.next_positions.cutoff_scn) return;
    const Judgement judgement = JudgeStatement(mined);
    if (judgement.safety != Safety::Safe) return TakeAside(scn, mined, judgement.safety);
    job_.run.pending_batch.Append(judgement.kept);
    if (context_.settings.debug) {
      context_.log.WriteGeneral(std::to_string(scn) + ", " + std::string(judgement.kept));
    }
  }

  void OnUnfinished(std::int64_t scn, std::string_view mined) override {
    if (scn < job_.run.next_positions.cutoff_scn) TakeAside(scn, mined, Safety::Unfinished);
  }

  void OnComment(std::int64_t scn, std::string_view text) override {
    if (scn >= job_.run.next_positions.cutoff_scn || ++comments_ > 1) return;
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

bool Fail(EngineContext& context, std::size_t index, const std::string& text) {
  context.jobs.At(index).run.pending_batch.Clear();
  context.listener.OnError(index, text);
  return false;
}

}  // namespace

bool GetStatements(EngineContext& context, std::size_t index, OracleSession& session) {
  SyncJob& job = context.jobs.At(index);
  job.run.pending_batch.Clear();
  BatchSink sink(context, index);
  if (!session.MineRedo(sink)) return false;
  sink.Tell();
  if (sink.LargestScn() != -1) {
    job.run.next_positions.mining_start_scn = job.run.next_positions.cutoff_scn;
    // Wraps around like the 64-bit addition it is instead of being undefined.
    job.run.next_positions.cutoff_scn =
        static_cast<std::int64_t>(static_cast<std::uint64_t>(sink.LargestScn()) + 1);
  }
  return true;
}

bool CaptureBatch(EngineContext& context, std::size_t index) {
  SyncJob& job = context.jobs.At(index);
  OracleSession session(context.oci);
  const JobView view(job);
  if (!session.Connect(view.source)) {
    return Fail(
        context, index,
        "Connect source fail : " + session.LastError() + " when get command of " + view.name + ".");
  }
  if (!session.SetLogs(job.run.positions.mining_start_scn)) {
    return Fail(context, index, "SetLogs fail : " + session.LastError());
  }
  job.run.next_positions = job.run.positions;
  if (!GetStatements(context, index, session)) {
    WriteSqlErrorFile(context, session.LastError());
    return Fail(context, index, "GetSqlStrings fail : " + session.LastError());
  }
  if (job.run.pending_batch.Empty()) return true;
  std::string error;
  // Without its file the batch would not survive a restart: mine it again rather.
  return WriteBatchFile(context.files, context.catalogue.FolderOf(view.name),
                        job.run.pending_batch, error) ||
         Fail(context, index, error);
}

}  // namespace quillmere
