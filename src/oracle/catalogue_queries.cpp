#include <algorithm>
#include <charconv>
#include <limits>

#include "oracle/text_query.h"

namespace quillmere {
namespace {

constexpr oci::sb4 kNameBytes = 30;
constexpr oci::sb4 kNumberBytes = 10;

// The texts of a row that was left out, for its warning line.
std::string LeftOut(std::string_view what, std::string_view name) {
  return std::string(what) + " beginning with " + std::string(name) +
         " left out: a name in it is longer than " + std::to_string(kNameBytes) + " bytes";
}

// A count of more rows than 32 bits hold is shown as the largest one that they do.
bool ParseRows(std::string_view text, std::int32_t& rows) {
  std::int64_t value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return false;
  rows = static_cast<std::int32_t>(
      std::clamp<std::int64_t>(value, std::numeric_limits<std::int32_t>::min(),
                               std::numeric_limits<std::int32_t>::max()));
  return true;
}

}  // namespace

bool OracleSession::ListUsers(std::vector<std::string>& users) {
  users.clear();
  TextQuery query(*this, kListLabels);
  if (!query.Open("select username  from dba_users", {kNameBytes})) return false;
  TextQuery::Row row;
  while ((row = query.Fetch()) == TextQuery::Row::Fetched) {
    const std::string_view user = query.Text(0);
    if (query.Truncated()) {
      warnings_.push_back(LeftOut("user", user));
    } else if (!IsSystemOwner(user)) {
      users.emplace_back(user);
    }
  }
  return row == TextQuery::Row::End;
}

bool OracleSession::ListTables(std::vector<TableInfo>& tables) {
  tables.clear();
  TextQuery query(*this, kListLabels);
  if (!query.Open("select owner, table_name,  NVL(tablespace_name,chr(0)),"
                  " NVL(num_rows,0)  from dba_all_tables "
                  " where owner NOT IN ('SYS', 'SYSTEM') order by owner, table_name",
                  {kNameBytes, kNameBytes, kNameBytes, kNumberBytes})) {
    return false;
  }
  TextQuery::Row row;
  while ((row = query.Fetch()) == TextQuery::Row::Fetched) {
    const std::string_view owner = query.Text(0);
    if (query.Truncated()) {
      warnings_.push_back(LeftOut("table", std::string(owner) + "." + std::string(query.Text(1))));
      continue;
    }
    if (IsSystemOwner(owner)) continue;
    TableInfo table;
    table.owner = owner;
    table.table_name = query.Text(1);
    table.tablespace_name = query.Text(2) == std::string_view("\0", 1) ? "" : query.Text(2);
    if (!ParseRows(query.Text(3), table.num_rows)) {
      last_error_ = "OCIStmtFetch2 : the row count of " + table.owner + "." + table.table_name +
                    " is not a number: '" + std::string(query.Text(3)) + "'";
      return false;
    }
    tables.push_back(std::move(table));
  }
  return row == TextQuery::Row::End;
}

}  // namespace quillmere
