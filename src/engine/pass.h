// SPDX-License-Identifier: MIT
// One synchronization pass of a started job: capture unless a batch is pending, then the batch's
// statements one by one on the destination. Internal to engine/.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <unordered_map>

#include "engine/definition_check.h"
#include "engine/engine_context.h"
#include "engine/follow.h"
#include "engine/job_view.h"
#include "engine/position_guard.h"
#include "engine/rewriter.h"
#include "engine/whole_transactions.h"
#include "jobs/run_state_files.h"
#include "jobs/skip_file.h"

namespace quillmere {

// Made for one pass, on the thread that runs the job. All statements of a pass run in the
// destination session's one transaction, which ends with the session: until then what the run
// record says of them is provisional, and the commit point on disk says where to go back to.
class Pass {
 public:
  // memory is of this job.
  Pass(EngineContext& context, std::size_t index, FollowMemory& memory,
       const std::atomic<bool>& end_requested);
  void Run();

 private:
  using Outcome = PassReport::Outcome;
  struct Tally {
    JobTable* table = nullptr;
    std::int32_t applied = 0;
    std::int32_t blocked = 0;
  };

  Outcome Work();
  void Report(Outcome outcome);
  void MeasureRoom();
  // Somebody wants the job or the program to stop here.
  bool IsRequested() const;
  FollowResult Capture();
  FollowResult CaptureFromSource(std::string& error);
  bool RecordCapture();
  Outcome ApplyBatch();
  Outcome ApplyAndEnd(OracleSession& destination);
  // The position row says what the record says, after what was not settled is. False: it does not,
  // or can not be asked.
  bool SettlePosition(OracleSession& destination);
  void TakeCountsOf(const RunRecord& record);
  void ReturnTo(const JobRun::Unsettled& unsettled);
  std::vector<JobRun::Unsettled::Counted> CountedOfTables() const;
  void TakeAsApplied(const RunRecord& commit_point, std::uint32_t remaining);
  Outcome ApplyStatements(OracleSession& destination);
  // Executes or blocks one entry. False when it failed: it stays the next one to try.
  bool ApplyOne(OracleSession& destination, std::size_t index);
  // What an operator wants left out of a batch that was there before this pass.
  bool LoadSkips();
  bool IsSkipped(std::size_t entry) const;
  bool IsApplied(std::size_t entry, Verdict& verdict);
  // Made before the statement runs, so that counting what has run cannot fail.
  Tally* TallyOf(JobTable* table);
  void RaiseTablesRevision();
  void CountApplied(Tally* tally) noexcept;
  void CountBlocked(Tally* tally) noexcept;
  bool OpenCommitPoint();
  // A transaction of the source that was begun and not finished is taken back.
  void TakeBackPart(OracleSession& destination);
  void Uncount(std::size_t first, std::size_t end);
  bool CommitDestination(OracleSession& destination);
  bool ReadyToCommit(OracleSession& destination);
  bool ForgetThePoint(const std::filesystem::path& path);
  void LeaveUnsettled(const std::string& reason);
  void TellOfLoss(const OracleSession& destination);
  std::string TablesOfPass() const;
  void ReturnToCommitPoint();
  bool KeepRowFinished();
  void Hold(const std::string& reason);
  Outcome Finish();
  Outcome Fail();

  RunRecord Record() const;
  void WriteRecord();
  // Hands the progress to the list. False when the pass is to stop behind this statement.
  bool Publish();
  void Error(const std::string& text);
  void NoteRefused(const ParsedStatement& parsed);
  void Information(const std::string& text) { context_.listener.OnInformation(index_, text); }

  EngineContext& context_;
  const std::size_t index_;
  FollowMemory& memory_;
  const std::atomic<bool>& end_requested_;
  PassReport report_;
  SyncJob& job_;
  const JobView view_;
  const JobFolder folder_;
  const std::unique_ptr<FollowWay> way_;
  PositionGuard guard_;
  DefinitionCheck definitions_;
  RunRecordWriter record_;
  bool record_failed_ = false;         // told once a pass
  bool destination_committed_ = true;  // as far as is known
  bool stopped_ = false;               // the capture, by a request
  bool abandoned_ = false;             // the destination, with all of this pass
  JobList::Progress progress_;
  RunRecord commit_point_;
  std::int32_t baseline_ = 0;
  std::unordered_map<JobTable*, Tally> tallies_;  // this pass's counts, to take back
  std::vector<SkipMark> skips_;
  std::string to_execute_;
};

}  // namespace quillmere
