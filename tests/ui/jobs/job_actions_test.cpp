// SPDX-License-Identifier: MIT
#include "ui/jobs/job_actions.h"

#include <gtest/gtest.h>

#include <string>

namespace quillmere {
namespace {

// A letter for each action that shows, "FileNew" aside: open, Delete, refresh, run, pause, stop,
// include, exclude, change owner, migrate.
std::string Letters(const JobActions& actions) {
  constexpr std::pair<bool JobActions::*, char> kLetters[] = {
      {&JobActions::file_open, 'o'}, {&JobActions::file_delete, 'D'},
      {&JobActions::refresh, 'f'},   {&JobActions::run, 'r'},
      {&JobActions::pause, 'p'},     {&JobActions::stop, 's'},
      {&JobActions::include, 'i'},   {&JobActions::exclude, 'e'},
      {&JobActions::migrate, 'm'},   {&JobActions::change_remote_owner, 'c'}};
  std::string letters;
  for (const auto& [action, letter] : kLetters) {
    if (actions.*action) letters += letter;
  }
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

}  // namespace
}  // namespace quillmere
