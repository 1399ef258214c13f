#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "oracle/H_oracle.h"
#include "oracle/scripted_oci.h"

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

struct Query {
  std::string name;
  // Runs the operation; its records, a line each. The list holds a record before.
  std::function<bool(OracleSession&, Lines&)> run;
  std::string sql;
  std::vector<int> capacities;
  ScriptedOci::Rows rows;
  Lines records;
  bool single = false;
};

template <typename Record, typename Operation>
auto List(Operation operation) {
  return [operation](OracleSession& session, Lines& lines) {
    std::vector<Record> records(1);
    const bool ok = operation(session, records);
    lines.clear();
    for (const Record& record : records) lines.push_back(Line(record));
    return ok;
  };
}

template <typename Operation>
auto Count(Operation operation) {
  return [operation](OracleSession& session, Lines& lines) {
    std::int32_t count = -1;
    const bool ok = operation(session, count);
    lines.assign(ok ? 1 : 0, std::to_string(count));
    return ok;
  };
}

const std::string kNoKeyIndexes =
    "' AND NOT EXISTS (SELECT 1 FROM SYS.DBA_CONSTRAINTS C WHERE C.CONSTRAINT_NAME=I.INDEX_NAME "
    "AND C.TABLE_NAME=I.TABLE_NAME AND C.OWNER=I.OWNER AND C.CONSTRAINT_TYPE IN ('P','U')  AND "
    "I.UNIQUENESS='UNIQUE') ";

std::vector<Query> Queries() {
  const std::string nul(1, '\0');
  return {
      {"GetVersionBanner",
       List<std::string>([](auto& s, auto& l) { return s.GetVersionBanner(l); }),
       "select banner from v$version",
       {64},
       {{"Oracle9i Enterprise Edition Release 9.2.0.1.0 - Production  "}, {std::nullopt}},
       {"Oracle9i Enterprise Edition Release 9.2.0.1.0 - Production", ""}},
      {"ListUsers",
       List<std::string>([](auto& s, auto& l) { return s.ListUsers(l); }),
       "select username  from dba_users",
       {30},
       {{"A_LONG_USER_NAME"}, {"XDB"}, {"BOB "}, {"SYS"}, {"sys"}},
       {"A_LONG_USER_NAME", "BOB", "sys"}},
      {"ListTables",
       List<TableInfo>([](auto& s, auto& l) { return s.ListTables(l); }),
       "select owner, table_name,  NVL(tablespace_name,chr(0)), NVL(num_rows,0)  from "
       "dba_all_tables  where owner NOT IN ('SYS', 'SYSTEM') order by owner, table_name",
       {30, 30, 30, 10},
       {{"SHOP ", "ORDERS", "USERS", "12"},
        {"OUTLN", "OL$", "SYSTEM", "0"},
        {"SHOP", "T", nul, "4294967296"},
        {"SHOP", "U", std::nullopt, "12345678901"},
        {"SHOP", "V", "X", "1.235E+10 "}},
       {"SHOP|ORDERS|USERS|12", "SHOP|T||2147483647", "SHOP|U||2147483647", "SHOP|V|X|2147483647"}},
      {"CountTables",
       Count([](auto& s, auto& n) { return s.CountTables("SHOP", "ORDERS", n); }),
       "select count(*) from  dba_all_tables  where owner='SHOP' and table_name='ORDERS'",
       {10},
       {{"1 "}},
       {"1"},
       true},
      {"CountPrimaryKeys",
       Count([](auto& s, auto& n) { return s.CountPrimaryKeys("SHOP", "ORDERS", n); }),
       "select count(*) from  DBA_CONSTRAINTS  where owner='SHOP' and table_name='ORDERS' and "
       "constraint_type='P'",
       {10},
       {{"0"}},
       {"0"},
       true},
      {"CountPrimaryKeysNamed",
       Count([](auto& s, auto& n) { return s.CountPrimaryKeysNamed("SHOP", "ORDERS", "PK", n); }),
       "select count(*) from  DBA_CONSTRAINTS  where owner='SHOP' and table_name='ORDERS' and "
       "constraint_type='P' and constraint_name ='PK'",
       {10},
       {{"1"}},
       {"1"},
       true},
      {"CountIndexes",
       Count([](auto& s, auto& n) { return s.CountIndexes("SHOP", "ORDERS", n); }),
       "select count(*) from  DBA_INDEXES  I where owner='SHOP' and table_name='ORDERS" +
           kNoKeyIndexes,
       {10},
       {{"99999999999"}},
       {"2147483647"},
       true},
      {"CountIndexesNamed",
       Count([](auto& s, auto& n) { return s.CountIndexesNamed("SHOP", "O'HARA", "IX", n); }),
       "select count(*) from  DBA_INDEXES  where owner='SHOP' and table_name='O'HARA' and "
       "index_name ='IX'",
       {10},
       {{"3"}},
       {"3"},
       true},
      {"GetPrimaryKey",
       [](OracleSession& session, Lines& lines) {
         KeyInfo key;
         if (!session.GetPrimaryKey("SHOP", "ORDERS", key)) return false;
         lines = {Line(key)};
         return true;
       },
       "select constraint_name, status from  DBA_CONSTRAINTS  where owner='SHOP' and "
       "table_name='ORDERS' and  constraint_type='P' ",
       {30, 8},
       {{"PK_ORDERS  ", "DISABLED"}, {"NEVER", "READ"}},
       {"SHOP|ORDERS|PK_ORDERS|DISABLED"},
       true},
      {"ListIndexes",
       List<IndexInfo>([](auto& s, auto& l) { return s.ListIndexes("SHOP", "ORDERS", l); }),
       "select I.index_name, I.index_type, I.status from  DBA_INDEXES  I where I.owner='SHOP' and "
       "I.table_name='ORDERS" +
           kNoKeyIndexes,
       {30, 27, 8},
       {{"IX_LONGER", "FUNCTION-BASED NORMAL", "UNUSABLE"}, {"IX", "NORMAL", "VALID"}},
       {"IX_LONGER|FUNCTION-BASED NORMAL|UNUSABLE", "IX|NORMAL|VALID"}},
      {"ListIndexColumns",
       List<std::string>(
           [](auto& s, auto& l) { return s.ListIndexColumns("ORDERS", "SHOP", "IX", l); }),
       "select substr(column_name,0, 50) from dba_ind_columns where table_name='ORDERS' and "
       "index_owner ='SHOP' and index_name='IX'",
       {50},
       {{"SYS_NC00012$"}, {"ID"}},
       {"SYS_NC00012$", "ID"}},
      {"ListConstraintColumns",
       List<std::string>([](auto& s, auto& l) { return s.ListConstraintColumns("SHOP", "PK", l); }),
       "select substr(column_name,0, 50) from dba_cons_columns where owner ='SHOP' and "
       "constraint_name='PK'",
       {50},
       {{"SECOND"}, {"ID"}},
       {"SECOND", "ID"}},
      {"ListColumns",
       List<ColumnInfo>([](auto& s, auto& l) { return s.ListColumns("ORDERS", "SHOP", l); }),
       "select column_name, substr(data_type,0,30), data_length, NVL(data_precision,0),   "
       "NVL(data_scale,0), nullable from dba_tab_columns where table_name='ORDERS' and owner "
       "='SHOP'",
       {30, 30, 10, 10, 10, 1},
       {{"AMOUNT", "NUMBER", "22", "12", "-2", "N"}, {"AT", "DATE", "7", "0", "0", "Y"}},
       {"AMOUNT|NUMBER|22|12|-2|N", "AT|DATE|7|0|0|Y"}},
      {"ListReferencingForeignKeys",
       List<KeyInfo>([](auto& s, auto& l) { return s.ListReferencingForeignKeys("PK", l); }),
       "select owner,constraint_name, table_name  from dba_constraints  where constraint_type='R' "
       "and r_constraint_name='PK'",
       {30, 30, 30},
       {{"CRM", "FK_1", "VISITS"}},
       {"CRM|VISITS|FK_1|"}},
  };
}

class CatalogueQueries : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(session_.Connect("DB", "u", "p", false));
    script_.TakeTranscript();
  }

  ScriptedOci script_;
  OciLibrary library_{script_.Api()};
  OracleSession session_{library_};
};

TEST_F(CatalogueQueries, SendTheirTextAndReadTheirRecords) {
  for (const Query& query : Queries()) {
    SCOPED_TRACE(query.name);
    script_.Answer(query.sql, query.rows);
    Lines records;
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
        capacities.push_back(std::stoi(call.substr(call.find(", 1, ind") - 2)));
      }
    }
    EXPECT_EQ(prepared, '"' + query.sql + "\", 1, 0)");
    EXPECT_EQ(executed, query.single ? "err1, 1, 0, 0)" : "err1, 0, 0, 0)");
    EXPECT_EQ(capacities, query.capacities);
  }
}

TEST_F(CatalogueQueries, FailUnderTheLabelsOfTheirKind) {
  for (const Query& query : Queries()) {
    SCOPED_TRACE(query.name);
    const std::size_t live = script_.LiveHandles();
    script_.FailOn("StmtExecute", "ORA-00942: no such view\n", 942);
    Lines records;
    EXPECT_FALSE(query.run(session_, records));
    EXPECT_EQ(session_.LastError(),
              std::string(query.single ? "OCIStmtExecute : " : "OCIStmtExecute(Stmthp1) : ") +
                  "ORA-00942: no such view");
    EXPECT_THAT(records, IsEmpty()) << "the list is emptied first";
    EXPECT_EQ(script_.LiveHandles(), live);
  }
}

TEST_F(CatalogueQueries, NamesTooLongAreLeftOutAndTold) {
  for (const Query& query : Queries()) {
    if (query.single || query.name == "GetVersionBanner") continue;
    SCOPED_TRACE(query.name);
    const std::string just_fits(static_cast<std::size_t>(query.capacities[0]), 'X');
    ScriptedOci::Rows rows(2, query.rows[0]);
    rows[0][0] = just_fits + "!";
    rows[1][0] = just_fits;
    script_.Answer(query.sql, rows);
    Lines records;
    EXPECT_TRUE(query.run(session_, records)) << session_.LastError();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_THAT(records[0], StartsWith(just_fits));
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
      ScriptedOci::Rows rows = query.rows;
      rows[0][column] = text;
      script_.Answer(query.sql, rows);
      Lines records;
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
  script_.Answer(sql, {{std::string(31, 'K'), "ENABLED"}});
  KeyInfo key;
  EXPECT_FALSE(session_.GetPrimaryKey("S", "T", key));
  EXPECT_THAT(session_.LastError(), StartsWith("OCIStmtExecute : the primary key of S.T"));
  script_.Answer(sql, {});
  EXPECT_FALSE(session_.GetPrimaryKey("S", "T", key));
  EXPECT_EQ(session_.LastError(), "OCIStmtExecute : ORA-01403: no data found");
}

}  // namespace
}  // namespace quillmere
