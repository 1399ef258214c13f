// SPDX-License-Identifier: MIT
#include "foundation/statement_splitter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

#include "support/stored_text.h"

namespace quillmere {
namespace {

// The statements, each with its line, and what keeps the script from being whole.
std::string Split(const std::string& script) {
  StatementSplitter splitter;
  std::string found;
  const auto keep = [&](const std::optional<ScriptStatement>& statement) {
    if (statement) found += std::to_string(statement->line) + ": " + statement->text + "\n";
  };
  for (std::size_t begin = 0; begin < script.size();) {
    const std::size_t end = std::min(script.find('\n', begin), script.size());
    keep(splitter.Feed(std::string_view(script).substr(begin, end - begin)));
    begin = end + 1;
  }
  const std::string unfinished = splitter.Unfinished();
  keep(splitter.Finish());
  return unfinished.empty() ? found : found + "unfinished: " + unfinished + "\n";
}

TEST(StatementSplitter, SemicolonsAtALinesEndSeparateStatements) {
  ExpectCases(TABLES "/splitter.txt", Split);
}

// Processor time, so that a busy machine does not matter: four times the lines, about four times
// the time, and not sixteen.
TEST(StatementSplitter, LongScriptsTakeTimeByTheirLength) {
  const auto time_of = [](int lines) {
    std::string script;
    for (int i = 0; i < lines; ++i)
      script += i % 2 == 0 ? "insert into t values (1, 'x')\n" : ";\n";
    const std::clock_t begin = std::clock();
    EXPECT_EQ(std::ranges::count(Split(script), ':'), lines / 2);
    return static_cast<double>(std::clock() - begin);
  };
  const double quarter = time_of(50000);
  EXPECT_LT(time_of(200000), 10 * quarter + CLOCKS_PER_SEC / 20.0);
}

}  // namespace
}  // namespace quillmere
