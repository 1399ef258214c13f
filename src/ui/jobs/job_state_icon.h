// SPDX-License-Identifier: MIT
// The picture of a job's run state, with a mark on that of one that is held beside it.
#pragma once

#include <QIcon>

#include "jobs/sync_job.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {

inline QString HeldText(const std::string& reason) {
  return QStringLiteral("Held: ") + ToQt(reason);
}

inline const char* JobStatePicture(JobState state) {
  switch (state) {
    case JobState::Started:
      return "state-started";
    case JobState::Paused:
      return "state-paused";
    case JobState::Stopped:
      return "state-stopped";
    case JobState::Starting:
    case JobState::Stopping:
    case JobState::Pausing:
      return "state-working";
    case JobState::Empty:
      break;
  }
  return "job";
}

// One that is held keeps the picture of its state and bears a small warning sign.
inline QIcon JobStateIcon(JobState state, bool held) {
  const char* const picture = JobStatePicture(state);
  return held ? MarkedIcon(picture, "warning") : Icon(picture);
}

}  // namespace quillmere
