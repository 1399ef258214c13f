// SPDX-License-Identifier: MIT
// What statements mean, mean together, and are refused with.
#include <ctime>

#include "sandbox/client.h"

namespace quillmere::sandbox_test {

namespace {

class SqlTest : public SandboxTest {};

TEST_F(SqlTest, Expressions) {
  client_.Run(R"(
    0.1 + 0.2 -> .3
    1/3 -> .3333333333333333333333333333333333333333
    99999999999999999999999999999999999999 + 1 -> 100000000000000000000000000000000000000
    1e125 * 10 -> ORA-01426: numeric overflow
    power(2,32) * power(2,31) -> 9223372036854775808
    power(10, -3) || mod(-7, 3) || mod(7, 0) -> .001-17
    round(2.5) || round(-2.5) || round(1234.5678, -2) || trunc(-1.99, 1) -> 3-31200-1.9
    to_number(' -1.50e2 ') || '3' * '4' -> -15012
    -(-(2)) || -(1 + 1) -> 2-2
    2 + 3 * 4 - 6 / 2 - 1 -> 10
    1 / (3 - 3) -> ORA-01476: divisor is equal to zero
    'x' + 1 -> ORA-01722: invalid number
    'a' || null || 'b' -> ab
    '' -> (null)
    nvl('', 'empty') || nvl(null, 0) || nvl('x', 0) -> empty0x
    upper('äz') || lower('AZ') -> äZaz
    substr('héllo', 2, 2) || substr('abc', 0, 2) || substr('abc', -2) || substr('abc', 4) -> élabbc
    hextoraw('0fAb') -> 0FAB
    substr('a') -> ORA-00909: invalid number of arguments
    nope(1) -> ORA-00904
    to_char(to_date('29.02.2024 13:05','DD.MM.YYYY HH24:MI'), 'YYYY/MM/DD HH:MI:SS AM') ->
        2024/02/29 01:05:00 PM
    to_char(date '2024-03-01' - 1, 'DD-MON-RR') -> 29-FEB-24
    to_date('31-DEC-99','DD-MON-RR') - to_date('1999-12-30','YYYY-MM-DD') -> 1
    to_char(to_date('49','RR'),'YYYY') || to_char(to_date('50','RR'),'YYYY') -> 20491950
    to_date('12:30 am','HH:MI AM') - trunc(to_date('12:30 am','HH:MI AM')) ->
        .02083333333333333333333333333333333333333
    to_char(to_timestamp('2020-01-01 00:00:00.','YYYY-MM-DD HH24:MI:SS.FF'),'FF3') -> 000
    to_timestamp('2020-01-01 00:00:00.123456789') -> 2020-01-01 00:00:00.123456789
    to_timestamp_tz('2020-01-01 00:30:00.5 +02:00') -> 2020-01-01 00:30:00.500000 +02:00
    to_date('2020-02-30') -> ORA-01839
    to_date('2020-01') -> ORA-01840
    to_date('2020-01-01 00:00:00 x') -> ORA-01830
    to_date('2020xx','YYYY-MM') -> ORA-01861
    to_date('1','QQ') -> ORA-01821
  )",
              "select ", " from dual");
}

TEST_F(SqlTest, ConditionsAndTheirThirdValue) {
  client_.Run(R"(
    create table v (id number, s varchar2(20), c char(5), d date, n number)
    insert into v values (1, 'abc', 'abc', date '2020-01-01', 10)
    insert into v values (2, 'a_c', 'x', date '2020-01-02', 9)
    insert into v values (3, null, null, null, null)
    insert into v values (4, 'ABC', 'abc', date '2021-01-01', -1.5)
  )");
  client_.Run(R"(
    n >= '9' -> 1 / 2
    n between -2 and 9.0 -> 2 / 4
    n in (10, null) -> 1
    n = null or s = ''
    s is null or n is not null -> 1 / 2 / 3 / 4
    s like 'a_c' -> 1 / 2
    s like 'a\_c' escape '\' -> 2
    s like 'x' escape 'xx' -> ORA-01425
    c = 'abc' and c = 'abc  ' -> 1 / 4
    d = '2020-01-02 00:00:00' -> 2
    d > to_timestamp('2020-01-01 00:00:00.5') -> 2 / 4
    d - 1 = date '2020-01-01' and 1 = 1 -> 2
    d > 1 -> ORA-00932
    (n + 1) * 2 = 22 or (id = 4 and (s = 'ABC')) -> 1 / 4
    exists (select 1 from v w where w.n = v.n + 1) -> 2
    id = 1 or id = 2 and s = 'nothing' -> 1
    nvl(n, 0) = 0 -> 3
    n -> ORA-00920
  )",
              "select id from v where ", " order by id");
  client_.Run(R"(
    -- as numbers, not as texts
    select max(n), sum(n) from v -> 10|17.5
    select s, count(*) n from v group by s order by n desc, s desc ->
        (null)|1 / abc|1 / a_c|1 / ABC|1
    select id, count(*) from v -> ORA-00937
    select id from v where count(*) > 1 -> ORA-00934
    select a.* from v a, v b where a.id = b.id and b.n = 9 -> 2|a_c|x    |2020-01-02 00:00:00|9
    select id from v a, v b -> ORA-00918
    select id, n from v order by 2 -> 4|-1.5 / 2|9 / 1|10 / 3|(null)
    select id from v order by 0 -> ORA-01785
    select distinct length(c) from v d where d.c like 'abc%' /* end */ -- really -> 5
  )");
}

// Processor time, so that a busy machine does not matter: four times the chain, about four times
// the time, and not sixteen.
TEST_F(SqlTest, LongChainsTakeTimeByTheirLength) {
  const auto time_of = [this](const std::string& chain, int length) {
    std::string sql = "select count(*) from dual where dummy = 'X'";
    for (int i = 0; i < length; ++i) sql += chain + std::to_string(i) + "'";
    const std::clock_t begin = std::clock();
    EXPECT_EQ(client_.Ask(sql), "1");
    return static_cast<double>(std::clock() - begin);
  };
  for (const char* chain : {" or dummy = 'q", " and dummy <> 'q"}) {
    const double quarter = time_of(chain, 4000);
    EXPECT_LT(time_of(chain, 16000), 10 * quarter + CLOCKS_PER_SEC / 10.0) << chain;
  }
}

TEST_F(SqlTest, KeysOverEveryRoad) {
  client_.Run(R"(
    create table p (a number, b varchar2(5), constraint pk primary key (a, b))
    create table c (id number, y varchar2(5), x number,
        constraint fk foreign key (y, x) references p (b, a))
    insert into p values (1, 'one')
    insert into c values (1, 'one', 1)
    -- a key with a NULL in it binds nothing
    insert into c values (2, null, 7)
    insert into c values (3, 'one', 2) -> ORA-02291: integrity constraint (SYS.FK)
    update p set a = 2 -> ORA-02292: integrity constraint (SYS.FK)
    delete from p -> ORA-02292
    delete from c where id = 1
    update p set a = 2
    alter table c add constraint bad foreign key (y, x) references p -> ORA-02267
    alter table c drop constraint fk
    insert into c values (9, 'two', 9)
    alter table c add constraint fk foreign key (x, y) references p -> ORA-02298
    create table tree (id number primary key, up number references tree on delete cascade)
    insert into tree values (1, 1)
    insert into tree values (2, 1)
    insert into tree values (3, 2)
    insert into tree values (4, null)
    delete from tree where id = 1
    select id from tree -> 4
    create table loose (id number, up number references tree on delete set null)
    insert into loose values (1, 4)
    delete from tree
    select up from loose -> (null)
    drop table tree -> ORA-02449
    drop table tree cascade constraints
    insert into loose values (1, 4)
    create table u (a number, b varchar2(5), constraint uk unique (a, b))
    insert into u values (1, 'x')
    insert into u values ('1.0', 'x') -> ORA-00001: unique constraint (SYS.UK) violated
    insert into u values (1, null)
    insert into u values (1, null) -> ORA-00001: unique constraint (SYS.UK) violated
    insert into u values (null, null)
    insert into u values (null, null)
    update u set b = null where b = 'x' -> ORA-00001
    alter table u drop constraint uk
    insert into u values (1, null)
    alter table u add constraint uk unique (a, b) -> ORA-02299
    create unique index ui on u (a, b) -> ORA-01452
    alter table u add constraint pku primary key (a) -> ORA-01449
    delete from u where a is null or b is null
    create unique index ui on u (a)
    insert into u values (1, 'y') -> ORA-00001: unique constraint (SYS.UI) violated
    drop index ui
    insert into u values (1, 'y')
    alter table u add constraint pku primary key (a) -> ORA-02437
    update u set a = 2 where b = 'y'
    alter table u add constraint pku primary key (a)
    update u set a = 5 -> ORA-00001: unique constraint (SYS.PKU) violated
    -- keys are judged when the statement is through
    update u set a = a + 1
    update u set b = b / a -> ORA-01722
    select a, b from u order by a -> 2|x / 3|y
  )");
}

TEST_F(SqlTest, ValuesAtTheEdgeOfTheirColumns) {
  client_.Run(R"(
    create table e (n number(4,1), i integer, z number(2,-2), s varchar2(3), m varchar2(3 char),
        w nvarchar2(2), c char(4), r raw(2), t timestamp(0), x number default 5 + 1,
        y varchar2(9) default 'it''s')
    insert into e (n, i, z) values (999.94, 2.5, 9949)
    select n, i, z, y || x from e -> 999.9|3|9900|it's6
    update e set n = 999.95 -> ORA-01438
    update e set z = 9950 -> ORA-01438
    update e set s = 'éé' ->
        ORA-12899: value too large for column "SYS"."E"."S" (actual: 4, maximum: 3)
    update e set m = 'ééé', w = n'éé', c = 'é'
    update e set w = 'abc' -> ORA-12899
    update e set r = hextoraw('010203') -> ORA-12899
    update e set r = '0102', t = '2020-12-31 23:59:59.5', x = default
    select c, t, r from e -> é  |2021-01-01 00:00:00.000000|0102
    alter table e add (q date default sysdate not null, v varchar2(2))
    select count(*) from e where q <= sysdate and v is null -> 1
    alter table e add (g number not null) -> ORA-01758
    insert into e (n, x) values (1, default)
    insert into e (n) values (n) -> ORA-00984
    create table bad (a number default b) -> ORA-00984
    create table bad (a number(3,200)) -> ORA-01728
    create table bad (a sdo_geometry) -> ORA-00902
  )");
}

TEST_F(SqlTest, Refusals) {
  client_.Run(R"(
    create table t (id number primary key, v varchar2(20))
    insert into t values (1, 'x')
    insert into t values (1, 'x') -> ORA-00001
    insert into t values (3) -> ORA-00947
    insert into t values (3, 'x', 1) -> ORA-00913
    insert into t (id, nope) values (3, 'x') -> ORA-00904
    insert into t values (null, 'x') -> ORA-01400
    insert into t values (3, 'x -> ORA-01756
    insert into t values (3, 'x' -> ORA-00907
    insert into t values (3 'x') -> ORA-00917
    insert into t values (3, 'x') and -> ORA-00933
    insert into t select 1, 'x' from dual -> ORA-00900: invalid SQL statement: INSERT ... SELECT
    update t set id = null -> ORA-01407
    update t set v = (1 = 1) -> ORA-00936
    update nope set v = 1 -> ORA-00942
    drop table a_name_of_more_than_thirty_bytes -> ORA-00972
    create table x (a number check (a > 0)) -> ORA-00900: invalid SQL statement: CHECK
    create user u identified by p bogus clause -> ORA-00922
    create user u identified by p quota unlimited on users default tablespace x
    alter user u identified by p and so on -> ORA-00922
    grant execute on t to u -> ORA-00990
    begin dbms_output.put_line('x'); end; -> ORA-06550
    select id, v from t -> 1|x
  )");
  std::string tall = "id";
  std::string nested = "1";
  for (int i = 0; i < 300; ++i) {
    tall += " + id";
    nested = "(" + nested + (i % 2 == 0 ? " + 1)" : " * 1 - 1)");
  }
  const std::string open(5000, '(');
  for (const std::string& value : {tall, nested, open}) {
    client_.Run("update t set id = " + value + " -> ORA-00900");
  }
}

TEST_F(SqlTest, RulesOfDefinition) {
  client_.Run(R"(
    create user hr identified by hr
    create table dept (deptno number(2) constraint pk_dept primary key)
    create table hr.emp (empno number(10) constraint pk_emp primary key, deptno number(2)
        constraint fk_dept references sys.dept, sal number, name varchar2(10), pic blob)
    create index hr.ix on hr.emp (name, sal)
    analyze table hr.emp compute statistics
    select owner, nvl(num_rows,7) from dba_all_tables order by 1 -> HR|0 / SYS|7
    select column_name, data_type, data_length, data_precision, data_scale, nullable from
        dba_tab_columns where owner = 'HR' and table_name = 'EMP' ->
        EMPNO|NUMBER|22|10|0|N / DEPTNO|NUMBER|22|2|0|Y / SAL|NUMBER|22|(null)|(null)|Y /
        NAME|VARCHAR2|10|(null)|(null)|Y / PIC|BLOB|4000|(null)|(null)|Y
    CREATE TABLE E ( A NUMBER(12,2) NOT NULL, B DATE  NULL, C FLOAT  NULL, D LONG  NULL )
        TABLESPACE USERS
    drop table dept -> ORA-02449
    alter table DEPT drop constraint PK_DEPT -> ORA-02273
    ALTER TABLE HR.EMP ADD CONSTRAINT PK2 PRIMARY KEY (SAL) -> ORA-02260
    ALTER TABLE HR.EMP ADD CONSTRAINT U2 UNIQUE (EMPNO) -> ORA-02261
    ALTER TABLE HR.EMP ADD CONSTRAINT PK_EMP UNIQUE (SAL) -> ORA-02264
    ALTER TABLE HR.EMP ADD CONSTRAINT F FOREIGN KEY (DEPTNO) REFERENCES SYS.DEPT -> ORA-02275
    ALTER TABLE HR.EMP ADD CONSTRAINT F FOREIGN KEY (EMPNO) REFERENCES HR.EMP (SAL) -> ORA-02270
    CREATE INDEX  HR.IX on HR.EMP(SAL) -> ORA-00955
    CREATE INDEX  HR.IX2 on HR.EMP(NAME,SAL) -> ORA-01408
    -- indexes have names of their own
    CREATE INDEX  HR.EMP on HR.EMP(SAL)
    drop index HR.PK_EMP -> ORA-02429
    ALTER INDEX HR.IX RENAME TO EMP -> ORA-00955
    ALTER INDEX HR.IX RENAME TO IX_NEW
    ALTER TABLE DEPT RENAME TO E -> ORA-00955
    ALTER TABLE HR.EMP RENAME TO STAFF
    ALTER TABLE DEPT RENAME TO D2
    insert into d2 values (1)
    insert into hr.staff (empno,deptno) values (1,1)
    insert into hr.staff (empno,deptno) values (1,1) -> ORA-00001: unique constraint (HR.PK_EMP)
    insert into hr.staff (empno,deptno) values (2,9) -> ORA-02291: integrity constraint (HR.FK_
    select index_name from dba_indexes where table_name='STAFF' order by 1 -> EMP / IX_NEW / PK_EMP
    ALTER TABLE HR.STAFF ADD (EXTRA NUMBER DEFAULT 7 NOT NULL)
    select count(*) from hr.staff where extra=7 -> 1
    drop user hr -> ORA-01922
    drop table d2 CASCADE CONSTRAINTS
    alter table HR.STAFF drop constraint FK_DEPT -> ORA-02443
    drop user hr cascade
    drop table hr.staff -> ORA-00942
  )");
  // Tables that another session makes anew are seen as they are now.
  Client other;
  ASSERT_EQ(other.ConnectSys("SRC"), "");
  other.Run("insert into e (a) values (1)");
  other.Run("commit");
  client_.Run("drop table e");
  client_.Run("create table e (b varchar2(9), a number)");
  other.Run("insert into e (a, b) values (2, 'y')");
  other.Run("select b, a from e -> y|2");
}

TEST_F(SqlTest, WhoMaySeeAndChangeWhat) {
  client_.Run(R"(
    create user scott identified by tiger
    create user hr identified by hr
    create table hr.emp (a number)
    create table scott.dept (a number)
  )");
  Client scott;
  EXPECT_EQ(scott.Connect("SRC", "nobody", "x", false).substr(0, 9), "ORA-01017");
  EXPECT_EQ(scott.Connect("SRC", "scott", "TIGER", false).substr(0, 9), "ORA-01017");
  EXPECT_EQ(scott.Connect("SRC", "SYS", "sandbox", false).substr(0, 9), "ORA-28009");
  EXPECT_EQ(scott.Connect("SRC", "scott", "tiger", true).substr(0, 9), "ORA-01031");
  for (const char* database : {"NOWHERE", "../SRC", "SRC\n", ""}) {
    EXPECT_EQ(scott.ConnectSys(database).substr(0, 9), "ORA-12154") << database;
  }
  ASSERT_EQ(scott.Connect("SRC", "Scott", "tiger", false), "");
  scott.Run(R"(
    select count(*) from dba_users -> ORA-00942
    select count(*) from hr.emp -> ORA-00942
    delete from hr.emp -> ORA-00942
    create table hr.mine (a number) -> ORA-01031
    create user other identified by x -> ORA-01031
    insert into dept values (1)
    commit
  )");
  client_.Run("grant select, insert on hr.emp to scott\ngrant select any dictionary to scott");
  scott.Run(R"(
    select count(*) from hr.emp -> 0
    delete from hr.emp -> ORA-01031
    select count(*) from dba_users -> 4
    select count(*) from x$ktuxe -> ORA-00942
  )");
  client_.Run("revoke select on hr.emp from scott\nalter user scott identified by Lion");
  scott.Run("select count(*) from hr.emp -> ORA-00942");
  EXPECT_EQ(Client().Connect("SRC", "scott", "Lion", false), "");
}

}  // namespace
}  // namespace quillmere::sandbox_test
