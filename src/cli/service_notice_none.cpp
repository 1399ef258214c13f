// SPDX-License-Identifier: MIT
// For systems without a service manager that is told, and builds without its library.
#include "cli/service_notice.h"

namespace quillmere::cli {

ServiceNotice::ServiceNotice() = default;

void ServiceNotice::Ready() const {}

void ServiceNotice::Ending() const {}

void ServiceNotice::Alive(std::chrono::steady_clock::time_point) {}

}  // namespace quillmere::cli
