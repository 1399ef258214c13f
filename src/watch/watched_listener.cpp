// SPDX-License-Identifier: MIT
#include "watch/watched_listener.h"

namespace quillmere {

void WatchedListener::OnJobChanged(std::size_t job, bool batch_fetched) {
  if (jobs_.State(job) == JobState::Stopped) watch_.TakeStopped(job);
  face_.OnJobChanged(job, batch_fetched);
}

void WatchedListener::OnPassEnd(std::size_t job, const PassReport& report) {
  for (const WatchMessage& message : watch_.TakePass(job, report)) {
    message.error ? face_.OnError(job, message.text) : face_.OnInformation(job, message.text);
  }
  face_.OnPassEnd(job, report);
}

}  // namespace quillmere
