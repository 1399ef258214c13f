// SPDX-License-Identifier: MIT
#include "oracle/statement_text.h"
#include "oracle/text_query.h"

namespace quillmere {
namespace {

constexpr oci::sb4 kBannerBytes = 64;
constexpr oci::sb4 kNameBytes = 30 * kBytesPerCharacter;
constexpr oci::sb4 kNumberBytes = 10;
constexpr oci::sb4 kStatusBytes = 8;
constexpr oci::sb4 kIndexTypeBytes = 27;
constexpr oci::sb4 kColumnBytes = 50 * kBytesPerCharacter;

// Leaves out the indexes that the server keeps for primary and unique keys.
constexpr std::string_view kNoKeyIndexes =
    "' AND NOT EXISTS "
    "(SELECT 1 FROM SYS.DBA_CONSTRAINTS C WHERE C.CONSTRAINT_NAME=I.INDEX_NAME AND "
    "C.TABLE_NAME=I.TABLE_NAME AND C.OWNER=I.OWNER AND C.CONSTRAINT_TYPE IN ('P','U') "
    " AND I.UNIQUENESS='UNIQUE') ";

std::string Dotted(std::string_view owner, std::string_view name) {
  return Concatenate({owner, ".", name});
}

// take(row) for every row; it returns false when the row cannot be read.
template <typename Take>
bool ForEachRow(TextQuery& query, Take take) {
  TextQuery::Row row;
  for (std::size_t rows = 1; (row = query.Fetch()) == TextQuery::Row::Fetched; ++rows) {
    if (!take(query) || !query.GoesOn(rows)) return false;
  }
  return row == TextQuery::Row::End;
}

bool ReadCount(OracleSession& session, std::string_view sql, std::int32_t& count) {
  TextQuery query(session, kSingleLabels);
  return query.OpenWithRow(sql, {kNumberBytes}) && query.Number(0, "the count", count);
}

bool ListColumnNames(OracleSession& session, std::string_view sql, std::string_view of,
                     std::vector<std::string>& columns) {
  columns.clear();
  TextQuery query(session, kListLabels);
  return query.Open(sql, {kColumnBytes}) && ForEachRow(query, [&](TextQuery& row) {
           if (row.Truncated()) {
             row.LeaveOut(Concatenate({"column of ", of}), row.Text(0));
           } else {
             columns.emplace_back(row.Text(0));
           }
           return true;
         });
}

}  // namespace

bool OracleSession::GetVersionBanner(std::vector<std::string>& banner) {
  banner.clear();
  TextQuery query(*this, kListLabels);
  // A banner is prose for people: one that is too long is good enough cut.
  return query.Open("select banner from v$version", {kBannerBytes}) &&
         ForEachRow(query, [&](TextQuery& row) {
           banner.emplace_back(row.Text(0));
           return true;
         });
}

bool OracleSession::ListUsers(std::vector<std::string>& users) {
  users.clear();
  TextQuery query(*this, kListLabels);
  return query.Open("select username  from dba_users", {kNameBytes}) &&
         ForEachRow(query, [&](TextQuery& row) {
           const std::string_view user = row.Text(0);
           if (row.Truncated()) {
             row.LeaveOut("user", user);
           } else if (!IsSystemOwner(user)) {
             users.emplace_back(user);
           }
           return true;
         });
}

bool OracleSession::ListTables(std::vector<TableInfo>& tables) {
  tables.clear();
  TextQuery query(*this, kListLabels);
  return query.Open(
             "select owner, table_name,  NVL(tablespace_name,chr(0)),"
             " NVL(num_rows,0)  from dba_all_tables "
             " where owner NOT IN ('SYS', 'SYSTEM') order by owner, table_name",
             {kNameBytes, kNameBytes, kNameBytes, kNumberBytes}) &&
         ForEachRow(query, [&](TextQuery& row) {
           const std::string_view owner = row.Text(0);
           const std::string_view name = row.Text(1);
           if (IsSystemOwner(owner)) return true;
           if (row.Truncated(3)) {
             row.LeaveOut("table", Dotted(owner, name));
             return true;
           }
           std::int32_t rows = 0;
           if (!row.Number(3, "a row count in the table list", rows)) return false;
           const std::string_view tablespace = row.Text(2);
           tables.push_back({std::string(owner),
                             std::string(name),
                             std::string(tablespace == std::string_view("\0", 1) ? "" : tablespace),
                             rows,
                             {}});
           return true;
         });
}

bool OracleSession::CountTables(std::string_view owner, std::string_view table,
                                std::int32_t& count) {
  return ReadCount(*this,
                   Concatenate({"select count(*) from  dba_all_tables  where owner='", owner,
                                "' and table_name='", table, "'"}),
                   count);
}

bool OracleSession::CountPrimaryKeys(std::string_view owner, std::string_view table,
                                     std::int32_t& count) {
  return ReadCount(*this,
                   Concatenate({"select count(*) from  DBA_CONSTRAINTS  where owner='", owner,
                                "' and table_name='", table, "' and constraint_type='P'"}),
                   count);
}

bool OracleSession::CountPrimaryKeysNamed(std::string_view owner, std::string_view table,
                                          std::string_view key, std::int32_t& count) {
  return ReadCount(*this,
                   Concatenate({"select count(*) from  DBA_CONSTRAINTS  where owner='", owner,
                                "' and table_name='", table, "' and constraint_type='P'",
                                " and constraint_name ='", key, "'"}),
                   count);
}

bool OracleSession::CountIndexes(std::string_view owner, std::string_view table,
                                 std::int32_t& count) {
  return ReadCount(*this,
                   Concatenate({"select count(*) from  DBA_INDEXES  I where owner='", owner,
                                "' and table_name='", table, kNoKeyIndexes}),
                   count);
}

bool OracleSession::CountIndexesNamed(std::string_view owner, std::string_view table,
                                      std::string_view index, std::int32_t& count) {
  return ReadCount(*this,
                   Concatenate({"select count(*) from  DBA_INDEXES  where owner='", owner,
                                "' and table_name='", table, "' and index_name ='", index, "'"}),
                   count);
}

bool OracleSession::GetPrimaryKey(std::string_view owner, std::string_view table, KeyInfo& key) {
  TextQuery query(*this, kSingleLabels);
  if (!query.OpenWithRow(
          Concatenate({"select constraint_name, status from  DBA_CONSTRAINTS  where owner='", owner,
                       "' and table_name='", table, "'", " and  constraint_type='P' "}),
          {kNameBytes, kStatusBytes})) {
    return false;
  }
  if (query.Truncated()) {
    return query.Refuse(
        Concatenate({"the primary key of ", Dotted(owner, table), " beginning with ", query.Text(0),
                     " has a name longer than ", std::to_string(kNameBytes), " bytes"}));
  }
  key = {std::string(owner), std::string(table), std::string(query.Text(0)),
         std::string(query.Text(1))};
  return true;
}

bool OracleSession::ListIndexes(std::string_view owner, std::string_view table,
                                std::vector<IndexInfo>& indexes) {
  indexes.clear();
  TextQuery query(*this, kListLabels);
  return query.Open(
             Concatenate({"select I.index_name, I.index_type, I.status from  DBA_INDEXES  I ",
                          "where I.owner='", owner, "' and I.table_name='", table, kNoKeyIndexes}),
             {kNameBytes, kIndexTypeBytes, kStatusBytes}) &&
         ForEachRow(query, [&](TextQuery& row) {
           if (row.Truncated()) {
             row.LeaveOut("index of " + Dotted(owner, table), row.Text(0));
           } else {
             indexes.push_back(
                 {std::string(row.Text(0)), std::string(row.Text(1)), std::string(row.Text(2))});
           }
           return true;
         });
}

bool OracleSession::ListIndexColumns(std::string_view table, std::string_view owner,
                                     std::string_view index, std::vector<std::string>& columns) {
  return ListColumnNames(
      *this,
      Concatenate({"select substr(column_name,0, 50) from dba_ind_columns where table_name='",
                   table, "' and index_owner ='", owner, "' and index_name='", index, "'"}),
      Dotted(owner, index), columns);
}

bool OracleSession::ListConstraintColumns(std::string_view owner, std::string_view constraint,
                                          std::vector<std::string>& columns) {
  return ListColumnNames(
      *this,
      Concatenate({"select substr(column_name,0, 50) from dba_cons_columns where owner ='", owner,
                   "' and constraint_name='", constraint, "'"}),
      Dotted(owner, constraint), columns);
}

bool OracleSession::ListColumns(std::string_view table, std::string_view owner,
                                std::vector<ColumnInfo>& columns) {
  columns.clear();
  TextQuery query(*this, kListLabels);
  return query.Open(
             Concatenate({"select column_name, substr(data_type,0,30), data_length, ",
                          "NVL(data_precision,0),  ",
                          " NVL(data_scale,0), nullable from dba_tab_columns where table_name='",
                          table, "' and owner ='", owner, "'"}),
             {kNameBytes, kNameBytes, kNumberBytes, kNumberBytes, kNumberBytes, 1}) &&
         ForEachRow(query, [&](TextQuery& row) {
           if (row.Truncated(2)) {
             row.LeaveOut("column of " + Dotted(owner, table), row.Text(0));
             return true;
           }
           ColumnInfo column;
           column.column_name = row.Text(0);
           column.data_type = row.Text(1);
           column.nullable = row.Text(5);
           const std::string what = "a size of column " + column.column_name;
           if (!row.Number(2, what, column.data_length) ||
               !row.Number(3, what, column.data_precision) ||
               !row.Number(4, what, column.data_scale)) {
             return false;
           }
           columns.push_back(std::move(column));
           return true;
         });
}

bool OracleSession::ListReferencingForeignKeys(std::string_view constraint,
                                               std::vector<KeyInfo>& keys) {
  keys.clear();
  TextQuery query(*this, kListLabels);
  return query.Open(
             Concatenate({"select owner,constraint_name, table_name  from dba_constraints ",
                          " where constraint_type='R' and r_constraint_name='", constraint, "'"}),
             {kNameBytes, kNameBytes, kNameBytes}) &&
         ForEachRow(query, [&](TextQuery& row) {
           if (row.Truncated()) {
             row.LeaveOut("foreign key", Dotted(row.Text(0), row.Text(1)));
           } else {
             keys.push_back({std::string(row.Text(0)),
                             std::string(row.Text(2)),
                             std::string(row.Text(1)),
                             {}});
           }
           return true;
         });
}

}  // namespace quillmere
