// SPDX-License-Identifier: MIT
#include "datasources/shared_text.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

TEST(SharedText, CopiesShareOneMemoryWhichOutlivesThePool) {
  SharedText kept;
  {
    TextPool pool;
    kept = pool.Share(std::string("OWNER"));
    EXPECT_EQ(pool.Share("OWNER").View().data(), kept.View().data());
    EXPECT_NE(pool.Share("OTHER"), kept);
    EXPECT_TRUE(pool.Share("").empty());
  }
  SharedText copy = kept;
  kept = "NEW";
  EXPECT_EQ(copy, "OWNER");
  copy = std::move(kept);
  EXPECT_EQ(copy, std::string("NEW"));
  EXPECT_EQ(SharedText(std::string_view("a\0b", 3)).View().size(), 3u);
}

TEST(SharedText, RoundsShareWhatComesInTheSameOrder) {
  TextRounds rounds;
  const auto round = [&rounds](const std::vector<std::string>& texts) {
    rounds.StartRound();
    std::vector<const char*> memory;
    for (const std::string& text : texts) {
      const SharedText shared = rounds.Share(text);
      EXPECT_EQ(shared, text);
      memory.push_back(shared.View().data());
    }
    return memory;
  };
  const auto keys = round({"A", "B", "D", "E"});
  const auto indexes = round({"A", "A", "B", "E"});      // "D" has none, so "E" comes too early
  const auto tables = round({"A", "B", "C", "D", "E"});  // "C" has no key
  EXPECT_EQ(indexes[0], keys[0]);
  EXPECT_EQ(indexes[1], keys[0]);
  EXPECT_EQ(indexes[2], keys[1]);
  EXPECT_EQ(tables[3], keys[2]);
  EXPECT_EQ(tables[4], keys[3]);
}

}  // namespace
}  // namespace quillmere
