// SPDX-License-Identifier: MIT
#include "cli/text_table.h"

#include <algorithm>

#include "foundation/text.h"

namespace quillmere::cli {
namespace {

// Characters that take a place on the screen: not the further bytes of one in UTF-8.
std::size_t Width(const std::string& text) {
  return text.size() -
         static_cast<std::size_t>(std::count_if(text.begin(), text.end(), ContinuesCharacter));
}

}  // namespace

std::string TextTable(const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
  }
  std::string text;
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      text += row[i];
      if (i + 1 < row.size()) text.append(widths[i] - Width(row[i]) + 2, ' ');
    }
    text += '\n';
  }
  return text;
}

}  // namespace quillmere::cli
