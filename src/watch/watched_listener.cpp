// SPDX-License-Identifier: MIT
#include "watch/watched_listener.h"

namespace quillmere {

void WatchedListener::OnPassEnd(std::size_t job, const PassReport& report) {
  for (const WatchMessage& message : watch_.TakePass(job, report)) {
    message.error ? face_.OnError(job, message.text) : face_.OnInformation(job, message.text);
  }
  if (hook_ != nullptr) hook_->Look(job);
  face_.OnPassEnd(job, report);
}

}  // namespace quillmere
