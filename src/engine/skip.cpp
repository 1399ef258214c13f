// SPDX-License-Identifier: MIT
#include "engine/skip.h"

#include <algorithm>

#include "engine/rewriter.h"
#include "engine/whole_transactions.h"
#include "jobs/skip_file.h"

namespace quillmere {

bool FindNextToSkip(const JobList& jobs, std::size_t index, NextToSkip& next, std::string& reason) {
  JobList::Progress progress;
  const JobState state = jobs.State(index, &progress);
  const SyncJob& job = jobs.At(index);
  const std::string name = NameOf(job);
  if (state != JobState::Paused) {
    reason = "A statement can be skipped while the job is paused. " + name + " is not";
    return false;
  }
  const std::string held = jobs.HeldBecause(index);
  if (!held.empty()) {
    reason = name + " is held: " + held;
    return false;
  }
  if (job.run.unsettled) {
    reason = "Whether the destination took the last pass of " + name +
             " is not known yet. Let the job run once, then skip";
    return false;
  }
  const PendingBatch& batch = job.run.pending_batch;
  const std::size_t size = batch.Size();
  if (size == 0 || progress.batch_remaining == 0 || progress.batch_remaining > size) {
    reason = name + " has no statement to skip: its batch is worked off";
    return false;
  }
  const std::size_t first = size - progress.batch_remaining;
  std::size_t end = first + 1;
  while (end < size && BeginOfTransaction(batch, end) <= first) ++end;
  next.first = static_cast<std::uint32_t>(first);
  next.count = static_cast<std::uint32_t>(end - first);
  next.of = static_cast<std::uint32_t>(size);
  next.statements.clear();
  for (std::size_t i = first; i < end; ++i) next.statements.emplace_back(batch[i].text);
  const ParsedStatement parsed = ParseStatement(next.statements.front());
  next.owner = parsed.owner;
  next.table = parsed.table;
  return true;
}

bool MarkToSkip(FileSystem& files, const JobFolder& folder, const JobRun& run,
                const NextToSkip& next, std::string& error) {
  std::vector<SkipMark> marks;
  const FileStatus read = ReadSkipFile(files, folder, run, marks);
  if (!read && read.code != FileCode::Damaged) {
    error = read.reason;
    return false;
  }
  const SkipMark mark = MarkOf(run.pending_batch, next.first, next.count);
  if (std::find(marks.begin(), marks.end(), mark) == marks.end()) marks.push_back(mark);
  return WriteSkipFile(files, folder, run.positions, marks, error);
}

}  // namespace quillmere
