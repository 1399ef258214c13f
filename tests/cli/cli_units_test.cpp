#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "cli/command.h"
#include "cli/message_queue.h"
#include "cli/statement_splitter.h"
#include "cli/text_table.h"

namespace quillmere::cli {
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

TEST(MessageQueue, AFullQueueHoldsTheWorkerUntilItIsTaken) {
  constexpr std::size_t kMessages = 1000;
  MessageQueue queue(3);
  std::thread worker([&] {
    for (std::size_t i = 0; i < kMessages; ++i) {
      if (i % 2 == 0) {
        queue.OnError(0, std::to_string(i));
      } else {
        queue.OnInformation(0, std::to_string(i));
      }
    }
  });
  std::size_t next = 0;
  while (next < kMessages) {
    const auto taken = queue.Take(std::chrono::seconds(10));
    ASSERT_FALSE(taken.empty());
    ASSERT_LE(taken.size(), 3U);
    for (const auto& message : taken) {
      EXPECT_EQ(message.text, std::to_string(next));
      EXPECT_EQ(message.error, next % 2 == 0);
      ++next;
    }
  }
  worker.join();
  EXPECT_TRUE(queue.Take(std::chrono::milliseconds(0)).empty());
}

TEST(CommandOutput, LinesStayLinesAndColumnsStayColumns) {
  EXPECT_EQ(OneLine("ORA-1: a\nORA-2:\tb\r\n\x7F"), "ORA-1: a ORA-2: b");
  EXPECT_EQ(TextTable({{"A", "B"}, {"\xC3\xA4\xC3\xB6", "x"}, {"", "y"}}),
            "A   B\n\xC3\xA4\xC3\xB6  x\n    y\n");
}

}  // namespace
}  // namespace quillmere::cli
