// SPDX-License-Identifier: MIT
#include "ui/jobs/worker_bridge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSignalSpy>
#include <thread>

#include "support/config_of.h"
#include "ui/jobs/job_worker.h"
#include "workspace/scripted_workspace.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Bridge : ::testing::Test {
  int change_calls = 0;
  std::atomic<int> message_calls{0};
  std::vector<std::string> taken;
  WorkerBridge bridge{{[this] { ++change_calls; }, [this] { ++message_calls; }}};

  bool Take() {
    return bridge.TakeMessage([this](std::string_view text, bool error) {
      taken.push_back((error ? "E " : "I ") + std::string(text));
    });
  }
};

TEST_F(Bridge, CallsOnceForChangesUntilTheyAreTaken) {
  for (int i = 0; i < 1000; ++i) bridge.OnJobChanged(7, false);
  bridge.OnJobChanged(2, true);
  EXPECT_EQ(change_calls, 1);
  EXPECT_THAT(bridge.TakeChanges(), ElementsAre(7, 2));
  EXPECT_THAT(bridge.TakeChanges(), IsEmpty());
  bridge.OnJobChanged(7, false);
  EXPECT_EQ(change_calls, 2);
  EXPECT_THAT(bridge.TakeChanges(), ElementsAre(7));
}

TEST_F(Bridge, SenderWaitsUntilItsTextWasTaken) {
  std::atomic<int> returned{0};
  std::thread worker([&] {
    for (int i = 0; i < 100; ++i) {
      // The text is gone as soon as the call returns.
      bridge.OnError(0, "message " + std::to_string(i));
      ++returned;
    }
  });
  while (taken.size() < 100) {
    Take();
    EXPECT_LE(returned, static_cast<int>(taken.size()));
  }
  worker.join();
  EXPECT_EQ(taken.front(), "E message 0");
  EXPECT_EQ(taken.back(), "E message 99");
  EXPECT_EQ(message_calls, 100);
  EXPECT_FALSE(Take());
}

TEST_F(Bridge, TakerMayComeBackWhileItTakes) {
  std::thread worker([&] { bridge.OnInformation(0, "one"); });
  int inner = 0;
  const auto take = [&](std::string_view, bool) { inner += Take() ? 1 : 0; };
  while (!bridge.TakeMessage(take)) std::this_thread::yield();
  worker.join();
  EXPECT_EQ(inner, 0);
}

// --- the worker behind it ----------------------------------------------------------------------

struct Worker : ScriptedWorkspace {
  Worker() : application(argc, &argv) {}

  // The worker changes the state of each and then tells of it with a message.
  void AddPausingJobs(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      jobs.push_back(workspace->Jobs().Claim());
      ConfigOf(workspace->Jobs().At(i)).name = "Job" + std::to_string(i);
      workspace->Jobs().SetState(i, JobState::Pausing);
    }
  }

  // No event loop runs: the worker then waits with its message, or soon will.
  void AwaitFirstState() const {
    while (workspace->Jobs().State(jobs[0]) != JobState::Paused) std::this_thread::yield();
  }

  // With the errors about run records that have no folder to lie in left out.
  std::vector<std::string> Informations() {
    std::vector<std::string> messages = TakeMessages();
    std::erase_if(messages, [](const std::string& message) { return message[0] == 'E'; });
    return messages;
  }

  int argc = 1;
  char name[5] = "test";
  char* argv = name;
  QCoreApplication application;
  std::vector<std::size_t> jobs;
};

constexpr std::chrono::milliseconds kSweep{1};

TEST_F(Worker, EndTakesTheMessageThatTheWorkerWaitsWith) {
  AddPausingJobs(1);
  JobWorker worker(*workspace, kSweep, nullptr);
  AwaitFirstState();
  worker.End();
  EXPECT_THAT(Informations(), ElementsAre("I Job Job0 temporary stopped."));
  worker.End();  // a second time does nothing
}

TEST_F(Worker, MessagesAndChangesComeThroughTheEventLoop) {
  AddPausingJobs(50);
  JobWorker worker(*workspace, kSweep, nullptr);
  const QSignalSpy changes(&worker, &JobWorker::JobsChanged);
  std::set<std::size_t> told;
  QElapsedTimer limit;
  limit.start();
  while (told.size() < jobs.size()) {
    ASSERT_LT(limit.elapsed(), 30'000);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    for (const QList<QVariant>& call : changes) {
      for (const std::size_t job : call[0].value<std::vector<std::size_t>>()) told.insert(job);
    }
  }
  worker.End();
  EXPECT_EQ(Informations().size(), jobs.size());
}

TEST_F(Worker, TellsOfAMessageThatErrorLogDoesNotTake) {
  AddPausingJobs(1);
  std::filesystem::remove(folder.Path() / "error.log");
  std::filesystem::create_directory(folder.Path() / "error.log");
  JobWorker worker(*workspace, kSweep, nullptr);
  const QSignalSpy lost(&worker, &JobWorker::MessageLost);
  AwaitFirstState();
  worker.End();
  ASSERT_FALSE(lost.isEmpty());
  EXPECT_EQ(lost.last()[0].toString().toStdString(), "Job Job0 temporary stopped.");
}

}  // namespace
}  // namespace quillmere
