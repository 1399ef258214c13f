// SPDX-License-Identifier: MIT
// Where a job and its source stand, as SCNs on one line: what redo there is, what the job needs of
// it, and what is open. Plain values.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "jobs/job_folder.h"
#include "oracle/commit_miner.h"
#include "watch/history_picture.h"
#include "watch/job_watch.h"

namespace quillmere {

struct ScnStrip {
  // Nothing: not known.
  std::optional<std::int64_t> oldest_there, oldest_needed, applied, captured, now;
  // The oldest first; asked for live only.
  std::vector<OpenTransaction> open;
  bool live = false;
};

// What is known without the source: of the job's record and of its last passes. Reads the record;
// any thread.
ScnStrip KnownStrip(FileSystem& files, const JobFolder& folder, Follow follow,
                    const HistoryRead& history, const std::optional<RedoRoom>& room);

// Asks the source, which is connected, for the oldest redo there, where it stands, and the oldest
// of its open transactions. False: the first that it did not answer, and the reason in the
// session's LastError(); the rest is as it was.
bool AskSource(OracleSession& source, Follow follow, ScnStrip& strip);

}  // namespace quillmere
