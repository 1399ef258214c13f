// SPDX-License-Identifier: MIT
// Which row a change is about, read from its statement. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace quillmere {

// "insert", "update" or "delete"; empty for anything else.
std::string_view OperationOf(std::string_view statement);

// Of an insert the values, each with its column; of the others the conditions that find the row.
// Empty when the statement can not be read.
std::string RowOf(std::string_view statement);

}  // namespace quillmere
