#include "engine/capture.h"

#include <fstream>
#include <limits>

#include "engine/redo_assembler.h"
#include "engine/rewriter.h"
#include "jobs/run_state_files.h"

namespace quillmere {
namespace {

// Past this many, statements that could not be taken safely are only counted.
constexpr std::size_t kMostUnsafeLines = 20;

// Judges complete statements by the SCN of the row that completed them.
class BatchSink final : public RedoSink, private RedoAssembler::Taker {
 public:
  BatchSink(EngineContext& context, std::size_t index)
      : context_(context), index_(index), job_(context.jobs.At(index)) {}

  bool OnRedo(std::int64_t scn, std::string_view text, std::string& reason) override {
    scn_ = scn;
    largest_scn_ = std::max(largest_scn_, scn);
    if (!assembler_.Add(text, *this)) {
      reason = "a statement of the redo is longer than " +
               std::to_string(RedoAssembler::kMostBytes) + " bytes (SCN " + std::to_string(scn) +
               ")";
      return false;
    }
    if (job_.pending_batch.Size() < std::numeric_limits<std::int32_t>::max()) return true;
    reason = "the batch holds too many statements; stop the job and start it anew";
    return false;
  }

  bool OnEnd(std::string& reason) override {
    if (unsafe_ > kMostUnsafeLines) {
      context_.listener.OnError(index_, "... and " + std::to_string(unsafe_ - kMostUnsafeLines) +
                                            " more changes that do not end with a row address, see "
                                            "ravelkin.log");
    }
    if (!assembler_.Unfinished()) return true;
    reason = "the redo ends inside a statement (SCN " + std::to_string(scn_) + ")";
    return false;
  }

  std::int64_t LargestScn() const { return largest_scn_; }

 private:
  void OnStatement(std::string_view text) override {
    if (scn_ >= job_.next_cutoff_scn) return;
    job_.pending_batch.Append(text);
    if (context_.settings.debug) {
      context_.log.WriteGeneral(std::to_string(scn_) + ", " + std::string(text));
    }
  }

  void OnUnsafeStatement(std::string_view mined) override {
    if (scn_ >= job_.next_cutoff_scn) return;
    job_.pending_batch.Append({});
    context_.log.WriteGeneral(std::to_string(scn_) + ", not applied: " + std::string(mined));
    std::string unused;
    const Rewritten would_be = RewriteStatement(job_, mined, unused);
    if (!would_be.accepted || ++unsafe_ > kMostUnsafeLines) return;
    context_.listener.OnError(
        index_,
        "A change of " + std::string(would_be.parsed.owner) + "." +
            std::string(would_be.parsed.table) + " at SCN " + std::to_string(scn_) +
            " does not end with a row address and is not applied, for it could match other "
            "rows. Its text is in ravelkin.log; repeat the change on the destination by hand");
  }

  EngineContext& context_;
  const std::size_t index_;
  SyncJob& job_;
  RedoAssembler assembler_;
  std::int64_t scn_ = 0;
  std::int64_t largest_scn_ = -1;
  std::size_t unsafe_ = 0;
};

// sqlerror.log holds the latest mining error only.
void WriteSqlErrorFile(const EngineContext& context, std::string_view text) {
  std::ofstream file(context.working_folder / "sqlerror.log", std::ios::binary | std::ios::trunc);
  file << FormatTimeStamp(context.clock.Now()) << ' ' << text << '\n';
}

bool Fail(EngineContext& context, std::size_t index, const std::string& text) {
  context.jobs.At(index).pending_batch.Clear();
  context.listener.OnError(index, text);
  return false;
}

}  // namespace

bool GetStatements(EngineContext& context, std::size_t index, OracleSession& session) {
  SyncJob& job = context.jobs.At(index);
  job.pending_batch.Clear();
  BatchSink sink(context, index);
  if (!session.MineRedo(sink)) return false;
  if (sink.LargestScn() != -1) {
    job.next_mining_start_scn = job.next_cutoff_scn;
    // Wraps around like the 64-bit addition it is instead of being undefined.
    job.next_cutoff_scn =
        static_cast<std::int64_t>(static_cast<std::uint64_t>(sink.LargestScn()) + 1);
  }
  return true;
}

bool CaptureBatch(EngineContext& context, std::size_t index) {
  SyncJob& job = context.jobs.At(index);
  OracleSession session(context.oci);
  std::string database;
  std::string name;
  JobLogin login;
  {
    const std::lock_guard lock(job.config_mutex);
    name = job.name;
    database = job.src_database_name;
    login = job.source;
  }
  if (!session.Connect(database, login.user_id, login.password, login.sysdba)) {
    return Fail(
        context, index,
        "Connect source fail : " + session.LastError() + " when get command of " + name + ".");
  }
  if (!session.SetLogs(job.mining_start_scn)) {
    return Fail(context, index, "SetLogs fail : " + session.LastError());
  }
  job.next_mining_start_scn = job.mining_start_scn;
  job.next_cutoff_scn = job.cutoff_scn;
  if (!GetStatements(context, index, session)) {
    WriteSqlErrorFile(context, session.LastError());
    return Fail(context, index, "GetSqlStrings fail : " + session.LastError());
  }
  if (job.pending_batch.Empty()) return true;
  std::string error;
  const auto path = RunStatePaths(context.catalogue.JobFolder(name)).batch;
  // Without its file the batch would not survive a restart: mine it again rather.
  return WriteBatchFile(path, job.pending_batch, error) || Fail(context, index, error);
}

}  // namespace quillmere
