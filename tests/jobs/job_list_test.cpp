// SPDX-License-Identifier: MIT
#include "jobs/job_list.h"

#include <gtest/gtest.h>

#include <thread>

#include "support/config_of.h"

namespace quillmere {
namespace {

std::size_t AddJob(JobList& jobs, std::string_view name, JobState state = JobState::Stopped) {
  const std::size_t index = jobs.Claim();
  ConfigOf(jobs.At(index)).name = name;
  jobs.SetState(index, state);
  return index;
}

TEST(JobList, SlotsAreUsedAgain) {
  JobList jobs;
  for (const char* name : {"a", "b", "c"}) AddJob(jobs, name);
  SyncJob* const c = &jobs.At(2);
  ConfigOf(*c).source.password = "tiger";
  ConfigOf(*c).tables_saved_revision = ConfigOf(*c).tables_revision;
  c->run.pending_batch.Append("insert");
  c->run.applied_count = 7;
  jobs.SetProgress(2, {3, 4});
  jobs.Remove(1);
  EXPECT_EQ(jobs.IndexOf("b"), JobList::kNotFound);
  EXPECT_EQ(jobs.IndexOf("c"), 2u) << "indices stay";
  EXPECT_EQ(AddJob(jobs, "d"), 1u) << "the lowest free slot";
  jobs.Remove(2);
  EXPECT_EQ(jobs.Claim(), 2u);
  EXPECT_EQ(&jobs.At(2), c) << "records never move";
  EXPECT_EQ(jobs.IndexOf(*c), 2u);
  const JobConfig& fresh = ConfigOf(*c);
  EXPECT_TRUE(fresh.source.password.empty() && c->run.pending_batch.Empty());
  JobList::Progress progress;
  EXPECT_EQ(jobs.State(2, &progress), JobState::Empty);
  EXPECT_EQ(c->run.applied_count + static_cast<int>(progress.batch_applied), 0);
  EXPECT_NE(fresh.tables_saved_revision, fresh.tables_revision) << "its file is to be written";
}

TEST(JobList, GrowsWhileAnotherThreadWalks) {
  JobList jobs;
  constexpr std::size_t kJobs = 2000;
  std::thread walker([&] {
    for (std::size_t live = 0; live < kJobs;) {
      live = 0;
      for (std::size_t i = 0; i < jobs.Count(); ++i) {
        if (jobs.State(i) == JobState::Empty) continue;
        ++live;
        ASSERT_EQ(NameOf(jobs.At(i)), std::to_string(i));
      }
    }
  });
  for (std::size_t i = 0; i < kJobs; ++i) AddJob(jobs, std::to_string(i));
  walker.join();
}

}  // namespace
}  // namespace quillmere
