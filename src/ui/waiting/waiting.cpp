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

bool Waiting::Run(LogLines& log, Part part) {
  const auto task = std::make_shared<WaitingTask>(
      [] { QCoreApplication::postEvent(qApp, new QEvent(QEvent::None)); });
  bool left = false;
  ProgressWindow window(parent_, title_, [&] { left = task->Cancel(); });
  window.show();
  QEventLoop loop;
  WaitUntilPainted(window, loop);
  if (left) return false;
  databases_.Run([task, part = std::move(part)] { part(*task, *task); },
                 [task] { task->Finish(); });
  for (bool finished = false; !finished;) {
    // Not exec: the program may have been asked to end, and this has to come to its end all the
    // same.
    loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    WaitingTask::News news = task->Take();
    if (left) return false;
    if (news.step) window.ShowStep(news.step->what, news.step->done, news.step->total);
    for (const WaitingTask::Line& line : news.lines) {
      if (line.kind == WaitingTask::LineKind::Log) {
        all_logged_ = log.Add(line.text, line.error) && all_logged_;
        continue;
      }
      window.ShowResult(line.text);
      if (listener_) listener_(line.text, line.error);
    }
    finished = news.finished;
  }
  // Keys and clicks that came meanwhile are the dialog's, not of what lies behind it.
  loop.processEvents(QEventLoop::AllEvents);
  return true;
}

}  // namespace quillmere
