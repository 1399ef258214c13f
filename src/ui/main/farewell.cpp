// SPDX-License-Identifier: MIT
#include "ui/main/farewell.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <utility>

namespace quillmere {
namespace {

constexpr qint64 kMomentMs = 400;
constexpr unsigned long kTurnMs = 5;

}  // namespace

void Farewell::Wait(const QString& what) {
  if (!began_.hasExpired(kMomentMs)) {
    QThread::msleep(kTurnMs);
    return;
  }
  if (window_ == nullptr) window_ = std::make_unique<Splash>();
  if (std::exchange(said_, what) != what) window_->Tell(what);
  QCoreApplication::processEvents(QEventLoop::AllEvents, static_cast<int>(kTurnMs));
  QThread::msleep(kTurnMs);
}

}  // namespace quillmere
