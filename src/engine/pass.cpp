// SPDX-License-Identifier: MIT
#include "engine/pass.h"

#include <algorithm>
#include <exception>

#include "engine/follow_memory.h"
#include "engine/sql_error_file.h"
#include "oracle/follow_queries.h"

namespace quillmere {

Pass::Pass(EngineContext& context, std::size_t index, FollowMemory& memory,
           const std::atomic<bool>& end_requested)
    : context_(context),
      index_(index),
      memory_(memory),
      end_requested_(end_requested),
      job_(context.jobs.At(index)),
      view_(job_),
      folder_(context.catalogue.FolderOf(view_.name)),
      way_(WayOf(context, index, memory)),
      guard_(context, index, memory),
      definitions_(context, index, view_, memory.definitions),
      record_(context.files, folder_) {
  memory.source.reset();
}

void Pass::Run() {
  report_.begin = context_.clock.Now();
  const SteadyTime begin = context_.clock.Steady();
  const std::int32_t applied = job_.run.applied_count;
  const std::int32_t blocked = job_.run.blocked_count;
  memory_.source_scn = 0;
  memory_.redo_reach.reset();
  const Outcome outcome = Work();
  report_.applied = std::int64_t{job_.run.applied_count} - applied;
  report_.blocked = std::int64_t{job_.run.blocked_count} - blocked;
  report_.took = context_.clock.Steady() - begin;
  Report(outcome);
}

Pass::Outcome Pass::Work() {
  if (context_.settings.debug) {
    Information(std::to_string(job_.run.positions.mining_start_scn) + ", " +
                std::to_string(job_.run.positions.cutoff_scn));
  }
  if (job_.run.pending_batch.Empty()) {
    // A batch that was worked off, and the program ended before the record said so.
    if (job_.run.batch_pending != 0) {
      if (!KeepRowFinished()) return Fail();
      job_.run.batch_pending = 0;
      way_->Finish();
    }
    // One that is still there has nothing left to go back to, and would be taken for the next one.
    const std::filesystem::path point = folder_.File(JobFile::CommitPoint);
    FileFacts facts;
    if (!context_.files.Look(point, facts).Missing() && !ForgetThePoint(point)) return Fail();
    job_.run.unsettled.reset();
    const FollowResult captured = Capture();
    if (captured == FollowResult::Later) return Outcome::Later;
    if (captured != FollowResult::Done) return stopped_ ? Outcome::Interrupted : Fail();
    report_.captured = job_.run.pending_batch.Size();
    // By rows the redo itself says how far the source has come.
    report_.source_scn = memory_.source_scn != 0
                             ? memory_.source_scn
                             : job_.run.next_positions.value_or(job_.run.positions).cutoff_scn;
    if (job_.run.pending_batch.Empty()) {
      definitions_.FinishWithoutBatch([this] { return IsRequested(); });
      baseline_ = job_.run.applied_count;
      return Finish();
    }
  }
  if (IsRequested()) return Outcome::Interrupted;
  const Outcome applied = ApplyBatch();
  if (applied == Outcome::WorkedOff) return KeepRowFinished() ? Finish() : Fail();
  return applied == Outcome::Interrupted ? applied : Fail();
}

FollowResult Pass::CaptureFromSource(std::string& error) try {
  OracleSession source(context_.oci);
  source.StopWhen([this] { return IsRequested(); });
  FollowResult result = FollowResult::Failed;
  if (source.Connect(view_.source)) {
    result = way_->Capture(source, error);
    if (result == FollowResult::Done && !way_->Keep(error)) result = FollowResult::Failed;
    if (result == FollowResult::Done) definitions_.LookAtSource(source);
    if (result == FollowResult::Failed && !source.Stopped() && error.starts_with(kMiningFailed)) {
      WriteSqlErrorFile(context_, std::string_view(error).substr(kMiningFailed.size()));
    }
  } else {
    error =
        "Connect source fail : " + source.LastError() + " when get command of " + view_.name + ".";
  }
  stopped_ = source.Stopped();
  return result;
} catch (const std::exception& failure) {  // the batch did not fit into memory
  error = std::string("GetSqlStrings fail : ") + failure.what();
  return FollowResult::Failed;
}

bool Pass::IsRequested() const {
  return end_requested_ || context_.jobs.State(index_) != JobState::Started;
}

FollowResult Pass::Capture() {
  report_.problem.where = PassProblem::Where::Source;
  std::string error;
  const FollowResult result = CaptureFromSource(error);
  if (result != FollowResult::Done) {
    job_.run.pending_batch.Clear();
    if (result == FollowResult::Held) Hold(error);
    if (result != FollowResult::Later && !stopped_) Error(error);
    return result;
  }
  report_.problem.where = PassProblem::Where::Disk;
  if (!RecordCapture()) return FollowResult::Failed;
  if (job_.run.batch_pending != 0) context_.listener.OnJobChanged(index_, true);
  return FollowResult::Done;
}

// The batch is in its file. Positions that move with it are down to the disk before anything of it
// is begun; else nothing was captured.
bool Pass::RecordCapture() {
  const Positions before = job_.run.positions;
  way_->AfterCapture();
  const auto record = [&] {
    const PendingBatch& batch = job_.run.pending_batch;
    job_.run.batch_pending = batch.Empty() ? 0 : 1;
    progress_ = {0, static_cast<std::uint32_t>(batch.Size())};
    context_.jobs.SetProgress(index_, progress_);
    WriteRecord();
  };
  record();
  if (job_.run.positions == before) return true;
  std::string error;
  if (!record_failed_ && record_.Flush(error)) return true;
  if (!record_failed_) Error(error);
  job_.run.positions = before;
  job_.run.pending_batch.Clear();
  record();
  return false;
}

Pass::Outcome Pass::ApplyBatch() {
  report_.problem.where = PassProblem::Where::Destination;
  context_.jobs.State(index_, &progress_);
  baseline_ = job_.run.applied_count;
  if (!LoadSkips()) return Outcome::Failed;
  OracleSession destination(context_.oci);
  destination.StopWhen([this] { return IsRequested(); });
  if (!destination.Connect(view_.destination)) {
    if (destination.Stopped()) return Outcome::Interrupted;
    Error("Before job: " + view_.name +
          " synchronize, Connect destination fail : " + destination.LastError());
    return Outcome::Failed;
  }
  definitions_.LookAtDestination(destination);
  destination.StopWhen({});
  if (guard_.InUse() && !SettlePosition(destination)) return Outcome::Failed;
  if (IsRequested()) return Outcome::Interrupted;
  if (!OpenCommitPoint()) return Outcome::Failed;
  Information(progress_.batch_remaining < job_.run.pending_batch.Size()
                  ? "Continue synchronize a old batch"
                  : "Begin synchronize a new batch");
  try {
    return ApplyAndEnd(destination);
  } catch (const std::exception&) {
    destination.Abandon();  // the end of its session would commit what no record says
    throw;
  }
}

Pass::Outcome Pass::ApplyAndEnd(OracleSession& destination) {
  Outcome outcome = Outcome::Failed;
  try {
    outcome = ApplyStatements(destination);
  } catch (const std::exception& failure) {
    // Whatever was executed is counted: counting is the part that cannot throw.
    WriteRecord();
    Error(std::string("Execute sql fail : ") + failure.what());
  }
  TakeBackPart(destination);
  if (!tallies_.empty()) RaiseTablesRevision();
  return CommitDestination(destination) ? outcome : Outcome::Failed;
}

Pass::Outcome Pass::ApplyStatements(OracleSession& destination) {
  const std::size_t size = job_.run.pending_batch.Size();
  const std::size_t begin = size - progress_.batch_remaining;
  TransactionCursor transactions(job_.run.pending_batch, begin);
  for (std::size_t i = begin; i < size; ++i) {
    if (transactions.NeedsSavepoint(i) && !destination.Execute(follow::kSavepoint)) {
      Error("Execute sql fail : " + destination.LastError());
      return Outcome::Failed;
    }
    if (!ApplyOne(destination, i)) return Outcome::Failed;
    // A request that came with the last statement leaves nothing to interrupt.
    if (!Publish() && i + 1 < size) return Outcome::Interrupted;
  }
  return Outcome::WorkedOff;
}

void Pass::TakeBackPart(OracleSession& destination) {
  const std::size_t next = job_.run.pending_batch.Size() - progress_.batch_remaining;
  const std::size_t first = BeginOfTransaction(job_.run.pending_batch, next);
  if (first == next) return;
  if (!destination.Execute(follow::kBackToSavepoint)) {
    Error(view_.name + ": going back to the savepoint on " + view_.destination.name +
          " failed : " + destination.LastError());
    destination.Abandon();
    abandoned_ = true;
    return;
  }
  Uncount(first, next);
  context_.jobs.SetProgress(index_, progress_);
  WriteRecord();
  context_.listener.OnJobChanged(index_, false);
}

bool Pass::ApplyOne(OracleSession& destination, std::size_t index) {
  const PendingBatch::Entry entry = job_.run.pending_batch[index];
  if (entry.kind == PendingBatch::Kind::SetAside) {
    CountBlocked(nullptr);
    return true;
  }
  const ParsedStatement parsed = ParseStatement(entry.text);
  const Verdict verdict = Decide(job_, parsed);
  Tally* const tally = TallyOf(verdict.table);
  if (verdict.decision != Decision::Accepted || IsSkipped(index)) {
    if (verdict.decision == Decision::Excluded && context_.settings.debug) {
      Information("Block Opreaton: " + OperationName(parsed) + " " + std::string(parsed.owner) +
                  "." + std::string(parsed.table));
    }
    CountBlocked(tally);
    return true;
  }
  Rewrite(parsed, verdict.owner, way_->Quotes(), to_execute_);
  if (context_.settings.debug) {
    Information("Source Schema is " + std::string(parsed.owner));
    context_.log.WriteGeneral(to_execute_);
  }
  if (!destination.Execute(to_execute_)) {
    NoteRefused(parsed);
    Error("Execute sql fail : " + destination.LastError());
    if (context_.settings.debug) Error(to_execute_);
    return false;
  }
  CountApplied(tally);
  return true;
}

// Behind the counting, so that a save that read the old counters is followed by another.
void Pass::RaiseTablesRevision() {
  const MutexLock lock(job_.config_mutex);
  ++job_.config.tables_revision;
}

Pass::Tally* Pass::TallyOf(JobTable* table) {
  if (table == nullptr) return nullptr;
  Tally& tally = tallies_[table];
  tally.table = table;
  return &tally;
}

void Pass::CountApplied(Tally* tally) noexcept {
  --progress_.batch_remaining;
  ++progress_.batch_applied;
  job_.run.applied_count.Increment();
  if (tally == nullptr) return;
  ++tally->applied;
  tally->table->totalsynced.Increment();
}

void Pass::CountBlocked(Tally* tally) noexcept {
  --progress_.batch_remaining;
  job_.run.blocked_count.Increment();
  if (tally == nullptr) return;
  ++tally->blocked;
  tally->table->RecordsBlocked.Increment();
}

bool Pass::Publish() {
  const bool running =
      context_.jobs.ReplaceState(index_, JobState::Started, JobState::Started, progress_);
  WriteRecord();
  context_.listener.OnJobChanged(index_, false);
  return running && !end_requested_;
}

bool Pass::KeepRowFinished() {
  std::string error;
  if (!guard_.InUse() || guard_.KeepFinished(error)) return true;
  Error(error);
  return false;
}

Pass::Outcome Pass::Finish() {
  const LocalTime now = context_.clock.Now();
  // One that was asked for came before its time, and does not put off the next.
  const LocalTime from = job_.run.next_due == LocalTime{} ? now : std::min(job_.run.next_due, now);
  job_.run.next_due = AddMinutes(from, view_.interval_minutes);
  job_.run.pending_batch.Clear();
  job_.run.batch_pending = 0;
  way_->Finish();
  WriteRecord();
  // One that stays is of a batch that is no more.
  if (!skips_.empty())
    static_cast<void>(RemoveForGood(context_.files, folder_.File(JobFile::Skip)));
  context_.listener.OnJobChanged(index_, false);
  std::string error;
  if (!context_.catalogue.SaveAll(error)) Error(error);
  if (job_.run.applied_count > baseline_) {
    Information("Successfully synchronized a batch of " + view_.name);
  } else {
    Information("Nothing synchronized in this interval of  " + view_.name);
  }
  return Outcome::WorkedOff;
}

Pass::Outcome Pass::Fail() {
  job_.run.next_due = AddMinutes(context_.clock.Now(), view_.interval_minutes);
  Error("Something wrong in this interval of " + view_.name);
  return Outcome::Failed;
}

// A pass runs in state Started only; a request that waits is served, and recorded, by the next
// step.
RunRecord Pass::Record() const {
  return MakeRunRecord(job_, JobState::Started, progress_);
}

void Pass::WriteRecord() {
  std::string error;
  if (record_.Write(Record(), error)) {
    record_failed_ = false;
  } else if (!record_failed_) {
    record_failed_ = true;
    Error(error);
  }
}

}  // namespace quillmere
