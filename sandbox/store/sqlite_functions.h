// Makes the functions and orders of SQL known to a SQLite connection.
#pragma once

#include <string>

#include "sandbox/expr/functions.h"
#include "sandbox/store/sqlite.h"

namespace quillmere::sandbox {

// Registers every function, conversion, LIKE, SUM and the number order. `context` must outlive
// the connection.
Status RegisterFunctions(SqliteConnection* connection, const EvalContext* context);

// The names under which they are registered.
std::string SqliteName(const Function& function);
std::string SqliteConversionName(Kind from, Kind to);
inline constexpr std::string_view kNumberOrder = "QMNUM";

}  // namespace quillmere::sandbox
