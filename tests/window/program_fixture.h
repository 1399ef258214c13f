// SPDX-License-Identifier: MIT
// The whole window program in a folder of its own, on sandbox databases, with a clock that is
// turned by hand, driven by key and mouse.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/config_of.h"
#include "support/hand_clock.h"
#include "support/temp_folder.h"
#include "ui/main/program_window.h"
#include "window/driver.h"

namespace quillmere::window {

class ProgramTest : public testing::Test, protected Driver {
 protected:
  static constexpr const char* kPassword = "sandbox";  // of SYS in every database
  // Four tables of two owners, and an owner without any.
  static const std::string kTables;

  ProgramTest();
  ~ProgramTest() override;

  // --- the databases, by the sandbox's own tool; any time
  void MakeDatabase(const std::string& name, const std::string& sql = kTables);
  void Sql(const std::string& database, const std::string& statements);
  std::string SqlFails(const std::string& database, const std::string& statements);  // its reason
  std::string Difference(const std::string& options);  // "identical\n"

  // --- the program. Open, then what shall be there from the start, then Show.
  void Open();
  void AddSource(const std::string& name, const std::string& mode = "SYSDBA");
  void AddJob(const std::string& name, const std::string& from = "A", const std::string& to = "B");
  void Show();
  void OpenWithJob(const std::string& job = "J");  // databases A and B, their sources, the job
  void Quit();                                     // as the program ends; loses nothing
  Workspace& Work() { return *workspace_; }
  ProgramWindow& Window() { return *window_; }

  // --- what is seen
  void SelectNode(const Path& below_root);  // of the job explorer
  void ShowDatabases();                     // the database manager's page
  std::vector<std::string> ActionsShown(std::string_view tool_bar);
  // At the end of so many lines of the message list.
  void WaitForMessage(const std::string& text, int times = 1);
  JobState StateOf(const std::string& job);
  void WaitForState(const std::string& job, JobState state);

  // Asks for it by the tool bar, and says yes.
  void Request(const std::string& action, const std::string& question);
  // Two intervals later: a change is captured by the pass after the one that first sees it.
  void NextPass() { clock_.TurnMinutes(2); }

  TempFolder folder_;
  HandClock clock_;

 private:
  std::string Tool(const std::string& arguments, const std::string& script, bool* ok);

  std::unique_ptr<Workspace> workspace_;
  std::unique_ptr<ProgramWindow> window_;
};

}  // namespace quillmere::window
