// SPDX-License-Identifier: MIT
#include "workspace/working_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "support/temp_folder.h"

namespace quillmere {
namespace {

TEST(WorkingFolder, NamedElseCurrentElseTheUsers) {
  TempFolder empty;
  TempFolder used;
  TempFolder somebodys;
  used.Write("jobs/jobs.xml", "");
  somebodys.Write("config/app.conf", "");
  somebodys.Write("jobs/readme", "");
  const std::filesystem::path data = "/data";
  struct Row {
    const char* what;
    std::optional<std::filesystem::path> named;
    std::filesystem::path current;
    std::filesystem::path data;
    std::filesystem::path expected;
  };
  const Row rows[] = {
      {"named", "/named", used.Path(), data, "/named"},
      {"named as nothing", "", used.Path(), data, ""},
      {"started in one", std::nullopt, used.Path(), data, used.Path()},
      {"started elsewhere", std::nullopt, empty.Path(), data, data},
      {"folders of those names are not enough", std::nullopt, somebodys.Path(), data, data},
      {"nothing known", std::nullopt, empty.Path(), "", empty.Path()},
  };
  for (const Row& row : rows) {
    const WorkingFolder chosen = ChooseWorkingFolder(row.named, row.current, row.data);
    EXPECT_EQ(chosen.folder, row.expected) << row.what;
    EXPECT_STRNE(chosen.why, "") << row.what;
  }
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
