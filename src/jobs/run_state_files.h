// A job's run record (block.dat), its commit point (commit.dat) and its pending batch
// (sqlcmds.txt), in the job's folder. docs/file-formats.md has their layout.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "jobs/in_place_file.h"
#include "jobs/job_list.h"

namespace quillmere {

// The record as the job stands.
RunRecord MakeRunRecord(const SyncJob& job, JobState state, JobList::Progress progress);

// Paths of one job's folder.
struct RunStatePaths {
  explicit RunStatePaths(const std::filesystem::path& job_folder);
  std::filesystem::path record, commit_point, batch;
};

// Keeps block.dat open while a step writes it. Failure leaves the reason "Can not create <path>";
// the next write tries again.
class RunRecordWriter {
 public:
  explicit RunRecordWriter(const std::filesystem::path& job_folder);
  bool Write(const RunRecord& record, std::string& error);
  // What was written down to the disk.
  bool Flush(std::string& error);

 private:
  const std::filesystem::path folder_;
  const std::filesystem::path path_;
  InPlaceFile file_;
};

// Fills the record with the defaults, then with the file's up to 40 bytes. False when there was no
// whole record.
bool ReadRunRecord(const std::filesystem::path& path, RunRecord& record);

// The commit point: the record to go back to when the destination did not commit. Down to the disk
// before it returns.
bool WriteCommitPoint(const std::filesystem::path& job_folder, const RunRecord& record,
                      std::string& error);

// Replaces sqlcmds.txt by the batch, a statement a line.
bool WriteBatchFile(const std::filesystem::path& path, const PendingBatch& batch,
                    std::string& error);

// Appends the file's statements to the batch. A line feed inside a literal belongs to it. A file
// that ends inside a statement is refused.
bool ReadBatchFile(const std::filesystem::path& path, PendingBatch& batch, std::string& error);

enum class RestoreMode { Resume, LookOnly };

struct RestoredRun {
  JobState state = JobState::Stopped;
  JobList::Progress progress;
  std::string problem;  // what could not be restored and what that means; empty when all could
};

// What a loaded job takes from its folder: run record, and with it the pending batch. Resume
// settles a commit point that a killed program left, and a Started job comes back Paused; LookOnly
// changes no file, reads no batch and gives the state as recorded. A job whose batch cannot be read
// comes back without it.
RestoredRun RestoreRunState(SyncJob& job, const std::filesystem::path& job_folder,
                            RestoreMode mode);

}  // namespace quillmere
