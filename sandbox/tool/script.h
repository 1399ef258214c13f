// Runs a file of SQL statements in one session of a database.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace quillmere::sandbox {

struct ScriptStatement {
  std::string text;
  std::size_t line = 0;  // where it begins, from 1
};

// Statements are separated by ";" at the end of a line, outside of literals, quoted names and
// comments. A block ("begin ... end;") keeps its semicolon.
std::vector<ScriptStatement> SplitScript(std::string_view script);

// Runs them as SYS and commits at the end. Rows of queries and a count go to `out`; at the first
// failure the open transaction is rolled back, `err` says what and where, and the result is false.
bool RunScript(const std::string& directory, const std::string& name, std::string_view script,
               std::ostream& out, std::ostream& err);

}  // namespace quillmere::sandbox
