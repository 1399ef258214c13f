// SPDX-License-Identifier: MIT
#include "workspace/settings_restore.h"

#include "workspace/scripted_workspace.h"

namespace quillmere {
namespace {

using SettingsRestore = ScriptedWorkspace;

TEST_F(SettingsRestore, WhatWasKeptComesBackWithoutPasswordsAndStopped) {
  AddSources();
  for (const char* name : {"Edited", "Gone", "Runs"}) NewJob(name);
  Table(0, "ORDERS")->totalsynced = 7;
  std::string error;
  Settings& settings = workspace->ProgramSettings();
  settings.commit_age_seconds = 9;
  settings.health_command = "/bin/mail root";
  ASSERT_TRUE(SaveSettings(files, workspace->SettingsFile(), settings, error)) << error;
  clock.TurnMinutes(24 * 60);
  Forget();
  // The first change of a day keeps what was there.
  FilterTables(*workspace, 0, {TableFilter::Exclude, "SHOP", {"ORDERS"}});
  XmlDocument bundle;
  ASSERT_TRUE(bundle.Load(files, workspace->Kept().FileOf(workspace->Kept().Days().back())));
  EXPECT_EQ(bundle.Text().find("password"), std::string::npos);
  account << bundle.Text();
  ASSERT_TRUE(DeleteJob(*workspace, 1).done);
  workspace->Jobs().SetState(2, JobState::Paused);
  settings.commit_age_seconds = 60;
  settings.health_command.clear();
  ASSERT_TRUE(SaveSettings(files, workspace->SettingsFile(), settings, error)) << error;
  Forget();

  std::vector<std::string> told;
  const auto bring = [&](const std::string& what, Bring how) {
    told.clear();
    const Outcome brought = BringSettings(*workspace, *BundleIn(bundle), how, told);
    for (const std::string& line : told) account << "- " << line << "\n";
    Tell(what, brought);
  };
  bring("import", Bring::Missing);
  EXPECT_EQ(settings.health_command, "") << "nothing from a file is run";
  bring("restore", Bring::Back);
  EXPECT_EQ(settings.commit_age_seconds, 9);
  EXPECT_EQ(settings.health_command, "/bin/mail root");
  EXPECT_TRUE(Table(0, "ORDERS")->includeflag);
  EXPECT_EQ(Table(0, "ORDERS")->totalsynced, 7) << "what was counted is no setting";
  EXPECT_EQ(workspace->Jobs().State(1), JobState::Stopped);

  // In a new folder; the newest twenty days are kept.
  workspace.reset();
  for (const auto& [name, content] : files.All("/work")) files.Remove("/work/" + name);
  ForgetFiles();
  workspace = Open();
  taken = 0;
  bring("import into a new folder", Bring::Missing);
  Settings saved;
  ASSERT_TRUE(LoadSettings(files, workspace->SettingsFile(), saved, error)) << error;
  EXPECT_EQ(saved.health_command + workspace->ProgramSettings().health_command, "");
  for (int day = 0; day < 25; ++day) {
    clock.TurnMinutes(24 * 60);
    Refuse(day == 3 ? "append" : "", "/kept/");
    EXPECT_TRUE(workspace->SaveJobs(error)) << "kept or not, the change is made";
  }
  const std::vector<std::string> days = workspace->Kept().Days();
  account << days.size() << " from " << days.front() << " to " << days.back() << "\n";
  for (const std::string& line : TakeMessages()) account << line << "\n";
}

}  // namespace
}  // namespace quillmere
