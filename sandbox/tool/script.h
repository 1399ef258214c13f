// SPDX-License-Identifier: MIT
// Runs a file of SQL statements in one session of a database, on the calling thread.
#pragma once

#include <iosfwd>
#include <string>

namespace quillmere::sandbox {

// Runs the statements of `script`, each ended by a semicolon at a line's end, as SYS and commits at
// the end. Rows of queries and a count go to `out`; at the first failure the open transaction is
// rolled back, `err` says what and where, and the result is false. What DDL before it has committed
// stays.
bool RunScript(const std::string& directory, const std::string& name, std::istream& script,
               std::ostream& out, std::ostream& err);

}  // namespace quillmere::sandbox
