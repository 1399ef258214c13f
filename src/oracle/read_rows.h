// SPDX-License-Identifier: MIT
// Whole results of queries of the dictionary, for who looks at many of its views once.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "oracle/H_oracle.h"

namespace quillmere {

inline constexpr std::size_t kLongestText = 512;  // bytes

using TextRows = std::vector<std::vector<std::string>>;

// Empties rows first. The first so many columns as texts, NULL as the empty one; what is longer
// is cut. False: the reason is in the session's LastError(), and rows are a part.
bool ReadRows(OracleSession& session, std::string_view sql, std::size_t columns, TextRows& rows);

}  // namespace quillmere
