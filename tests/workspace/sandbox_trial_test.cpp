// SPDX-License-Identifier: MIT
// Made by the real sandbox library, which a program without any client takes.
#include "workspace/sandbox_trial.h"

#include <gtest/gtest.h>

#include <future>

#include "foundation/files.h"
#include "support/environment.h"
#include "support/temp_folder.h"
#include "workspace/program_folder.h"
#include "workspace/trial_workload.h"

namespace quillmere {
namespace {

struct Trial {
  explicit Trial(std::filesystem::path program = quillmere::ProgramFolder()) {
    SetEnvironment("QUILLMERE_SANDBOX_DIR", PathText(folder / "sandbox"));
    SetEnvironment("QUILLMERE_SANDBOX_SYNC", "off");
    program_folder = std::move(program);
    Open();
  }
  void Open() {
    Workspace::Options options;
    options.folder = folder.Path();
    options.program_folder = program_folder;
    std::string reason;
    workspace.reset();
    workspace = Workspace::Open(options, reason);
    ASSERT_NE(workspace, nullptr) << reason;
  }
  Outcome Make() { return MakeSandboxTrial(*workspace, work, names); }

  TempFolder folder;
  std::filesystem::path program_folder;
  std::unique_ptr<Workspace> workspace;
  InPlace work;
  SandboxTrial names;
};

TEST(SandboxTrial, LeavesAJobOneStepFromRunningAndKeepsTheClient) {
  Trial trial;
  for (const char* const job : {"try", "try2"}) {
    const Outcome made = trial.Make();
    ASSERT_TRUE(made) << made.text;
    EXPECT_EQ(trial.names.job, job);
    trial.Open();
    ASSERT_TRUE(trial.workspace->UsesSandbox());
    const SyncJob& kept = trial.workspace->Jobs().At(trial.names.index);
    EXPECT_TRUE(TablesFetched(kept));
    EXPECT_EQ(FollowOf(kept), Follow::Commits);
  }
  std::promise<std::string> ended;
  const TrialWorkload workload(
      trial.workspace->Oci(), TrialLogOn(trial.names.source),
      [&](const std::string& why, bool error) { ended.set_value(error ? why : ""); }, {}, 25);
  EXPECT_EQ(ended.get_future().get(), "");
}

TEST(SandboxTrial, WhatFailsLeavesNothing) {
  for (const char* const obstacle :
       {"sandbox", "config/TRY_COPY.xml/x", "jobs/try", "jobs/jobs.xml/x"}) {
    SCOPED_TRACE(obstacle);
    Trial trial;
    std::filesystem::remove(trial.folder / "jobs/jobs.xml");
    trial.folder.Write(obstacle, "");
    if (obstacle == std::string("jobs/jobs.xml/x")) trial.Open();
    const Outcome made = trial.Make();
    EXPECT_FALSE(made);
    EXPECT_EQ(trial.workspace->Registry().IndexOf("TRY_SHOP"), -1);
    // A file that can not be removed keeps its data source, and is told.
    EXPECT_EQ(trial.workspace->Registry().CountInUse() != 0,
              made.text.find("Left over, remove them by hand: data source TRY_COPY (") !=
                  std::string::npos)
        << made.text;
    EXPECT_EQ(trial.workspace->Jobs().IndexOf("try"), JobList::kNotFound);
    EXPECT_FALSE(trial.workspace->UsesSandbox());
    for (const char* const database : {"TRY_SHOP", "TRY_COPY"}) {
      EXPECT_FALSE(trial.folder.Exists("sandbox/" + std::string(database) + ".db"));
    }
  }
}

TEST(SandboxTrial, IsOfferedOnlyWhereItCanBe) {
  const TempFolder elsewhere;
  const Trial bare(elsewhere.Path());
  EXPECT_NE(WhyNoTrial(*bare.workspace), "") << "the library is not there";
  const Trial used;
  EXPECT_EQ(WhyNoTrial(*used.workspace), "");
  DataSource source;
  source.name = "HQ";
  used.workspace->Registry().Add(source);
  EXPECT_NE(WhyNoTrial(*used.workspace), "") << "it would lose its client";
}

}  // namespace
}  // namespace quillmere
