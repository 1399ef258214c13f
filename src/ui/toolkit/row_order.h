// SPDX-License-Identifier: MIT
// Sorting of long lists. Any thread: what is handed in is used during the call only. Internal to
// the toolkit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace quillmere {

// Sort the row numbers by byte order of their texts or by their numbers; rows that are alike keep
// their order. What is sorted already, in whole or in runs, costs little.
void SortByText(std::vector<std::uint32_t>& rows,
                const std::function<std::string_view(std::uint32_t)>& text, bool descending);
void SortByNumber(std::vector<std::uint32_t>& rows,
                  const std::function<std::int64_t(std::uint32_t)>& number, bool descending);

// True when needle (ASCII lower case) stands in text, upper and lower case ASCII alike.
bool ContainsFolded(std::string_view text, std::string_view needle);

}  // namespace quillmere
