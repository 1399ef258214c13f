// SPDX-License-Identifier: MIT
#include "ui/jobs/job_actions.h"

#include <gtest/gtest.h>

#include <string>

namespace quillmere {
namespace {

// A letter for each action that shows, "FileNew" aside: open, Delete, refresh, run, pause, stop,
// include, exclude, change owner, migrate.
std::string Letters(const JobActions& actions) {
  std::string letters;
  const auto add = [&](bool shown, char letter) {
    if (shown) letters += letter;
  };
  add(actions.file_open, 'o');
  add(actions.file_delete, 'D');
  add(actions.refresh, 'f');
  add(actions.run, 'r');
  add(actions.pause, 'p');
  add(actions.stop, 's');
  add(actions.include, 'i');
  add(actions.exclude, 'e');
  add(actions.change_remote_owner, 'c');
  add(actions.migrate, 'm');
  return letters;
}

TEST(JobActions, ShowByNodeAndState) {
  constexpr JobState kStates[] = {JobState::Starting, JobState::Started, JobState::Stopping,
                                  JobState::Stopped,  JobState::Pausing, JobState::Paused};
  struct Row {
    const char* name;
    JobNode node;
    std::string by_state[6];
  };
  const Row rows[] = {
      {"no node", JobNode::None, {"", "", "", "", "", ""}},
      {"root", JobNode::AllJobs, {"", "", "", "", "", ""}},
      {"job", JobNode::Job, {"", "ps", "", "oDfr", "", "ofrs"}},
      {"include", JobNode::Include, {"", "", "", "ec", "", "ec"}},
      {"exclude", JobNode::Exclude, {"", "", "", "i", "", "i"}},
  };
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < std::size(kStates); ++i) {
      const JobActions shown = ActionsOfNode(row.node, kStates[i]);
      EXPECT_EQ(Letters(shown), row.by_state[i]) << row.name << " " << StateName(kStates[i]);
      EXPECT_TRUE(shown.file_new) << row.name;
    }
  }
}

TEST(JobActions, TimerLeavesAloneWhatRests) {
  EXPECT_TRUE(RepaintsOnTimer(JobNode::AllJobs, JobState::Empty));
  EXPECT_FALSE(RepaintsOnTimer(JobNode::None, JobState::Empty));
  for (const JobNode node : {JobNode::Job, JobNode::Include, JobNode::Exclude}) {
    EXPECT_TRUE(RepaintsOnTimer(node, JobState::Started));
    EXPECT_FALSE(RepaintsOnTimer(node, JobState::Paused));
    EXPECT_FALSE(RepaintsOnTimer(node, JobState::Stopped));
  }
}

TEST(JobActions, FilterTakesRowsOfOneOwner) {
  EXPECT_EQ(WhyNoFilter({}), "Plsease select a item first");
  EXPECT_EQ(WhyNoFilter({"SHOP", "SHOP", "shop"}), "can only select one owner's table");
  EXPECT_EQ(WhyNoFilter({"SHOP", "SHOP"}), "");
}

}  // namespace
}  // namespace quillmere
