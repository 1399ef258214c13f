// SPDX-License-Identifier: MIT
#include "ui/waiting/waiting.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <memory>

#include "ui/waiting/progress_window.h"
#include "ui/waiting/waiting_task.h"

namespace quillmere {
namespace {

// A window that nothing shows is not waited for.
constexpr int kPaintLimitMs = 250;

void WaitUntilPainted(const ProgressWindow& window, QEventLoop& loop) {
  QElapsedTimer shown;
  shown.start();
  while (!window.Painted() && !shown.hasExpired(kPaintLimitMs)) {
    loop.processEvents(QEventLoop::AllEvents, kPaintLimitMs / 10);
  }
}

}  // namespace

Waiting::Waiting(UiContext& context, QWidget* parent, const QString& title)
    : databases_(context.databases), parent_(parent), title_(title) {}

Waiting::~Waiting() = default;

void Waiting::EndDialog() {
  window_.reset();
}

bool Waiting::Run(LogLines& log, Part part) {
  const auto task = std::make_shared<WaitingTask>(
      [] { QCoreApplication::postEvent(qApp, new QEvent(QEvent::None)); });
  if (keeps_ && left_) return false;
  bool left = false;
  cancel_ = [&] { left = task->Cancel(); };
  if (window_ == nullptr) {
    window_ = std::make_unique<ProgressWindow>(parent_, title_, [this] {
      left_ = true;
      if (cancel_) cancel_();
    });
    window_->show();
  }
  const bool ended = Wait(task, left, log, std::move(part));
  cancel_ = {};
  if (!keeps_) EndDialog();
  return ended;
}

bool Waiting::Wait(const std::shared_ptr<WaitingTask>& task, const bool& left, LogLines& log,
                   Part part) {
  QEventLoop loop;
  WaitUntilPainted(*window_, loop);
  if (left) return false;
  databases_.Run([task, part = std::move(part)] { part(*task, *task); },
                 [task] { task->Finish(); });
  for (bool finished = false; !finished;) {
    // Not exec: the program may have been asked to end, and this has to come to its end all the
    // same.
    loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    WaitingTask::News news = task->Take();
    if (left) return false;
    if (news.step) window_->ShowStep(news.step->what, news.step->done, news.step->total);
    for (const WaitingTask::Line& line : news.lines) {
      if (line.kind == WaitingTask::LineKind::Log) {
        all_logged_ = log.Add(line.text, line.error) && all_logged_;
        continue;
      }
      window_->ShowResult(line.text);
      if (listener_) listener_(line.text, line.error);
    }
    finished = news.finished;
  }
  // Keys and clicks that came meanwhile are the dialog's, not of what lies behind it.
  loop.processEvents(QEventLoop::AllEvents);
  return true;
}

}  // namespace quillmere
