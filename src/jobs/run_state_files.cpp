// SPDX-License-Identifier: MIT
#include "jobs/run_state_files.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <utility>

#include "foundation/quote_scanner.h"
#include "jobs/batch_lines.h"

namespace quillmere {
namespace {

static_assert(std::endian::native == std::endian::little, "the run record is little-endian");

std::string CanNotCreate(const std::filesystem::path& path) {
  return "Can not create " + PathText(path);
}

std::string_view BytesOf(const RunRecord& record) {
  return {reinterpret_cast<const char*>(&record), sizeof record};
}

JobState KnownState(std::int32_t value) {
  const auto known = value >= static_cast<std::int32_t>(JobState::Starting) &&
                     value <= static_cast<std::int32_t>(JobState::Paused);
  return known ? static_cast<JobState>(value) : JobState::Stopped;
}

void TakeRecord(SyncJob& job, const RunRecord& record) {
  job.run.applied_count = record.applied_count;
  job.run.blocked_count = record.blocked_count;
  job.run.batch_pending = record.batch_pending;
  job.run.positions = {record.mining_start_scn, record.cutoff_scn};
  job.run.next_positions.reset();
}

// A commit point that is still there: the program ended before the destination's commit was known,
// so the server has taken that pass back, and so does the record.
void SettleCommitPoint(FileSystem& files, const JobFolder& folder, RunRecord& record,
                       std::string& problem) {
  const std::filesystem::path path = folder.File(JobFile::CommitPoint);
  if (!IsThere(files, path)) return;
  RunRecord commit_point;
  std::string error;
  if (!ReadRunRecord(files, path, commit_point)) {
    KeepBadFile(files, path, error);
    problem =
        PathText(path) +
        " is damaged and is kept with .bad added. The last pass may be applied partly: compare "
        "the tables with 'select' on both sides, or stop the job and start it anew";
    return;
  }
  record = commit_point;
  RunRecordWriter writer(files, folder);
  // Down to the disk, or a power cut would bring back the record without the commit point.
  if (!writer.Write(record, error) || !writer.Flush(error)) {
    problem = error + ": the record of the last pass could not be taken back on disk";
    return;  // the commit point stays: the next start tries again
  }
  if (!RemoveForGood(files, path)) {
    problem = "Can not remove " + PathText(path) +
              ". Remove it before the job runs, or its last pass is applied again";
  }
}

// Of a job with a position row: the row will tell, so both files stay as they are.
void KeepUnsettled(FileSystem& files, const JobFolder& folder, SyncJob& job, std::string& held) {
  RunRecord commit_point;
  const FileStatus read = ReadRunRecord(files, folder.File(JobFile::CommitPoint), commit_point);
  if (read) {
    job.run.unsettled = {commit_point};
  } else if (!read.Missing()) {
    held = read.reason +
           ". It says where the last pass began: bring it back and start the program "
           "again, or compare the tables, stop the job and start it anew";
  }
}

// After a power cut: the record of an earlier batch, when that of the pass was not on the disk yet.
bool IsOlder(const RunRecord& record, const RunRecord& commit_point) {
  return record.cutoff_scn != commit_point.cutoff_scn ||
         record.mining_start_scn != commit_point.mining_start_scn;
}

void ReadPendingBatch(FileSystem& files, SyncJob& job, const JobFolder& folder,
                      const JobList::Progress& progress, std::string& problem) {
  PendingBatch& batch = job.run.pending_batch;
  std::string error = ReadBatchFile(files, folder, batch).reason;
  if (!error.empty()) {
    batch.Clear();
  } else if (progress.batch_remaining > batch.Size()) {
    error = PathText(folder.File(JobFile::Batch)) + " holds " + std::to_string(batch.Size()) +
            " statements, the run record counts " + std::to_string(progress.batch_remaining);
    batch.Clear();
  }
  if (error.empty()) return;
  problem = error + ". The pending batch of " + NameOf(job) +
            " is lost: when the job is continued it mines the same changes again";
  if (progress.batch_applied > 0) {
    problem += ", and " + std::to_string(progress.batch_applied) +
               " of them are on the destination already. Compare the tables, or stop the job and "
               "start it anew";
  }
}

// Takes the lines of a batch of whole transactions that are no statements off the text. Null, or
// what is wrong.
const char* TakeBatchLine(std::string_view line, PendingBatch& batch,
                          std::optional<BatchHeader>& header) {
  if (!header) {
    header = ReadBatchHeader(line);
    if (!header) return " has a first line that is wrong";
    batch.SetRange(header->range);
    return nullptr;
  }
  const auto transaction = ReadTransactionLine(line);
  if (!transaction) return " has a line of a transaction that is wrong";
  batch.BeginTransaction(*transaction);
  return nullptr;
}

// Null, or what is wrong with the text, to be read behind the file's name.
const char* TakeBatchText(std::string_view text, PendingBatch& batch) {
  std::optional<BatchHeader> header;
  QuoteScanner scanner;
  const bool whole_transactions = text.starts_with(kBatchLine);
  std::size_t begin = 0;
  std::size_t end = 0;
  while ((end = scanner.Find(text, begin, '\n', '\n')) != std::string_view::npos) {
    const std::string_view line = text.substr(begin, end - begin);
    if (whole_transactions && line.starts_with(kBatchLine)) {
      if (const char* const wrong = TakeBatchLine(line, batch, header)) return wrong;
    } else if (line.empty()) {
      batch.AppendSetAside();
    } else {
      batch.Append(line);
    }
    begin = end + 1;
  }
  if (begin != text.size()) return " ends inside a statement";
  if (header && header->entries != batch.Size())
    return " does not hold as much as its first line says";
  return nullptr;
}

// Of a batch of whole transactions: null, or why the record does not go with it.
const char* WhyNotTogether(const PendingBatch& batch, const RunRecord& record) {
  if (!batch.TakenFrom()) return " has no first line with its range";
  if (batch.TakenFrom()->upto != record.cutoff_scn) return " is of another range than the record";
  if (record.batch_remaining > batch.Size()) return " holds less than the record says remains";
  const auto next = static_cast<std::uint32_t>(batch.Size() - record.batch_remaining);
  const auto& transactions = batch.Transactions();
  const bool boundary =
      std::any_of(transactions.begin(), transactions.end(),
                  [&](const PendingBatch::Transaction& one) { return one.first == next; });
  return boundary ? nullptr : " and the record part inside a transaction";
}

// What remains of a batch of whole transactions is nowhere else: its range will not be mined again.
void ReadPendingTransactions(FileSystem& files, SyncJob& job, const JobFolder& folder,
                             const RunRecord& record, std::string& held) {
  if (record.batch_remaining == 0) return;
  PendingBatch& batch = job.run.pending_batch;
  held = ReadBatchFile(files, folder, batch).reason;
  if (held.empty()) {
    const char* const wrong = WhyNotTogether(batch, record);
    if (wrong == nullptr) return;
    held = PathText(folder.File(JobFile::Batch)) + wrong;
  }
  batch.Clear();
  held +=
      ". It holds " + std::to_string(record.batch_remaining) +
      " changes that are not applied yet: bring it back and start the program again, or compare "
      "the tables, stop the job and start it anew";
}

}  // namespace

RunRecord MakeRunRecord(const SyncJob& job, JobState state, JobList::Progress progress) {
  RunRecord record;
  record.state = static_cast<std::int32_t>(state);
  record.applied_count = job.run.applied_count;
  record.batch_applied = progress.batch_applied;
  record.batch_remaining = progress.batch_remaining;
  record.mining_start_scn = job.run.positions.mining_start_scn;
  record.cutoff_scn = job.run.positions.cutoff_scn;
  record.blocked_count = job.run.blocked_count;
  record.batch_pending = job.run.batch_pending;
  return record;
}

RunRecordWriter::RunRecordWriter(FileSystem& files, JobFolder folder)
    : files_(files), folder_(std::move(folder)) {}

bool RunRecordWriter::IsOpen() {
  if (file_ != nullptr) return true;
  std::string unused;
  made_ = made_ || !IsFile(files_, folder_.File(JobFile::Record));
  return MakeFolders(files_, folder_.Path(), unused) &&
         files_.Open(folder_.File(JobFile::Record), OpenMode::InPlace, FileSystem::kUsualMode,
                     file_);
}

bool RunRecordWriter::Write(const RunRecord& record, std::string& error) {
  if (IsOpen() && file_->Write(0, BytesOf(record))) return true;
  file_.reset();  // the next write opens it anew
  error = CanNotCreate(folder_.File(JobFile::Record));
  return false;
}

bool RunRecordWriter::Flush(std::string& error) {
  if (file_ == nullptr) return true;
  if (file_->Flush() && (!made_ || files_.FlushFolder(folder_.Path()))) {
    made_ = false;
    return true;
  }
  error = CanNotCreate(folder_.File(JobFile::Record));
  return false;
}

FileStatus ReadRunRecord(FileSystem& files, const std::filesystem::path& path, RunRecord& record) {
  record = RunRecord();
  std::string content;
  FileStatus status = ReadFile(files, path, content);
  if (!status) return status;
  std::memcpy(&record, content.data(), std::min(content.size(), sizeof record));
  if (content.size() >= sizeof record) return {};
  return {FileCode::Damaged, PathText(path) + " is damaged"};
}

bool WriteCommitPoint(FileSystem& files, const JobFolder& folder, const RunRecord& record,
                      std::string& error) {
  const std::filesystem::path path = folder.File(JobFile::CommitPoint);
  if (MakeFolders(files, folder.Path(), error) &&
      ReplaceFile(files, path, BytesOf(record), FileAccess::Everyone, error)) {
    return true;
  }
  error = CanNotCreate(path) + " (" + error + ")";
  // One whose folder could not be flushed would go back to a pass that was never begun.
  static_cast<void>(RemoveForGood(files, path));
  return false;
}

bool ForgetCommitPoint(FileSystem& files, const JobFolder& folder, const RunRecord& finished,
                       bool& harmless) {
  const std::filesystem::path path = folder.File(JobFile::CommitPoint);
  harmless = true;
  if (RemoveForGood(files, path)) return true;
  std::unique_ptr<OpenFile> file;
  if (!files.Open(path, OpenMode::InPlace, FileSystem::kUsualMode, file) ||
      !file->Write(0, BytesOf(finished)) || !file->Flush()) {
    harmless = false;
  }
  return false;
}

bool WriteBatchFile(FileSystem& files, const JobFolder& folder, const PendingBatch& batch,
                    std::string& error) {
  constexpr std::size_t kPieceBytes = std::size_t{1} << 18;
  std::string piece;
  std::size_t next = 0;
  if (batch.TakenFrom()) {
    piece = BatchHeaderLine({*batch.TakenFrom(), batch.Size()}) + "\n";
  }
  auto transaction = batch.Transactions().begin();
  const auto next_piece = [&]() -> std::string_view {
    if (next > 0) piece.clear();
    while (next < batch.Size() && piece.size() < kPieceBytes) {
      if (transaction != batch.Transactions().end() && transaction->first == next) {
        piece += TransactionLine(*transaction++) + "\n";
      }
      piece.append(batch[next++].text).push_back('\n');
    }
    return piece;
  };
  // The statements are the operator's data: nobody else is to read them.
  const std::filesystem::path path = folder.File(JobFile::Batch);
  if (MakeFolders(files, folder.Path(), error) &&
      ReplaceFileFrom(files, path, next_piece, FileAccess::OwnerOnly, error)) {
    return true;
  }
  error = CanNotCreate(path) + " (" + error + ")";
  return false;
}

FileStatus ReadBatchFile(FileSystem& files, const JobFolder& folder, PendingBatch& batch) {
  const std::filesystem::path path = folder.File(JobFile::Batch);
  std::string content;
  FileStatus status = ReadFile(files, path, content);
  if (!status) return status;
  const char* const wrong = TakeBatchText(content, batch);
  if (wrong == nullptr) return {};
  return {FileCode::Damaged, PathText(path) + wrong};
}

RestoredRun RestoreRunState(FileSystem& files, SyncJob& job, const JobFolder& folder,
                            RestoreMode mode) {
  RestoredRun restored;
  RunRecord record;
  static_cast<void>(ReadRunRecord(files, folder.File(JobFile::Record), record));
  const bool has_row = !PositionOwnerOf(job).empty();
  if (mode == RestoreMode::Resume && !has_row) {
    SettleCommitPoint(files, folder, record, restored.problem);
  }
  job.run.unsettled.reset();
  TakeRecord(job, record);
  restored.progress = {record.batch_applied, record.batch_remaining};
  restored.state = KnownState(record.state);
  if (mode == RestoreMode::LookOnly) return restored;
  if (restored.state == JobState::Started) restored.state = JobState::Paused;
  if (has_row) KeepUnsettled(files, folder, job, restored.held);
  if (job.run.unsettled && IsOlder(record, job.run.unsettled->commit_point)) {
    record = job.run.unsettled->commit_point;
    TakeRecord(job, record);
    restored.progress = {record.batch_applied, record.batch_remaining};
  }
  // What is left of the batch at least.
  const RunRecord& sure = job.run.unsettled ? job.run.unsettled->commit_point : record;
  if (sure.batch_pending == 0 || !restored.held.empty()) return restored;
  if (FollowOf(job) == Follow::Commits) {
    ReadPendingTransactions(files, job, folder, sure, restored.held);
  } else {
    ReadPendingBatch(files, job, folder, {sure.batch_applied, sure.batch_remaining},
                     restored.problem);
  }
  return restored;
}

std::string WhyHeld(FileSystem& files, SyncJob& job, const JobFolder& folder) {
  if (FollowOf(job) != Follow::Commits) return {};
  RunRecord record;
  if (!ReadRunRecord(files, folder.File(JobFile::CommitPoint), record)) {
    static_cast<void>(ReadRunRecord(files, folder.File(JobFile::Record), record));
  }
  std::string held;
  if (record.batch_pending != 0) ReadPendingTransactions(files, job, folder, record, held);
  job.run.pending_batch.Clear();
  return held;
}

}  // namespace quillmere
