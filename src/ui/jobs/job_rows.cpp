// SPDX-License-Identifier: MIT
#include "ui/jobs/job_rows.h"

#include <QColor>
#include <algorithm>

#include "ui/jobs/job_state_icon.h"
#include "ui/toolkit/appearance.h"
#include "ui/toolkit/text.h"
#include "watch/health_text.h"

namespace quillmere {
namespace {

QVariant NameExtra(const JobRow& row, int role) {
  if (role == Qt::DecorationRole) return Icon("job");
  return role == Qt::ToolTipRole ? OneLine(row.name) : QVariant();
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
  if (role == Qt::DecorationRole) return JobStateIcon(row.state, row.health);
  if (role == Qt::ToolTipRole && !row.held.empty()) return HeldText(row.held);
  return role == Qt::ForegroundRole ? StateColor(row.state) : QVariant();
}

QVariant BatchExtra(const JobRow& row, int role) {
  if (role != JobRows::kBatchRole || row.remaining == 0) return {};
  return static_cast<int>(row.done * 1000 / (row.done + row.remaining));
}

QVariant HealthExtra(const JobRow& row, int role) {
  if (role == Qt::DecorationRole) return HealthIcon(row.health);
  if (role != Qt::ToolTipRole || row.problem.empty()) return {};
  return ToQt(row.problem).toHtmlEscaped();
}

QString Age(std::int64_t age) {
  return age < 0 ? QString() : ToQt(AgeText(std::chrono::seconds{age}));
}

QString Ago(std::int64_t age) {
  return age < 0 ? QString() : JobRows::tr("%1 ago").arg(Age(age));
}

QString In(std::int64_t left) {
  return left < 0 ? QString() : JobRows::tr("in %1").arg(Age(left));
}

std::int64_t Seconds(const std::optional<std::chrono::seconds>& age) {
  return age ? age->count() : -1;
}

void TakeHealth(JobRow& row, const WatchedJob& job) {
  constexpr std::size_t kLongest = 300;
  row.health = job.health;
  row.behind = Seconds(job.behind);
  row.since_good = Seconds(job.since_good);
  row.next_pass = Seconds(job.next_pass);
  row.loss = Seconds(job.time_to_loss);
  if (job.problem) row.problem = ProblemSummary(*job.problem).substr(0, kLongest);
}

void Append(std::vector<JobRow>& rows, const JobList& jobs, const JobWatch* watch,
            std::size_t index) {
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
  TakeHealth(row, LookAt(jobs, watch, index));
  row.state_words = ToBytes(Translated(StateName(row.state)));
  row.health_words = ToBytes(Translated(HealthName(row.health)));
  rows.push_back(std::move(row));
}

}  // namespace

JobRows::JobRows(const JobWatch* watch, QObject* parent)
    : RowList({Text<&JobRow::name>(tr("JOB ID"), 120, NameExtra),
               Text<&JobRow::state_words>(tr("Status"), 120, StateExtra),
               Number<&JobRow::applied>(tr("Total Done"), 90),
               Number<&JobRow::remaining>(tr("Need To Do"), 90),
               Number<&JobRow::done>(tr("Has Done"), 90, BatchExtra),
               Number<&JobRow::blocked>(tr("Blocked"), 80),
               Text<&JobRow::health_words>(tr("Health"), 100, HealthExtra),
               Number<&JobRow::behind>(tr("Behind"), 80, nullptr, Age),
               Number<&JobRow::since_good>(tr("Last Good Pass"), 110, nullptr, Ago),
               Number<&JobRow::next_pass>(tr("Next Pass"), 80, nullptr, In),
               Number<&JobRow::loss>(tr("Time To Loss"), 90, nullptr, Age)},
              parent),
      watch_(watch) {}

void JobRows::Fill(const JobList& jobs, std::size_t only) {
  std::vector<JobRow> fresh;
  if (only == JobList::kNotFound) {
    const std::size_t count = jobs.Count();
    fresh.reserve(count);
    for (std::size_t i = 0; i < count; ++i) Append(fresh, jobs, watch_, i);
  } else {
    Append(fresh, jobs, watch_, only);
  }
  const bool same = std::equal(
      fresh.begin(), fresh.end(), Rows().begin(), Rows().end(),
      [](const JobRow& a, const JobRow& b) { return a.job == b.job && a.name == b.name; });
  Take(std::move(fresh), same);
}

}  // namespace quillmere
