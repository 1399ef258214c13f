// SPDX-License-Identifier: MIT
#include "ui/waiting/quiet_work.h"

namespace quillmere {
namespace {

constexpr int kLookMs = 10;

}  // namespace

QuietWork::QuietWork(DatabaseThread& thread) : thread_(thread) {
  QObject::connect(&turn_, &QTimer::timeout, &turn_, [this] { Look(); });
}

// Asked for rather than told: an event from the other thread could outlive whom it is for.
void QuietWork::Run(std::function<void()> work, std::function<void()> show) {
  const auto done = std::make_shared<std::atomic<bool>>(false);
  done_ = done;
  show_ = std::move(show);
  thread_.Run(std::move(work), [done] { done->store(true, std::memory_order_release); });
  turn_.start(kLookMs);
}

void QuietWork::Look() {
  if (done_ == nullptr || !done_->load(std::memory_order_acquire)) return;
  turn_.stop();
  done_.reset();
  const auto show = std::exchange(show_, {});
  show();
}

}  // namespace quillmere
