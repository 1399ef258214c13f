// SPDX-License-Identifier: MIT
// Checks 6 to 11, of the source.
#include <algorithm>
#include <map>

#include "doctor/visit.h"
#include "foundation/text.h"
#include "oracle/commit_miner.h"
#include "oracle/follow_queries.h"
#include "oracle/source_facts.h"

namespace quillmere::doctor {
namespace {

constexpr oci::sb4 kNotInsideAContainer = 65040;

// What the program asks of a source, cheaply, with the view that has to be granted.
struct Question {
  std::string_view sql;
  std::string_view object;
  enum { Always, Rows, Commits } when = Always;
};

constexpr Question kQuestions[] = {
    {"select ktuxescnw from x$ktuxe where ktuxescnw < 0", "", Question::Rows},
    {"select member from v$logfile where group# < 0", "v_$logfile"},
    {"select scn, sql_redo from v$logmnr_contents where scn < 0", "v_$logmnr_contents"},
    {follow::kReadScn, "v_$database", Question::Commits},
    {follow::kOldestOpen, "gv_$transaction", Question::Commits},
    {"select sid from gv$session where sid < 0", "gv_$session", Question::Commits},
    {"select thread# from v$thread where thread# < 0", "v_$thread", Question::Commits},
    {"select group# from v$log where group# < 0", "v_$log", Question::Commits},
    {"select name from v$archived_log where sequence# < 0", "v_$archived_log", Question::Commits},
    {"select username from dba_users where username = ' '", "dba_users"},
    {"select owner from dba_all_tables where owner = ' '", "dba_all_tables"},
    {"select owner from dba_tab_columns where owner = ' '", "dba_tab_columns"},
    {"select owner from dba_objects where owner = ' '", "dba_objects", Question::Commits},
    {"select owner from dba_constraints where owner = ' '", "dba_constraints"},
    {"select owner from dba_cons_columns where owner = ' '", "dba_cons_columns"},
    {"select owner from dba_indexes where owner = ' '", "dba_indexes"},
    {"select index_owner from dba_ind_columns where index_owner = ' '", "dba_ind_columns"},
};

std::string Duration(std::int64_t minutes) {
  return minutes < 120 ? std::to_string(minutes) + " minutes"
                       : std::to_string(minutes / 60) + " hours";
}

}  // namespace

std::string CheckSourceGrants(Visit& visit) {
  Side& side = visit.Source();
  if (!visit.Connected(side)) return {};
  for (const Question& question : kQuestions) {
    if (question.when == Question::Rows && visit.ByCommits()) continue;
    if (question.when == Question::Commits && !visit.ByCommits()) continue;
    TextRows rows;
    if (question.object == "v_$logmnr_contents") {
      // Without a mining session in hand the view is refused as such, and that is an answer.
      constexpr oci::sb4 kNotMining = 1306;
      if (ReadRows(side.session, question.sql, 1, rows) ||
          side.session.LastErrorCode() == kNotMining) {
        continue;
      }
    } else if (ReadRows(side.session, question.sql, 1, rows)) {
      continue;
    }
    const std::string user = UserName(side);
    visit.Fail(side.log_on.name, side.session.LastError(),
               question.object.empty()
                   ? "-- x$ktuxe is for SYS alone: quillmere-cli source edit " + side.log_on.name +
                         " --user SYS --mode SYSDBA, or follow commits"
                   : "grant select on sys." + std::string(question.object) + " to " + user + ";",
               &side);
  }
  return "every query of the program is answered";
}

std::string CheckLogMiner(Visit& visit) {
  Side& side = visit.Source();
  if (!visit.Connected(side)) return {};
  CommitMiner miner(side.session);
  std::vector<RedoLog> logs;
  if (!miner.ListOnlineLogs(logs)) {
    visit.Unknown(side, side.session.LastError());
    return {};
  }
  const auto current =
      std::find_if(logs.begin(), logs.end(), [](const RedoLog& log) { return log.current; });
  if (current == logs.end()) {
    visit.Fail(side.log_on.name, "no current log can be read");
    return {};
  }
  if (miner.StartMining({*current}, current->first_scn) && miner.EndMining()) {
    return "starts and ends on " + current->file;
  }
  const std::string user = UserName(side);
  visit.Fail(
      side.log_on.name, side.session.LastError(),
      side.session.LastErrorCode() == kNotInsideAContainer
          ? "-- before 19c only the root can be mined: quillmere-cli job edit " + visit.Job().name +
                " --container ..., with a data source at the root"
          : "grant execute on sys.dbms_logmnr to " + user + ";\ngrant logmining to " + user + ";",
      &side);
  return {};
}

std::string CheckArchiving(Visit& visit) {
  std::string mode;
  Side& side = visit.Source();
  if (!visit.ReadOne(side, "select log_mode from v$database", mode)) return {};
  if (mode == "NOARCHIVELOG" && visit.ByCommits()) {
    visit.Warn(side.log_on.name, "redo that is overwritten is lost: nothing is archived",
               "-- shutdown immediate, startup mount\nalter database archivelog;\nalter database "
               "open;",
               &side);
  }
  return mode + (visit.ByCommits() ? "" : "; by rows only online logs are read");
}

std::string CheckSupplemental(Visit& visit) {
  Side& side = visit.Source();
  if (!visit.Connected(side)) return {};
  SupplementalLogging database;
  if (!SourceFacts(side.session).ReadSupplemental(database)) {
    visit.Unknown(side, side.session.LastError());
    return {};
  }
  if (!database.minimal) {
    visit.Fail(side.log_on.name, "without the minimal kind LogMiner can not be relied on",
               "alter database add supplemental log data;", &side);
  }
  if (database.key || database.all) {
    return std::string("for the whole database: ") + (database.all ? "all columns" : "keys");
  }
  Side& tables = visit.SourceTables();
  std::map<SourceFacts::TableName, SupplementalLogging> logging;
  if (!visit.Connected(tables) || !tables.facts.Load(visit, tables)) return {};
  if (!SourceFacts(tables.session).ReadTableLogging(logging)) {
    visit.Unknown(tables, tables.session.LastError());
    return {};
  }
  for (const CarriedTable& table : visit.Job().tables) {
    const auto found = logging.find({table.owner, table.name});
    if (found != logging.end() && (found->second.key || found->second.all)) continue;
    const std::string name = SqlName(table.owner, table.name);
    const TableFacts::Table* const known = tables.facts.Find(table.owner, table.name);
    const bool keyed = known != nullptr && !known->key.empty();
    visit.Fail(name, "its updates may not tell their row",
               "alter table " + name + " add supplemental log data (" +
                   (keyed ? "primary key" : "all") + ") columns;",
               &tables);
  }
  return "for each table of the job";
}

std::string CheckRedoKept(Visit& visit) {
  Side& side = visit.Source();
  if (!visit.Connected(side)) return {};
  SourceFacts facts(side.session);
  RedoReach online;
  RedoReach archived;
  std::int64_t oldest_open = CommitMiner::kNoneOpen;
  if (!facts.ReadOnlineReach(online) ||
      (visit.ByCommits() && (!facts.ReadArchivedReach(archived) ||
                             !CommitMiner(side.session).ReadOldestOpen(oldest_open)))) {
    visit.Unknown(side, side.session.LastError());
    return {};
  }
  // A database that has never gone on to a second log has all its redo.
  const bool whole = online.logs <= 1;
  const std::int64_t minutes = std::max(online.minutes, archived.minutes);
  const std::int64_t needed = 2 * std::int64_t{visit.Job().interval};
  const std::string more_logs =
      "alter database add logfile size 1G;\n-- until the oldest online log is older than two "
      "intervals";
  if (!whole && minutes < needed) {
    visit.Fail(side.log_on.name,
               "redo is kept for " + Duration(minutes) + ", two intervals are " + Duration(needed),
               more_logs, &side);
  }
  const std::int64_t from =
      archived.logs > 0 ? std::min(online.from_scn, archived.from_scn) : online.from_scn;
  if (!whole && oldest_open > 0 && oldest_open < from) {
    visit.Fail(side.log_on.name,
               "a transaction is open since SCN " + std::to_string(oldest_open) +
                   ", the oldest redo there begins at " + std::to_string(from),
               "-- bring the archived logs back, or end the transaction before the job starts",
               &side);
  }
  return "for " + Duration(minutes) + (whole ? ", in the first log that was used" : "");
}

std::string CheckMembers(Visit& visit) {
  Side& side = visit.Source();
  TextRows rows;
  if (!visit.Read(side, "select group#, member, status from v$logfile order by group#", 3, rows)) {
    return {};
  }
  std::map<std::string, bool> readable;  // by group
  for (const std::vector<std::string>& row : rows) readable[row[0]] |= row[2].empty();
  for (const std::vector<std::string>& row : rows) {
    if (row[2].empty()) continue;
    const std::string text = "group " + row[0] + ": " + row[1] + " is " + row[2];
    const std::string cure = "alter database drop logfile member " + SqlLiteral(row[1]) +
                             ";\nalter database add logfile member " + SqlLiteral(row[1]) +
                             " reuse to group " + row[0] + ";";
    // By rows all members are given to LogMiner.
    if (visit.ByCommits() && readable[row[0]]) {
      visit.Warn(side.log_on.name, text, cure, &side);
    } else {
      visit.Fail(side.log_on.name, text, cure, &side);
    }
  }
  return std::to_string(rows.size()) + " members, all in use";
}

}  // namespace quillmere::doctor
