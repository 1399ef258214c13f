// SPDX-License-Identifier: MIT
// What a program that begins takes from a job's folder.
#include <optional>
#include <utility>
#include <vector>

#include "jobs/held_file.h"
#include "jobs/run_state_files.h"
#include "jobs/source_file.h"

namespace quillmere {
namespace {

constexpr std::string_view kWhatToDo =
    ": bring it back and start the program again, or compare the tables, stop the job and start it "
    "anew";

// What the files say, before anything is changed.
struct Found {
  RunRecord record;  // block.dat's, as far as it could be read
  std::optional<RunRecord> commit_point;
  std::string held;
  std::vector<JobFile> damaged;

  // What a pass begins with at the latest: what comes behind it is not sure.
  const RunRecord& Sure() const { return commit_point ? *commit_point : record; }

  // The first reason is the one to tell. what: what the file is for.
  void Hold(std::string reason, std::string_view what) {
    if (held.empty()) held = std::move(reason) + std::string(what) + std::string(kWhatToDo);
  }
  bool Took(const FileStatus& read, JobFile file, std::string_view what) {
    if (read) return true;
    if (read.code == FileCode::Damaged) damaged.push_back(file);
    if (!read.Missing()) Hold(read.reason, what);
    return false;
  }
};

JobState KnownState(std::int32_t value) {
  const auto known = value >= static_cast<std::int32_t>(JobState::Starting) &&
                     value <= static_cast<std::int32_t>(JobState::Paused);
  return known ? static_cast<JobState>(value) : JobState::Stopped;
}

void TakeRecord(SyncJob& job, const RunRecord& record, RestoredRun& restored) {
  job.run.applied_count = record.applied_count;
  job.run.blocked_count = record.blocked_count;
  job.run.batch_pending = record.batch_pending;
  job.run.positions = {record.mining_start_scn, record.cutoff_scn};
  job.run.next_positions.reset();
  restored.progress = {record.batch_applied, record.batch_remaining};
}

// Null, or why the batch that was read is not the record's.
const char* WhyNotTogether(const PendingBatch& batch, const RunRecord& record, Follow follow) {
  const std::uint64_t counted = std::uint64_t{record.batch_remaining} + record.batch_applied;
  if (counted > batch.Size()) return " holds less than the record says";
  if (batch.Size() - counted > static_cast<std::uint64_t>(record.blocked_count)) {
    return " holds more than the record says";
  }
  if (follow == Follow::Rows) return nullptr;
  if (!batch.TakenFrom()) return " has no first line with its range";
  if (batch.TakenFrom()->upto != record.cutoff_scn) return " is of another range than the record";
  const auto next = static_cast<std::uint32_t>(batch.Size() - record.batch_remaining);
  const TransactionMarks::Walk transaction(batch.Transactions(), next);
  const bool boundary = transaction.Mark() != nullptr && transaction.Mark()->first == next;
  return boundary ? nullptr : " and the record part inside a transaction";
}

// What remains of a batch is nowhere else, or a part of it is on the destination already.
void ReadBatch(FileSystem& files, SyncJob& job, const JobFolder& folder, Found& found) {
  const RunRecord& record = found.Sure();
  PendingBatch& batch = job.run.pending_batch;
  FileStatus read = ReadBatchFile(files, folder, batch);
  if (read) {
    const char* const wrong = WhyNotTogether(batch, record, FollowOf(job));
    if (wrong == nullptr) return;
    read = {FileCode::Damaged, PathText(folder.File(JobFile::Batch)) + wrong};
  }
  batch.Clear();
  if (read.code == FileCode::Damaged) found.damaged.push_back(JobFile::Batch);
  found.Hold(read.reason, ". It holds " + std::to_string(record.batch_remaining) +
                              " changes that are not applied yet");
}

Found ReadFiles(FileSystem& files, SyncJob& job, const JobFolder& folder) {
  Found found;
  RunRecord commit_point;
  if (std::string link = folder.WhyNotOwn(files); !link.empty()) {
    found.Hold(std::move(link), ". The job's own folder must stand there");
    return found;
  }
  found.Took(ReadRunRecord(files, folder.File(JobFile::Record), found.record), JobFile::Record,
             ". It says where the job stands");
  if (found.Took(ReadRunRecord(files, folder.File(JobFile::CommitPoint), commit_point),
                 JobFile::CommitPoint, ". It says where the last pass began")) {
    found.commit_point = commit_point;
  }
  if (!found.held.empty()) return found;
  const bool has_row = !PositionOwnerOf(job).empty();
  const RunRecord& rests_as = has_row ? found.record : found.Sure();
  if (KnownState(rests_as.state) == JobState::Stopped) return found;  // it can only start anew
  if (has_row || FollowOf(job) == Follow::Commits) {
    SourceFile source;
    const FileStatus read = ReadSourceFile(files, folder, source);
    if (read.code == FileCode::Damaged) found.damaged.push_back(JobFile::Source);
    if (!read) found.Hold(read.reason, ". It says which database the job was started on");
  }
  const RunRecord& sure = found.Sure();
  if (found.held.empty() && sure.batch_pending != 0 && sure.batch_remaining > 0) {
    ReadBatch(files, job, folder, found);
  }
  return found;
}

// The program ended before the destination's commit was known, so the server has taken that pass
// back, and so does the record.
void Settle(FileSystem& files, const JobFolder& folder, const RunRecord& commit_point,
            std::string& problem) {
  RunRecordWriter writer(files, folder);
  std::string error;
  // Down to the disk, or a power cut would bring back the record without the commit point.
  if (!writer.Write(commit_point, error) || !writer.Flush(error)) {
    problem = error + ": the record of the last pass could not be taken back on disk";
    return;  // the commit point stays: the next start tries again
  }
  const std::filesystem::path path = folder.File(JobFile::CommitPoint);
  if (!RemoveForGood(files, path)) {
    problem = "Can not remove " + PathText(path) +
              ". Remove it before the job runs, or its last pass is applied again";
  }
}

// After a power cut: the record from before the batch, when that of the pass was not on the disk
// yet. By rows it has the same positions.
bool IsOlder(const RunRecord& record, const RunRecord& commit_point) {
  if (record.mining_start_scn != commit_point.mining_start_scn ||
      record.cutoff_scn != commit_point.cutoff_scn) {
    return true;
  }
  return record.batch_pending == 0 && commit_point.batch_pending != 0 &&
         record.applied_count == commit_point.applied_count &&
         record.blocked_count == commit_point.blocked_count;
}

// Nothing is taken for sure and nothing written over until somebody has looked.
void KeepHeld(FileSystem& files, SyncJob& job, const JobFolder& folder, Found& found) {
  job.run.pending_batch.Clear();
  for (const JobFile file : found.damaged) {
    std::string error;  // the file itself stays, too
    if (KeepBadCopy(files, folder.File(file), FileAccess::OwnerOnly, error)) {
      found.held +=
          ". A copy of " + PathText(folder.File(file).filename()) + " is kept with .bad added";
    }
  }
}

void TakeUp(FileSystem& files, SyncJob& job, const JobFolder& folder, const Found& found,
            RestoreMode mode, RestoredRun& restored) {
  if (!found.commit_point) return;
  const RunRecord& commit_point = *found.commit_point;
  if (PositionOwnerOf(job).empty()) {
    if (mode == RestoreMode::Resume) Settle(files, folder, commit_point, restored.problem);
    restored.state = KnownState(commit_point.state);
    TakeRecord(job, commit_point, restored);
  } else {
    // The row will tell, so both files stay as they are.
    job.run.unsettled = {commit_point, {}};
    if (IsOlder(found.record, commit_point)) TakeRecord(job, commit_point, restored);
  }
}

}  // namespace

RestoredRun RestoreRunState(FileSystem& files, SyncJob& job, const JobFolder& folder,
                            RestoreMode mode) {
  FileFacts facts;  // before anything is settled
  static_cast<void>(files.Look(folder.File(JobFile::Record), facts));
  Found found;
  if (mode == RestoreMode::LookBeside) {
    static_cast<void>(ReadRunRecord(files, folder.File(JobFile::Record), found.record));
  } else {
    found = ReadFiles(files, job, folder);
  }
  RestoredRun restored;
  restored.state = KnownState(found.record.state);
  job.run.unsettled.reset();
  TakeRecord(job, found.record, restored);
  const bool takes_up = mode == RestoreMode::Resume || mode == RestoreMode::LookAhead;
  if (takes_up && found.held.empty()) {
    TakeUp(files, job, folder, found, mode, restored);
  } else if (mode == RestoreMode::Resume) {
    KeepHeld(files, job, folder, found);
  } else {
    job.run.pending_batch.Clear();
  }
  restored.held = std::move(found.held);
  if (mode == RestoreMode::Resume && restored.state == JobState::Started) {
    restored.state = JobState::Paused;
    restored.was_running = true;
    restored.until = facts.changed;
  }
  if (!restored.held.empty()) return restored;
  const HeldFile told = ReadHeldFile(files, folder);
  if (restored.problem.empty()) restored.problem = told.problem;
  restored.asks_again = told.by_pass && restored.state != JobState::Stopped;
  if (restored.asks_again || (!told.by_pass && mode == RestoreMode::LookBeside)) {
    restored.held = told.reason;
  }
  return restored;
}

}  // namespace quillmere
