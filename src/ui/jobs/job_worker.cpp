// SPDX-License-Identifier: MIT
#include "ui/jobs/job_worker.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>

#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr qint64 kBetweenChangesMs = 250;
constexpr std::chrono::milliseconds kEndTurn{5};
constexpr qint64 kMessagesTurnMs = 10;

constexpr auto kChanges = static_cast<QEvent::Type>(QEvent::User + 201);
constexpr auto kMessage = static_cast<QEvent::Type>(QEvent::User + 202);

}  // namespace

JobWorker::JobWorker(Workspace& workspace, std::chrono::milliseconds sweep_pause, QObject* parent)
    : QObject(parent),
      workspace_(workspace),
      bridge_({[this] { Post(kChanges); }, [this] { Post(kMessage); }}),
      engine_(workspace.EngineFor(bridge_)),
      runner_(engine_) {
  message_turn_.setSingleShot(true);
  connect(&message_turn_, &QTimer::timeout, this, &JobWorker::TakeMessages);
  changes_turn_.setSingleShot(true);
  connect(&changes_turn_, &QTimer::timeout, this, &JobWorker::TellChanges);
  told_.start();
  thread_ = std::make_unique<HWorkThread>(runner_, workspace.Jobs(), sweep_pause);
}

JobWorker::~JobWorker() {
  End();
}

// On the worker's thread. Qt's own locks order the event's making and its use, but a thread
// sanitizer does not see into Qt: for it, the number does.
void JobWorker::Post(QEvent::Type type) {
  auto* const event = new QEvent(type);
  posted_.fetch_add(1, std::memory_order_release);
  QCoreApplication::postEvent(this, event);
}

// Posted events are delivered as long as there are any: what the worker posts is only noted here,
// and done when user input and painting had their turn.
bool JobWorker::event(QEvent* event) {
  static_cast<void>(posted_.load(std::memory_order_acquire));
  if (event->type() == kMessage) {
    message_turn_.start(0);
    return true;
  }
  if (event->type() == kChanges) {
    const qint64 wait = std::max<qint64>(kBetweenChangesMs - told_.elapsed(), 0);
    changes_turn_.start(static_cast<int>(wait));
    return true;
  }
  return QObject::event(event);
}

void JobWorker::TellChanges() {
  told_.start();
  const std::vector<std::size_t> jobs = bridge_.TakeChanges();
  if (!jobs.empty()) Q_EMIT JobsChanged(jobs);
}

// Many at a time, but not for longer than a turn of the event loop may take.
void JobWorker::TakeMessages() {
  QElapsedTimer turn;
  turn.start();
  for (const WorkerBridge::Message& message : bridge_.TakeMessages()) messages_.push_back(message);
  while (!messages_.empty() && turn.elapsed() < kMessagesTurnMs) {
    const WorkerBridge::Message message = std::move(messages_.front());
    messages_.pop_front();
    Take(message);
  }
  if (!messages_.empty()) message_turn_.start(0);
}

void JobWorker::Take(const WorkerBridge::Message& message) {
  const std::string job = NameOf(workspace_.Jobs().At(message.job));
  if (workspace_.Log().AddOf(job, message.text, message.error)) return;
  Q_EMIT MessageLost(ToQt(message.text));
}

void JobWorker::End(const std::function<void()>& turn) {
  if (thread_ == nullptr) return;
  thread_->Terminate();
  while (!thread_->WaitFor(kEndTurn)) {
    TakeMessages();
    if (turn) turn();
  }
  thread_.reset();
  do {
    TakeMessages();
  } while (!messages_.empty());
}

}  // namespace quillmere
