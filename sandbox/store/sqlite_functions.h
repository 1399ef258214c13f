// SPDX-License-Identifier: MIT
// Makes the functions and orders of SQL known to a SQLite connection, on whose thread they run.
#pragma once

#include <string>

#include "sandbox/expr/functions.h"
#include "sandbox/store/sqlite.h"

namespace quillmere::sandbox {

// Registers every function, conversion and the number order, and makes LIKE tell upper from
// lower case. `context` must outlive the connection.
Status RegisterFunctions(SqliteConnection* connection, const EvalContext* context);

// The names under which they are registered.
std::string SqliteName(const Function& function);
std::string SqliteConversionName(Kind from, Kind to);
inline constexpr std::string_view kNumberOrder = "QMNUM";

// What functions written for SQLite share. An argument is NULL or of that kind.
Datum SqliteArgument(sqlite3_value* value, Kind kind);
void SqliteResult(sqlite3_context* call, const Status& status, const Datum& result);

// Runs the body of such a function: no exception may pass through SQLite.
template <typename Body>
void SqliteGuarded(sqlite3_context* call, Body body) {
  try {
    body();
  } catch (const std::exception&) {
    sqlite3_result_error_nomem(call);
  }
}

}  // namespace quillmere::sandbox
