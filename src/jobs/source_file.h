// SPDX-License-Identifier: MIT
// source.dat: which database a job was started on, and what its position row says. Of jobs that
// follow commits or have such a row. docs/file-formats.md has its layout.
#pragma once

#include <cstdint>
#include <string>

#include "jobs/job_folder.h"

namespace quillmere {

struct SourceFile {
  std::string job_id;                  // random, another one at each start
  std::string dbid, resetlogs_change;  // empty when it follows rows
  std::int64_t row_cutoff = 0;         // of the batch that was worked off last
};

// 32 random hexadecimal digits.
std::string NewJobId();

// Replaces the file, down to the disk.
bool WriteSourceFile(FileSystem& files, const JobFolder& folder, const SourceFile& source,
                     std::string& error);

// Damaged: the file does not say all of it. source is set on success only.
FileStatus ReadSourceFile(FileSystem& files, const JobFolder& folder, SourceFile& source);

}  // namespace quillmere
