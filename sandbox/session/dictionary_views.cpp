#include "sandbox/session/dictionary_views.h"

namespace quillmere::sandbox {

namespace {

constexpr Kind T = Kind::Text;
constexpr Kind N = Kind::Number;
constexpr Kind D = Kind::Date;

constexpr std::string_view kTables =
    "SELECT t.owner AS OWNER, t.name AS TABLE_NAME, t.tablespace AS TABLESPACE_NAME,"
    " CAST(t.num_rows AS TEXT) AS NUM_ROWS, 'VALID' AS STATUS FROM qm_table t";

constexpr std::string_view kColumns =
    "SELECT t.owner AS OWNER, t.name AS TABLE_NAME, c.name AS COLUMN_NAME,"
    " c.data_type AS DATA_TYPE, CAST(c.data_length AS TEXT) AS DATA_LENGTH,"
    " CAST(c.data_precision AS TEXT) AS DATA_PRECISION, CAST(c.data_scale AS TEXT) AS DATA_SCALE,"
    " CASE WHEN c.nullable AND NOT EXISTS (SELECT 1 FROM qm_constraint_column p"
    " JOIN qm_constraint k ON k.id = p.constraint_id AND k.type = 'P' WHERE p.column_id = c.id)"
    " THEN 'Y' ELSE 'N' END AS NULLABLE,"
    " CAST(c.position AS TEXT) AS COLUMN_ID, c.default_text AS DATA_DEFAULT,"
    " CAST(c.char_length AS TEXT) AS CHAR_LENGTH, c.char_used AS CHAR_USED"
    " FROM qm_column c JOIN qm_table t ON t.id = c.table_id";

std::vector<ViewColumn> TableColumns() {
  return {{"OWNER", T}, {"TABLE_NAME", T}, {"TABLESPACE_NAME", T}, {"NUM_ROWS", N}, {"STATUS", T}};
}

std::vector<ViewColumn> ColumnColumns() {
  return {{"OWNER", T},       {"TABLE_NAME", T},     {"COLUMN_NAME", T}, {"DATA_TYPE", T},
          {"DATA_LENGTH", N}, {"DATA_PRECISION", N}, {"DATA_SCALE", N},  {"NULLABLE", T},
          {"COLUMN_ID", N},   {"DATA_DEFAULT", T},   {"CHAR_LENGTH", N}, {"CHAR_USED", T}};
}

// The plus signs keep SQLite from walking through all indexes of an owner: the table's name, which
// is always asked for, leads there faster. A constraint's owner is that of its table.
const std::vector<DictionaryView>& Views() {
  static const std::vector<DictionaryView> views = {
      {"DUAL", ViewAccess::Everybody, {{"DUMMY", T}}, "SELECT 'X' AS DUMMY"},
      {"V$VERSION",
       ViewAccess::Dictionary,
       {{"BANNER", T}},
       "SELECT 'Quillmere Sandbox Database Release 1.0' AS BANNER"},
      {"DBA_USERS",
       ViewAccess::Dictionary,
       {{"USERNAME", T}, {"USER_ID", N}, {"ACCOUNT_STATUS", T}, {"CREATED", D}},
       "SELECT name AS USERNAME, CAST(id AS TEXT) AS USER_ID, 'OPEN' AS ACCOUNT_STATUS,"
       " created AS CREATED FROM qm_user"},
      {"ALL_USERS",
       ViewAccess::Everybody,
       {{"USERNAME", T}, {"USER_ID", N}, {"CREATED", D}},
       "SELECT name AS USERNAME, CAST(id AS TEXT) AS USER_ID, created AS CREATED FROM qm_user"},
      {"DBA_ALL_TABLES", ViewAccess::Dictionary, TableColumns(), kTables},
      {"DBA_TABLES", ViewAccess::Dictionary, TableColumns(), kTables},
      {"USER_TABLES",
       ViewAccess::Everybody,
       {{"TABLE_NAME", T}, {"TABLESPACE_NAME", T}, {"NUM_ROWS", N}, {"STATUS", T}},
       "SELECT t.name AS TABLE_NAME, t.tablespace AS TABLESPACE_NAME,"
       " CAST(t.num_rows AS TEXT) AS NUM_ROWS, 'VALID' AS STATUS FROM qm_table t"
       " WHERE t.owner = :user"},
      {"DBA_TAB_COLUMNS", ViewAccess::Dictionary, ColumnColumns(), kColumns},
      {"DBA_CONSTRAINTS",
       ViewAccess::Dictionary,
       {{"OWNER", T},
        {"CONSTRAINT_NAME", T},
        {"CONSTRAINT_TYPE", T},
        {"TABLE_NAME", T},
        {"R_OWNER", T},
        {"R_CONSTRAINT_NAME", T},
        {"DELETE_RULE", T},
        {"STATUS", T}},
       "SELECT t.owner AS OWNER, c.name AS CONSTRAINT_NAME, c.type AS CONSTRAINT_TYPE,"
       " t.name AS TABLE_NAME, r.owner AS R_OWNER, r.name AS R_CONSTRAINT_NAME,"
       " c.delete_rule AS DELETE_RULE, 'ENABLED' AS STATUS"
       " FROM qm_constraint c JOIN qm_table t ON t.id = c.table_id"
       " LEFT JOIN qm_constraint r ON r.id = c.ref_id"},
      {"DBA_CONS_COLUMNS",
       ViewAccess::Dictionary,
       {{"OWNER", T},
        {"CONSTRAINT_NAME", T},
        {"TABLE_NAME", T},
        {"COLUMN_NAME", T},
        {"POSITION", N}},
       "SELECT c.owner AS OWNER, c.name AS CONSTRAINT_NAME, t.name AS TABLE_NAME,"
       " k.name AS COLUMN_NAME, CAST(p.position AS TEXT) AS POSITION"
       " FROM qm_constraint c JOIN qm_constraint_column p ON p.constraint_id = c.id"
       " JOIN qm_column k ON k.id = p.column_id JOIN qm_table t ON t.id = c.table_id"},
      {"DBA_INDEXES",
       ViewAccess::Dictionary,
       {{"OWNER", T},
        {"INDEX_NAME", T},
        {"INDEX_TYPE", T},
        {"TABLE_OWNER", T},
        {"TABLE_NAME", T},
        {"UNIQUENESS", T},
        {"STATUS", T},
        {"TABLESPACE_NAME", T}},
       "SELECT +i.owner AS OWNER, i.name AS INDEX_NAME, 'NORMAL' AS INDEX_TYPE,"
       " t.owner AS TABLE_OWNER, t.name AS TABLE_NAME,"
       " CASE WHEN i.is_unique THEN 'UNIQUE' ELSE 'NONUNIQUE' END AS UNIQUENESS,"
       " 'VALID' AS STATUS, t.tablespace AS TABLESPACE_NAME"
       " FROM qm_index i JOIN qm_table t ON t.id = i.table_id"},
      {"DBA_IND_COLUMNS",
       ViewAccess::Dictionary,
       {{"INDEX_OWNER", T},
        {"INDEX_NAME", T},
        {"TABLE_OWNER", T},
        {"TABLE_NAME", T},
        {"COLUMN_NAME", T},
        {"COLUMN_POSITION", N}},
       "SELECT +i.owner AS INDEX_OWNER, i.name AS INDEX_NAME, t.owner AS TABLE_OWNER,"
       " t.name AS TABLE_NAME, k.name AS COLUMN_NAME, CAST(p.position AS TEXT) AS COLUMN_POSITION"
       " FROM qm_index i JOIN qm_index_column p ON p.index_id = i.id"
       " JOIN qm_column k ON k.id = p.column_id JOIN qm_table t ON t.id = i.table_id"},
      {"V$LOGFILE",
       ViewAccess::Dictionary,
       {{"GROUP#", N}, {"STATUS", T}, {"TYPE", T}, {"MEMBER", T}},
       "SELECT '1' AS \"GROUP#\", NULL AS STATUS, 'ONLINE' AS TYPE, :log AS MEMBER"},
      {"V$DATABASE",
       ViewAccess::Dictionary,
       {{"CREATED", D}, {"CURRENT_SCN", N}},
       "SELECT created AS CREATED, CAST(scn AS TEXT) AS CURRENT_SCN FROM qm_meta"},
      {"X$KTUXE",
       ViewAccess::SysdbaOnly,
       {{"KTUXESCNW", N}, {"KTUXESCNB", N}},
       "SELECT CAST(scn >> 32 AS TEXT) AS KTUXESCNW, CAST(scn & 4294967295 AS TEXT) AS KTUXESCNB"
       " FROM qm_meta"},
      {"V$LOGMNR_CONTENTS",
       ViewAccess::Dictionary,
       {{"SCN", N},
        {"SQL_REDO", T},
        {"OPERATION", T},
        {"OPERATION_CODE", N},
        {"SEG_OWNER", T},
        {"SEG_NAME", T},
        {"TABLE_NAME", T},
        {"ROW_ID", T},
        {"CSF", N}},
       "SELECT scn AS SCN, sql_redo AS SQL_REDO, operation AS OPERATION,"
       " operation_code AS OPERATION_CODE, seg_owner AS SEG_OWNER, seg_name AS SEG_NAME,"
       " seg_name AS TABLE_NAME, row_id AS ROW_ID, csf AS CSF FROM qm_logmnr"},
  };
  return views;
}

}  // namespace

const DictionaryView* FindDictionaryView(std::string_view name) {
  for (const DictionaryView& view : Views()) {
    if (view.name == name) return &view;
  }
  return nullptr;
}

}  // namespace quillmere::sandbox
