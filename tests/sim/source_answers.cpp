// SPDX-License-Identifier: MIT
#include "sim/source_answers.h"

#include "oracle/follow_queries.h"
#include "sim/statement_match.h"

namespace quillmere::sim {
namespace {

// Of the catalogue.
constexpr std::string_view kEnterContainer = "alter session set container = SHOPPDB";
constexpr std::string_view kUsers = "select username  from dba_users";
constexpr std::string_view kTablesOfUsers = "select owner, table_name,  NVL(tablespace_name";

template <typename... Columns>
void Put(Rows& rows, const Columns&... columns) {
  const auto text = [](const auto& column) {
    if constexpr (std::is_arithmetic_v<std::decay_t<decltype(column)>>) {
      return std::to_string(column);
    } else {
      return std::string(column);
    }
  };
  rows.push_back({text(columns)...});
}

void PutLogs(const RedoThread& thread, std::size_t t, std::string_view sql, Rows& rows) {
  const std::size_t members = thread.Shape().members;
  for (std::size_t i = 0; i < thread.Online().size() * members; ++i) {
    const std::string name = MemberName(t, i / members, i % members);
    const LogFile& file = thread.Online()[i / members];
    const char* status = i / members == thread.Current() ? "CURRENT" : "INACTIVE";
    if (sql == kRowsMembers) {
      Put(rows, name);
    } else if (sql == follow::kOnlineLogs && file.sequence != 0) {
      Put(rows, t + 1, file.sequence, file.first, status, name);
    } else if (sql == follow::kLogsNow && file.sequence != 0 && i % members == 0) {
      Put(rows, t + 1, file.sequence, file.first);
    }
  }
}

// Every second log was archived to two places.
void PutArchives(const SourceModel& source, std::size_t t, std::int64_t start, Rows& rows) {
  for (const LogFile& file : source.Threads()[t].Archived()) {
    if (file.next <= start) continue;
    const std::string name = ArchiveName(t, file.sequence, source.ResetlogsScn());
    Put(rows, t + 1, file.sequence, file.first, file.next, name);
    if (file.sequence % 2 != 0) Put(rows, t + 1, file.sequence, file.first, file.next, name + "2");
  }
}

void PutOldestSession(const SourceModel& source, std::int64_t start_scn, Rows& rows) {
  const Transaction* oldest = source.OldestTransaction();
  if (oldest == nullptr || oldest->start_scn != start_scn) return;
  const std::int64_t hours = (source.Now() - oldest->begun_at) / 3'600'000;
  Put(rows, hours, oldest->thread + 1, oldest->number, 1, "SHOP", "desk-7", "till");
}

}  // namespace

bool Answer(SourceModel& source, std::string_view sql, Rows& rows) {
  const auto archives = Match(follow::kArchivedLogs, sql);
  const auto session = Match(follow::kOldestSession, sql);
  const auto container = Match(follow::kOpenMode, sql);
  const bool logs = sql == kRowsMembers || sql == follow::kOnlineLogs || sql == follow::kLogsNow;
  if (sql == kRowsScn || sql == follow::kReadScn) {
    Put(rows, source.CurrentScn());
  } else if (sql == follow::kOldestOpen) {
    Put(rows, source.OldestOpen());
  } else if (sql == follow::kOnlineReach || sql == follow::kArchivedReach) {
    Put(rows, 0, 0, 0);
  } else if (sql == follow::kIdentity) {
    Put(rows, 1'234'567'890, source.ResetlogsScn());
  } else if (sql == follow::kContainer) {
    Put(rows, source.Shape().containers > 1 ? "CDB$ROOT" : "SHOPDB");
  } else if (container) {
    if ((*container)[0] == kContainers[0]) Put(rows, "READ WRITE");
  } else if (sql == kEnterContainer) {
  } else if (sql.starts_with(kUsers)) {
    Put(rows, "SHOP");
  } else if (sql.starts_with(kTablesOfUsers)) {
    for (const std::string_view table : kTables) Put(rows, "SHOP", table, "DATA", 7);
  } else if (session) {
    PutOldestSession(source, std::stoll(std::string((*session)[0])), rows);
  } else if (!logs && !archives && sql != follow::kThreads) {
    return false;
  }
  for (std::size_t t = 0; t < source.Threads().size(); ++t) {
    const RedoThread& thread = source.Threads()[t];
    if (logs) PutLogs(thread, t, sql, rows);
    if (archives) PutArchives(source, t, std::stoll(std::string((*archives)[0])), rows);
    if (sql != follow::kThreads) continue;
    Put(rows, t + 1, "OPEN", thread.LastWritten(), thread.EnabledFrom());
  }
  return true;
}

}  // namespace quillmere::sim
