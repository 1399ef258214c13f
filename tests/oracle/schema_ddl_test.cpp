#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "oracle/H_oracle.h"
#include "support/scripted_oci.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::ScriptedOci;

using Lines = std::vector<std::string>;

std::string ReferencingQuery(const std::string& key) {
  return "select owner,constraint_name, table_name  from dba_constraints  where "
         "constraint_type='R' and r_constraint_name='" +
         key + "'";
}

std::string KeyColumnsQuery(const std::string& owner, const std::string& key) {
  return "select substr(column_name,0, 50) from dba_cons_columns where owner ='" + owner +
         "' and constraint_name='" + key + "'";
}

class SchemaDdl : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(session_.Connect({"DB", "u", "p", false}));
    script_.Answer(ReferencingQuery("PK"), {{"CRM", "FK1", "VISITS"}, {"LAB", "FK2", "TESTS"}});
    script_.Answer(KeyColumnsQuery("SHOP", "PK"), {{"ID"}, {"PART"}});
    script_.Answer(KeyColumnsQuery("CRM", "FK1"), {{"ORDER_ID"}, {"ORDER_PART"}});
    script_.Answer(KeyColumnsQuery("LAB", "FK2"), {{"O"}, {"P"}});
  }

  const KeyInfo key_{"SHOP", "ORDERS", "PK", "ENABLED"};
  ScriptedOci script_;
  OciLibrary library_{script_.Api()};
  OracleSession session_{library_};
};

TEST_F(SchemaDdl, StatementsAreExact) {
  const IndexRef index{"SHOP", "ORDERS", "IDX", "IX"};
  struct Case {
    std::function<bool()> run;
    std::string statement;
  };
  for (const Case& c : std::vector<Case>{
           {[&] { return session_.DropConstraint(key_); },
            "alter table SHOP.ORDERS drop constraint PK"},
           {[&] { return session_.DropTable("SHOP", "ORDERS", false); }, "drop table SHOP.ORDERS"},
           {[&] { return session_.DropTable("SHOP", "ORDERS", true); },
            "drop table SHOP.ORDERS CASCADE CONSTRAINTS"},
           {[&] { return session_.DropIndex(index); }, "drop index IDX.IX"},
           {[&] {
              return session_.AddPrimaryKey(key_, {"A", "B"});
            },
            "ALTER TABLE SHOP.ORDERS ADD CONSTRAINT PK PRIMARY KEY (A,B)"},
           {[&] {
              return session_.AddForeignKey({"X", "Y"}, {"A", "B"}, {"CRM", "VISITS", "FK", ""},
                                            "SHOP", "ORDERS");
            },
            "ALTER TABLE CRM.VISITS ADD CONSTRAINT FK FOREIGN KEY (X,Y) REFERENCES SHOP.ORDERS "
            "(A,B)"},
           {[&] {
              return session_.CreateIndex(index, {"A", "B"});
            },
            "CREATE INDEX  IDX.IX on SHOP.ORDERS(A,B)"},
           {[&] { return session_.RenameTable("SHOP", "ORDERS", "SALES"); },
            "ALTER TABLE SHOP.ORDERS RENAME TO SALES"},
           {[&] { return session_.RenameIndex("SHOP", "IX", ""); },
            "ALTER INDEX SHOP.IX RENAME TO "}}) {
    SCOPED_TRACE(c.statement);
    EXPECT_TRUE(c.run());
    EXPECT_THAT(script_.TakeExecuted(), ElementsAre(c.statement));
    script_.FailOn("StmtExecute", "ORA-00942: table or view does not exist\n");
    EXPECT_FALSE(c.run());
    EXPECT_EQ(session_.LastError(), "OCIStmtExecute : ORA-00942: table or view does not exist");
  }
}

TEST_F(SchemaDdl, CreateTableWritesEachType) {
  struct Case {
    ColumnInfo column;
    std::string text;
  };
  std::vector<ColumnInfo> columns;
  std::string all;
  for (const Case& c :
       std::vector<Case>{{{"A", "CHAR", 3, 0, 0, "Y", ""}, "A CHAR(3) NULL"},
                         {{"B", "NCHAR", 4, 0, 0, "N", ""}, "B NCHAR(4) NOT NULL"},
                         {{"C", "NVARCHAR", 5, 0, 0, "Y", ""}, "C NVARCHAR(5) NULL"},
                         {{"D", "NVARCHAR2", 6, 0, 0, "Y", ""}, "D NVARCHAR2(6) NULL"},
                         {{"E", "VARCHAR2", 4000, 0, 0, "", ""}, "E VARCHAR2(4000) NOT NULL"},
                         {{"F", "NUMBER", 22, 12, 2, "Y", ""}, "F NUMBER(12,2) NULL"},
                         {{"G", "NUMBER", 22, 10, 0, "Y", ""}, "G NUMBER(10) NULL"},
                         {{"H", "NUMBER", 22, 0, 0, "Y", ""}, "H NUMBER NULL"},
                         {{"I", "NUMBER", 22, 0, 3, "Y", ""}, "I NUMBER(0,3) NULL"},
                         {{"J", "NUMBER", 22, 5, -2, "Y", ""}, "J NUMBER(5) NULL"},
                         {{"K", "TIMESTAMP(6)", 11, 0, 6, "Y", ""}, "K TIMESTAMP(6)(6) NULL"},
                         {{"L", "TIMESTAMP(0)", 7, 0, 0, "Y", ""}, "L TIMESTAMP(0)  NULL"},
                         {{"M", "DATE", 7, 0, 0, "Y", ""}, "M DATE  NULL"},
                         {{"N", "FLOAT", 22, 126, 0, "N", ""}, "N FLOAT  NOT NULL"},
                         {{"O", "RAW", 16, 0, 0, "N", ""}, "O RAW  NOT NULL"}}) {
    EXPECT_TRUE(session_.CreateTable({"S", "T", "TS", 0, ""}, {c.column}, false));
    EXPECT_THAT(script_.TakeExecuted(), ElementsAre("CREATE TABLE S.T ( " + c.text + " ) "));
    columns.push_back(c.column);
    all += (all.empty() ? "" : ", ") + c.text;
  }
  Lines traced;
  EXPECT_TRUE(session_.CreateTable({"S", "T", "TS", 0, ""}, columns, true,
                                   [&](std::string_view line) { traced.emplace_back(line); }));
  const std::string statement = "CREATE TABLE S.T ( " + all + " ) TABLESPACE TS";
  EXPECT_THAT(script_.TakeExecuted(), ElementsAre(statement));
  EXPECT_THAT(traced, ElementsAre("/n" + statement + "/n"));
  EXPECT_TRUE(session_.CreateTable({"S", "T", "", 0, ""}, {}, false));
  EXPECT_THAT(script_.TakeExecuted(), ElementsAre("CREATE TABLE S.T (  ) "));
}

struct PartialFailure {
  std::string failing;  // part of the call that fails
  int skip = 0;
  Lines statements;  // changes that ran before
  Lines lines;
};

const Lines kDrops = {"alter table CRM.VISITS drop constraint FK1",
                      "alter table LAB.TESTS drop constraint FK2",
                      "alter table SHOP.ORDERS drop constraint PK"};

Lines First(std::size_t count, Lines lines) {
  lines.resize(count);
  return lines;
}

Lines WithoutQueries(const Lines& executed) {
  Lines changes;
  for (const std::string& statement : executed) {
    if (!statement.starts_with("select")) changes.push_back(statement);
  }
  return changes;
}

TEST_F(SchemaDdl, DropPrimaryKeyDropsWhatReferencesItFirst) {
  Lines errors;
  const auto sink = [&](std::string_view line) { errors.emplace_back(line); };
  EXPECT_TRUE(session_.DropPrimaryKey(key_, sink)) << session_.LastError();
  EXPECT_THAT(errors, IsEmpty());
  EXPECT_EQ(WithoutQueries(script_.TakeExecuted()), kDrops);
  for (const PartialFailure& failure :
       std::vector<PartialFailure>{{"StmtFetch2", 1, {}, {"check fk of PK failed."}},
                                   {"StmtExecute", 1, {}, {"drop fk of PK failed."}},
                                   {"StmtExecute", 2, First(1, kDrops), {"drop fk of PK failed."}},
                                   {"StmtExecute", 3, First(2, kDrops), {"drop pk: PK failed."}}}) {
    SCOPED_TRACE(failure.lines[0] + std::to_string(failure.skip));
    errors.clear();
    script_.FailOn(failure.failing, "ORA-00054: resource busy\n", 54, failure.skip);
    EXPECT_FALSE(session_.DropPrimaryKey(key_, sink));
    EXPECT_EQ(errors, failure.lines);
    EXPECT_THAT(session_.LastError(), HasSubstr("ORA-00054"));
    EXPECT_EQ(WithoutQueries(script_.TakeExecuted()), failure.statements);
  }
}

TEST_F(SchemaDdl, RenamePrimaryKeyRebuildsItAndTellsWhatIsGone) {
  const std::string add_key = "ALTER TABLE SHOP.ORDERS ADD CONSTRAINT NEW_PK PRIMARY KEY (ID,PART)";
  const std::string old_key = "ALTER TABLE SHOP.ORDERS ADD CONSTRAINT PK PRIMARY KEY (ID,PART)";
  const std::string add_1 =
      "ALTER TABLE CRM.VISITS ADD CONSTRAINT FK1 FOREIGN KEY (ORDER_ID,ORDER_PART) REFERENCES "
      "SHOP.ORDERS (ID,PART)";
  const std::string add_2 =
      "ALTER TABLE LAB.TESTS ADD CONSTRAINT FK2 FOREIGN KEY (O,P) REFERENCES SHOP.ORDERS "
      "(ID,PART)";
  Lines all = kDrops;
  all.insert(all.end(), {add_key, add_1, add_2});
  EXPECT_TRUE(session_.RenamePrimaryKey(key_, "NEW_PK")) << session_.LastError();
  EXPECT_EQ(WithoutQueries(script_.TakeExecuted()), all);
  EXPECT_THAT(session_.TakeWarnings(), IsEmpty());

  // The first four executions are queries: nothing has changed yet when one of them fails.
  const std::vector<Lines> gone = {
      {},     {}, {}, {}, {}, {add_1}, {add_1, add_2}, {old_key, add_1, add_2}, {add_1, add_2},
      {add_2}};
  for (std::size_t step = 0; step < gone.size(); ++step) {
    SCOPED_TRACE(step);
    script_.FailOn("StmtExecute", "ORA-00054: resource busy\n", 54, static_cast<int>(step));
    EXPECT_FALSE(session_.RenamePrimaryKey(key_, "NEW_PK"));
    EXPECT_THAT(session_.LastError(), HasSubstr("ORA-00054"));
    EXPECT_EQ(WithoutQueries(script_.TakeExecuted()), First(step < 4 ? 0 : step - 4, all));
    Lines expected;
    for (const std::string& statement : gone[step]) {
      expected.push_back("dropped and not created again, to be run by hand: " + statement);
    }
    EXPECT_EQ(session_.TakeWarnings(), expected);
  }
}

TEST_F(SchemaDdl, NothingIsDroppedOnTheStrengthOfAnIncompleteList) {
  const auto refuse = [](std::string_view) {};
  const auto expect_untouched = [&](bool done) {
    EXPECT_FALSE(done);
    EXPECT_THAT(WithoutQueries(script_.TakeExecuted()), IsEmpty());
    EXPECT_THAT(session_.LastError(), HasSubstr("longer"));
    session_.TakeWarnings();
  };
  // A name of 50 bytes may have been cut by the server.
  script_.Answer(KeyColumnsQuery("LAB", "FK2"), {{"O"}, {std::string(50, 'P')}});
  expect_untouched(session_.RenamePrimaryKey(key_, "NEW_PK"));
  script_.Answer(KeyColumnsQuery("SHOP", "PK"), {{"ID"}, {std::string(51, 'P')}});
  expect_untouched(session_.RenamePrimaryKey(key_, "NEW_PK"));
  script_.Answer(ReferencingQuery("PK"), {{"CRM", "FK1", std::string(121, 'T')}});
  script_.Answer(KeyColumnsQuery("SHOP", "PK"), {{"ID"}});
  expect_untouched(session_.RenamePrimaryKey(key_, "NEW_PK"));
  expect_untouched(session_.DropPrimaryKey(key_, refuse));
}

}  // namespace
}  // namespace quillmere
