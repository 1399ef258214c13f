// SPDX-License-Identifier: MIT
#include "oracle/read_rows.h"

#include "oracle/text_query.h"

namespace quillmere {

bool ReadRows(OracleSession& session, std::string_view sql, std::size_t columns, TextRows& rows) {
  rows.clear();
  TextQuery query(session, kListLabels);
  if (!query.Open(sql, std::vector<oci::sb4>(columns, oci::sb4{kLongestText}))) return false;
  TextQuery::Row row{};
  while ((row = query.Fetch()) == TextQuery::Row::Fetched) {
    std::vector<std::string>& texts = rows.emplace_back();
    for (std::size_t i = 0; i < columns; ++i) texts.emplace_back(query.Text(i));
  }
  return row == TextQuery::Row::End;
}

}  // namespace quillmere
