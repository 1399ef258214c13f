// SPDX-License-Identifier: MIT
#include "sandbox/client.h"

namespace quillmere::sandbox_test {

namespace {

class DictionaryTest : public SandboxTest {
 protected:
  DictionaryTest() {
    EXPECT_EQ(client_.ConnectSys("SRC"), "");
    EXPECT_EQ(client_.ExecuteAll({
                  "create user scott identified by tiger",
                  "create user hr identified by hr",
                  "create table scott.dept (deptno number(2) constraint pk_dept primary key,"
                  " dname varchar2(14) constraint u_dname unique) tablespace data1",
                  "create table hr.emp (empno number(10), deptno number(2), sal number(8,2),"
                  " name nvarchar2(10) not null, hired date, seen timestamp(6), pic blob,"
                  " plain number, f float, code char(3))",
                  "ALTER TABLE HR.EMP ADD CONSTRAINT PK_EMP PRIMARY KEY (EMPNO)",
                  "ALTER TABLE HR.EMP ADD CONSTRAINT FK_DEPT FOREIGN KEY (DEPTNO)"
                  " REFERENCES SCOTT.DEPT (DEPTNO)",
                  "CREATE INDEX  HR.IX_NAME on HR.EMP(NAME,SAL)",
              }),
              "");
  }

  // Rows as lines, columns joined by "|".
  std::string Lines(const std::string& sql, std::size_t columns) {
    std::vector<Row> rows;
    const std::string failure = client_.Query(sql, &rows, columns);
    if (!failure.empty()) return failure;
    std::string lines;
    for (const Row& row : rows) {
      for (std::size_t i = 0; i < row.size(); ++i) lines += (i == 0 ? "" : "|") + row[i];
      lines += "\n";
    }
    return lines;
  }

  Client client_;
};

TEST_F(DictionaryTest, QueriesOfTheProgramAsTheyAreSent) {
  struct Case {
    const char* sql;
    std::size_t columns;
    std::string lines;
  };
  const std::string not_backing =
      "' AND NOT EXISTS (SELECT 1 FROM SYS.DBA_CONSTRAINTS C WHERE C.CONSTRAINT_NAME=I.INDEX_NAME "
      "AND C.TABLE_NAME=I.TABLE_NAME AND C.OWNER=I.OWNER AND C.CONSTRAINT_TYPE IN ('P','U')  AND "
      "I.UNIQUENESS='UNIQUE') ";
  const std::string count_indexes =
      "select count(*) from  DBA_INDEXES  I where owner='HR' and table_name='EMP" + not_backing;
  const std::string list_indexes =
      "select I.index_name, I.index_type, I.status from  DBA_INDEXES  I where I.owner='HR' and "
      "I.table_name='EMP" +
      not_backing;
  const Case cases[] = {
      {"select owner, table_name,  NVL(tablespace_name,chr(0)), NVL(num_rows,0)  from "
       "dba_all_tables  where owner NOT IN ('SYS', 'SYSTEM') order by owner, table_name",
       4, "HR|EMP|USERS|0\nSCOTT|DEPT|DATA1|0\n"},
      {"select count(*) from  dba_all_tables  where owner='HR' and table_name='EMP'", 1, "1\n"},
      {"select count(*) from  dba_all_tables  where owner='hr' and table_name='EMP'", 1, "0\n"},
      {"select count(*) from  DBA_CONSTRAINTS  where owner='HR' and table_name='EMP' and "
       "constraint_type='P'",
       1, "1\n"},
      {"select count(*) from  DBA_CONSTRAINTS  where owner='HR' and table_name='EMP' and "
       "constraint_type='P' and constraint_name ='PK_OTHER'",
       1, "0\n"},
      {count_indexes.c_str(), 1, "1\n"},
      {"select count(*) from  DBA_INDEXES  where owner='HR' and table_name='EMP' and index_name "
       "='PK_EMP'",
       1, "1\n"},
      {"select constraint_name, status from  DBA_CONSTRAINTS  where owner='HR' and "
       "table_name='EMP' and  constraint_type='P' ",
       2, "PK_EMP|ENABLED\n"},
      {list_indexes.c_str(), 3, "IX_NAME|NORMAL|VALID\n"},
      {"select substr(column_name,0, 50) from dba_ind_columns where table_name='EMP' and "
       "index_owner ='HR' and index_name='IX_NAME'",
       1, "NAME\nSAL\n"},
      {"select substr(column_name,0, 50) from dba_cons_columns where owner ='SCOTT' and "
       "constraint_name='PK_DEPT'",
       1, "DEPTNO\n"},
      {"select column_name, substr(data_type,0,30), data_length, NVL(data_precision,0),   "
       "NVL(data_scale,0), nullable from dba_tab_columns where table_name='EMP' and owner ='HR'",
       6,
       "EMPNO|NUMBER|22|10|0|N\nDEPTNO|NUMBER|22|2|0|Y\nSAL|NUMBER|22|8|2|Y\n"
       "NAME|NVARCHAR2|20|0|0|N\nHIRED|DATE|7|0|0|Y\nSEEN|TIMESTAMP(6)|11|0|6|Y\n"
       "PIC|BLOB|4000|0|0|Y\nPLAIN|NUMBER|22|0|0|Y\nF|FLOAT|22|126|0|Y\nCODE|CHAR|3|0|0|Y\n"},
      {"select owner,constraint_name, table_name  from dba_constraints  where "
       "constraint_type='R' and r_constraint_name='PK_DEPT'",
       3, "HR|FK_DEPT|EMP\n"},
      {"select count(*) from  dba_all_tables  where owner='O'HR' and table_name='EMP'", 1,
       "ORA-01756: quoted string not properly terminated"},
      {"select count(*) from  dba_all_tables  where owner='O'HR' and table_name='EM'P'", 1,
       "ORA-00933: SQL command not properly ended"},
      {"select member from v$logfile where type='STANDBY'", 1, ""},
  };
  for (const Case& test : cases) EXPECT_EQ(Lines(test.sql, test.columns), test.lines) << test.sql;
  EXPECT_NE(Lines("select banner from v$version", 1).find("Quillmere"), std::string::npos);
  EXPECT_EQ(Lines("select username  from dba_users", 1).size(),
            std::string("HRSCOTTSYSSYSTEM").size() + 4);
  EXPECT_EQ(client_.Execute("analyze table hr.emp compute statistics"), "");
  EXPECT_EQ(client_.Value("select num_rows from dba_tables where table_name='EMP'"), "0");
}

TEST_F(DictionaryTest, RulesOfDefinition) {
  struct Case {
    const char* sql;
    const char* begins;
  };
  // In order: later rows see what earlier ones made.
  const Case cases[] = {
      {"create table scott.dept (a number)", "ORA-00955"},
      {"create table nobody.t (a number)", "ORA-01918"},
      {"CREATE TABLE SCOTT.E (  ) ", "ORA-00904"},
      {"CREATE TABLE SCOTT.E ( A TIMESTAMP(6)(6) NULL ) ", "ORA-00907"},
      {"CREATE TABLE SCOTT.E ( A VARCHAR2 ) ", "ORA-00906"},
      {"CREATE TABLE SCOTT.E ( A NUMBER(39) ) ", "ORA-01727"},
      {"CREATE TABLE SCOTT.E ( A VARCHAR2(4001) ) ", "ORA-00910"},
      {"CREATE TABLE SCOTT.E ( A NUMBER, A DATE ) ", "ORA-00957"},
      {"CREATE TABLE SCOTT.E ( A SDO_GEOMETRY ) ", "ORA-00902"},
      {"CREATE TABLE SCOTT.E ( A NUMBER(12,2) NOT NULL, B DATE  NULL, C FLOAT  NULL, D LONG  NULL,"
       " E CHAR(2) NULL ) TABLESPACE USERS",
       ""},
      {"drop table scott.dept", "ORA-02449"},
      {"truncate table scott.dept", "ORA-02266"},
      {"alter table SCOTT.DEPT drop constraint PK_DEPT", "ORA-02273"},
      {"alter table SCOTT.DEPT drop constraint NOTHING", "ORA-02443"},
      {"ALTER TABLE HR.EMP ADD CONSTRAINT PK2 PRIMARY KEY (SAL)", "ORA-02260"},
      {"ALTER TABLE HR.EMP ADD CONSTRAINT U2 UNIQUE (EMPNO)", "ORA-02261"},
      {"ALTER TABLE HR.EMP ADD CONSTRAINT PK_EMP UNIQUE (SAL)", "ORA-02264"},
      {"ALTER TABLE HR.EMP ADD CONSTRAINT IX_NAME UNIQUE (SAL)", "ORA-00955"},
      {"ALTER TABLE HR.EMP ADD CONSTRAINT FK2 FOREIGN KEY (DEPTNO) REFERENCES SCOTT.DEPT (DEPTNO)",
       "ORA-02275"},
      {"ALTER TABLE HR.EMP ADD CONSTRAINT FK2 FOREIGN KEY (NAME) REFERENCES SCOTT.DEPT (DEPTNO)",
       "ORA-02267"},
      {"ALTER TABLE HR.EMP ADD CONSTRAINT FK2 FOREIGN KEY (EMPNO) REFERENCES HR.EMP (SAL)",
       "ORA-02270"},
      {"ALTER TABLE HR.EMP ADD CONSTRAINT FK2 FOREIGN KEY (NOPE) REFERENCES SCOTT.DEPT (DEPTNO)",
       "ORA-00904"},
      {"CREATE INDEX  HR.IX_NAME on HR.EMP(SAL)", "ORA-00955"},
      {"CREATE INDEX  HR.IX2 on HR.EMP(NAME,SAL)", "ORA-01408"},
      {"CREATE INDEX  HR.IX2 on HR.EMP(PIC)", "ORA-02327"},
      {"CREATE INDEX  HR.EMP on HR.EMP(SAL)", ""},  // indexes have names of their own
      {"drop index HR.PK_EMP", "ORA-02429"},
      {"drop index HR.NOTHING", "ORA-01418"},
      {"ALTER INDEX HR.IX_NAME RENAME TO EMP", "ORA-00955"},
      {"ALTER INDEX HR.IX_NAME RENAME TO IX_NEW", ""},
      {"ALTER INDEX HR.IX_NEW RENAME TO ", "ORA-00953"},
      {"ALTER TABLE HR.EMP RENAME TO ", "ORA-00903"},
      {"ALTER TABLE SCOTT.DEPT RENAME TO E", "ORA-00955"},
      {"ALTER TABLE HR.EMP RENAME TO STAFF", ""},
      {"ALTER TABLE HR.STAFF ADD (NAME DATE)", "ORA-01430"},
      {"ALTER TABLE HR.STAFF ADD (EXTRA NUMBER DEFAULT 7 NOT NULL)", ""},
      {"insert into hr.staff (empno,name) values (1,'x')", ""},
      {"select count(*) from hr.staff where extra=7", ""},
      {"drop user hr", "ORA-01922"},
      {"drop user nobody", "ORA-01918"},
      {"create user hr identified by x", "ORA-01920"},
      {"grant select on hr.nothing to scott", "ORA-00942"},
      {"drop table scott.dept CASCADE CONSTRAINTS", ""},
      {"alter table HR.STAFF drop constraint FK_DEPT", "ORA-02443"},
      {"alter table HR.STAFF drop constraint PK_EMP", ""},
      {"drop user hr cascade", ""},
      {"drop table hr.staff", "ORA-00942"},
  };
  for (const Case& test : cases) {
    std::string got = std::string_view(test.sql).starts_with("select") ? client_.Value(test.sql)
                                                                       : client_.Execute(test.sql);
    if (got == "1") got.clear();
    EXPECT_EQ(got.substr(0, 9), test.begins) << test.sql << ": " << got;
  }
}

TEST_F(DictionaryTest, ARenamedTableKeepsItsKeys) {
  ASSERT_EQ(client_.ExecuteAll({"insert into scott.dept values (1, 'a')",
                                "ALTER TABLE HR.EMP RENAME TO STAFF",
                                "ALTER TABLE SCOTT.DEPT RENAME TO D2"}),
            "");
  EXPECT_EQ(client_.Execute("insert into hr.staff (empno,deptno,name) values (1,1,'x')"), "");
  EXPECT_EQ(client_.Execute("insert into hr.staff (empno,deptno,name) values (1,1,'x')"),
            "ORA-00001: unique constraint (HR.PK_EMP) violated");
  EXPECT_EQ(client_.Execute("insert into hr.staff (empno,deptno,name) values (2,9,'x')"),
            "ORA-02291: integrity constraint (HR.FK_DEPT) violated - parent key not found");
  EXPECT_EQ(client_.Execute("delete from scott.d2"),
            "ORA-02292: integrity constraint (HR.FK_DEPT) violated - child record found");
  EXPECT_EQ(Lines("select I.index_name from dba_indexes I where table_name='STAFF' order by 1", 1),
            "IX_NAME\nPK_EMP\n");
}

TEST_F(DictionaryTest, WhoMaySeeAndChangeWhat) {
  Client scott;
  EXPECT_EQ(scott.Connect("SRC", "nobody", "x", false).substr(0, 9), "ORA-01017");
  EXPECT_EQ(scott.Connect("SRC", "scott", "TIGER", false).substr(0, 9), "ORA-01017");
  EXPECT_EQ(scott.Connect("NOWHERE", "scott", "tiger", false).substr(0, 9), "ORA-12154");
  EXPECT_EQ(scott.Connect("../SRC", "scott", "tiger", false).substr(0, 9), "ORA-12154");
  EXPECT_EQ(scott.Connect("SRC", "SYS", "sandbox", false).substr(0, 9), "ORA-28009");
  EXPECT_EQ(scott.Connect("SRC", "scott", "tiger", true).substr(0, 9), "ORA-01031");
  ASSERT_EQ(scott.Connect("SRC", "Scott", "tiger", false), "");
  struct Case {
    const char* sql;
    const char* begins;
  };
  const Case cases[] = {
      {"select count(*) from dba_users", "ORA-00942"},
      {"select count(*) from x$ktuxe", "ORA-00942"},
      {"select count(*) from hr.emp", "ORA-00942"},
      {"delete from hr.emp", "ORA-00942"},
      {"create table hr.mine (a number)", "ORA-01031"},
      {"create user other identified by x", "ORA-01031"},
      {"drop table hr.emp", "ORA-00942"},
      {"select count(*) from dept", "0"},
      {"insert into dept values (1, 'mine')", ""},
  };
  const auto run = [&scott](const std::string& sql) {
    return sql.starts_with("select") ? scott.Value(sql) : scott.Execute(sql);
  };
  for (const Case& test : cases) EXPECT_EQ(run(test.sql).substr(0, 9), test.begins) << test.sql;
  ASSERT_EQ(scott.Execute("commit"), "");
  ASSERT_EQ(client_.ExecuteAll({"grant select, insert on hr.emp to scott",
                                "grant select any dictionary to scott"}),
            "");
  EXPECT_EQ(run("select count(*) from hr.emp"), "0");
  EXPECT_EQ(run("delete from hr.emp").substr(0, 9), "ORA-01031");
  EXPECT_EQ(run("select count(*) from dba_users"), "4");
  EXPECT_EQ(run("select count(*) from x$ktuxe").substr(0, 9), "ORA-00942");
  ASSERT_EQ(client_.Execute("revoke select on hr.emp from scott"), "");
  EXPECT_EQ(run("select count(*) from hr.emp").substr(0, 9), "ORA-00942");
  ASSERT_EQ(client_.Execute("alter user scott identified by Lion"), "");
  Client again;
  EXPECT_EQ(again.Connect("SRC", "scott", "Lion", false), "");
}

}  // namespace
}  // namespace quillmere::sandbox_test
