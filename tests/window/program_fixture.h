// SPDX-License-Identifier: MIT
// The whole window program in a folder of its own, on sandbox databases, with a clock that is
// turned by hand, driven by key and mouse.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support/config_of.h"
#include "support/hand_clock.h"
#include "support/temp_folder.h"
#include "ui/main/program_window.h"
#include "window/driver.h"
#include "workspace/source_operations.h"

namespace quillmere::window {

class ProgramTest : public testing::Test, protected Driver {
 protected:
  static constexpr const char* kPassword = "sandbox";  // of SYS in every database
  // Three owners; with four tables of two of them, a foreign key between these, and an index.
  static const std::string kOwners, kTables;

  ProgramTest();
  ~ProgramTest() override;

  // --- the databases, by the sandbox's own tool; any time
  void MakeDatabase(const std::string& name, const std::string& sql = kTables);
  void Sql(const std::string& database, const std::string& statements, bool works = true);
  bool Identical(const std::string& a_and_b = "A B");

  // --- the program. Open, then what shall be there from the start, then Show.
  void Open();
  void AddSource(const std::string& name);
  void AddJob(const std::string& name, const std::string& from = "A", const std::string& to = "B");
  void Show();
  // Databases A and B with their sources; with the job J, and shown; the job under way.
  void OpenWithSources(const std::string& sql_of_b = kTables);
  void OpenWithJob();
  void StartJob();
  void Quit();  // as the program ends, whatever is open; loses nothing
  void Restart();
  Workspace& Work() { return *workspace_; }
  ProgramWindow& Window() { return *window_; }

  // --- what is seen
  void ShowPage(int page);
  void ShowDatabases() { ShowPage(1); }  // the database manager's
  // In the tool bar of the job explorer or the database manager; once they are the expected ones,
  // which the end of a pass may have to show.
  Names ActionsShown(const Names* expected = nullptr);
  void ExpectActions(const Names& expected) { EXPECT_EQ(ActionsShown(&expected), expected); }
  // At the end of a line of the message list.
  void WaitForMessage(const std::string& text);
  void WaitForState(JobState state);  // of the first job

  // Two intervals later: a change is captured by the pass after the one that first sees it.
  void NextPass() { clock_.TurnMinutes(2); }

  TempFolder folder_;
  const OciApi* oci_ = nullptr;  // instead of the sandbox library
  HandClock clock_;

 private:
  bool Tool(const std::string& arguments, const std::string& script = "");

  std::unique_ptr<Workspace> workspace_;
  std::unique_ptr<ProgramWindow> window_;
};

}  // namespace quillmere::window
