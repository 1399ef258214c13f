#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "oracle/H_oracle.h"
#include "support/scripted_oci.h"

namespace quillmere {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::ScriptedOci;
using ::testing::StartsWith;

using Lines = std::vector<std::string>;

std::string Line(const std::string& text) {
  return text;
}
std::string Line(const TableInfo& t) {
  return t.owner + "|" + t.table_name + "|" + t.tablespace_name + "|" + std::to_string(t.num_rows);
}
std::string Line(const KeyInfo& k) {
  return k.owner + "|" + k.table_name + "|" + k.constraint_name + "|" + k.status;
}
std::string Line(const IndexInfo& i) {
  return i.index_name + "|" + i.index_type + "|" + i.status;
}
std::string Line(const ColumnInfo& c) {
  return c.column_name + "|" + c.data_type + "|" + std::to_string(c.data_length) + "|" +
         std::to_string(c.data_precision) + "|" + std::to_string(c.data_scale) + "|" + c.nullable;
}

using Run = std::function<bool(OracleSession&, std::string&)>;

// Cells stand between |, rows end with /; ~ is NULL and @ a zero byte.
struct Query {
  std::string name;
  Run run;  // gives the records in the form of rows; the list holds a record before
  std::string sql;
  std::vector<int> capacities;
  std::string rows, records;

  bool Single() const { return name.starts_with("Count") || name == "GetPrimaryKey"; }
};

ScriptedOci::Rows Rows(const std::string& text) {
  ScriptedOci::Rows rows;
  std::vector<ScriptedOci::Cell> row;
  std::string cell;
  for (const char c : text) {
    if (c != '|' && c != '/') {
      cell += c == '@' ? '\0' : c;
      continue;
    }
    row.push_back(cell == "~" ? ScriptedOci::Cell() : cell);
    cell.clear();
    if (c == '/') rows.push_back(std::exchange(row, {}));
  }
  return rows;
}

template <typename Record, typename Operation>
Run List(Operation operation) {
  return [operation](OracleSession& session, std::string& text) {
    std::vector<Record> records(1);
    const bool ok = operation(session, records);
    text.clear();
    for (const Record& record : records) text += Line(record) + "/";
    return ok;
  };
}

template <typename Operation>
Run Count(Operation operation) {
  return [operation](OracleSession& session, std::string& text) {
    std::int32_t count = -1;
    const bool ok = operation(session, count);
    text = ok ? std::to_string(count) + "/" : "";
    return ok;
  };
}

const std::string kNoKeyIndexes =
    "' AND NOT EXISTS (SELECT 1 FROM SYS.DBA_CONSTRAINTS C WHERE C.CONSTRAINT_NAME=I.INDEX_NAME "
    "AND C.TABLE_NAME=I.TABLE_NAME AND C.OWNER=I.OWNER AND C.CONSTRAINT_TYPE IN ('P','U')  AND "
    "I.UNIQUENESS='UNIQUE') ";

std::vector<Query> Queries() {
  const std::string table = "owner='SHOP' and table_name='ORDERS'";
  const Run key = [](OracleSession& session, std::string& text) {
    KeyInfo info;
    const bool ok = session.GetPrimaryKey("SHOP", "ORDERS", info);
    text = ok ? Line(info) + "/" : "";
    return ok;
  };
  std::vector<Query> queries;
  const auto add = [&](const char* name, Run run, const std::string& sql,
                       std::vector<int> capacities, const char* rows, const char* records) {
    queries.push_back({name, std::move(run), sql, std::move(capacities), rows, records});
  };
  add("GetVersionBanner", List<std::string>([](auto& s, auto& l) { return s.GetVersionBanner(l); }),
      "select banner from v$version", {64}, "Oracle9i Release 9.2.0.1.0 - Production  /~/",
      "Oracle9i Release 9.2.0.1.0 - Production//");
  add("ListUsers", List<std::string>([](auto& s, auto& l) { return s.ListUsers(l); }),
      "select username  from dba_users", {120}, "A_LONG_USER_NAME/XDB/BOB /SYS/sys/",
      "A_LONG_USER_NAME/BOB/sys/");
  add("ListTables", List<TableInfo>([](auto& s, auto& l) { return s.ListTables(l); }),
      "select owner, table_name,  NVL(tablespace_name,chr(0)), NVL(num_rows,0)  from "
      "dba_all_tables  where owner NOT IN ('SYS', 'SYSTEM') order by owner, table_name",
      {120, 120, 120, 10},
      "SHOP |ORDERS|USERS|12/OUTLN|OL$|SYSTEM|0/SHOP|T|@|4294967296/SHOP|U|~|12345678901/"
      "SHOP|V|X|1.235E+10 /",
      "SHOP|ORDERS|USERS|12/SHOP|T||2147483647/SHOP|U||2147483647/SHOP|V|X|2147483647/");
  add("CountTables", Count([](auto& s, auto& n) { return s.CountTables("SHOP", "ORDERS", n); }),
      "select count(*) from  dba_all_tables  where " + table, {10}, "1 /", "1/");
  add("CountPrimaryKeys",
      Count([](auto& s, auto& n) { return s.CountPrimaryKeys("SHOP", "ORDERS", n); }),
      "select count(*) from  DBA_CONSTRAINTS  where " + table + " and constraint_type='P'", {10},
      "0/", "0/");
  add("CountPrimaryKeysNamed",
      Count([](auto& s, auto& n) { return s.CountPrimaryKeysNamed("SHOP", "ORDERS", "PK", n); }),
      "select count(*) from  DBA_CONSTRAINTS  where " + table +
          " and constraint_type='P' and constraint_name ='PK'",
      {10}, "1/", "1/");
  add("CountIndexes", Count([](auto& s, auto& n) { return s.CountIndexes("SHOP", "ORDERS", n); }),
      "select count(*) from  DBA_INDEXES  I where owner='SHOP' and table_name='ORDERS" +
          kNoKeyIndexes,
      {10}, "99999999999/", "2147483647/");
  add("CountIndexesNamed",
      Count([](auto& s, auto& n) { return s.CountIndexesNamed("SHOP", "O'HARA", "IX", n); }),
      "select count(*) from  DBA_INDEXES  where owner='SHOP' and table_name='O'HARA' and "
      "index_name ='IX'",
      {10}, "3/", "3/");
  add("GetPrimaryKey", key,
      "select constraint_name, status from  DBA_CONSTRAINTS  where " + table +
          " and  constraint_type='P' ",
      {120, 8}, "PK_ORDERS  |DISABLED/NEVER|READ/", "SHOP|ORDERS|PK_ORDERS|DISABLED/");
  add("ListIndexes",
      List<IndexInfo>([](auto& s, auto& l) { return s.ListIndexes("SHOP", "ORDERS", l); }),
      "select I.index_name, I.index_type, I.status from  DBA_INDEXES  I where I.owner='SHOP' and "
      "I.table_name='ORDERS" +
          kNoKeyIndexes,
      {120, 27, 8}, "IX_LONGER|FUNCTION-BASED NORMAL|UNUSABLE/IX|NORMAL|VALID/",
      "IX_LONGER|FUNCTION-BASED NORMAL|UNUSABLE/IX|NORMAL|VALID/");
  add("ListIndexColumns", List<std::string>([](auto& s, auto& l) {
        return s.ListIndexColumns("ORDERS", "SHOP", "IX", l);
      }),
      "select substr(column_name,0, 50) from dba_ind_columns where table_name='ORDERS' and "
      "index_owner ='SHOP' and index_name='IX'",
      {200}, "SYS_NC00012$/ID/", "SYS_NC00012$/ID/");
  add("ListConstraintColumns",
      List<std::string>([](auto& s, auto& l) { return s.ListConstraintColumns("SHOP", "PK", l); }),
      "select substr(column_name,0, 50) from dba_cons_columns where owner ='SHOP' and "
      "constraint_name='PK'",
      {200}, "SECOND/ID/", "SECOND/ID/");
  add("ListColumns",
      List<ColumnInfo>([](auto& s, auto& l) { return s.ListColumns("ORDERS", "SHOP", l); }),
      "select column_name, substr(data_type,0,30), data_length, NVL(data_precision,0),   "
      "NVL(data_scale,0), nullable from dba_tab_columns where table_name='ORDERS' and owner "
      "='SHOP'",
      {120, 120, 10, 10, 10, 1}, "AMOUNT|NUMBER|22|12|-2|N/AT|DATE|7|0|0|Y/",
      "AMOUNT|NUMBER|22|12|-2|N/AT|DATE|7|0|0|Y/");
  add("ListReferencingForeignKeys",
      List<KeyInfo>([](auto& s, auto& l) { return s.ListReferencingForeignKeys("PK", l); }),
      "select owner,constraint_name, table_name  from dba_constraints  where constraint_type='R' "
      "and r_constraint_name='PK'",
      {120, 120, 120}, "CRM|FK_1|VISITS/", "CRM|VISITS|FK_1|/");
  return queries;
}

class CatalogueQueries : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(session_.Connect({"DB", "u", "p", false}));
    script_.TakeTranscript();
  }

  ScriptedOci script_;
  OciLibrary library_{script_.Api()};
  OracleSession session_{library_};
};

TEST_F(CatalogueQueries, SendTheirTextAndReadTheirRecords) {
  for (const Query& query : Queries()) {
    SCOPED_TRACE(query.name);
    script_.Answer(query.sql, Rows(query.rows));
    std::string records;
    EXPECT_TRUE(query.run(session_, records)) << session_.LastError();
    EXPECT_EQ(records, query.records);
    EXPECT_THAT(session_.TakeWarnings(), IsEmpty());
    std::string prepared;
    std::string executed;
    std::vector<int> capacities;
    for (const std::string& call : script_.TakeTranscript()) {
      if (call.starts_with("StmtPrepare")) prepared = call.substr(call.find('"'));
      if (call.starts_with("StmtExecute")) executed = call.substr(call.find("err1, "));
      if (call.starts_with("DefineByPos")) {
        capacities.push_back(std::stoi(call.substr(call.rfind(' ', call.find(", 1, ind") - 1))));
      }
    }
    EXPECT_EQ(prepared, '"' + query.sql + "\", 1, 0)");
    EXPECT_EQ(executed, query.Single() ? "err1, 1, 0, 0)" : "err1, 0, 0, 0)");
    EXPECT_EQ(capacities, query.capacities);
  }
}

TEST_F(CatalogueQueries, FailUnderTheLabelsOfTheirKind) {
  for (const Query& query : Queries()) {
    SCOPED_TRACE(query.name);
    const std::size_t live = script_.LiveHandles();
    script_.FailOn("StmtExecute", "ORA-00942: no such view\n", 942);
    std::string records;
    EXPECT_FALSE(query.run(session_, records));
    EXPECT_EQ(session_.LastError(),
              std::string(query.Single() ? "OCIStmtExecute : " : "OCIStmtExecute(Stmthp1) : ") +
                  "ORA-00942: no such view");
    EXPECT_EQ(records, "") << "the list is emptied first";
    EXPECT_EQ(script_.LiveHandles(), live);
  }
}

TEST_F(CatalogueQueries, NamesTooLongAreLeftOutAndTold) {
  for (const Query& query : Queries()) {
    if (query.Single() || query.name == "GetVersionBanner") continue;
    SCOPED_TRACE(query.name);
    const std::string just_fits(static_cast<std::size_t>(query.capacities[0]), 'X');
    ScriptedOci::Rows rows(2, Rows(query.rows)[0]);
    rows[0][0] = just_fits + "!";
    rows[1][0] = just_fits;
    script_.Answer(query.sql, rows);
    std::string records;
    EXPECT_TRUE(query.run(session_, records)) << session_.LastError();
    EXPECT_EQ(std::count(records.begin(), records.end(), '/'), 1);
    EXPECT_THAT(records, HasSubstr(just_fits));
    EXPECT_THAT(session_.TakeWarnings(),
                ElementsAre(AllOf(HasSubstr(" beginning with " + just_fits),
                                  HasSubstr("left out: a name in it is longer than "))));
  }
}

TEST_F(CatalogueQueries, WhatIsNoNumberFailsWithAMessage) {
  const std::map<std::string, std::pair<std::size_t, std::string>> numbers = {
      {"ListTables", {3, "OCIStmtFetch2 : "}},
      {"ListColumns", {4, "OCIStmtFetch2 : "}},
      {"CountTables", {0, "OCIStmtExecute : "}}};
  for (const Query& query : Queries()) {
    if (!numbers.contains(query.name)) continue;
    const auto& [column, label] = numbers.at(query.name);
    for (const std::string text : {"", "12x", "1.5", "nan", "inf", "--1"}) {
      SCOPED_TRACE(query.name + " " + text);
      ScriptedOci::Rows rows = Rows(query.rows);
      rows[0][column] = text;
      script_.Answer(query.sql, rows);
      std::string records;
      EXPECT_FALSE(query.run(session_, records));
      EXPECT_THAT(session_.LastError(), StartsWith(label));
      EXPECT_THAT(session_.LastError(), HasSubstr("not a number: '" + text + "'"));
    }
  }
}

TEST_F(CatalogueQueries, ABannerTooLongIsCutAndAKeyTooLongFails) {
  script_.Answer("select banner from v$version",
                 {{"Oracle Database 19c Enterprise Edition Release 19.0.0.0.0 - Production"}});
  Lines banner;
  ASSERT_TRUE(session_.GetVersionBanner(banner));
  EXPECT_THAT(banner,
              ElementsAre("Oracle Database 19c Enterprise Edition Release 19.0.0.0.0 - Prod"));

  const std::string sql =
      "select constraint_name, status from  DBA_CONSTRAINTS  where owner='S' and table_name='T' "
      "and  constraint_type='P' ";
  script_.Answer(sql, {{std::string(121, 'K'), "ENABLED"}});
  KeyInfo key;
  EXPECT_FALSE(session_.GetPrimaryKey("S", "T", key));
  EXPECT_THAT(session_.LastError(), StartsWith("OCIStmtExecute : the primary key of S.T"));
  script_.Answer(sql, {});
  EXPECT_FALSE(session_.GetPrimaryKey("S", "T", key));
  EXPECT_EQ(session_.LastError(), "OCIStmtExecute : ORA-01403: no data found");
}

}  // namespace
}  // namespace quillmere
