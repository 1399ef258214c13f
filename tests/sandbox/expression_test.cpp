// SPDX-License-Identifier: MIT
// Values and expressions as a client sees them: through queries on one row.
#include <random>

#include "sandbox/client.h"

namespace quillmere::sandbox_test {

namespace {

class ExpressionTest : public SandboxTest {
 protected:
  ExpressionTest() { EXPECT_EQ(client_.ConnectSys("SRC"), ""); }

  std::string Of(const std::string& expression) {
    return client_.Value("select " + expression + " from dual");
  }

  Client client_;
};

struct Case {
  const char* expression;
  const char* value;
};

TEST_F(ExpressionTest, NumbersAreExact) {
  const Case cases[] = {
      {"0.1 + 0.2", ".3"},
      {"-0.5", "-.5"},
      {"1/3", ".3333333333333333333333333333333333333333"},
      {"2/3 * 3", "2"},
      {"99999999999999999999999999999999999999 + 1", "100000000000000000000000000000000000000"},
      {"1e125 * 10", "ORA-01426: numeric overflow"},
      {"1e-130 / 10", "0"},
      {"power(2,32) * power(2,31)", "9223372036854775808"},
      {"power(10, -3)", ".001"},
      {"mod(-7, 3)", "-1"},
      {"mod(7, 0)", "7"},
      {"round(2.5)", "3"},
      {"round(-2.5)", "-3"},
      {"round(1234.5678, -2)", "1200"},
      {"trunc(-1.99, 1)", "-1.9"},
      {"round(0.6)", "1"},
      {"round(0.04, 1)", "0"},
      {"to_number(' -1.50e2 ')", "-150"},
      {"'3' * '4'", "12"},
      {"-(-(2))", "2"},
      {"1 - - 1", "2"},
      {"2 + 3 * 4 - 6 / 2", "11"},
      {"5 - 3 - 1", "1"},
      {"12 / 3 / 2", "2"},
      {"1 / (3 - 3)", "ORA-01476: divisor is equal to zero"},
      {"'x' + 1", "ORA-01722: invalid number"},
  };
  for (const Case& test : cases) EXPECT_EQ(Of(test.expression), test.value) << test.expression;
}

// Against arithmetic of the machine, where that is exact.
TEST_F(ExpressionTest, ArithmeticAgreesWithWholeNumbers) {
  std::mt19937_64 random(42);
  const auto scaled = [](long long value) {  // thousandths as Oracle writes them
    std::string digits = std::to_string(value < 0 ? -value : value);
    digits.insert(0, digits.size() < 4 ? 4 - digits.size() : 0, '0');
    std::string text = digits.substr(0, digits.size() - 3) + "." + digits.substr(digits.size() - 3);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    while (text.size() > 1 && text[0] == '0') text.erase(0, 1);
    return (value < 0 && text != "0" ? "-" : "") + text;
  };
  for (int i = 0; i < 300; ++i) {
    const auto a = static_cast<long long>(random() % 2000000) - 1000000;
    const auto b = static_cast<long long>(random() % 2000) - 1000;
    const std::string x = scaled(a);
    const std::string y = scaled(b);
    EXPECT_EQ(Of(x + " + " + y), scaled(a + b)) << x << " + " << y;
    EXPECT_EQ(Of(x + " - " + y), scaled(a - b)) << x << " - " << y;
    EXPECT_EQ(Of(x + " * " + y + " * 1000"), scaled(a * b)) << x << " * " << y;
    const char* wants = a < b ? "1" : "0";
    EXPECT_EQ(client_.Value("select count(*) from dual where " + x + " < " + y), wants)
        << x << " < " << y;
  }
}

TEST_F(ExpressionTest, TextAndItsFunctions) {
  const Case cases[] = {
      {"'a' || null || 'b'", "ab"},
      {"''", "(null)"},
      {"nvl('', 'empty')", "empty"},
      {"nvl(null, 0)", "0"},
      {"nvl('x', 0)", "x"},
      {"upper('\xC3\xA4z') || lower('AZ')", "\xC3\xA4Zaz"},
      {"substr('h\xC3\xA9llo', 2, 2)", "\xC3\xA9l"},
      {"substr('abc', 0, 2)", "ab"},
      {"substr('abc', -2)", "bc"},
      {"substr('abc', 4)", "(null)"},
      {"substr('abc', 2, 0)", "(null)"},
      {"length('h\xC3\xA9')", "2"},
      {"chr(65) || chr(0)", std::string_view("A\0", 2).data()},
      {"hextoraw('0fAb')", "0FAB"},
      {"hextoraw('xy')", "ORA-01465: invalid hex number"},
      {"to_char(1.50)", "1.5"},
      {"user", "SYS"},
      {"substr('a')", "ORA-00909: invalid number of arguments"},
  };
  for (const Case& test : cases) {
    const std::string got = Of(test.expression);
    EXPECT_EQ(got.substr(0, got.find('\0')), test.value) << test.expression;
  }
}

TEST_F(ExpressionTest, DatesByTheirMasks) {
  const Case cases[] = {
      {"to_char(to_date('29.02.2024 13:05','DD.MM.YYYY HH24:MI'), 'YYYY/MM/DD HH:MI:SS AM')",
       "2024/02/29 01:05:00 PM"},
      {"to_char(date '2024-03-01' - 1, 'DD-MON-RR')", "29-FEB-24"},
      {"to_date('31-DEC-99','DD-MON-RR') - to_date('1999-12-30','YYYY-MM-DD')", "1"},
      {"to_char(to_date('49','RR'),'YYYY') || to_char(to_date('50','RR'),'YYYY')", "20491950"},
      {"to_date('12:30 am','HH:MI AM') - trunc(to_date('12:30 am','HH:MI AM'))",
       ".02083333333333333333333333333333333333333"},
      {"to_char(to_timestamp('2020-01-01 00:00:00.','YYYY-MM-DD HH24:MI:SS.FF'),'FF3')", "000"},
      {"to_timestamp('2020-01-01 00:00:00.123456789')", "2020-01-01 00:00:00.123456789"},
      {"to_timestamp_tz('2020-01-01 00:30:00.5 +02:00')", "2020-01-01 00:30:00.500000 +02:00"},
      {"trunc(to_date('2020-01-01 23:59:59'))", "2020-01-01 00:00:00"},
      {"to_date('2020-02-29')", "2020-02-29 00:00:00"},
      {"to_date('2020-02-30')", "ORA-01839: date not valid for month specified"},
      {"to_date('2020-00-01')", "ORA-01843: not a valid month"},
      {"to_date('2020-01-32')", "ORA-01847: day of month must be between 1 and last day of month"},
      {"to_date('2020-01-01 24:00:00')", "ORA-01850: hour must be between 0 and 23"},
      {"to_date('2020-01-01 00:61:00')", "ORA-01851: minutes must be between 0 and 59"},
      {"to_date('2020-01')", "ORA-01840: input value not long enough for date format"},
      {"to_date('2020-01-01 00:00:00 x')",
       "ORA-01830: date format picture ends before converting entire input string"},
      {"to_date('2020xx','YYYY-MM')", "ORA-01861: literal does not match format string"},
      {"to_date('01-FOO-20','DD-MON-YY')", "ORA-01843: not a valid month"},
      {"to_date('1','QQ')", "ORA-01821: date format not recognized"},
  };
  for (const Case& test : cases) EXPECT_EQ(Of(test.expression), test.value) << test.expression;
}

TEST_F(ExpressionTest, ConditionsAndTheirThirdValue) {
  ASSERT_EQ(client_.ExecuteAll({
                "create table v (id number, s varchar2(20), c char(5), d date, n number)",
                "insert into v values (1, 'abc', 'abc', date '2020-01-01', 10)",
                "insert into v values (2, 'a_c', 'x', date '2020-01-02', 9)",
                "insert into v values (3, null, null, null, null)",
                "insert into v values (4, 'ABC', 'abc', date '2021-01-01', -1.5)",
            }),
            "");
  const Case cases[] = {
      {"n > 9", "1"},
      {"n >= '9'", "12"},
      {"n between -2 and 9.0", "24"},
      {"not (n > 9)", "24"},
      {"n in (10, null)", "1"},
      {"n not in (10, null)", ""},
      {"n = null", ""},
      {"s = ''", ""},
      {"s is null or n is not null", "1234"},
      {"s like 'a_c'", "12"},
      {"s like 'a\\_c' escape '\\'", "2"},
      {"s like '%b%'", "1"},
      {"s not like '%'", ""},
      {"c = 'abc'", "14"},
      {"c = 'abc  '", "14"},
      {"s = 'abc  '", ""},
      {"d = '2020-01-02 00:00:00'", "2"},
      {"d > to_timestamp('2020-01-01 00:00:00.5')", "24"},
      {"d - 1 = date '2020-01-01' and 1 = 1", "2"},
      {"(n + 1) * 2 = 22 or (id = 4 and (s = 'ABC'))", "14"},
      {"exists (select 1 from v w where w.n = v.n + 1)", "2"},
      {"upper(s) = s and s <> 'x'", "4"},
      {"id = 1 or id = 2 and s = 'nothing'", "1"},
      {"nvl(n, 0) = 0", "3"},
      {"rowid = 'AAAAAAAAAAAAAAAAAA'", ""},
  };
  for (const Case& test : cases) {
    std::vector<Row> rows;
    EXPECT_EQ(
        client_.Query(std::string("select id from v where ") + test.expression + " order by id",
                      &rows, 1),
        "")
        << test.expression;
    std::string ids;
    for (const Row& row : rows) ids += row[0];
    EXPECT_EQ(ids, test.value) << test.expression;
  }
  EXPECT_EQ(client_.Value("select max(n) from v"), "10") << "as numbers, not as texts";
  EXPECT_EQ(client_.Value("select sum(n) from v"), "17.5");
  EXPECT_EQ(client_.Value("select count(distinct_) from v").substr(0, 9), "ORA-00904");
  std::vector<Row> rows;
  EXPECT_EQ(
      client_.Query("select s, count(*) n from v group by s order by n desc, s desc", &rows, 2),
      "");
  EXPECT_EQ(rows.at(0), (Row{"(null)", "1"})) << "NULL sorts above everything";
  EXPECT_EQ(client_.Query("select id, count(*) from v", &rows, 2).substr(0, 9), "ORA-00937");
  EXPECT_EQ(client_.Query("select * from v a, v b where a.id = b.id", &rows, 10), "");
  EXPECT_EQ(rows.size(), 4U);
  EXPECT_EQ(client_.Value("select id from v a, v b").substr(0, 9), "ORA-00918");
}

// One plan serves all statements that differ in their literals only.
TEST_F(ExpressionTest, StatementsOfOneShapeKeepTheirOwnValues) {
  ASSERT_EQ(client_.Execute("create table p (a number, b varchar2(9), c date default sysdate)"),
            "");
  for (const char* sql :
       {"insert into p (a, b) values (1, 'x')", "insert into p (a, b) values (2, '')",
        "insert into p (a, b) values (-3, 'z')", "update p set b = 'new', a = 5 where a = '1'",
        "update p set b = 'old', a = 6 where a = '2'"}) {
    ASSERT_EQ(client_.Execute(sql), "") << sql;
  }
  EXPECT_EQ(client_.Value("select b from p where a = 5"), "new");
  EXPECT_EQ(client_.Value("select b from p where a = 6"), "old");
  EXPECT_EQ(client_.Value("select b from p where a = -3"), "z");
  EXPECT_EQ(client_.Value("select count(*) from p where c is null"), "0");
  std::vector<Row> rows;
  ASSERT_EQ(client_.Query("select a, b from p order by 1", &rows, 2), "");
  EXPECT_EQ(rows[0][1], "z");
  ASSERT_EQ(client_.Query("select a, b from p order by 2", &rows, 2), "");
  EXPECT_EQ(rows[0][1], "new");
  // A plan must not outlive the table it was made for.
  Client other;
  ASSERT_EQ(other.ConnectSys("SRC"), "");
  ASSERT_EQ(client_.Execute("commit"), "");
  ASSERT_EQ(other.ExecuteAll({"drop table p", "create table p (b varchar2(9), a number)"}), "");
  EXPECT_EQ(client_.Execute("insert into p (a, b) values (1, 'x')"), "");
  EXPECT_EQ(client_.Value("select b from p where a = 1"), "x");
}

}  // namespace
}  // namespace quillmere::sandbox_test
