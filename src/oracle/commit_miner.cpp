// SPDX-License-Identifier: MIT
#include "oracle/commit_miner.h"

#include <algorithm>

#include "foundation/text.h"
#include "oracle/follow_queries.h"
#include "oracle/text_query.h"

namespace quillmere {
namespace {

constexpr oci::sb4 kNumberBytes = 40;
constexpr oci::sb4 kNameBytes = 512;
constexpr oci::sb4 kFileBytes = 2052;
constexpr oci::sb4 kTextBytes = 16'000;
// Rows a round trip: some hundred are enough to forget about it, and a server sends wide ones.
constexpr oci::ub4 kPrefetchRows = 500;

bool TakeNumber(TextQuery& query, std::size_t column, std::string_view what, std::int64_t& number) {
  if (ParseNumber(query.Text(column), number)) return true;
  return query.Refuse(std::string(what) + " is not a number: '" + std::string(query.Text(column)) +
                      "'");
}

// Reads all rows; take_row returns false after it refused one.
template <typename TakeRow>
bool ReadAll(TextQuery& query, const TakeRow& take_row) {
  TextQuery::Row row{};
  while ((row = query.Fetch()) == TextQuery::Row::Fetched) {
    if (query.Truncated()) return query.Refuse("a text is longer than expected");
    if (!take_row()) return false;
  }
  return row == TextQuery::Row::End;
}

// Instance, session, serial number, user, machine and program, from that column on.
std::string HolderIn(const TextQuery& query, std::size_t first) {
  const auto text = [&](std::size_t column) { return std::string(query.Text(first + column)); };
  return "session " + text(1) + "," + text(2) + " of " + text(3) + " on instance " + text(0) +
         " (" + text(5) + " at " + text(4) + ")";
}

bool ReadNumber(OracleSession& session, std::string_view sql, std::string_view what,
                std::int64_t& number) {
  TextQuery query(session, kSingleLabels);
  return query.OpenWithRow(sql, {kNumberBytes}) && TakeNumber(query, 0, what, number);
}

bool IsRepeated(const std::vector<RedoLog>& logs, const RedoLog& log) {
  return !logs.empty() && logs.back().thread == log.thread && logs.back().sequence == log.sequence;
}

bool TakeRow(TextQuery& query, MinedRow& row) {
  using Column = follow::Column;
  if (query.Truncated()) return query.Refuse("a text of the redo is longer than expected");
  row.commit_scn = MinedRow::kNoScn;
  if (!TakeNumber(query, Column::Scn, "the SCN of a row", row.scn) ||
      !TakeNumber(query, Column::OperationCode, "the operation of a row", row.operation_code)) {
    return false;
  }
  if (!query.Text(Column::CommitScn).empty() &&
      !TakeNumber(query, Column::CommitScn, "the commit SCN of a row", row.commit_scn)) {
    return false;
  }
  row.transaction = query.Text(Column::Xid);
  row.operation = query.Text(Column::Operation);
  row.undoes = query.Text(Column::Rollback) == "1";
  row.goes_on = query.Text(Column::Csf) == "1";
  row.not_executable = query.Text(Column::Status) == "2";
  row.owner = query.Text(Column::Owner);
  row.table = query.Text(Column::Table);
  row.change = query.Text(Column::Change);
  row.row = query.Text(Column::Row);
  row.commit_time = query.Text(Column::CommitTime);
  row.text = query.Raw(Column::SqlRedo);
  return true;
}

}  // namespace

bool CommitMiner::ReadIdentity(SourceIdentity& identity) {
  TextQuery query(session_, kSingleLabels);
  if (!query.OpenWithRow(follow::kIdentity, {kNumberBytes, kNumberBytes})) return false;
  identity = {std::string(query.Text(0)), std::string(query.Text(1))};
  return true;
}

bool CommitMiner::ReadScn(std::int64_t& scn) {
  return ReadNumber(session_, follow::kReadScn, "the current SCN", scn);
}

bool CommitMiner::ReadOldestOpen(std::int64_t& scn) {
  return ReadNumber(session_, follow::kOldestOpen, "the oldest START_SCN", scn);
}

bool CommitMiner::DescribeOldest(std::int64_t start_scn, std::string& holder, std::int64_t& hours) {
  holder.clear();
  hours = 0;
  TextQuery query(session_, kListLabels);
  const std::string sql = follow::FillIn(follow::kOldestSession, {std::to_string(start_scn)});
  if (!query.Open(sql, {kNumberBytes, kNumberBytes, kNumberBytes, kNumberBytes, kNameBytes,
                        kNameBytes, kNameBytes})) {
    return false;
  }
  const TextQuery::Row row = query.Fetch();
  if (row != TextQuery::Row::Fetched) return row == TextQuery::Row::End;
  if (!TakeNumber(query, 0, "the age of a transaction", hours)) return false;
  holder = HolderIn(query, 1);
  return true;
}

bool CommitMiner::ListOpen(std::vector<OpenTransaction>& open, std::size_t most) {
  open.clear();
  TextQuery query(session_, kListLabels);
  const bool read =
      query.Open(follow::kOpenSessions, {kNumberBytes, kNumberBytes, kNumberBytes, kNumberBytes,
                                         kNumberBytes, kNameBytes, kNameBytes, kNameBytes}) &&
      ReadAll(query, [&] {
        OpenTransaction& found = open.emplace_back();
        found.holder = HolderIn(query, 2);
        return TakeNumber(query, 0, "START_SCN", found.start_scn) &&
               TakeNumber(query, 1, "the age of a transaction", found.hours);
      });
  std::sort(open.begin(), open.end(), [](const OpenTransaction& a, const OpenTransaction& b) {
    return a.start_scn < b.start_scn;
  });
  open.resize(std::min(open.size(), most));
  return read;
}

bool CommitMiner::ReadThreads(std::vector<RedoThread>& threads) {
  threads.clear();
  TextQuery query(session_, kListLabels);
  return query.Open(follow::kThreads, {kNumberBytes, kNumberBytes, kNumberBytes, kNumberBytes}) &&
         ReadAll(query, [&] {
           RedoThread& thread = threads.emplace_back();
           thread.open = query.Text(1) == "OPEN";
           return TakeNumber(query, 0, "the number of a redo thread", thread.number) &&
                  TakeNumber(query, 2, "LAST_REDO_CHANGE#", thread.last_redo_scn) &&
                  TakeNumber(query, 3, "ENABLE_CHANGE#", thread.enabled_from);
         });
}

bool CommitMiner::ListOnlineLogs(std::vector<RedoLog>& logs) {
  logs.clear();
  TextQuery query(session_, kListLabels);
  return query.Open(follow::kOnlineLogs,
                    {kNumberBytes, kNumberBytes, kNumberBytes, kNumberBytes, kFileBytes}) &&
         ReadAll(query, [&] {
           RedoLog log;
           log.current = query.Text(3) == "CURRENT";
           log.file = query.Text(4);
           if (!TakeNumber(query, 0, "the thread of a log", log.thread) ||
               !TakeNumber(query, 1, "the sequence of a log", log.sequence) ||
               !TakeNumber(query, 2, "FIRST_CHANGE#", log.first_scn)) {
             return false;
           }
           // Members of one group hold the same.
           if (!IsRepeated(logs, log)) logs.push_back(std::move(log));
           return true;
         });
}

bool CommitMiner::ListArchivedLogs(std::int64_t from_scn, std::vector<RedoLog>& logs) {
  logs.clear();
  TextQuery query(session_, kListLabels);
  const std::string sql = follow::FillIn(follow::kArchivedLogs, {std::to_string(from_scn)});
  return query.Open(sql, {kNumberBytes, kNumberBytes, kNumberBytes, kNumberBytes, kFileBytes}) &&
         ReadAll(query, [&] {
           RedoLog log;
           log.file = query.Text(4);
           if (!TakeNumber(query, 0, "the thread of a log", log.thread) ||
               !TakeNumber(query, 1, "the sequence of a log", log.sequence) ||
               !TakeNumber(query, 2, "FIRST_CHANGE#", log.first_scn) ||
               !TakeNumber(query, 3, "NEXT_CHANGE#", log.next_scn)) {
             return false;
           }
           if (!IsRepeated(logs, log)) logs.push_back(std::move(log));
           return true;
         });
}

bool CommitMiner::ListLogsNow(std::vector<RedoLog>& logs) {
  logs.clear();
  TextQuery query(session_, kListLabels);
  return query.Open(follow::kLogsNow, {kNumberBytes, kNumberBytes, kNumberBytes}) &&
         ReadAll(query, [&] {
           RedoLog& log = logs.emplace_back();
           return TakeNumber(query, 0, "the thread of a log", log.thread) &&
                  TakeNumber(query, 1, "the sequence of a log", log.sequence) &&
                  TakeNumber(query, 2, "FIRST_CHANGE#", log.first_scn);
         });
}

bool CommitMiner::StartMining(const std::vector<RedoLog>& logs, std::int64_t from_scn) {
  std::string_view option = "DBMS_LOGMNR.NEW";
  for (const RedoLog& log : logs) {
    const std::string add = "begin dbms_logmnr.add_logfile(logfilename=>" + SqlLiteral(log.file) +
                            ", options=>" + std::string(option) + "); end;";
    if (!session_.Execute(add)) return false;
    option = "DBMS_LOGMNR.ADDFILE";
  }
  return session_.Execute(
      "begin dbms_logmnr.start_logmnr(options=>dbms_logmnr.dict_from_online_catalog + "
      "dbms_logmnr.committed_data_only, startscn=>" +
      std::to_string(from_scn) + "); end;");
}

bool CommitMiner::Mine(std::int64_t from, std::int64_t to, std::string_view container,
                       CommitSink& sink) {
  TextQuery query(session_, kListLabels);
  std::string sql = follow::FillIn(follow::kContents, {std::to_string(from), std::to_string(to)});
  if (!container.empty()) sql += follow::FillIn(follow::kOfContainer, {container});
  if (!query.Allocate() || !query.Prepare(sql)) return false;
  query.SetPrefetch(kPrefetchRows);
  if (!query.Define({kNumberBytes, kNumberBytes, kNameBytes, kNumberBytes, kNameBytes, kNumberBytes,
                     kNumberBytes, kNumberBytes, kNameBytes, kNameBytes, kNameBytes, kNameBytes,
                     kNumberBytes, kTextBytes}) ||
      !query.Execute()) {
    return false;
  }
  MinedRow row;
  TextQuery::Row fetched{};
  while ((fetched = query.Fetch()) == TextQuery::Row::Fetched) {
    if (!TakeRow(query, row)) return false;
    std::string reason;
    const CommitSink::Next next = sink.OnRow(row, reason);
    if (next == CommitSink::Next::Fail) return query.Refuse(reason);
    if (next == CommitSink::Next::Enough) return true;
  }
  return fetched == TextQuery::Row::End;
}

bool CommitMiner::EndMining() {
  return session_.Execute("begin dbms_logmnr.end_logmnr(); end;");
}

}  // namespace quillmere
