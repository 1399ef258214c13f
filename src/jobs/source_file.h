// SPDX-License-Identifier: MIT
// source.dat: which database a job that follows commits was started on. docs/file-formats.md has
// its layout.
#pragma once

#include <string>

#include "jobs/job_folder.h"

namespace quillmere {

struct SourceFile {
  std::string job_id;  // random, another one at each start
  std::string dbid, resetlogs_change;
};

// 32 random hexadecimal digits.
std::string NewJobId();

// Replaces the file, down to the disk.
bool WriteSourceFile(FileSystem& files, const JobFolder& folder, const SourceFile& source,
                     std::string& error);

// Damaged: the file does not say all of it. source is set on success only.
FileStatus ReadSourceFile(FileSystem& files, const JobFolder& folder, SourceFile& source);

}  // namespace quillmere
