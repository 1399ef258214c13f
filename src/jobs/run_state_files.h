// SPDX-License-Identifier: MIT
// A job's run record (block.dat), its commit point (commit.dat) and its pending batch
// (sqlcmds.txt), in the job's folder. docs/file-formats.md has their layout. For the thread that a
// job's run belongs to.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "jobs/job_folder.h"
#include "jobs/job_list.h"

namespace quillmere {

// The record as the job stands.
RunRecord MakeRunRecord(const SyncJob& job, JobState state, JobList::Progress progress);

// Keeps block.dat open while a step writes it, in place: there is no moment at which a crash leaves
// it empty. Failure leaves the reason "Can not create <path>"; the next write tries again. One
// thread at a time; files must outlive it.
class RunRecordWriter {
 public:
  RunRecordWriter(FileSystem& files, JobFolder folder);
  bool Write(const RunRecord& record, std::string& error);
  // What was written down to the disk, with the file's name if the file is new.
  bool Flush(std::string& error);

 private:
  bool Open(const RunRecord& record);  // unless it is; a new file has this record

  FileSystem& files_;
  const JobFolder folder_;
  std::unique_ptr<OpenFile> file_;
  bool made_ = false;  // it is new, and its name not known to be on the disk
};

// Fills the record with the defaults, then with the file's up to 40 bytes. Damaged: there were
// more or fewer, or they can not be what a program has written.
FileStatus ReadRunRecord(FileSystem& files, const std::filesystem::path& path, RunRecord& record);

// The commit point: the record to go back to when the destination did not commit. Down to the disk
// before it returns. On failure there is none but one that an earlier pass has left.
bool WriteCommitPoint(FileSystem& files, const JobFolder& folder, const RunRecord& record,
                      std::string& error);

// Removes the commit point, which may be missing already, for good. When that fails it is
// overwritten with the record of the finished pass instead, so that it does no harm. False: it is
// still there; harmless tells whether it was overwritten.
bool ForgetCommitPoint(FileSystem& files, const JobFolder& folder, const RunRecord& finished,
                       bool& harmless);

// Replaces sqlcmds.txt by the batch, a statement a line; one that was set aside is an empty line.
// Before whole transactions there are lines of their own (batch_lines.h).
// Readable by its owner alone.
bool WriteBatchFile(FileSystem& files, const JobFolder& folder, const PendingBatch& batch,
                    std::string& error);

// Appends the statements of sqlcmds.txt to the batch. A line feed inside a literal belongs to it.
// Damaged: the file ends inside a statement; the batch has a part of it then, to be dropped.
FileStatus ReadBatchFile(FileSystem& files, const JobFolder& folder, PendingBatch& batch);

enum class RestoreMode {
  Resume,      // to run the job
  LookOnly,    // no program works on the folder, and this one changes nothing
  LookAhead,   // the same with the batch, from where the next pass begins
  LookBeside,  // another program works on it
};

struct RestoredRun {
  JobState state = JobState::Stopped;
  JobList::Progress progress;
  std::string problem;      // what could not be restored and what that means; empty when all could
  std::string held;         // why the job can not be continued; empty when it can
  bool asks_again = false;  // it was held by a pass, and the next one finds out whether it still is
  // It was Started when its program ended, and until when as far as that is known.
  bool was_running = false;
  LocalTime until{};
};

// What a loaded job takes from its folder: run record, and with it the pending batch. Not there,
// not readable and damaged are three things: a file that is not readable or damaged holds the job,
// as does a batch that is not all there. Resume settles a commit point that a killed program left,
// a Started job comes back Paused, and of a damaged file a copy is kept as .bad. The others give
// the state as recorded and change nothing; LookAhead takes the batch along; LookBeside looks at
// the record alone, and at what the program at work has written of a hold.
RestoredRun RestoreRunState(FileSystem& files, SyncJob& job, const JobFolder& folder,
                            RestoreMode mode);

}  // namespace quillmere
