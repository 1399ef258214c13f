// SPDX-License-Identifier: MIT
#include <systemd/sd-daemon.h>

#include <cstdint>

#include "cli/service_notice.h"

namespace quillmere::cli {
namespace {

// A manager that does not listen is no fault of ours.
void Notify(const char* state) {
  static_cast<void>(sd_notify(0, state));
}

}  // namespace

ServiceNotice::ServiceNotice() {
  std::uint64_t microseconds = 0;
  if (sd_watchdog_enabled(0, &microseconds) > 0) {
    pause_ = std::chrono::microseconds(microseconds / 2);
  }
}

void ServiceNotice::Ready() const {
  Notify("READY=1");
}

void ServiceNotice::Ending() const {
  Notify("STOPPING=1");
}

void ServiceNotice::Alive(std::chrono::steady_clock::time_point now) {
  if (pause_.count() == 0 || now < next_) return;
  next_ = now + pause_;
  Notify("WATCHDOG=1");
}

}  // namespace quillmere::cli
