// SPDX-License-Identifier: MIT
#include "ui/jobs/way_out_runner.h"

#include <QWidget>
#include <utility>

#include "ui/toolkit/notice.h"
#include "workspace/job_operations.h"
#include "workspace/way_out.h"

namespace quillmere {

WayOutRunner::WayOutRunner(Workspace& workspace, EngineContext& engine, QWidget* window)
    : QObject(window), workspace_(workspace), engine_(engine), window_(window) {}

void WayOutRunner::Tell(const Outcome& outcome) {
  Q_EMIT Done();
  if (!outcome) ShowFailure(window_, outcome.text);
}

void WayOutRunner::Retry(std::size_t job) {
  Tell(RetryJob(workspace_, engine_, job));
}

void WayOutRunner::WhileItRests(std::size_t job, std::function<Outcome()> action) {
  if (workspace_.Jobs().State(job) == JobState::Paused) return Tell(action());
  waiting_[job] = std::move(action);
  PauseJob(workspace_, job);
  Serve(job);
}

void WayOutRunner::OnJobsChanged(const std::vector<std::size_t>& jobs) {
  for (const std::size_t job : jobs) Serve(job);
}

void WayOutRunner::Serve(std::size_t job) {
  if (!Waits(job)) return;
  const JobState state = workspace_.Jobs().State(job);
  if (state == JobState::Pausing) return Q_EMIT Done();
  const auto action = std::move(waiting_.extract(job).mapped());
  if (state != JobState::Paused) {
    return Tell(Outcome::Refused(NameOf(workspace_.Jobs().At(job)) +
                                 " was stopped meanwhile: nothing else was done"));
  }
  Outcome outcome = action();
  const Outcome continued = RetryJob(workspace_, engine_, job);
  Tell(outcome ? continued : outcome);
}

}  // namespace quillmere
