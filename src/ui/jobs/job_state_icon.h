// SPDX-License-Identifier: MIT
// The picture of a job's run state, or of one that is held beside it.
#pragma once

#include <QIcon>

#include "jobs/sync_job.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {

inline QString HeldText(const std::string& reason) {
  return QStringLiteral("Held: ") + ToQt(reason);
}

inline QIcon JobStateIcon(JobState state, bool held) {
  if (held) return Icon("warning");
  switch (state) {
    case JobState::Started:
      return Icon("state-started");
    case JobState::Paused:
      return Icon("state-paused");
    case JobState::Stopped:
      return Icon("state-stopped");
    case JobState::Starting:
    case JobState::Stopping:
    case JobState::Pausing:
      return Icon("state-working");
    case JobState::Empty:
      break;
  }
  return Icon("job");
}

}  // namespace quillmere
