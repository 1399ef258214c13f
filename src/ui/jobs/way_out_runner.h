// SPDX-License-Identifier: MIT
// Carries out what an operator decided about a failing job. What the job has to rest for waits for
// the end of the pass in hand, and lets the job go on afterwards; nobody waits meanwhile.
#pragma once

#include <QObject>
#include <cstddef>
#include <functional>
#include <map>
#include <vector>

#include "workspace/outcome.h"
#include "workspace/workspace.h"

class QWidget;

namespace quillmere {

// User-interface thread. All must outlive it; window: over which messages are shown.
class WayOutRunner final : public QObject {
  Q_OBJECT

 public:
  WayOutRunner(Workspace& workspace, EngineContext& engine, QWidget* window);

  // Of the thread that runs the jobs.
  const EngineContext& Engine() const { return engine_; }

  void Retry(std::size_t job);

  // Now when the job is paused; else it is paused first and continued afterwards. A job that is
  // stopped meanwhile is told of, and nothing is done.
  void WhileItRests(std::size_t job, std::function<Outcome()> action);
  bool Waits(std::size_t job) const { return waiting_.contains(job); }

  void OnJobsChanged(const std::vector<std::size_t>& jobs);

 Q_SIGNALS:
  void Done();       // what is shown of the jobs may have changed
  void StopAsked();  // of the job that is shown

 private:
  void Serve(std::size_t job);
  void Tell(const Outcome& outcome);

  Workspace& workspace_;
  EngineContext& engine_;
  QWidget* const window_;
  std::map<std::size_t, std::function<Outcome()>> waiting_;
};

}  // namespace quillmere
