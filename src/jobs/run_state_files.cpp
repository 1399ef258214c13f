#include "jobs/run_state_files.h"

#include <array>
#include <bit>
#include <cstring>

#include "foundation/quote_scanner.h"

namespace quillmere {
namespace {

static_assert(std::endian::native == std::endian::little, "the run record is little-endian");

std::string CanNotCreate(const std::filesystem::path& path) {
  return "Can not create " + path.string();
}

JobState KnownState(std::int32_t value) {
  const auto known = value >= static_cast<std::int32_t>(JobState::Starting) &&
                     value <= static_cast<std::int32_t>(JobState::Paused);
  return known ? static_cast<JobState>(value) : JobState::Stopped;
}

void TakeRecord(SyncJob& job, const RunRecord& record) {
  job.applied_count = record.applied_count;
  job.blocked_count = record.blocked_count;
  job.batch_pending = record.batch_pending;
  job.mining_start_scn = record.mining_start_scn;
  job.cutoff_scn = record.cutoff_scn;
  // The working SCNs are not stored. The batch holds exactly the rows below the cut-off; mining
  // from there next finds everything above it once.
  job.next_mining_start_scn = record.cutoff_scn;
  job.next_cutoff_scn = record.cutoff_scn;
}

// A commit point that is still there: the program ended before the destination's commit was known,
// so the server has taken that pass back, and so does the record.
void SettleCommitPoint(const RunStatePaths& paths, const std::filesystem::path& job_folder,
                       RunRecord& record, std::string& problem) {
  std::error_code ignored;
  if (!std::filesystem::exists(paths.commit_point, ignored)) return;
  RunRecord commit_point;
  std::string error;
  if (!ReadRunRecord(paths.commit_point, commit_point)) {
    KeepBadFile(paths.commit_point, error);
    problem =
        paths.commit_point.string() +
        " is damaged and is kept with .bad added. The last pass may be applied partly: compare "
        "the tables with 'select' on both sides, or stop the job and start it anew";
    return;
  }
  record = commit_point;
  if (!RunRecordWriter(job_folder).Write(record, error)) {
    problem = error + ": the record of the last pass could not be taken back on disk";
    return;  // the commit point stays: the next start tries again
  }
  if (!RemoveForGood(paths.commit_point)) {
    problem = "Can not remove " + paths.commit_point.string() +
              ". Remove it before the job runs, or its last pass is applied again";
  }
}

void ReadPendingBatch(SyncJob& job, const RunStatePaths& paths, JobList::Progress& progress,
                      std::string& problem) {
  std::string error;
  if (!ReadBatchFile(paths.batch, job.pending_batch, error)) {
    job.pending_batch.Clear();
  } else if (progress.batch_remaining > job.pending_batch.Size()) {
    error = paths.batch.string() + " holds " + std::to_string(job.pending_batch.Size()) +
            " statements, the run record counts " + std::to_string(progress.batch_remaining);
    job.pending_batch.Clear();
  }
  if (error.empty()) return;
  problem = error + ". The pending batch of " + job.name +
            " is lost: when the job is continued it mines the same changes again";
  if (progress.batch_applied > 0) {
    problem += ", and " + std::to_string(progress.batch_applied) +
               " of them are on the destination already. Compare the tables, or stop the job and "
               "start it anew";
  }
}

}  // namespace

RunRecord MakeRunRecord(const SyncJob& job, JobState state, JobList::Progress progress) {
  RunRecord record;
  record.state = static_cast<std::int32_t>(state);
  record.applied_count = job.applied_count;
  record.batch_applied = progress.batch_applied;
  record.batch_remaining = progress.batch_remaining;
  record.mining_start_scn = job.mining_start_scn;
  record.cutoff_scn = job.cutoff_scn;
  record.blocked_count = job.blocked_count;
  record.batch_pending = job.batch_pending;
  return record;
}

RunStatePaths::RunStatePaths(const std::filesystem::path& job_folder)
    : record(job_folder / "block.dat"),
      commit_point(job_folder / "commit.dat"),
      batch(job_folder / "sqlcmds.txt") {}

RunRecordWriter::RunRecordWriter(const std::filesystem::path& job_folder)
    : folder_(job_folder), path_(RunStatePaths(job_folder).record) {}

bool RunRecordWriter::Write(const RunRecord& record, std::string& error) {
  if (!file_.IsOpen()) {
    std::string folder_error;
    if (!MakeFolders(folder_, folder_error) || !file_.Open(path_)) {
      error = CanNotCreate(path_);
      return false;
    }
  }
  if (file_.Write(&record, sizeof record)) return true;
  file_.Close();  // the next write opens it anew
  error = CanNotCreate(path_);
  return false;
}

bool RunRecordWriter::Flush(std::string& error) {
  if (!file_.IsOpen() || file_.Flush()) return true;
  error = CanNotCreate(path_);
  return false;
}

bool ReadRunRecord(const std::filesystem::path& path, RunRecord& record) {
  record = RunRecord();
  std::string content;
  std::string error;
  if (!ReadFile(path, content, error)) return false;
  std::memcpy(&record, content.data(), std::min(content.size(), sizeof record));
  return content.size() >= sizeof record;
}

bool WriteCommitPoint(const std::filesystem::path& job_folder, const RunRecord& record,
                      std::string& error) {
  std::array<char, sizeof record> bytes{};
  std::memcpy(bytes.data(), &record, sizeof record);
  const auto path = RunStatePaths(job_folder).commit_point;
  if (MakeFolders(job_folder, error) &&
      ReplaceFile(path, {bytes.data(), bytes.size()}, FileAccess::Everyone, error))
    return true;
  error = CanNotCreate(path) + " (" + error + ")";
  return false;
}

bool WriteBatchFile(const std::filesystem::path& path, const PendingBatch& batch,
                    std::string& error) {
  constexpr std::size_t kPieceBytes = std::size_t{1} << 18;
  std::string piece;
  std::size_t next = 0;
  const auto next_piece = [&]() -> std::string_view {
    piece.clear();
    while (next < batch.Size() && piece.size() < kPieceBytes) {
      piece.append(batch[next++]).push_back('\n');
    }
    return piece;
  };
  // The statements are the operator's data: nobody else is to read them.
  if (MakeFolders(path.parent_path(), error) &&
      ReplaceFileFrom(path, next_piece, FileAccess::OwnerOnly, error))
    return true;
  error = CanNotCreate(path) + " (" + error + ")";
  return false;
}

bool ReadBatchFile(const std::filesystem::path& path, PendingBatch& batch, std::string& error) {
  std::string content;
  if (!ReadFile(path, content, error)) return false;
  const std::string_view text = content;
  QuoteScanner scanner;
  std::size_t begin = 0;
  std::size_t end = 0;
  while ((end = scanner.Find(text, begin, '\n', '\n')) != std::string_view::npos) {
    batch.Append(text.substr(begin, end - begin));
    begin = end + 1;
  }
  if (begin == text.size()) return true;
  error = path.string() + " ends inside a statement";
  return false;
}

RestoredRun RestoreRunState(SyncJob& job, const std::filesystem::path& job_folder,
                            RestoreMode mode) {
  RestoredRun restored;
  const RunStatePaths paths(job_folder);
  RunRecord record;
  ReadRunRecord(paths.record, record);
  if (mode == RestoreMode::Resume) SettleCommitPoint(paths, job_folder, record, restored.problem);
  TakeRecord(job, record);
  restored.progress = {record.batch_applied, record.batch_remaining};
  restored.state = KnownState(record.state);
  if (mode == RestoreMode::LookOnly) return restored;
  if (restored.state == JobState::Started) restored.state = JobState::Paused;
  if (record.batch_pending != 0) ReadPendingBatch(job, paths, restored.progress, restored.problem);
  return restored;
}

}  // namespace quillmere
