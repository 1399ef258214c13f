// SPDX-License-Identifier: MIT
#include "jobs/set_aside_file.h"

#include "support/account.h"
#include "support/temp_folder.h"

namespace quillmere {
namespace {

using SetAsideFile = AccountTest;

TEST_F(SetAsideFile, GrowsWholeOrNotAtAll) {
  const JobFolder job("/work", "J");
  std::string error;
  const auto append = [&](const std::string& text) {
    account << (AppendSetAside(files, job, text, error) ? "" : error + "\n");
    TellFiles();
  };
  append("one;\n");
  for (const char* operation : {"open to append", "append", "flush"}) {
    Refuse(operation, "setaside.sql");
    append("two;\n");
  }
  Refuse();
  append("two;\n");
  const auto on_disk = files.AfterPowerCut([] { return false; });
  EXPECT_EQ(on_disk->All("/work"), files.All("/work"));
  FileFacts facts;
  ASSERT_TRUE(files.Look("/work/jobs/J/setaside.sql", facts));
  EXPECT_EQ(facts.mode, FileSystem::kOwnerOnly);
}

TEST_F(SetAsideFile, AboveItsSizeWaitsForTheOperator) {
  const TempFolder folder;
  const JobFolder job(folder.Path(), "J");
  folder.Write("jobs/J/setaside.sql", "x");
  std::filesystem::resize_file(folder / "jobs/J/setaside.sql", kMostSetAsideBytes);
  std::string error;
  EXPECT_TRUE(AppendSetAside(folder.Files(), job, "y", error)) << error;
  EXPECT_FALSE(AppendSetAside(folder.Files(), job, "z", error));
  EXPECT_NE(error.find("setaside.sql is above 256 MiB"), std::string::npos) << error;
  EXPECT_EQ(std::filesystem::file_size(folder / "jobs/J/setaside.sql"), kMostSetAsideBytes + 1);
}

}  // namespace
}  // namespace quillmere
