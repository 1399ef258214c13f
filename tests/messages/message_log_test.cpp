#include "messages/message_log.h"

#include <atomic>
#include <thread>

#include "foundation/temp_folder.h"

namespace quillmere {
namespace {

class HandClock final : public Clock {
 public:
  LocalTime Now() const override { return LocalTime{1769903947000}; }
};

constexpr std::string_view kStamp = "20260131 23:59:07 ";

struct MessageLogTest : testing::Test {
  std::string Stamped(std::string_view text) { return std::string(kStamp) + std::string(text); }

  TempFolder folder;
  HandClock clock;
  Settings settings;
  MessageLog log{folder.Path(), clock, settings};
};

TEST_F(MessageLogTest, ListsAndAppends) {
  EXPECT_TRUE(log.Add("one", true));
  EXPECT_TRUE(log.Add("", false));
  ASSERT_EQ(log.Entries().size(), 2u);
  EXPECT_EQ(log.Entries()[0].text, Stamped("one"));
  EXPECT_TRUE(log.Entries()[0].error);
  EXPECT_EQ(log.Entries()[1].text, Stamped(""));
  EXPECT_FALSE(log.Entries()[1].error);
  EXPECT_EQ(folder.Read("error.log"), Stamped("one\n") + Stamped("\n"));
  EXPECT_TRUE(log.WriteGeneral("insert ...\n 'x'"));
  EXPECT_EQ(folder.Read("ravelkin.log"), Stamped("insert ...\n 'x'\n"));
  EXPECT_EQ(log.Entries().size(), 2u) << "general lines are not shown";
}

TEST_F(MessageLogTest, SeveralLinesStayOneEntryInTheFile) {
  const struct {
    const char* text;
    const char* file;
  } cases[] = {{"ORA-01017: denied\n", "ORA-01017: denied\n"},
               {"a\nb\r\nc\r\n\n", "a\n                  b\n                  c\n"},
               {"\n", "\n"},
               {"a\rb", "a\rb\n"}};
  std::string expected;
  for (const auto& row : cases) {
    ASSERT_TRUE(log.Add(row.text, true));
    EXPECT_EQ(log.Entries().back().text, Stamped(row.text));
    expected += Stamped(row.file);
  }
  // The blank behind a stamp stays even when nothing else is left of the text.
  EXPECT_EQ(folder.Read("error.log"), expected);
}

TEST_F(MessageLogTest, AFullListKeepsItsLatestEntry) {
  settings.message_limit = 3;
  std::vector<bool> told;
  log.SetListener([&](bool cleared) { told.push_back(cleared); });
  for (const char* text : {"1", "2", "3", "4", "5", "6"}) log.Add(text, false);
  ASSERT_EQ(log.Entries().size(), 3u);
  EXPECT_EQ(log.Entries()[0].text, Stamped("4"));
  EXPECT_EQ(log.Entries()[1].text, Stamped("5"));
  EXPECT_EQ(told, (std::vector<bool>{false, false, false, false, true, false}));
  settings.message_limit = 0;
  log.Add("7", false);
  EXPECT_EQ(log.Entries().size(), 2u) << "even the smallest limit shows the latest message";
}

TEST_F(MessageLogTest, ListsNothingThatCouldNotBeLogged) {
  std::filesystem::create_directory(folder / "error.log");
  std::filesystem::create_directory(folder / "ravelkin.log");
  int told = 0;
  log.SetListener([&](bool) { ++told; });
  EXPECT_FALSE(log.Add("lost", true));
  EXPECT_FALSE(log.WriteGeneral("lost"));
  EXPECT_TRUE(log.Entries().empty());
  EXPECT_EQ(told, 0);
}

TEST_F(MessageLogTest, EmptiesFilesAboveTheirLimit) {
  constexpr std::size_t kErrorLimit = 2'097'152, kGeneralLimit = 10'485'760;
  log.LimitFiles();
  EXPECT_TRUE(folder.List().empty()) << "files that do not exist are skipped";
  folder.Write("error.log", std::string(kErrorLimit, 'x'));
  folder.Write("ravelkin.log", std::string(kGeneralLimit, 'x'));
  log.LimitFiles();
  EXPECT_EQ(folder.Read("error.log").size(), kErrorLimit);
  EXPECT_EQ(folder.Read("ravelkin.log").size(), kGeneralLimit);
  folder.Write("error.log", std::string(kErrorLimit + 1, 'x'));
  folder.Write("ravelkin.log", std::string(kGeneralLimit + 1, 'x'));
  log.LimitFiles();
  EXPECT_EQ(folder.Read("error.log"), Stamped("\n"));
  EXPECT_EQ(folder.Read("ravelkin.log"), Stamped("\n"));
}

TEST_F(MessageLogTest, TheWorkerWritesWhileTheWindowLimits) {
  const std::string long_line(1'000'000, 'x');
  std::atomic<bool> done{false};
  std::thread worker([&] {
    for (int i = 0; i < 40; ++i) EXPECT_TRUE(log.WriteGeneral(long_line));
    done = true;
  });
  while (!done) log.LimitFiles();
  worker.join();
  log.LimitFiles();
  EXPECT_LE(folder.Read("ravelkin.log").size(), 10'485'760u);
  EXPECT_TRUE(folder.Read("ravelkin.log").starts_with(kStamp)) << "no line is cut";
}

}  // namespace
}  // namespace quillmere
