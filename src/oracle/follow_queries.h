// SPDX-License-Identifier: MIT
// The statements of following by commits, whole and in one place: the engine sends them, and what
// answers in tests answers exactly these. Every column is fetched as text; numbers have at most 20
// digits. "{}" stands for a value, in order: a number, or a text whose quotes the caller has
// doubled.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace quillmere::follow {

// The statement with its values. As many values as there are "{}".
inline std::string FillIn(std::string_view statement,
                          std::initializer_list<std::string_view> values) {
  std::string filled;
  for (const std::string_view value : values) {
    const std::size_t place = statement.find("{}");
    filled.append(statement.substr(0, place)).append(value);
    statement.remove_prefix(place + 2);
  }
  return filled.append(statement);
}

// --- A reading, in this order on one connection: SCN, oldest open, SCN ------------------------

// The SCN of the instance that is asked. It may be that of the latest commit itself, and on a
// cluster it may lag behind the commits of another instance.
inline constexpr std::string_view kReadScn = "select current_scn from v$database";

// The smallest START_SCN of the transactions open on all instances; -1 when none is open, 0 while
// one of them has none yet. min() alone would pass over a NULL, and with it over a transaction.
inline constexpr std::string_view kOldestOpen =
    "select nvl(min(nvl(start_scn, 0)), -1) from gv$transaction";

// Who holds it, for the warning: hours it is open, instance, session, serial number, user, machine,
// program. Value: the START_SCN. No row when it has ended meanwhile.
inline constexpr std::string_view kOldestSession =
    "select trunc((sysdate - t.start_date) * 24), s.inst_id, s.sid, s.serial#, s.username, "
    "s.machine, s.program from gv$transaction t join gv$session s on s.inst_id = t.inst_id and "
    "s.saddr = t.ses_addr where t.start_scn = {}";

// The same of all that are open, with the START_SCN before it; for the operator to look at.
inline constexpr std::string_view kOpenSessions =
    "select t.start_scn, trunc((sysdate - t.start_date) * 24), s.inst_id, s.sid, s.serial#, "
    "s.username, s.machine, s.program from gv$transaction t join gv$session s on s.inst_id = "
    "t.inst_id and s.saddr = t.ses_addr where t.start_scn > 0";

// --- Which database, and how far its redo is written -----------------------------------------

// Another pair than at the start: another database, or one opened with RESETLOGS.
inline constexpr std::string_view kIdentity = "select dbid, resetlogs_change# from v$database";

// Thread, OPEN or CLOSED, SCN of the last redo written, SCN from which on it is enabled. All of
// them: the redo of a thread that was closed after the mining start is needed as well. Idleness
// (the third column does not move) is measured by the caller's steady clock, not by the server's.
inline constexpr std::string_view kThreads =
    "select thread#, status, nvl(last_redo_change#, 0), nvl(enable_change#, 0) from v$thread";

// --- Logs ------------------------------------------------------------------------------------

// Thread, sequence, first SCN, CURRENT or ACTIVE or INACTIVE, member: every member that can be read
// of every group in use; the first of a (thread, sequence) is to be added. An open thread without a
// CURRENT row has lost its log. NEXT_CHANGE# is left out: of the current log it is a number beyond
// 63 bits since 12.2, and consecutive sequences say as much.
inline constexpr std::string_view kOnlineLogs =
    "select l.thread#, l.sequence#, l.first_change#, l.status, f.member from v$log l join "
    "v$logfile "
    "f on f.group# = l.group# where l.status in ('CURRENT', 'ACTIVE', 'INACTIVE') and f.type = "
    "'ONLINE' and f.status is null order by l.thread#, l.sequence#, f.member";

// Thread, sequence, first SCN, first SCN of the next, name. Value: the mining start SCN; what ends
// before it is not listed, for the view remembers years. A (thread, sequence) can come once for
// each destination it was archived to; the first is to be added.
inline constexpr std::string_view kArchivedLogs =
    "select thread#, sequence#, first_change#, next_change#, name from v$archived_log where name "
    "is "
    "not null and deleted = 'NO' and status = 'A' and standby_dest = 'NO' and resetlogs_change# = "
    "(select resetlogs_change# from v$database) and next_change# > {} order by thread#, sequence#";

// After the last row: thread, sequence, first SCN. An online log that was added and is not among
// them was used again while it was read.
inline constexpr std::string_view kLogsNow =
    "select thread#, sequence#, first_change# from v$log where status in ('CURRENT', 'ACTIVE', "
    "'INACTIVE')";

// --- What a job stands on, for the operator --------------------------------------------------

// Fails before 12c, which has no containers.
inline constexpr std::string_view kContainer =
    "select sys_context('userenv', 'con_name') from dual";

// At the root. Value: a container; no row when there is none of that name.
inline constexpr std::string_view kOpenMode =
    "select open_mode from v$containers where name = '{}'";

// Value: a container. The dictionary that the session sees is that one's from then on.
inline constexpr std::string_view kEnterContainer = "alter session set container = {}";

// YES, NO or IMPLICIT.
inline constexpr std::string_view kSupplemental =
    "select supplemental_log_data_min, supplemental_log_data_pk, supplemental_log_data_all from "
    "v$database";

// Owner, table, PRIMARY KEY LOGGING or ALL COLUMN LOGGING.
inline constexpr std::string_view kLogGroups =
    "select owner, table_name, log_group_type from dba_log_groups where log_group_type in "
    "('PRIMARY KEY LOGGING', 'ALL COLUMN LOGGING')";

inline constexpr std::string_view kKeyedTables =
    "select owner, table_name from dba_constraints where constraint_type = 'P'";

// How many logs, first SCN of the oldest and minutes since it was begun.
inline constexpr std::string_view kOnlineReach =
    "select count(*), nvl(min(first_change#), 0), nvl(max(trunc((sysdate - first_time) * 1440)), "
    "0) from v$log where status in ('CURRENT', 'ACTIVE', 'INACTIVE')";
inline constexpr std::string_view kArchivedReach =
    "select count(*), nvl(min(first_change#), 0), nvl(max(trunc((sysdate - first_time) * 1440)), "
    "0) from v$archived_log where name is not null and deleted = 'NO' and status = 'A' and "
    "standby_dest = 'NO' and resetlogs_change# = (select resetlogs_change# from v$database)";

// --- Definitions, on both sides --------------------------------------------------------------

// Value: dba or all. How many tables, when a definition changed last, and now.
inline constexpr std::string_view kNewestChange =
    "select count(*), nvl(to_char(max(last_ddl_time), 'YYYY-MM-DD HH24:MI:SS'), '0'), "
    "to_char(sysdate, 'YYYY-MM-DD HH24:MI:SS') from {}_objects where object_type = 'TABLE'";

// --- Contents --------------------------------------------------------------------------------

// Columns of kContents by position.
struct Column {
  enum : std::size_t {
    Scn,
    CommitScn,
    Xid,            // usn.slot.sequence, as v$transaction and messages name it
    OperationCode,  // 1 insert, 2 delete, 3 update, 34 MISSING_SCN; others carry no statement
    Operation,      // its name, for messages
    Rollback,       // 1: undoes an earlier change of its transaction
    Csf,            // 1: the text goes on in the next row
    Status,         // 2: the text can not be executed
    Owner,
    Table,
    Change,      // RS_ID.SSN: all pieces of one change
    Row,         // DATA_OBJ#.ROW_ID: what an undo row finds its change by
    CommitTime,  // for the batch file
    SqlRedo,
    Count
  };
};

// Values: C and U. Takes committed changes with C <= COMMIT_SCN < U, and lets through what is to
// stop or to be told: a NULL COMMIT_SCN (MISSING_SCN has none), a NULL owner, and every operation
// but those known to change no row (internal, DDL, start, commit, select for update, rollback):
// numbers of the rarer ones differ between versions. What is filtered away (another COMMIT_SCN)
// belongs to another pass whatever its order, so a fall within [C, U) is still seen.
inline constexpr std::string_view kContents =
    "select scn, commit_scn, xidusn||'.'||xidslt||'.'||xidsqn, operation_code, operation, "
    "rollback, "
    "csf, status, seg_owner, table_name, rs_id||'.'||ssn, data_obj#||'.'||row_id, "
    "to_char(commit_timestamp, 'YYYY-MM-DD HH24:MI:SS'), sql_redo from v$logmnr_contents where "
    "operation_code not in (0, 5, 6, 7, 25, 36) and (seg_owner is null or seg_owner not in ('SYS', "
    "'SYSTEM')) and (commit_scn is null or (commit_scn >= {} and commit_scn < {}))";

// Behind it at the root of a container database. Value: the container.
inline constexpr std::string_view kOfContainer =
    " and (operation_code = 34 or src_con_name = '{}')";

// --- Destination -----------------------------------------------------------------------------

inline constexpr std::string_view kSavepoint = "savepoint quillmere";
inline constexpr std::string_view kBackToSavepoint = "rollback to savepoint quillmere";
inline constexpr std::string_view kRollback = "rollback";

// The position row. Values: the owner of its table first, then as named.
inline constexpr std::string_view kCreatePositions =
    "create table {}.QUILLMERE_POSITION (job_id varchar2(32) primary key, cutoff_scn number(20) "
    "not "
    "null, batch_remaining number(10) not null, written date not null)";
// Job id, C, batch remaining.
inline constexpr std::string_view kInsertPosition =
    "insert into {}.QUILLMERE_POSITION (job_id, cutoff_scn, batch_remaining, written) values "
    "('{}', "
    "{}, {}, sysdate)";
// Job id. Waits for a session that is still dying: ORA-30006 after 5 s.
inline constexpr std::string_view kLockPosition =
    "select cutoff_scn, batch_remaining from {}.QUILLMERE_POSITION where job_id = '{}' for update "
    "wait 5";
// C, batch remaining, job id.
inline constexpr std::string_view kUpdatePosition =
    "update {}.QUILLMERE_POSITION set cutoff_scn = {}, batch_remaining = {}, written = sysdate "
    "where "
    "job_id = '{}'";
// Job id.
inline constexpr std::string_view kDeletePosition =
    "delete from {}.QUILLMERE_POSITION where job_id = '{}'";

}  // namespace quillmere::follow
