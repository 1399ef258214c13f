// SPDX-License-Identifier: MIT
// What stands above the lists of the job explorer.
#include <QStringList>

#include "ui/jobs/T_jobmgrform.h"
#include "ui/jobs/job_state_icon.h"
#include "ui/toolkit/text.h"
#include "workspace/job_operations.h"

namespace quillmere {

// What an operator has to know of the one job that is shown.
QString TJobMgrForm::NoteOf(std::size_t job) const {
  const Follow follow = FollowOf(jobs_.At(job));
  QString note = tr("Follows %1. %2")
                     .arg(Translated(FollowName(follow)), Translated(WhatFollowingMeans(follow)));
  const std::string held = jobs_.HeldBecause(job);
  return held.empty() ? note : HeldText(held) + u'\n' + note;
}

// What was at work when the program ended, until somebody has decided on it.
QString TJobMgrForm::NoteOfInterrupted() const {
  constexpr int kMostLines = 5;
  QStringList lines;
  for (const std::size_t job : context_.workspace.Interrupted()) {
    JobList::Progress progress;
    if (jobs_.State(job, &progress) != JobState::Paused) continue;
    lines << tr("%1 was at work when the program ended, and is Paused with %Ln statement(s) left. "
                "Continue it with Run",
                nullptr, Plural(progress.batch_remaining))
                 .arg(OneLine(NameOf(jobs_.At(job))));
  }
  const auto more = static_cast<int>(lines.size()) - kMostLines;
  if (more > 0) lines = lines.mid(0, kMostLines) << tr("and %Ln more", nullptr, more);
  return lines.join(u'\n');
}

}  // namespace quillmere
