// SPDX-License-Identifier: MIT
// How the destination's row beside a refused change is shown.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "watch/row_beside.h"

namespace quillmere::cli {

std::string RowText(const RowBeside& row);
nlohmann::ordered_json RowObject(const RowBeside& row);

}  // namespace quillmere::cli
