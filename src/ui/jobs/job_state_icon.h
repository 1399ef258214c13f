// SPDX-License-Identifier: MIT
// The picture of a job's run state, with a mark on that of one that needs looking at.
#pragma once

#include <QCoreApplication>
#include <QIcon>

#include "jobs/sync_job.h"
#include "ui/jobs/job_health.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {

inline QString HeldText(const std::string& reason) {
  return QCoreApplication::translate("HealthTexts", "Held: %1").arg(ToQt(reason));
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

// One that needs looking at keeps the picture of its state and bears a small sign.
inline QIcon JobStateIcon(JobState state, Health health) {
  return MarkedIcon(JobStatePicture(state), HealthMark(health));
}

}  // namespace quillmere
