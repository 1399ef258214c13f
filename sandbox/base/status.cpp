// SPDX-License-Identifier: MIT
#include "sandbox/base/status.h"

#include <array>
#include <cstdio>

namespace quillmere::sandbox {

namespace {

struct Message {
  int code;
  std::string_view text;
};

constexpr Message kMessages[] = {
    {1, "unique constraint violated"},
    {54, "resource busy and acquire with NOWAIT specified or timeout expired"},
    {900, "invalid SQL statement"},
    {902, "invalid datatype"},
    {903, "invalid table name"},
    {904, "invalid identifier"},
    {905, "missing keyword"},
    {906, "missing left parenthesis"},
    {907, "missing right parenthesis"},
    {909, "invalid number of arguments"},
    {910, "specified length too long for its datatype"},
    {911, "invalid character"},
    {913, "too many values"},
    {917, "missing comma"},
    {918, "column ambiguously defined"},
    {920, "invalid relational operator"},
    {922, "missing or invalid option"},
    {923, "FROM keyword not found where expected"},
    {925, "missing INTO keyword"},
    {926, "missing VALUES keyword"},
    {927, "missing equal sign"},
    {931, "missing identifier"},
    {932, "inconsistent datatypes"},
    {933, "SQL command not properly ended"},
    {936, "missing expression"},
    {937, "not a single-group group function"},
    {934, "group function is not allowed here"},
    {942, "table or view does not exist"},
    {947, "not enough values"},
    {953, "missing or invalid index name"},
    {955, "name is already used by an existing object"},
    {957, "duplicate column name"},
    {969, "missing ON keyword"},
    {971, "missing SET keyword"},
    {972, "identifier is too long"},
    {987, "missing or invalid username(s)"},
    {988, "missing or invalid password(s)"},
    {1001, "invalid cursor"},
    {1007, "variable not in select list"},
    {1012, "not logged on"},
    {1017, "invalid username/password; logon denied"},
    {1031, "insufficient privileges"},
    {1086, "savepoint never established in this session or is invalid"},
    {1284, "file cannot be opened"},
    {1291, "missing log file"},
    {1292, "no log file has been specified for the current LogMiner session"},
    {1306, "dbms_logmnr.start_logmnr() must be invoked before selecting from v$logmnr_contents"},
    {1307, "no LogMiner session is currently active"},
    {1403, "no data found"},
    {1405, "fetched column value is NULL"},
    {1406, "fetched column value was truncated"},
    {1408, "such column list already indexed"},
    {1418, "specified index does not exist"},
    {1425, "escape character must be character string of length 1"},
    {1426, "numeric overflow"},
    {1427, "single-row subquery returns more than one row"},
    {1428, "argument is out of range"},
    {1438, "value larger than specified precision allowed for this column"},
    {1449, "column contains NULL values; cannot alter to NOT NULL"},
    {1452, "cannot CREATE UNIQUE INDEX; duplicate keys found"},
    {1465, "invalid hex number"},
    {1476, "divisor is equal to zero"},
    {1722, "invalid number"},
    {1723, "zero-length columns are not allowed"},
    {1727, "numeric precision specifier is out of range (1 to 38)"},
    {1728, "numeric scale specifier is out of range (-84 to 127)"},
    {1740, "missing double quote in identifier"},
    {1741, "illegal zero-length identifier"},
    {1747, "invalid user.table.column, table.column, or column name"},
    {1756, "quoted string not properly terminated"},
    {1785, "ORDER BY item must be the number of a SELECT-list expression"},
    {1792, "maximum number of columns in a table or view is 1000"},
    {1821, "date format not recognized"},
    {1830, "date format picture ends before converting entire input string"},
    {1839, "date not valid for month specified"},
    {1840, "input value not long enough for date format"},
    {1841, "(full) year must be between -4713 and +9999, and not be 0"},
    {1843, "not a valid month"},
    {1847, "day of month must be between 1 and last day of month"},
    {1849, "hour must be between 1 and 12"},
    {1850, "hour must be between 0 and 23"},
    {1851, "minutes must be between 0 and 59"},
    {1852, "seconds must be between 0 and 59"},
    {1855, "AM/A.M. or PM/P.M. required"},
    {1858, "a non-numeric character was found where a numeric was expected"},
    {1861, "literal does not match format string"},
    {1866, "the datetime class is invalid"},
    {1874, "time zone hour must be between -15 and 15"},
    {2003, "invalid USERENV parameter"},
    {2065, "illegal option for ALTER SYSTEM"},
    {2231, "missing or invalid option to ALTER DATABASE"},
    {2260, "table can have only one primary key"},
    {2261, "such unique or primary key already exists in the table"},
    {2264, "name already used by an existing constraint"},
    {2266, "unique/primary keys in table referenced by enabled foreign keys"},
    {2267, "column type incompatible with referenced column type"},
    {2268, "referenced table does not have a primary key"},
    {2270, "no matching unique or primary key for this column-list"},
    {2273, "this unique/primary key is referenced by some foreign keys"},
    {2275, "such a referential constraint already exists in the table"},
    {2327, "cannot create index on expression with datatype LOB"},
    {2329, "column of this datatype cannot be unique or a primary key"},
    {2256, "number of referencing columns must match referenced columns"},
    {2429, "cannot drop index used for enforcement of unique/primary key"},
    {2443, "Cannot drop constraint  - nonexistent constraint"},
    {2449, "unique/primary keys in table referenced by foreign keys"},
    {3114, "not connected to ORACLE"},
    {3115, "unsupported network datatype or representation"},
    {4030, "out of process memory"},
    {6550, "line 1, column 1:\nPL/SQL: Statement ignored"},
    {12154, "TNS:could not resolve the connect identifier specified"},
    {19706, "invalid SCN"},
    {30005, "missing or invalid WAIT interval"},
    {30006, "resource busy; acquire with WAIT timeout expired"},
    {24315, "illegal attribute type"},
    {24333, "zero iteration count"},
    {24337, "statement handle not prepared"},
    {24338, "statement handle not executed"},
    {24345, "A Truncation or null fetch error occurred"},
    {24373, "invalid length specified for statement"},
    {24374, "define not done before fetch or execute and fetch"},
    {28009, "connection as SYS should be as SYSDBA or SYSOPER"},
};

std::string_view UsualMessage(int code) {
  for (const Message& message : kMessages) {
    if (message.code == code) return message.text;
  }
  return "error";
}

}  // namespace

std::string Status::Text() const {
  std::array<char, 16> prefix{};
  std::snprintf(prefix.data(), prefix.size(), "ORA-%05d: ", code_);
  return prefix.data() + message_;
}

Status Ora(int code) {
  return {code, std::string(UsualMessage(code))};
}

Status Ora(int code, std::string_view detail) {
  std::string message(UsualMessage(code));
  if (!detail.empty()) {
    message += ": ";
    message += detail;
  }
  return {code, std::move(message)};
}

std::string Shortened(std::string_view text, std::size_t limit) {
  if (text.size() <= limit) return std::string(text);
  std::size_t end = limit;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return std::string(text.substr(0, end)) + "...";
}

}  // namespace quillmere::sandbox
