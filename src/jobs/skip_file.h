// SPDX-License-Identifier: MIT
// skip.xml of a job: which statements of its pending batch an operator wants left out. The pass
// that comes to them counts them as blocked. docs/file-formats.md has its layout.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "jobs/job_folder.h"
#include "jobs/sync_job.h"

namespace quillmere {

// Entries of one batch, and what they are: a batch that was mined again has its own.
struct SkipMark {
  std::uint32_t first = 0, count = 0;
  std::uint64_t digest = 0;  // of their texts
  bool operator==(const SkipMark&) const = default;
};

// Of entries that the batch has.
SkipMark MarkOf(const PendingBatch& batch, std::uint32_t first, std::uint32_t count);

// Replaces the file, down to the disk: from then on the entries are left out.
bool WriteSkipFile(FileSystem& files, const JobFolder& folder, const Positions& positions,
                   const std::vector<SkipMark>& marks, std::string& error);

// What the file says of the batch that the job has now, where it stands now; nothing when it is
// missing or of another batch. marks is empty unless it was read.
FileStatus ReadSkipFile(FileSystem& files, const JobFolder& folder, const JobRun& run,
                        std::vector<SkipMark>& marks);

}  // namespace quillmere
