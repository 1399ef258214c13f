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

}  // namespace
}  // namespace quillmere
