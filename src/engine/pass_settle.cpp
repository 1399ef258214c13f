// SPDX-License-Identifier: MIT
// What was counted and did not hold: a transaction taken back, a pass of which the position row
// tells what became of it.
#include "engine/pass.h"

#include <algorithm>
#include <vector>

#include "jobs/held_file.h"

namespace quillmere {

// Until somebody has looked; on disk, too, for what a pass finds the files do not tell.
void Pass::Hold(const std::string& reason) {
  std::string error;
  if (!WriteHeldFile(context_.files, folder_, {reason, true}, error)) Error(error);
  context_.jobs.Hold(index_, reason);
  context_.jobs.ReplaceState(index_, JobState::Started, JobState::Pausing);
}

// The answer was lost: both files stay, and the next pass asks the row.
void Pass::LeaveUnsettled(const std::string& reason) {
  job_.run.unsettled = {commit_point_, CountedOfTables()};
  Error(view_.name + ": the end of the session on " + view_.destination.name + " failed : " +
        reason + ". Whether it took the statements of this pass is found out by the next one" +
        TablesOfPass());
}

// Without a position row nobody will ever know, unless the server itself took the work back.
void Pass::TellOfLoss(const OracleSession& destination) {
  constexpr oci::sb4 kTakenBack = 2091;  // "transaction rolled back", as by a deferred constraint
  const std::string& name = view_.destination.name;
  const std::string failed = view_.name + ": the end of the session on " + name + " failed : ";
  if (destination.LastErrorCode() == kTakenBack) {
    Error(failed + destination.LastError() + ". The statements of this pass are not applied");
    return;
  }
  Error(failed + destination.LastError() + ". Whether " + name +
        " took the statements of this pass is not known. They count as not applied and are "
        "applied again; if it took them, they are there twice: compare the tables" +
        TablesOfPass());
}

// As the destination has them, in the order of their first changes.
std::string Pass::TablesOfPass() const {
  constexpr std::size_t kMostNamed = 10;
  std::vector<std::string> tables;
  const std::size_t size = job_.run.pending_batch.Size();
  const std::size_t end = size - progress_.batch_remaining;
  for (std::size_t i = size - commit_point_.batch_remaining; i < end; ++i) {
    const PendingBatch::Entry entry = job_.run.pending_batch[i];
    if (entry.kind != PendingBatch::Kind::Statement) continue;
    const ParsedStatement parsed = ParseStatement(entry.text);
    const Verdict verdict = Decide(job_, parsed);
    if (verdict.decision != Decision::Accepted) continue;
    std::string table = std::string(verdict.owner) + "." + std::string(parsed.table);
    if (std::find(tables.begin(), tables.end(), table) == tables.end()) {
      tables.push_back(std::move(table));
    }
  }
  std::string text;
  for (std::size_t i = 0; i < tables.size() && i < kMostNamed; ++i) {
    text += (i == 0 ? " (" : ", ") + tables[i];
  }
  if (tables.size() > kMostNamed) {
    text += " and " + std::to_string(tables.size() - kMostNamed) + " more";
  }
  return text.empty() ? text : text + ")";
}

bool Pass::SettlePosition(OracleSession& destination) {
  std::string error;
  switch (guard_.Lock(destination, progress_.batch_remaining, error)) {
    case PositionGuard::Found::AsRecorded:
      return true;
    case PositionGuard::Found::NotTaken:
      ReturnTo(*job_.run.unsettled);
      break;
    case PositionGuard::Found::Taken:
      TakeAsApplied(job_.run.unsettled->commit_point, guard_.Remaining());
      break;
    case PositionGuard::Found::Held:
      Hold(error);
      [[fallthrough]];
    case PositionGuard::Found::Failed:
      Error(view_.name + ": " + error);
      return false;
  }
  context_.jobs.SetProgress(index_, progress_);
  WriteRecord();
  if (record_failed_ || !record_.Flush(error)) return false;
  job_.run.unsettled.reset();
  context_.listener.OnJobChanged(index_, false);
  return true;
}

std::vector<JobRun::Unsettled::Counted> Pass::CountedOfTables() const {
  std::vector<JobRun::Unsettled::Counted> counted;
  const MutexLock lock(job_.config_mutex);
  for (auto& [owner, schema] : job_.config.schemas) {
    for (JobTable& table : schema.Tables()) {
      const auto tally = tallies_.find(&table);
      if (tally == tallies_.end()) continue;
      counted.push_back({owner, table.name, tally->second.applied, tally->second.blocked});
    }
  }
  return counted;
}

void Pass::ReturnTo(const JobRun::Unsettled& unsettled) {
  {
    const MutexLock lock(job_.config_mutex);
    for (const auto& [owner, name, applied, blocked] : unsettled.counted) {
      const auto schema = job_.config.schemas.find(owner);
      if (schema == job_.config.schemas.end()) continue;
      JobTable* const table = schema->second.Find(name);
      if (table == nullptr) continue;
      table->totalsynced = table->totalsynced - applied;
      table->RecordsBlocked = table->RecordsBlocked - blocked;
    }
  }
  RaiseTablesRevision();
  TakeCountsOf(unsettled.commit_point);
  Information("The destination did not take the last pass of " + view_.name +
              ": it is applied again");
}

// The record may not have come as far as the destination did.
void Pass::TakeAsApplied(const RunRecord& commit_point, std::uint32_t remaining) {
  Information("The destination took the last pass of " + view_.name + ": it goes on behind it");
  if (remaining == progress_.batch_remaining) return;
  const std::size_t size = job_.run.pending_batch.Size();
  TakeCountsOf(commit_point);
  progress_.batch_remaining = remaining;
  for (std::size_t i = size - commit_point.batch_remaining; i < size - remaining; ++i) {
    Verdict verdict;
    const bool applied = IsApplied(i, verdict);
    (applied ? job_.run.applied_count : job_.run.blocked_count).Increment();
    if (applied) ++progress_.batch_applied;
  }
}

bool Pass::LoadSkips() {
  if (report_.captured != 0) return true;
  const FileStatus read = ReadSkipFile(context_.files, folder_, job_.run, skips_);
  if (!read) Error(read.reason);
  return static_cast<bool>(read);
}

bool Pass::IsSkipped(std::size_t entry) const {
  return std::any_of(skips_.begin(), skips_.end(), [&](const SkipMark& mark) {
    return entry >= mark.first && entry - mark.first < mark.count;
  });
}

// What was decided of an entry is decided the same again: tables are edited while the job rests.
bool Pass::IsApplied(std::size_t index, Verdict& verdict) {
  const PendingBatch::Entry entry = job_.run.pending_batch[index];
  if (entry.kind != PendingBatch::Kind::Statement) return false;
  verdict = Decide(job_, ParseStatement(entry.text));
  return verdict.decision == Decision::Accepted && !IsSkipped(index);
}

void Pass::Uncount(std::size_t first, std::size_t end) {
  for (std::size_t i = first; i < end; ++i) {
    Verdict verdict;
    const bool applied = IsApplied(i, verdict);
    ++progress_.batch_remaining;
    progress_.batch_applied -= applied ? 1 : 0;
    auto& count = applied ? job_.run.applied_count : job_.run.blocked_count;
    count = count - 1;
    if (verdict.table == nullptr) continue;
    if (const auto tally = tallies_.find(verdict.table); tally != tallies_.end()) {
      --(applied ? tally->second.applied : tally->second.blocked);
    }
    auto& of_table = applied ? verdict.table->totalsynced : verdict.table->RecordsBlocked;
    of_table = of_table - 1;
  }
}

void Pass::TakeCountsOf(const RunRecord& record) {
  progress_ = {record.batch_applied, record.batch_remaining};
  job_.run.applied_count = record.applied_count;
  job_.run.blocked_count = record.blocked_count;
}

}  // namespace quillmere
