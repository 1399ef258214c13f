// SPDX-License-Identifier: MIT
// Which container of its source a job follows by commits. Internal to engine/.
#pragma once

#include <string>

#include "jobs/sync_job.h"
#include "oracle/H_oracle.h"

namespace quillmere {

// Whether the changes that the source shows can be told to be those the job means: at the root of a
// container database it sees the rows of all, so the job must name one that is there; elsewhere the
// name must fit. False: the reason, with what can be done. source is connected.
bool CheckContainer(OracleSession& source, const SyncJob& job, std::string& error);

}  // namespace quillmere
