// SPDX-License-Identifier: MIT
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <QObject>
#include <atomic>
#include <utility>

#include "app/end_signals.h"

namespace quillmere {
namespace {

struct Receiver {
  QObject object;
  std::function<void()> ask;
};

std::atomic<Receiver*> receiver{nullptr};

// Called on a thread of the system's.
BOOL WINAPI OnConsoleEvent(DWORD) {
  Receiver* const target = receiver;
  if (target == nullptr) return FALSE;
  QMetaObject::invokeMethod(
      &target->object, [target] { target->ask(); }, Qt::QueuedConnection);
  return TRUE;
}

}  // namespace

class EndSignals::Watch {
 public:
  explicit Watch(std::function<void()> ask) {
    target_.ask = std::move(ask);
    receiver = &target_;
    ::SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
  }
  ~Watch() {
    ::SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
    receiver = nullptr;
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

 private:
  Receiver target_;
};

EndSignals::EndSignals(std::function<void()> ask)
    : watch_(std::make_unique<Watch>(std::move(ask))) {}

EndSignals::~EndSignals() = default;

}  // namespace quillmere
