// SPDX-License-Identifier: MIT
// Why a job can not be continued, on disk for whoever looks and for the next start: held.xml in the
// job's folder. What the job's files tell by themselves is found out anew at each start; what a
// pass has found on a database only this file knows.
#pragma once

#include <string>

#include "jobs/job_folder.h"

namespace quillmere {

struct HeldFile {
  std::string reason;
  bool by_pass = false;   // the next one finds out whether it is still so
  std::string problem{};  // why it could not be read
};

bool WriteHeldFile(FileSystem& files, const JobFolder& folder, const HeldFile& held,
                   std::string& error);

// Without a reason when there is none, or it can not be read: it only tells.
HeldFile ReadHeldFile(FileSystem& files, const JobFolder& folder);

// For the program that has the folder: what its start has found. Without a reason the file goes.
bool KeepHeldFile(FileSystem& files, const JobFolder& folder, const std::string& reason,
                  std::string& error);

}  // namespace quillmere
