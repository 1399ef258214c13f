// SPDX-License-Identifier: MIT
#include "messages/message_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "support/account.h"
#include "support/hand_clock.h"

namespace quillmere {
namespace {

struct MessageLogTest : AccountTest {
  HandClock clock;
  Settings settings;
  MessageLog log{files, "/work", clock, settings};
};

TEST_F(MessageLogTest, ListsAndAppends) {
  for (const char* text : {"one", "", "ORA-01017: denied\n", "a\nb\r\nc\r\n\n", "a\rb"}) {
    EXPECT_TRUE(log.Add(text, *text == '\0'));
  }
  EXPECT_TRUE(log.WriteGeneral("byte for byte, and not shown\n 'x'"));
  Refuse("append", ".log");
  EXPECT_FALSE(log.Add("lost", true));
  EXPECT_FALSE(log.WriteGeneral("lost"));
  for (const auto& entry : log.Entries()) account << entry.error << Shown(entry.text) << "|\n";
  Refuse();
  TellFiles();
}

TEST_F(MessageLogTest, AFullListKeepsItsLatestEntry) {
  settings.message_limit = 3;
  log.SetListener([&](bool cleared) { account << (cleared ? "cleared\n" : "added\n"); });
  for (const char* text : {"1", "2", "3", "4", "5", "6"}) log.Add(text, false);
  for (const auto& entry : log.Entries()) account << entry.text << "\n";
}

TEST_F(MessageLogTest, WhatIsClearedLeavesTheNewestErrorThatWasNotRead) {
  settings.message_limit = 3;
  for (const char* text : {"read", "!1", "!2", "3", "4", "5"}) {
    log.Add(text, *text == '!');
    if (*text == 'r') log.MarkRead();
  }
  account << log.UnreadErrors() << " unread\n";
  for (const auto& entry : log.Entries()) account << entry.text << "\n";
}

TEST_F(MessageLogTest, TheLastLinesAreThereAgain) {
  files.Put("/work/messages.tsv", "E\tnightly\t20260130 a\\tb\\n\\\\n\nX\tdamaged\nI\tcut");
  log.Add("while it opened", true);
  log.KeepRecent();
  log.AddOf("J\t1", "new\nline", false);
  account << log.UnreadErrors() << " unread\n";
  for (const auto& entry : log.Entries()) account << entry.job << ": " << entry.text << "\n";
  TellFiles();
  for (int i = 0; i < 2000; ++i) log.Add(std::to_string(i), false);
  MessageLog next{files, "/work", clock, settings};
  next.KeepRecent();
  EXPECT_EQ(next.Entries().size(), 500u);
  EXPECT_TRUE(next.Entries().back().text.ends_with(" 1999"));
  EXPECT_LE(std::ranges::count(files.Content("/work/messages.tsv"), '\n'), 1000);
}

TEST_F(MessageLogTest, KeepsFilesAboveTheirLimit) {
  log.LimitFiles();
  EXPECT_TRUE(files.All("/work").empty()) << "files that do not exist are skipped";
  const std::pair<std::string, std::size_t> rows[] = {{"/work/error.log", 2'097'152},
                                                      {"/work/ravelkin.log", 10'485'760}};
  for (const auto& [name, limit] : rows) {
    for (const std::size_t size : {limit, limit + 1}) {
      files.Put(name, std::string(size, 'x'));
      log.LimitFiles();
      EXPECT_EQ(files.Content(name).size(), size > limit ? 19u : size) << name;
    }
    for (int number = 2; number < 8; ++number) {
      files.Put(name, std::to_string(number) + std::string(limit, 'x'));
      log.LimitFiles();
    }
    for (int number = 1; number < 7; ++number) {
      const std::string kept = files.Content(name + "." + std::to_string(number));
      EXPECT_EQ(kept.substr(0, 1), number < 6 ? std::to_string(8 - number) : "(");
    }
    Refuse("rename", name);
    files.Put(name, std::string(limit + 1, 'x'));
    log.LimitFiles();
    EXPECT_EQ(files.Content(name).size(), limit + 1);
    Refuse();
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
  const std::string left = files.Content("/work/ravelkin.log");
  EXPECT_LE(left.size(), 10'485'760u);
  EXPECT_TRUE(left.starts_with("20260131 23:59:07 ")) << "no line is cut";
}

}  // namespace
}  // namespace quillmere
