// SPDX-License-Identifier: MIT
// Which redo logs a capture by commits gives to LogMiner. Pure functions.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "oracle/commit_miner.h"

namespace quillmere {

// True when an open or lately closed thread has no online log with the SCN from in it or before it,
// so that archived logs must be asked for.
bool NeedsArchivedLogs(const std::vector<RedoThread>& threads, const std::vector<RedoLog>& online,
                       std::int64_t from);

// The logs of every thread from the SCN on without a hole, each once, an online one before an
// archived one. False and "redo of thread t from SCN x to y is gone" when there is a hole, in which
// nobody knows what was: nothing may be mined then.
bool ChooseLogs(const std::vector<RedoThread>& threads, const std::vector<RedoLog>& online,
                const std::vector<RedoLog>& archived, std::int64_t from,
                std::vector<RedoLog>& chosen, std::string& reason);

// The first of the chosen online logs that was used again while it was read, or null: now are the
// online logs after the last row.
const RedoLog* FirstUsedAgain(const std::vector<RedoLog>& chosen,
                              const std::vector<RedoLog>& online, const std::vector<RedoLog>& now);

}  // namespace quillmere
