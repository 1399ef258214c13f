// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <thread>

#include "cli/command.h"
#include "cli/message_queue.h"
#include "cli/text_table.h"

namespace quillmere::cli {
namespace {

TEST(MessageQueue, AFullQueueHoldsTheWorkerUntilItIsTaken) {
  MessageQueue queue(3);
  std::thread worker([&] {
    for (int i = 0; i < 1000; ++i) queue.OnError(0, std::to_string(i));
  });
  for (int next = 0; next < 1000;) {
    const auto taken = queue.Take(std::chrono::seconds(10));
    ASSERT_FALSE(taken.empty());
    ASSERT_LE(taken.size(), 3U);
    for (const auto& message : taken) EXPECT_EQ(message.text, std::to_string(next++));
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
