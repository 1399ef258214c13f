// SPDX-License-Identifier: MIT
#include "ui/jobs/job_rows.h"

#include <QColor>
#include <algorithm>

#include "ui/jobs/job_state_icon.h"
#include "ui/toolkit/appearance.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

QVariant NameExtra(const JobRow& row, int role) {
  if (role == Qt::DecorationRole) return Icon("job");
  return role == Qt::ToolTipRole ? OneLine(row.name) : QVariant();
}

std::string_view StateText(const JobRow& row) {
  return StateName(row.state);
}

QVariant StateColor(JobState state) {
  switch (state) {
    case JobState::Started:
      return SuccessColor();
    case JobState::Paused:
      return WarningColor();
    case JobState::Stopped:
      return QuietColor();
    default:
      return {};
  }
}

QVariant StateExtra(const JobRow& row, int role) {
  if (role == Qt::DecorationRole) return JobStateIcon(row.state, !row.held.empty());
  if (role == Qt::ToolTipRole && !row.held.empty()) return HeldText(row.held);
  return role == Qt::ForegroundRole ? StateColor(row.state) : QVariant();
}

QVariant BatchExtra(const JobRow& row, int role) {
  if (role != JobRows::kBatchRole || row.remaining == 0) return {};
  return static_cast<int>(row.done * 1000 / (row.done + row.remaining));
}

void Append(std::vector<JobRow>& rows, const JobList& jobs, std::size_t index) {
  JobRow row;
  JobList::Progress batch;
  row.job = index;
  row.state = jobs.State(index, &batch);
  if (row.state == JobState::Empty) return;
  row.remaining = batch.batch_remaining;
  row.done = batch.batch_applied;
  const SyncJob& job = jobs.At(index);
  row.applied = job.run.applied_count;
  row.blocked = job.run.blocked_count;
  row.name = NameOf(job);
  row.held = jobs.HeldBecause(index);
  rows.push_back(std::move(row));
}

}  // namespace

JobRows::JobRows(QObject* parent)
    : RowList(
          {Text<&JobRow::name>("JOB ID", 120, NameExtra),
           Text<StateText>("Status", 120, StateExtra), Number<&JobRow::applied>("Total Done", 90),
           Number<&JobRow::remaining>("Need To Do", 90),
           Number<&JobRow::done>("Has Done", 90, BatchExtra),
           Number<&JobRow::blocked>("Blocked", 80)},
          parent) {}

void JobRows::Fill(const JobList& jobs, std::size_t only) {
  std::vector<JobRow> fresh;
  if (only == JobList::kNotFound) {
    const std::size_t count = jobs.Count();
    fresh.reserve(count);
    for (std::size_t i = 0; i < count; ++i) Append(fresh, jobs, i);
  } else {
    Append(fresh, jobs, only);
  }
  const bool same = std::equal(
      fresh.begin(), fresh.end(), Rows().begin(), Rows().end(),
      [](const JobRow& a, const JobRow& b) { return a.job == b.job && a.name == b.name; });
  Take(std::move(fresh), same);
}

}  // namespace quillmere
