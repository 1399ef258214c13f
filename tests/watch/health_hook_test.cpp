// SPDX-License-Identifier: MIT
// The operator's command: well behaved, hanging, flooding, failing, missing.
#include "watch/health_hook.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/config_of.h"
#include "support/hand_clock.h"
#include "support/memory_files.h"
#include "support/temp_folder.h"

namespace quillmere {
namespace {

using std::chrono::milliseconds;

struct HealthHookTest : ::testing::Test {
  HealthHookTest() {
    jobs.Claim();
    ConfigOf(jobs.At(0)).name = "J";
    jobs.SetState(0, JobState::Stopped);
    limits.look = milliseconds(3'600'000);  // told by hand only
  }
  void Use(const std::string& script) {
    hook = std::make_unique<HealthHook>(jobs, watch, clock, "/work", limits);
    hook->Use("/bin/sh -c \"cd " + folder.Path().string() + "; " + script + "\"");
  }
  void Become(JobState state) {
    jobs.SetState(0, state);
    hook->Look(0);
  }
  // Two changes.
  void Change() {
    Become(JobState::Paused);
    Become(JobState::Stopped);
  }
  // Until there are so many lines in the file.
  std::vector<std::string> Lines(const std::string& file, std::size_t count) {
    std::vector<std::string> lines;
    while (lines.size() < count) {
      lines.clear();
      std::istringstream text(folder.Exists(file) ? folder.Read(file) : "");
      for (std::string line; std::getline(text, line) && !text.eof();) lines.push_back(line);
      std::this_thread::sleep_for(milliseconds(1));
    }
    return lines;
  }
  std::string Messages(std::size_t count) {
    std::vector<WatchMessage> all;
    while (all.size() < count) {
      for (WatchMessage& message : hook->TakeMessages()) all.push_back(std::move(message));
      std::this_thread::sleep_for(milliseconds(1));
    }
    std::string text;
    for (const WatchMessage& message : all) text += message.text + "\n";
    return text;
  }

  TempFolder folder;
  testing::MemoryFiles files;
  HandClock clock;
  Settings settings;
  MessageLog log{files, "/work", clock, settings};
  JobList jobs;
  JobCatalogue catalogue{files, "/work", jobs, log};
  JobWatch watch{files, "/work", jobs, catalogue, clock};
  HealthHook::Limits limits;
  std::unique_ptr<HealthHook> hook;
};

TEST_F(HealthHookTest, EachChangeIsToldOnceInItsOrder) {
  // What a command writes is not waited with, and no more of it kept than a few words.
  Use("head -c 300000 /dev/zero; cat > in; tr -d '\\n' < in >> told; echo >> told");
  Change();
  hook->Look(0);
  Become(JobState::Paused);
  const auto lines = Lines("told", 3);
  ASSERT_EQ(lines.size(), 3U);
  const char* const healths[] = {"stopped", "paused", "stopped", "paused"};
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const auto event = nlohmann::json::parse(lines[i]);
    EXPECT_EQ(event["name"], "J");
    EXPECT_EQ(event["was"], healths[i]);
    EXPECT_EQ(event["health"], healths[i + 1]);
  }
  EXPECT_TRUE(hook->TakeMessages().empty());
}

TEST_F(HealthHookTest, AChangeThatComesWithTimeIsSeen) {
  limits.look = milliseconds(1);
  Use("cat >> told");
  jobs.SetState(0, JobState::Paused);
  EXPECT_FALSE(Lines("told", 1).empty());
}

TEST_F(HealthHookTest, WhatGoesWrongIsToldOnceAndTheNextOneRuns) {
  limits.run = milliseconds(200);
  limits.end = milliseconds(1);
  const struct {
    const char *script, *message;
  } rows[] = {
      {"sleep 600 & echo $! >> pids; sleep 600", "it was not done after 0 s and was ended"},
      {"yes", "it was not done after 0 s and was ended"},
      {"echo x >> runs; echo no mail >&2; exit 3", "it ended with status 3: no mail"},
      {"echo x >> runs; kill -9 $$", "signal 9 ended it"},
      {"exec /nowhere/hook", "/nowhere/hook"},
  };
  for (const auto& [script, message] : rows) {
    SCOPED_TRACE(script);
    Use(script);
    Change();
    const std::string told = Messages(1);
    if (std::string(script).find("runs") != std::string::npos) {
      Change();  // when the third one is at work, the second has failed, too
      Lines("runs", 3);
      std::filesystem::remove(folder / "runs");
    }
    EXPECT_NE(told.find(message), std::string::npos) << told;
    hook->Use("/bin/sh -c \"cat >> " + (folder / "after").string() + "\"");
    EXPECT_TRUE(hook->TakeMessages().empty());
  }
  for (const std::string& pid : Lines("pids", 1)) {
    std::string state = "Z";  // and whoever adopts it may not have looked yet
    std::ifstream stat("/proc/" + pid + "/stat");
    for (std::string word; state = "Z", stat >> word >> word >> state;) break;
    EXPECT_EQ(state, "Z") << "its group was to end with it";
  }
  hook = std::make_unique<HealthHook>(jobs, watch, clock, "/work", limits);
  for (const char* const command : {"/nowhere/hook", "hook \"open"}) {
    hook->Use(command);
    Change();
    EXPECT_NE(Messages(1).find("The health command"), std::string::npos);
  }
}

TEST_F(HealthHookTest, ChangesThatWaitAreBoundedAndTheEndIsSoon) {
  limits.waiting = 3;
  limits.end = milliseconds(1);
  Use("sleep 600");
  for (int i = 0; i < 3; ++i) Change();
  EXPECT_NE(Messages(1).find("more than 3 changes wait"), std::string::npos);
  hook->End();  // or the test does
}

TEST(HookCommand, IsSplitWithoutAShell) {
  const struct {
    const char* line;
    std::vector<std::string> words;
  } rows[] = {
      {"", {}},
      {"  a\tb ", {"a", "b"}},
      {"\"a b\" c\"d e\"", {"a b", "cd e"}},
      {R"(a "" "\"\\x" \n $HOME 'b c')", {"a", "", "\"\\x", "\\n", "$HOME", "'b", "c'"}},
  };
  for (const auto& [line, expected] : rows) {
    std::vector<std::string> words;
    std::string error;
    EXPECT_TRUE(SplitCommand(line, words, error));
    EXPECT_EQ(words, expected) << line;
  }
}

}  // namespace
}  // namespace quillmere
