// SPDX-License-Identifier: MIT
#include "ui/jobs/worker_bridge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSignalSpy>
#include <thread>

#include "ui/jobs/job_worker.h"
#include "workspace/scripted_workspace.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;

struct Bridge : ::testing::Test {
  int change_calls = 0;
  int message_calls = 0;
  WorkerBridge bridge{{[this] { ++change_calls; }, [this] { ++message_calls; }}};
};

TEST_F(Bridge, CallsOnceForChangesUntilTheyAreTaken) {
  for (int i = 0; i < 1000; ++i) bridge.OnJobChanged(7, false);
  bridge.OnJobChanged(2, true);
  EXPECT_EQ(change_calls, 1);
  EXPECT_THAT(bridge.TakeChanges(), ElementsAre(7, 2));
  EXPECT_TRUE(bridge.TakeChanges().empty());
  bridge.OnJobChanged(7, false);
  EXPECT_EQ(change_calls, 2);
}

TEST_F(Bridge, AMessageWaitsForTheWindowAndItsSenderDoesNot) {
  for (int i = 0; i < 100; ++i) bridge.OnError(0, "message " + std::to_string(i));
  bridge.OnInformation(0, "last");
  EXPECT_EQ(message_calls, 1);
  const auto messages = bridge.TakeMessages();
  ASSERT_EQ(messages.size(), 101U);
  EXPECT_EQ(messages[99].text, "message 99");
  EXPECT_TRUE(messages[99].error && !messages[100].error);
  EXPECT_TRUE(bridge.TakeMessages().empty());
}

// What the worker has to tell goes through the window's event loop, and is taken at its end without
// one; of a message that error.log does not take, its text is told.
TEST_F(ScriptedWorkspace, TheWorkersMessagesAreTakenWhetherTheLoopRunsOrNot) {
  int argc = 1;
  char name[] = "test", *argv = name;
  const QCoreApplication application(argc, &argv);
  for (std::size_t i = 0; i < 2; ++i) {
    workspace->Jobs().Claim();
    workspace->Jobs().SetState(i, i == 0 ? JobState::Pausing : JobState::Stopped);
  }
  JobWorker worker(*workspace, std::chrono::milliseconds(1), nullptr);
  const QSignalSpy changes(&worker, &JobWorker::JobsChanged);
  const QSignalSpy lost(&worker, &JobWorker::MessageLost);
  while (changes.isEmpty()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
  EXPECT_EQ(changes[0][0].value<std::vector<std::size_t>>(), std::vector<std::size_t>{0});
  EXPECT_TRUE(lost.isEmpty());
  Refuse("append", "error.log");
  workspace->Jobs().SetState(1, JobState::Pausing);
  while (workspace->Jobs().State(1) != JobState::Paused) std::this_thread::yield();
  worker.End();
  worker.End();  // a second time does nothing
  ASSERT_FALSE(lost.isEmpty());
  EXPECT_EQ(lost.last()[0].toString().toStdString(), "Job  temporary stopped.");
}

}  // namespace
}  // namespace quillmere
