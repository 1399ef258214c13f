// SPDX-License-Identifier: MIT
// Whether a statement is one of follow_queries.h, and the values that fill it.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace quillmere::sim {

inline std::optional<std::vector<std::string_view>> Match(std::string_view statement,
                                                          std::string_view sql) {
  std::vector<std::string_view> values;
  for (;;) {
    const std::size_t place = statement.find("{}");
    const std::string_view before = statement.substr(0, place);
    if (!sql.starts_with(before)) return std::nullopt;
    sql.remove_prefix(before.size());
    if (place == std::string_view::npos) break;
    statement.remove_prefix(place + 2);
    const std::string_view after = statement.substr(0, statement.find("{}"));
    const std::size_t end = after.empty() ? sql.size() : sql.find(after);
    if (end == std::string_view::npos) return std::nullopt;
    values.push_back(sql.substr(0, end));
    sql.remove_prefix(end);
  }
  if (!sql.empty()) return std::nullopt;
  return values;
}

}  // namespace quillmere::sim
