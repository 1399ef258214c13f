// SPDX-License-Identifier: MIT
#include "jobs/run_state_files.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <utility>

namespace quillmere {
namespace {

static_assert(std::endian::native == std::endian::little, "the run record is little-endian");

std::string CanNotCreate(const std::filesystem::path& path) {
  return "Can not create " + PathText(path);
}

std::string_view BytesOf(const RunRecord& record) {
  return {reinterpret_cast<const char*>(&record), sizeof record};
}

// Null, or what is wrong with 40 bytes that were read.
const char* WhyImplausible(const RunRecord& record) {
  if (record.state < static_cast<std::int32_t>(JobState::Starting) ||
      record.state > static_cast<std::int32_t>(JobState::Paused)) {
    return " is damaged: its state is none";
  }
  constexpr std::uint32_t kMost = std::numeric_limits<std::int32_t>::max();
  const bool good = (record.batch_pending == 0 || record.batch_pending == 1) &&
                    record.applied_count >= 0 && record.blocked_count >= 0 &&
                    record.mining_start_scn >= 0 && record.cutoff_scn >= 0 &&
                    record.batch_applied <= kMost && record.batch_remaining <= kMost;
  return good ? nullptr : " is damaged: its numbers can not be";
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

bool RunRecordWriter::Open(const RunRecord& record) {
  if (file_ != nullptr) return true;
  const std::filesystem::path path = folder_.File(JobFile::Record);
  std::string unused;
  if (!folder_.Make(files_, unused)) return false;
  FileFacts facts;
  const FileStatus there = files_.Look(path, facts);
  // Opened all the same it would be made, and nobody would see to its name being on the disk.
  if (!there && !there.Missing()) return false;
  // A new one must not be empty for a moment either.
  if (there.Missing()) {
    made_ = true;
    if (!ReplaceFile(files_, path, BytesOf(record), FileAccess::Everyone, unused)) return false;
    made_ = false;
  }
  return static_cast<bool>(files_.Open(path, OpenMode::InPlace, FileSystem::kUsualMode, file_));
}

bool RunRecordWriter::Write(const RunRecord& record, std::string& error) {
  if (Open(record) && file_->Write(0, BytesOf(record))) return true;
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
  if (content.size() != sizeof record) {
    return {FileCode::Damaged, PathText(path) + " is damaged: it has " +
                                   std::to_string(content.size()) + " bytes and not " +
                                   std::to_string(sizeof record)};
  }
  const char* const wrong = WhyImplausible(record);
  if (wrong == nullptr) return {};
  return {FileCode::Damaged, PathText(path) + wrong};
}

bool WriteCommitPoint(FileSystem& files, const JobFolder& folder, const RunRecord& record,
                      std::string& error) {
  const std::filesystem::path path = folder.File(JobFile::CommitPoint);
  FileFacts facts;
  const bool left = !files.Look(path, facts).Missing();
  if (folder.Make(files, error) &&
      ReplaceFile(files, path, BytesOf(record), FileAccess::Everyone, error)) {
    return true;
  }
  error = CanNotCreate(path) + " (" + error + ")";
  // One that a pass has left takes back what the record says of that pass. A new one whose folder
  // could not be flushed would go back to a pass that was never begun.
  if (!left) static_cast<void>(RemoveForGood(files, path));
  return false;
}

bool ForgetCommitPoint(FileSystem& files, const JobFolder& folder, const RunRecord& finished,
                       bool& harmless) {
  const std::filesystem::path path = folder.File(JobFile::CommitPoint);
  harmless = true;
  if (RemoveForGood(files, path)) return true;
  FileFacts facts;
  const FileStatus left = files.Look(path, facts);
  // Its name is gone, and only a power cut could bring it back.
  if (left.Missing() && files.FlushFolder(folder.Path())) return true;
  // Not made where none is: a new one that is cut off would be a damaged one.
  std::unique_ptr<OpenFile> file;
  harmless = left && files.Open(path, OpenMode::InPlace, FileSystem::kUsualMode, file) &&
             file->Write(0, BytesOf(finished)) && file->Flush();
  return false;
}

}  // namespace quillmere
