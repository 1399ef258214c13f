// SPDX-License-Identifier: MIT
#include "engine/follow_commits.h"

#include <utility>

#include "engine/redo_logs.h"
#include "engine/source_container.h"
#include "engine/transaction_assembler.h"
#include "jobs/batch_lines.h"
#include "jobs/run_state_files.h"
#include "jobs/source_file.h"
#include "oracle/source_facts.h"

namespace quillmere {
namespace {

constexpr std::chrono::seconds kTellOfWaitingAfter{60};
// A transaction says within moments where it began.
constexpr std::chrono::seconds kLongestStart{10};
constexpr oci::sb4 kNoSuchTable = 942;
constexpr oci::sb4 kNoPrivilege = 1031;
constexpr oci::sb4 kNotInsideAContainer = 65040;

// Puts what the assembler makes into the batch.
class BatchTaker final : public TransactionAssembler::Taker {
 public:
  BatchTaker(PendingBatch& batch, Intake& intake) : batch_(batch), intake_(intake) {}

  std::string_view Store(std::string_view text) override { return batch_.Store(text); }

  void OnTransaction(const TransactionAssembler::Transaction& mined) override {
    PendingBatch::Transaction transaction;
    static_cast<void>(ReadXid(mined.xid, transaction));
    transaction.commit_scn = commit_scn_ = mined.commit_scn;
    transaction.commit_second = ReadCommitTime(mined.commit_time);
    batch_.BeginTransaction(transaction);
  }
  void OnStatement(std::string_view stored) override { intake_.TakeStored(commit_scn_, stored); }
  void OnSetAside(std::int64_t scn, std::string_view, std::string_view, Safety why,
                  std::string_view stored) override {
    intake_.TakeAside(scn, stored, why);
  }
  void OnUntold(std::int64_t scn, std::string_view owner, std::string_view table,
                std::string_view operation, TransactionAssembler::Untold why) override {
    std::string what = std::string(operation) + " at SCN " + std::to_string(scn);
    if (why == TransactionAssembler::Untold::UndoWithoutChange) {
      what += ", which takes back a change that its transaction does not have";
    }
    intake_.TakeUntold(owner, table, what);
  }
  void OnComment(std::int64_t scn, std::string_view text) override { intake_.PassOver(scn, text); }

 private:
  PendingBatch& batch_;
  Intake& intake_;
  std::int64_t commit_scn_ = 0;
};

}  // namespace

struct FollowCommits::Look {
  std::vector<RedoThread> threads;
  ReadingAnswers answers;
  bool taken = false;
};

FollowCommits::FollowCommits(EngineContext& context, std::size_t index, FollowMemory& memory,
                             CaptureWatcher* watcher)
    : context_(context),
      index_(index),
      memory_(memory),
      job_(context.jobs.At(index)),
      name_(NameOf(job_)),
      intake_(context, index, watcher) {}

std::string FollowCommits::SourceName() const {
  const MutexLock lock(job_.config_mutex);
  return job_.config.source.name;
}

bool FollowCommits::TakeReading(CommitMiner& miner, std::optional<std::int64_t> known_mine_from,
                                Look& look, std::string& error) {
  bool read = miner.ReadThreads(look.threads);
  if (read) {
    memory_.readings.NoteThreads(look.threads, context_.clock.Steady());
    read = miner.ReadScn(look.answers.scn_before);
  }
  if (read && !miner.ReadOldestOpen(look.answers.oldest_open)) {
    error = "GetLastScn fail : " + miner.LastError();
    if (miner.LastErrorCode() == kNoSuchTable || miner.LastErrorCode() == kNoPrivilege) {
      error +=
          ". A job that follows commits must see the open transactions: grant select on "
          "gv_$transaction to the user of " +
          SourceName();
    }
    return false;
  }
  if (!read || !miner.ReadScn(look.answers.scn_after)) {
    error = "GetLastScn fail : " + miner.LastError();
    return false;
  }
  memory_.source_scn = Behind(look.answers.scn_after);
  look.taken = memory_.readings.Take(look.answers, context_.clock.Steady(), known_mine_from);
  return true;
}

FollowResult FollowCommits::Start(OracleSession& source, Positions& positions, std::string& error) {
  if (!memory_.job_id.empty() || !memory_.waiting_since) {
    memory_ = {};
    memory_.waiting_since = context_.clock.Steady();
  }
  CommitMiner miner(source);
  SourceIdentity identity;
  Look look;
  bool read = CheckContainer(source, job_, error);
  if (read && !miner.ReadIdentity(identity)) {
    error = "GetLastScn fail : " + source.LastError();
    read = false;
  }
  if (!read || !TakeReading(miner, std::nullopt, look, error)) {
    memory_ = {};
    return FollowResult::Failed;
  }
  if (look.taken) memory_.waiting_since = context_.clock.Steady();
  const std::optional<Reading> reading = look.taken ? memory_.readings.Newest() : std::nullopt;
  if (!reading) {
    if (context_.clock.Steady() - *memory_.waiting_since < kLongestStart) {
      return FollowResult::Later;
    }
    memory_ = {};
    error = "GetLastScn fail : a transaction on " + SourceName() +
            " does not say where it began. Start " + name_ + " again";
    return FollowResult::Failed;
  }
  memory_ = {};
  const SourceFile started_on{NewJobId(), identity.dbid, identity.resetlogs_change, reading->upto};
  if (!WriteSourceFile(context_.files, context_.catalogue.FolderOf(name_), started_on, error)) {
    return FollowResult::Failed;
  }
  positions = {reading->mine_from, reading->upto};
  memory_.job_id = started_on.job_id;
  memory_.container_checked = true;
  return FollowResult::Done;
}

// Whether it is still the database that the positions are of.
FollowResult FollowCommits::CheckSource(CommitMiner& miner, std::string& error) {
  const FileStatus file =
      ReadSourceOnce(context_.files, context_.catalogue.FolderOf(name_), memory_);
  if (!file) {
    error = file.reason + ". Without it nobody knows which database " + name_ +
            " was started on: bring the file back, or stop the job and start it anew";
    return FollowResult::Held;
  }
  const SourceFile started_on = *memory_.source;
  if (memory_.job_id != started_on.job_id) {
    memory_ = {};
    memory_.source = started_on;
    memory_.job_id = started_on.job_id;
  }
  SourceIdentity identity;
  if (!miner.ReadIdentity(identity)) {
    error = "GetLastScn fail : " + miner.LastError();
    return FollowResult::Failed;
  }
  if (identity == SourceIdentity{started_on.dbid, started_on.resetlogs_change}) {
    return FollowResult::Done;
  }
  error = SourceName() + " is another database than the one that " + name_ +
          " was started on, or was opened with RESETLOGS since. Compare the tables, then stop the "
          "job and start it anew";
  return FollowResult::Held;
}

FollowResult FollowCommits::Capture(OracleSession& source, std::string& error) {
  CommitMiner miner(source);
  const FollowResult checked = CheckSource(miner, error);
  if (checked != FollowResult::Done) return checked;
  if (!memory_.container_checked && !CheckContainer(source, job_, error)) {
    return FollowResult::Failed;
  }
  memory_.container_checked = true;
  const Positions& positions = job_.run.positions;
  job_.run.next_positions = positions;
  Look look;
  if (!TakeReading(miner, positions.mining_start_scn, look, error)) return FollowResult::Failed;
  const std::int64_t upto = Behind(look.answers.scn_after);
  if (upto < positions.cutoff_scn) {
    error = SourceName() + " stands at SCN " + std::to_string(look.answers.scn_after) +
            ", before " + std::to_string(positions.cutoff_scn) + ", which " + name_ +
            " has reached: it was taken back to an earlier time. Compare the tables, then stop the "
            "job and start it anew";
    return FollowResult::Held;
  }
  WarnOfOldest(miner, look.answers.oldest_open);
  const std::optional<Reading> reading = memory_.readings.NewestUsable(
      positions.cutoff_scn, context_.clock.Steady(),
      std::chrono::seconds{context_.settings.commit_age_seconds.load()});
  if (!reading && upto > positions.cutoff_scn) return Wait();
  memory_.waiting_since.reset();
  ReadReach(source);
  if (!reading) return FollowResult::Done;  // nothing has happened there
  return Mine(miner, look.threads, *reading, error) ? FollowResult::Done : FollowResult::Failed;
}

// One query a pass: of the archived logs, as long as there are any. What can not be told is no
// reason to stop.
void FollowCommits::ReadReach(OracleSession& source) {
  SourceFacts facts(source);
  RedoReach reach;
  const bool archived = !memory_.nothing_archived;
  memory_.redo_reach.emplace();
  if (!(archived ? facts.ReadArchivedReach(reach) : facts.ReadOnlineReach(reach))) {
    if (source.Stopped() || memory_.reach_refused == source.LastError()) return;
    memory_.reach_refused = source.LastError();
    return context_.listener.OnError(index_, "How long the redo on " + SourceName() +
                                                 " stays for " + name_ +
                                                 " is not known: " + memory_.reach_refused);
  }
  memory_.reach_refused.clear();
  memory_.nothing_archived = !archived || reach.logs == 0;
  // A database that has not gone on to a second log yet has all its redo.
  if (reach.logs <= (archived ? 0 : 1)) return;
  memory_.redo_reach = {reach.from_scn, std::chrono::minutes{reach.minutes}};
}

FollowResult FollowCommits::Wait() {
  const SteadyTime now = context_.clock.Steady();
  if (!memory_.waiting_since) {
    memory_.waiting_since = now;
    memory_.told_of_waiting = false;
  }
  if (now - *memory_.waiting_since >= kTellOfWaitingAfter &&
      !std::exchange(memory_.told_of_waiting, true)) {
    context_.listener.OnInformation(
        index_, name_ + " waits for " + SourceName() +
                    " to write its redo: what was committed last is not on its disk yet");
  }
  return FollowResult::Later;
}

// The redo from its beginning on must stay readable for as long as it is open.
void FollowCommits::WarnOfOldest(CommitMiner& miner, std::int64_t oldest_open) {
  const bool holds_the_start = oldest_open == job_.run.positions.mining_start_scn;
  if (!holds_the_start || memory_.told_of_oldest == oldest_open) return;
  std::string holder;
  std::int64_t hours = 0;
  // What can not be told is no reason to stop: the grant may be missing.
  if (!miner.DescribeOldest(oldest_open, holder, hours) || holder.empty()) return;
  if (hours < context_.settings.oldest_transaction_hours) return;
  memory_.told_of_oldest = oldest_open;
  context_.listener.OnError(
      index_, "A transaction on " + SourceName() + " has been open for " + std::to_string(hours) +
                  " hours, by " + holder + ". " + name_ + " needs all redo since SCN " +
                  std::to_string(oldest_open) + " until it ends: keep the archived logs");
}

bool FollowCommits::SetLogs(CommitMiner& miner, const std::vector<RedoThread>& threads,
                            std::vector<RedoLog>& chosen, std::vector<RedoLog>& online,
                            std::string& error) {
  const std::int64_t from = job_.run.positions.mining_start_scn;
  std::vector<RedoLog> archived;
  if (!miner.ListOnlineLogs(online) ||
      (NeedsArchivedLogs(threads, online, from) && !miner.ListArchivedLogs(from, archived))) {
    error = "SetLogs fail : " + miner.LastError();
    return false;
  }
  std::string reason;
  if (!ChooseLogs(threads, online, archived, from, chosen, reason)) {
    error = "SetLogs fail : " + name_ + ": " + reason;
    return false;
  }
  if (miner.StartMining(chosen, from)) return true;
  error = "SetLogs fail : " + miner.LastError();
  if (miner.LastErrorCode() == kNotInsideAContainer) {
    error +=
        ". Before 19c a container database can be mined from its root only: let the data source "
        "lead there, and choose the container with 'job edit " +
        name_ + " --container'";
  }
  return false;
}

bool FollowCommits::Mine(CommitMiner& miner, const std::vector<RedoThread>& threads,
                         const Reading& reading, std::string& error) {
  std::vector<RedoLog> chosen;
  std::vector<RedoLog> online;
  std::vector<RedoLog> now;
  if (!SetLogs(miner, threads, chosen, online, error)) return false;
  std::int64_t stopped_at = MinedRow::kNoScn;
  bool good = Read(miner, reading.upto, stopped_at, error);
  if (good && !miner.ListLogsNow(now)) {
    error = miner.LastError();
    good = false;
  }
  const RedoLog* const used_again = good ? FirstUsedAgain(chosen, online, now) : nullptr;
  if (used_again != nullptr) {
    error = name_ + ": " + used_again->file +
            " was used again while it was read. The next pass reads it from its archived copy";
    good = false;
  }
  if (good && !miner.EndMining()) {
    error = miner.LastError();
    good = false;
  }
  if (!good) {
    error = std::string(kMiningFailed) + error;
    return false;
  }
  const Positions& before = job_.run.positions;
  job_.run.next_positions = stopped_at == MinedRow::kNoScn
                                ? Positions{reading.mine_from, reading.upto}
                                : Positions{before.mining_start_scn, stopped_at};
  job_.run.pending_batch.SetRange({before.cutoff_scn, job_.run.next_positions->cutoff_scn});
  return true;
}

bool FollowCommits::Read(CommitMiner& miner, std::int64_t upto, std::int64_t& stopped_at,
                         std::string& error) {
  BatchTaker taker(job_.run.pending_batch, intake_);
  TransactionAssembler assembler(
      taker, static_cast<std::size_t>(context_.settings.most_statements.load()));
  if (!miner.Mine(job_.run.positions.cutoff_scn, upto, ContainerOf(job_), assembler)) {
    error = miner.LastError();
    return false;
  }
  stopped_at = assembler.StoppedAt();
  return stopped_at != MinedRow::kNoScn || assembler.Finish(error);
}

bool FollowCommits::Keep(std::string& error) {
  const JobFolder folder = context_.catalogue.FolderOf(name_);
  if (!job_.run.pending_batch.Empty()) {
    if (!intake_.Keep(error)) return false;
    // The record that goes with the file that is there now must not outlive it.
    RunRecordWriter record(context_.files, folder);
    JobList::Progress progress;
    context_.jobs.State(index_, &progress);
    if (!record.Write(MakeRunRecord(job_, JobState::Started, progress), error) ||
        !record.Flush(error) ||
        !WriteBatchFile(context_.files, folder, job_.run.pending_batch, error)) {
      return false;
    }
  }
  intake_.Tell();
  return true;
}

void FollowCommits::AfterCapture() {
  job_.run.positions = job_.run.next_positions.value_or(job_.run.positions);
}

}  // namespace quillmere
