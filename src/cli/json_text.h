// SPDX-License-Identifier: MIT
// How --json is printed.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace quillmere::cli {

// A text of the database that is no UTF-8 cannot stand in JSON as it is: what is wrong in it is
// replaced.
inline std::string JsonText(const nlohmann::ordered_json& value) {
  return value.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace quillmere::cli
