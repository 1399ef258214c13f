// SPDX-License-Identifier: MIT
#include "engine/redo_logs.h"

#include <algorithm>
#include <map>

namespace quillmere {
namespace {

using LogsBySequence = std::map<std::int64_t, const RedoLog*>;

// The first SCN of a thread's redo that is needed; nothing of it is when that is behind its end.
std::int64_t NeededFrom(const RedoThread& thread, std::int64_t from) {
  return std::max(from, thread.enabled_from);
}

bool IsNeeded(const RedoThread& thread, std::int64_t from) {
  return thread.open || thread.last_redo_scn >= from;
}

std::string Gone(const RedoThread& thread, std::int64_t from, std::int64_t upto) {
  return "redo of thread " + std::to_string(thread.number) + " from SCN " + std::to_string(from) +
         " to " + std::to_string(upto) +
         " is gone. Bring the archived logs back (and register them with the database), or stop "
         "the job, copy the tables and start it anew";
}

LogsBySequence LogsOf(const RedoThread& thread, const std::vector<RedoLog>& online,
                      const std::vector<RedoLog>& archived) {
  LogsBySequence logs;
  for (const std::vector<RedoLog>* list : {&online, &archived}) {
    for (const RedoLog& log : *list) {
      if (log.thread == thread.number) logs.try_emplace(log.sequence, &log);
    }
  }
  return logs;
}

// The latest log that begins at or before the SCN; end when there is none.
LogsBySequence::const_iterator LogWith(const LogsBySequence& logs, std::int64_t scn) {
  auto found = logs.end();
  for (auto log = logs.begin(); log != logs.end() && log->second->first_scn <= scn; ++log) {
    found = log;
  }
  return found;
}

bool ChooseOfThread(const RedoThread& thread, const LogsBySequence& logs, std::int64_t from,
                    std::vector<RedoLog>& chosen, std::string& reason) {
  const std::int64_t needed = NeededFrom(thread, from);
  auto log = LogWith(logs, needed);
  if (log == logs.end()) {
    const std::int64_t begin =
        logs.empty() ? thread.last_redo_scn + 1 : logs.begin()->second->first_scn;
    reason = Gone(thread, needed, begin - 1);
    return false;
  }
  for (const RedoLog* before = nullptr; log != logs.end(); ++log) {
    if (before != nullptr && log->first != before->sequence + 1) {
      const std::int64_t gone = before->next_scn > 0 ? before->next_scn : before->first_scn;
      reason = Gone(thread, std::max(gone, needed), log->second->first_scn - 1);
      return false;
    }
    before = log->second;
    chosen.push_back(*before);
  }
  if (!thread.open || chosen.back().current) return true;
  reason = "thread " + std::to_string(thread.number) +
           " has no current log that can be read. Look at v$logfile";
  return false;
}

}  // namespace

bool NeedsArchivedLogs(const std::vector<RedoThread>& threads, const std::vector<RedoLog>& online,
                       std::int64_t from) {
  return std::any_of(threads.begin(), threads.end(), [&](const RedoThread& thread) {
    if (!IsNeeded(thread, from)) return false;
    const LogsBySequence logs = LogsOf(thread, online, {});
    return LogWith(logs, NeededFrom(thread, from)) == logs.end();
  });
}

bool ChooseLogs(const std::vector<RedoThread>& threads, const std::vector<RedoLog>& online,
                const std::vector<RedoLog>& archived, std::int64_t from,
                std::vector<RedoLog>& chosen, std::string& reason) {
  chosen.clear();
  for (const RedoThread& thread : threads) {
    if (!IsNeeded(thread, from)) continue;
    if (!ChooseOfThread(thread, LogsOf(thread, online, archived), from, chosen, reason)) {
      return false;
    }
  }
  return true;
}

const RedoLog* FirstUsedAgain(const std::vector<RedoLog>& chosen,
                              const std::vector<RedoLog>& online, const std::vector<RedoLog>& now) {
  const auto same = [](const RedoLog& log) {
    return [&log](const RedoLog& other) {
      return other.thread == log.thread && other.sequence == log.sequence &&
             other.first_scn == log.first_scn;
    };
  };
  for (const RedoLog& log : chosen) {
    const bool was_online = std::any_of(online.begin(), online.end(), same(log));
    if (was_online && std::none_of(now.begin(), now.end(), same(log))) return &log;
  }
  return nullptr;
}

}  // namespace quillmere
