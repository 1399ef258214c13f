// SPDX-License-Identifier: MIT
#include "sandbox/store/dictionary_views.h"

namespace quillmere::sandbox {

namespace {

// A view as it is written here: its columns by name and expression, each ended by a semicolon, and
// what they are taken from. "n:" before a name makes it a number, "d:" a date.
struct Definition {
  std::string_view name;
  ViewAccess access;
  std::string_view columns;
  std::string_view from;
};

constexpr std::string_view kTables =
    "OWNER t.owner; TABLE_NAME t.name; TABLESPACE_NAME t.tablespace; n:NUM_ROWS NULL;"
    "STATUS 'VALID'; TEMPORARY iif(t.temporary, 'Y', 'N');";

// Of all objects only the tables.
constexpr std::string_view kObjects =
    "OWNER t.owner; OBJECT_NAME t.name; n:OBJECT_ID t.id; OBJECT_TYPE 'TABLE'; d:CREATED t.created;"
    "d:LAST_DDL_TIME t.last_ddl; STATUS 'VALID';";

constexpr std::string_view kTabColumns =
    "OWNER t.owner; TABLE_NAME t.name; COLUMN_NAME c.name; DATA_TYPE c.data_type;"
    "n:DATA_LENGTH c.data_length; n:DATA_PRECISION c.data_precision; n:DATA_SCALE c.data_scale;"
    "NULLABLE CASE WHEN c.nullable AND NOT EXISTS (SELECT 1 FROM qm_constraint_column p"
    " JOIN qm_constraint k ON k.id = p.constraint_id AND k.type = 'P' WHERE p.column_id = c.id)"
    " THEN 'Y' ELSE 'N' END;"
    "n:COLUMN_ID c.position; DATA_DEFAULT c.default_text; n:CHAR_LENGTH c.char_length;"
    "CHAR_USED c.char_used; DATA_TYPE_OWNER NULL; n:DEFAULT_LENGTH length(c.default_text);";
constexpr std::string_view kTabColumnsFrom = "qm_column c JOIN qm_table t ON t.id = c.table_id";

constexpr std::string_view kNoGrants = "OWNER NULL; TABLE_NAME NULL; PRIVILEGE NULL;";

// There is one at most, and of the sessions only the one that has it is known.
constexpr std::string_view kTransactions =
    "n:INST_ID 1; STATUS 'ACTIVE'; n:XIDUSN t.start_scn % 10 + 1; n:XIDSLT t.start_scn % 48;"
    "n:XIDSQN t.start_scn; n:START_SCN t.start_scn; d:START_DATE t.started;"
    "SES_ADDR printf('%016X', t.process);";
constexpr std::string_view kSessions =
    "n:INST_ID 1; SADDR printf('%016X', t.process); n:SID t.process; n:SERIAL# 1; STATUS 'ACTIVE';"
    "USERNAME t.user; MACHINE t.machine; PROGRAM t.program;";

// The plus signs keep SQLite from walking through all indexes of an owner: the table's name, which
// is always asked for, leads there faster. A constraint's owner is that of its table.
constexpr Definition kDefinitions[] = {
    {"DUAL", ViewAccess::Everybody, "DUMMY 'X';", "(SELECT 1)"},
    {"V$VERSION", ViewAccess::Dictionary, "BANNER 'Quillmere Sandbox Database Release 1.0';",
     "(SELECT 1)"},
    // The one whose answers it imitates.
    {"V$INSTANCE", ViewAccess::Dictionary,
     "n:INSTANCE_NUMBER 1; INSTANCE_NAME 'sandbox'; VERSION '12.1.0.0.0'; STATUS 'OPEN';",
     "(SELECT 1)"},
    {"NLS_SESSION_PARAMETERS", ViewAccess::Everybody, "PARAMETER f.name; VALUE f.value;",
     ":formats f"},
    // There are no grants: a session may do everything, or what it likes with tables of its own.
    {"SESSION_PRIVS", ViewAccess::Everybody, "PRIVILEGE value;",
     "json_each(iif(:dba, '[\"CREATE SESSION\",\"SELECT ANY DICTIONARY\",\"INSERT ANY TABLE\","
     "\"UPDATE ANY TABLE\",\"DELETE ANY TABLE\"]', '[\"CREATE SESSION\"]'))"},
    {"USER_TAB_PRIVS", ViewAccess::Everybody, kNoGrants, "(SELECT 1) WHERE 0"},
    {"ROLE_TAB_PRIVS", ViewAccess::Everybody, kNoGrants, "(SELECT 1) WHERE 0"},
    // No quotas, and one file that grows with the disk.
    {"DBA_TS_QUOTAS", ViewAccess::Dictionary,
     "TABLESPACE_NAME NULL; USERNAME NULL; n:BYTES 0; n:MAX_BYTES -1;", "(SELECT 1) WHERE 0"},
    {"DBA_FREE_SPACE", ViewAccess::Dictionary, "TABLESPACE_NAME NULL; n:BYTES 0;",
     "(SELECT 1) WHERE 0"},
    {"DBA_DATA_FILES", ViewAccess::Dictionary,
     "FILE_NAME :log; TABLESPACE_NAME s.name; n:BYTES 0; n:MAXBYTES 281474976710656;"
     "AUTOEXTENSIBLE 'YES';",
     "(SELECT DISTINCT tablespace AS name FROM qm_table) s"},
    {"DBA_TRIGGERS", ViewAccess::Dictionary,
     "OWNER NULL; TRIGGER_NAME NULL; TABLE_OWNER NULL; TABLE_NAME NULL; STATUS NULL;",
     "(SELECT 1) WHERE 0"},
    {"DBA_USERS", ViewAccess::Dictionary,
     "USERNAME name; n:USER_ID id; ACCOUNT_STATUS 'OPEN'; d:CREATED created;", "qm_user"},
    {"DBA_ALL_TABLES", ViewAccess::Dictionary, kTables, "qm_table t"},
    {"DBA_TABLES", ViewAccess::Dictionary, kTables, "qm_table t"},
    {"DBA_OBJECTS", ViewAccess::Dictionary, kObjects, "qm_table t"},
    {"ALL_OBJECTS", ViewAccess::Everybody, kObjects, "qm_table t"},
    {"DBA_TAB_COLUMNS", ViewAccess::Dictionary, kTabColumns, kTabColumnsFrom},
    {"ALL_TAB_COLUMNS", ViewAccess::Everybody, kTabColumns, kTabColumnsFrom},
    {"DBA_CONSTRAINTS", ViewAccess::Dictionary,
     "OWNER t.owner; CONSTRAINT_NAME c.name; CONSTRAINT_TYPE c.type; TABLE_NAME t.name;"
     "R_OWNER r.owner; R_CONSTRAINT_NAME r.name; DELETE_RULE iif(c.type = 'R', 'NO ACTION', NULL); "
     "STATUS 'ENABLED';",
     "qm_constraint c JOIN qm_table t ON t.id = c.table_id"
     " LEFT JOIN qm_constraint r ON r.id = c.ref_id"},
    {"DBA_CONS_COLUMNS", ViewAccess::Dictionary,
     "OWNER c.owner; CONSTRAINT_NAME c.name; TABLE_NAME t.name; COLUMN_NAME k.name;"
     "n:POSITION p.position;",
     "qm_constraint c JOIN qm_constraint_column p ON p.constraint_id = c.id"
     " JOIN qm_column k ON k.id = p.column_id JOIN qm_table t ON t.id = c.table_id"},
    {"DBA_INDEXES", ViewAccess::Dictionary,
     "OWNER +i.owner; INDEX_NAME i.name; INDEX_TYPE 'NORMAL'; TABLE_OWNER t.owner;"
     "TABLE_NAME t.name; UNIQUENESS CASE WHEN i.is_unique THEN 'UNIQUE' ELSE 'NONUNIQUE' END;"
     "STATUS 'VALID'; TABLESPACE_NAME t.tablespace;",
     "qm_index i JOIN qm_table t ON t.id = i.table_id"},
    {"DBA_IND_COLUMNS", ViewAccess::Dictionary,
     "INDEX_OWNER +i.owner; INDEX_NAME i.name; TABLE_OWNER t.owner; TABLE_NAME t.name;"
     "COLUMN_NAME k.name; n:COLUMN_POSITION p.position;",
     "qm_index i JOIN qm_index_column p ON p.index_id = i.id"
     " JOIN qm_column k ON k.id = p.column_id JOIN qm_table t ON t.id = i.table_id"},
    {"V$LOGFILE", ViewAccess::Dictionary,
     "n:GROUP# grp; STATUS NULL; TYPE 'ONLINE'; MEMBER :log || suffix;", "qm_logfile"},
    {"V$LOG", ViewAccess::Dictionary,
     "n:GROUP# l.grp; n:THREAD# 1; n:SEQUENCE# ifnull(l.sequence, 0); n:BYTES m.log_size;"
     "n:MEMBERS l.members; ARCHIVED CASE WHEN m.archive AND l.next_scn THEN 'YES' ELSE 'NO' END;"
     "STATUS CASE WHEN l.sequence IS NULL THEN 'UNUSED' WHEN l.next_scn IS NULL THEN 'CURRENT'"
     " ELSE 'INACTIVE' END; n:FIRST_CHANGE# ifnull(l.first_scn, 0);"
     "n:NEXT_CHANGE# ifnull(l.next_scn, '18446744073709551615'); d:FIRST_TIME l.first_time;",
     "(SELECT *, count(*) AS members FROM qm_online_log GROUP BY grp) l, qm_meta m"},
    {"V$ARCHIVED_LOG", ViewAccess::Dictionary,
     "NAME :log || suffix; n:DEST_ID 1; n:THREAD# 1; n:SEQUENCE# sequence; n:RESETLOGS_CHANGE# 1;"
     "n:FIRST_CHANGE# first_scn; n:NEXT_CHANGE# next_scn; STANDBY_DEST 'NO'; ARCHIVED 'YES';"
     "DELETED 'NO'; STATUS 'A'; d:FIRST_TIME first_time;",
     "qm_archived_log"},
    {"V$THREAD", ViewAccess::Dictionary,
     "n:THREAD# 1; STATUS 'OPEN'; ENABLED 'PUBLIC'; n:ENABLE_CHANGE# 1;"
     "n:LAST_REDO_CHANGE# max(scn, :last_scn);",
     "qm_meta"},
    {"V$DATABASE", ViewAccess::Dictionary,
     "n:DBID dbid; NAME 'SANDBOX'; d:CREATED created; n:RESETLOGS_CHANGE# 1;"
     "LOG_MODE CASE WHEN archive THEN 'ARCHIVELOG' ELSE 'NOARCHIVELOG' END; CDB 'NO';"
     "OPEN_MODE 'READ WRITE'; n:CURRENT_SCN max(scn, :last_scn);"
     "SUPPLEMENTAL_LOG_DATA_MIN CASE supplemental WHEN 'NONE' THEN 'NO' WHEN 'MIN' THEN 'YES'"
     " ELSE 'IMPLICIT' END;"
     "SUPPLEMENTAL_LOG_DATA_PK CASE supplemental WHEN 'KEY' THEN 'YES' ELSE 'NO' END;"
     "SUPPLEMENTAL_LOG_DATA_UI 'NO'; SUPPLEMENTAL_LOG_DATA_FK 'NO';"
     "SUPPLEMENTAL_LOG_DATA_ALL CASE supplemental WHEN 'ALL' THEN 'YES' ELSE 'NO' END;",
     "qm_meta"},
    {"DBA_LOG_GROUPS", ViewAccess::Dictionary,
     "OWNER owner; TABLE_NAME name; ALWAYS 'ALWAYS'; LOG_GROUP_TYPE CASE supplemental"
     " WHEN 'ALL' THEN 'ALL COLUMN LOGGING' ELSE 'PRIMARY KEY LOGGING' END;",
     "(SELECT * FROM qm_table WHERE supplemental IN ('ALL', 'KEY'))"},
    {"NLS_DATABASE_PARAMETERS", ViewAccess::Everybody,
     "PARAMETER 'NLS_CHARACTERSET'; VALUE charset;", "qm_meta"},
    {"V$TRANSACTION", ViewAccess::Dictionary, kTransactions, ":transaction t"},
    {"GV$TRANSACTION", ViewAccess::Dictionary, kTransactions, ":transaction t"},
    {"V$SESSION", ViewAccess::Dictionary, kSessions, ":transaction t"},
    {"GV$SESSION", ViewAccess::Dictionary, kSessions, ":transaction t"},
    {"X$KTUXE", ViewAccess::SysdbaOnly, "n:KTUXESCNW scn >> 32; n:KTUXESCNB scn & 4294967295;",
     "qm_meta"},
    {"V$LOGMNR_CONTENTS", ViewAccess::Dictionary,
     "n:SCN r.scn; n:START_SCN r.xid; n:COMMIT_SCN t.commit_scn; n:THREAD# 1;"
     "d:START_TIMESTAMP t.started; d:COMMIT_TIMESTAMP t.committed; n:XIDUSN r.xid % 10 + 1;"
     "n:XIDSLT r.xid % 48; n:XIDSQN r.xid; SQL_REDO qm_piece(:record, p.key);"
     "OPERATION CASE abs(p.value) % 16 WHEN 1 THEN 'INSERT' WHEN 2 THEN 'DELETE'"
     " WHEN 3 THEN 'UPDATE' WHEN 6 THEN 'START' ELSE 'COMMIT' END;"
     "n:OPERATION_CODE abs(p.value) % 16; n:ROLLBACK r.undo; n:STATUS 0; SEG_OWNER s.owner;"
     "SEG_NAME s.name; TABLE_NAME s.name; n:DATA_OBJ# s.table_id;"
     "ROW_ID qm_rowid(s.table_id, r.row); n:CSF p.value < 0; n:SSN abs(p.value) / 16;"
     "RS_ID printf(' 0x%06x.%08x.%04x ', r.scn >> 32, r.scn & 4294967295, 16); SRC_CON_NAME NULL;",
     "qm_redo r LEFT JOIN qm_shape s ON s.id = r.shape"
     " CROSS JOIN qm_transaction t ON t.start_scn = r.xid"
     " CROSS JOIN json_each(qm_pieces(:record)) p WHERE r.scn BETWEEN :start AND :end"},
};

DictionaryView Make(const Definition& definition) {
  DictionaryView view{definition.name, definition.access, {}, "SELECT "};
  std::string_view rest = definition.columns;
  for (std::size_t end = rest.find(';'); end != std::string_view::npos; end = rest.find(';')) {
    std::string_view column = rest.substr(0, end);
    rest.remove_prefix(end + 1);
    column.remove_prefix(column.find_first_not_of(' '));
    ViewColumn& added = view.columns.emplace_back();
    if (column.substr(1, 1) == ":") {
      added.kind = column[0] == 'n' ? Kind::Number : Kind::Date;
      column.remove_prefix(2);
    }
    const std::size_t name_end = column.find(' ');
    added.name = column.substr(0, name_end);
    const std::string value(column.substr(name_end + 1));
    if (view.columns.size() > 1) view.sql += ", ";
    view.sql += added.kind == Kind::Number ? "CAST(" + value + " AS TEXT)" : value;
    view.sql += " AS \"" + added.name + "\"";
  }
  view.sql.append(" FROM ").append(definition.from);
  return view;
}

}  // namespace

int DictionaryView::FindColumn(std::string_view column) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].name == column) return static_cast<int>(i);
  }
  return -1;
}

const DictionaryView* FindDictionaryView(std::string_view name) {
  // Never destroyed: threads of the client may still call while the process ends.
  static const auto* views = [] {
    auto* made = new std::vector<DictionaryView>;
    for (const Definition& definition : kDefinitions) made->push_back(Make(definition));
    return made;
  }();
  for (const DictionaryView& view : *views) {
    if (view.name == name) return &view;
  }
  return nullptr;
}

}  // namespace quillmere::sandbox
