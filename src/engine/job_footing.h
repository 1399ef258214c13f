// SPDX-License-Identifier: MIT
// What a job stands on, a line each.
#pragma once

#include <string>
#include <vector>

#include "jobs/sync_job.h"
#include "oracle/H_oracle.h"

namespace quillmere {

struct FootingLine {
  std::string subject;
  std::string text;      // "not known: ..." when the source did not say
  bool warning = false;  // something is to be done about it
};

// Server and container of the source, how far back the redo reaches, supplemental logging. Asks the
// job's source, which is connected and of no other use then, and blocks meanwhile. Never fails:
// what can not be read is said to be not known. Any thread that the session belongs to.
std::vector<FootingLine> ReadFooting(OracleSession& source, const SyncJob& job);

// What the operator chose of it: the way of following and the position row.
std::vector<FootingLine> ChosenFooting(const SyncJob& job);

}  // namespace quillmere
