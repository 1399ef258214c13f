// SPDX-License-Identifier: MIT
// What a newcomer meets in an empty folder, and how soon a job runs.
#include <gtest/gtest.h>

#include <QPushButton>

#include "window/program_fixture.h"

namespace quillmere::window {
namespace {

class FirstMinute : public ProgramTest {
 protected:
  // Which of the three steps can be taken.
  std::string Steps() {
    std::string steps;
    for (const char* const name : {"FirstSource", "FirstDestination", "FirstJob"}) {
      const auto* button = Find<QPushButton>(name);
      steps += Ui([=] { return button->isEnabled() ? '1' : '0'; });
    }
    return steps;
  }
};

TEST_F(FirstMinute, TheTrialRunsByOneClickAndItsChangesArrive) {
  Open();
  Show();
  EXPECT_FALSE(IsShown("JobMgrLV"));
  Press("alt+t");
  WaitForMessage("every second, for an hour at most");
  WaitForNoDialog();
  EXPECT_TRUE(IsShown("JobMgrLV"));
  ClickAction("RunRun");
  AnswerBox("Run try?", "Yes");
  WaitForState(JobState::Started);
  WaitFor("changes", [this] {
    clock_.TurnMinutes(1);  // readings are used when they are some seconds old
    return Work().Jobs().At(0).run.applied_count > 6;
  });
  Ui([this] { Work().Jobs().SetState(0, JobState::Stopping); });
  WaitForState(JobState::Stopped);
}

TEST_F(FirstMinute, StepsAreTickedOffAndWhatFailsIsTold) {
  for (const char* const name : {"A", "B"}) MakeDatabase(name);
  folder_.Write("jobs/try", "in the way");
  Open();
  Show();
  Click("FirstTrial");
  AnswerBox("");
  EXPECT_EQ(Steps(), "100") << "nothing is left of what failed";
  ShowDatabases();
  EXPECT_EQ(Steps(), "100");
  ShowPage(0);
  for (const auto& [step, name] : {std::pair("FirstSource", "A"), {"FirstDestination", "B"}}) {
    Click(step);
    Enter("EditDbName", name);
    Enter("EditUserId", "SYS");
    Enter("EditPassword", kPassword);
    Choose("CBMode", "SYSDBA");
    Click("AddBtn");
    WaitFor("the data source", [&, added = name] { return Work().Registry().IndexOf(added) >= 0; });
    Press("Escape");
    WaitForNoDialog();
    EXPECT_EQ(Steps(), name == std::string("A") ? "010" : "001");
  }
  Click("FirstJob");
  Enter("EditJobDescription", "first");
  Enter("EditSyncInterval", "1");
  Choose("CBSrcDSN", "A");
  Choose("CBDesDSN", "B");
  Click("OkBtn");
  WaitForRows("JobMgrLV", {{"Job1"}});
}

}  // namespace
}  // namespace quillmere::window
