// SPDX-License-Identifier: MIT
#include "workspace/working_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "support/temp_folder.h"

namespace quillmere {
namespace {

TEST(WorkingFolder, NamedElseCurrentElseTheUsers) {
  const TempFolder empty, used, somebodys;
  used.Write("jobs/jobs.xml", "");
  somebodys.Write("config/app.conf", "");
  somebodys.Write("jobs/readme", "");
  using Path = std::filesystem::path;
  const auto expect = [](const char* what, const std::optional<Path>& named, const Path& current,
                         const Path& data, const Path& expected) {
    const WorkingFolder chosen = ChooseWorkingFolder(named, current, data);
    EXPECT_EQ(chosen.folder, expected) << what;
    EXPECT_STRNE(chosen.why, "") << what;
  };
  expect("named", "/named", used.Path(), "/data", "/named");
  expect("named as nothing", "", used.Path(), "/data", "");
  expect("started in one", std::nullopt, used.Path(), "/data", used.Path());
  expect("started elsewhere", std::nullopt, empty.Path(), "/data", "/data");
  expect("such folders are not enough", std::nullopt, somebodys.Path(), "/data", "/data");
  expect("nothing known", std::nullopt, empty.Path(), "", empty.Path());
}

#ifndef _WIN32
TEST(WorkingFolder, TheUsersIsBelowTheDataFolderOfTheDesktop) {
  ::setenv("HOME", "/home/ada", 1);
  ::setenv("XDG_DATA_HOME", "relative", 1);
  EXPECT_EQ(UserDataFolder(), "/home/ada/.local/share/quillmere/workspace");
  ::setenv("XDG_DATA_HOME", "/data", 1);
  EXPECT_EQ(UserDataFolder(), "/data/quillmere/workspace");
  ::unsetenv("XDG_DATA_HOME");
  ::unsetenv("HOME");
  EXPECT_EQ(UserDataFolder(), "");
}
#endif

}  // namespace
}  // namespace quillmere
