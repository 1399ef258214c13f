// SPDX-License-Identifier: MIT
#include "foundation/statement_splitter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>

namespace quillmere {
namespace {

using ::testing::ElementsAreArray;

std::vector<std::string> Split(const std::string& script, std::string* unfinished = nullptr) {
  StatementSplitter splitter;
  std::vector<std::string> statements;
  const auto keep = [&](const std::optional<ScriptStatement>& statement) {
    if (statement) statements.push_back(std::to_string(statement->line) + ":" + statement->text);
  };
  for (std::size_t begin = 0; begin < script.size();) {
    const std::size_t end = std::min(script.find('\n', begin), script.size());
    keep(splitter.Feed(std::string_view(script).substr(begin, end - begin)));
    begin = end + 1;
  }
  if (unfinished != nullptr) *unfinished = splitter.Unfinished();
  keep(splitter.Finish());
  return statements;
}

TEST(StatementSplitter, SemicolonsAtALinesEndSeparateStatements) {
  struct Row {
    const char* what;
    std::string script;
    std::vector<std::string> statements;
  };
  const std::vector<Row> rows = {
      {"two", "a;\nb;\n", {"1:a", "2:b"}},
      {"several lines",
       "insert\n into t\nvalues (1);\nx;",
       {"1:insert\n into t\nvalues (1)", "4:x"}},
      {"blanks and carriage returns", "a ; \t\r\n b\r\n;\r\n", {"1:a", "2: b"}},
      {"not at the end", "a; b;\nc", {"1:a; b", "2:c"}},
      {"in a literal", "insert 'x;\ny''s;\n';\nb;", {"1:insert 'x;\ny''s;\n'", "4:b"}},
      {"in a quoted name", "drop \"a;\nb'\";\nc;", {"1:drop \"a;\nb'\"", "3:c"}},
      {"comments",
       "-- it's;\n/* a\n\n;' */\na -- don't;\n; -- end\nb; /* x */\n",
       {"5:a -- don't;", "7:b"}},
      {"comment signs in literals", "a '--';\nb '/*';\nc;", {"1:a '--'", "2:b '/*'", "3:c"}},
      {"empty ones", "\n;\n ;\n;;\na;", {"4:;", "5:a"}},
      {"the last without an end", "a;\nb\n\n", {"1:a", "2:b"}},
      {"nothing", "", {}},
  };
  for (const Row& row : rows) {
    EXPECT_THAT(Split(row.script), ElementsAreArray(row.statements)) << row.what;
  }
}

TEST(StatementSplitter, AScriptThatBreaksOffSaysWhere) {
  for (const auto& [script, unfinished] : std::vector<std::pair<std::string, std::string>>{
           {"a;\nb 'c\nd;\n", "a literal that begins in line 2"},
           {"a \"b;\n", "a quoted name that begins in line 1"},
           {"a;\n\n/* b;\n", "a comment that begins in line 3"}}) {
    std::string told;
    const auto statements = Split(script, &told);
    EXPECT_EQ(told, unfinished);
    EXPECT_LE(statements.size(), 1U) << "what is broken off is not executed";
  }
}

// Processor time, so that a busy machine does not matter: four times the lines, about four times
// the time, and not sixteen.
TEST(StatementSplitter, LongScriptsTakeTimeByTheirLength) {
  const auto time_of = [](int lines) {
    std::string script;
    for (int i = 0; i < lines; ++i)
      script += i % 2 == 0 ? "insert into t values (1, 'x')\n" : ";\n";
    const std::clock_t begin = std::clock();
    EXPECT_EQ(Split(script).size(), static_cast<std::size_t>(lines) / 2);
    return static_cast<double>(std::clock() - begin);
  };
  const double quarter = time_of(50000);
  EXPECT_LT(time_of(200000), 10 * quarter + CLOCKS_PER_SEC / 20.0);
}

}  // namespace
}  // namespace quillmere
