// SPDX-License-Identifier: MIT
#include "messages/message_log.h"
#include "support/hand_clock.h"
#include "support/temp_folder.h"

#include <atomic>
#include <thread>

namespace quillmere {
namespace {

struct MessageLogTest : testing::Test {
  std::string Stamped(std::string_view text) { return "20260131 23:59:07 " + std::string(text); }

  TempFolder folder;
  HandClock clock;
  Settings settings;
  MessageLog log{folder.Files(), folder.Path(), clock, settings};
};

TEST_F(MessageLogTest, ListsAndAppends) {
  const std::string indent(18, ' ');
  const std::pair<std::string, std::string> cases[] = {
      {"one", "one\n"},
      {"", "\n"},
      {"ORA-01017: denied\n", "ORA-01017: denied\n"},
      {"a\nb\r\nc\r\n\n", "a\n" + indent + "b\n" + indent + "c\n"},
      {"a\rb", "a\rb\n"}};
  std::string expected;
  for (const auto& [text, in_file] : cases) {
    ASSERT_TRUE(log.Add(text, text.empty()));
    EXPECT_EQ(log.Entries().back().text, Stamped(text));
    EXPECT_EQ(log.Entries().back().error, text.empty());
    expected += Stamped(in_file);
  }
  EXPECT_EQ(folder.Read("error.log"), expected);
  EXPECT_TRUE(log.WriteGeneral("insert ...\n 'x'"));
  EXPECT_EQ(folder.Read("ravelkin.log"), Stamped("insert ...\n 'x'\n")) << "byte for byte";
  EXPECT_EQ(log.Entries().size(), std::size(cases)) << "general lines are not shown";
}

TEST_F(MessageLogTest, AFullListKeepsItsLatestEntry) {
  settings.message_limit = 3;
  std::string told;
  log.SetListener([&](bool cleared) { told += cleared ? 'c' : '.'; });
  for (const char* text : {"1", "2", "3", "4", "5", "6"}) log.Add(text, false);
  ASSERT_EQ(log.Entries().size(), 3u);
  EXPECT_EQ(log.Entries()[0].text, Stamped("4"));
  EXPECT_EQ(log.Entries()[1].text, Stamped("5"));
  EXPECT_EQ(told, "....c.");
}

TEST_F(MessageLogTest, ListsNothingThatCouldNotBeLogged) {
  std::filesystem::create_directory(folder / "error.log");
  std::filesystem::create_directory(folder / "ravelkin.log");
  EXPECT_FALSE(log.Add("lost", true));
  EXPECT_FALSE(log.WriteGeneral("lost"));
  EXPECT_TRUE(log.Entries().empty());
}

TEST_F(MessageLogTest, EmptiesFilesAboveTheirLimit) {
  log.LimitFiles();
  EXPECT_TRUE(folder.List().empty()) << "files that do not exist are skipped";
  const std::pair<const char*, std::size_t> files[] = {{"error.log", 2'097'152},
                                                       {"ravelkin.log", 10'485'760}};
  for (const auto& [name, limit] : files) {
    folder.Write(name, std::string(limit, 'x'));
    log.LimitFiles();
    EXPECT_EQ(folder.Read(name).size(), limit);
    folder.Write(name, std::string(limit + 1, 'x'));
    log.LimitFiles();
    EXPECT_EQ(folder.Read(name), Stamped("\n"));
  }
}

TEST_F(MessageLogTest, TheWorkerWritesWhileTheWindowLimits) {
  std::atomic<bool> done{false};
  std::thread worker([&] {
    for (int i = 0; i < 40; ++i) EXPECT_TRUE(log.WriteGeneral(std::string(1'000'000, 'x')));
    done = true;
  });
  while (!done) log.LimitFiles();
  worker.join();
  log.LimitFiles();
  EXPECT_LE(folder.Read("ravelkin.log").size(), 10'485'760u);
  EXPECT_TRUE(folder.Read("ravelkin.log").starts_with(Stamped(""))) << "no line is cut";
}

}  // namespace
}  // namespace quillmere
