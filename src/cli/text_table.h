// SPDX-License-Identifier: MIT
// Rows of texts as aligned columns.
#pragma once

#include <string>
#include <vector>

namespace quillmere::cli {

// The first row is the heading. Every row has as many cells; two blanks stand between columns.
std::string TextTable(const std::vector<std::vector<std::string>>& rows);

}  // namespace quillmere::cli
