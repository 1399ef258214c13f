// SPDX-License-Identifier: MIT
#include "messages/message_help.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>

namespace quillmere {
namespace {

// Each message as the manual has it, with something in the place of names, leads to its row.
TEST(MessageHelp, LeadsFromEachMessageToItsRow) {
  std::ifstream file(MANUAL "/messages.html");
  const std::string page{std::istreambuf_iterator<char>(file), {}};
  ASSERT_FALSE(page.empty());
  const std::regex rows("<tr id=\"([^\"]+)\"><td>([^\n]*?)</td>");
  const std::regex codes("<code>(.*?)</code>");
  std::size_t found = 0;
  std::size_t too_short = 0;  // questions of boxes, as "Run X?"
  std::string elsewhere;
  for (std::sregex_iterator row(page.begin(), page.end(), rows), end; row != end; ++row) {
    const std::string cell = (*row)[2];
    for (std::sregex_iterator code(cell.begin(), cell.end(), codes); code != end; ++code) {
      std::string message = std::regex_replace((*code)[1].str(), std::regex("<var>.*?</var>"), "X");
      message = std::regex_replace(message, std::regex("&lt;"), "<");
      message = std::regex_replace(message, std::regex("&gt;"), ">");
      const std::string anchor = AnchorOfMessage(page, "20261123 10:00:00 " + message);
      ++found;
      too_short += anchor.empty() ? 1 : 0;
      if (!anchor.empty() && anchor != (*row)[1]) elsewhere += message + " -> " + anchor + "\n";
    }
  }
  EXPECT_GT(found, 300U);
  EXPECT_LE(too_short, 4U);
  EXPECT_EQ(elsewhere, "");
  for (const char* unknown : {"", "X", "nobody has said this"}) {
    EXPECT_EQ(AnchorOfMessage(page, unknown), "");
  }
}

}  // namespace
}  // namespace quillmere
