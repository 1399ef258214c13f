// SPDX-License-Identifier: MIT
// The thread that runs the jobs, as the job explorer has it: its messages come in as they are sent,
// changed jobs a few times a second. It never waits for the window.
#pragma once

#include <QElapsedTimer>
#include <QEvent>
#include <QObject>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "engine/work_thread.h"
#include "ui/jobs/worker_bridge.h"
#include "workspace/workspace.h"

namespace quillmere {

// User-interface thread. However much the worker has to tell, the event loop comes to its turn
// between two messages.
class JobWorker : public QObject {
  Q_OBJECT

 public:
  // Starts at once.
  JobWorker(Workspace& workspace, std::chrono::milliseconds sweep_pause, QObject* parent);
  ~JobWorker() override;

  EngineContext& Engine() { return engine_; }

  // Ends the thread behind the statement in hand. Its messages are in the log then, and nothing
  // runs afterwards.
  // turn: called again and again while that is waited for.
  void End(const std::function<void()>& turn = {});

 Q_SIGNALS:
  void JobsChanged(const std::vector<std::size_t>& jobs);
  // error.log could not be written, so the message is in no list.
  void MessageLost(const QString& text);

 protected:
  bool event(QEvent* event) override;

 private:
  void Post(QEvent::Type type);
  void Take(const WorkerBridge::Message& message);
  void TakeMessages();
  void TellChanges();

  Workspace& workspace_;
  QTimer message_turn_;  // fires in the event loop's next turn
  QTimer changes_turn_;
  QElapsedTimer told_;  // since changes were last told
  std::atomic<unsigned> posted_{0};
  WorkerBridge bridge_;
  std::deque<WorkerBridge::Message> messages_;  // taken, not yet in the log
  EngineContext engine_;
  JobRunner runner_;
  std::unique_ptr<HWorkThread> thread_;
};

}  // namespace quillmere
