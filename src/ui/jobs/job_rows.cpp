#include "ui/jobs/job_rows.h"

#include <QColor>
#include <algorithm>
#include <mutex>

#include "ui/jobs/job_state_icon.h"
#include "ui/toolkit/appearance.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

std::vector<RowModel::Column> JobColumns() {
  using Kind = RowModel::Kind;
  return {{QStringLiteral("JOB ID"), 120, Kind::Text},
          {QStringLiteral("Status"), 120, Kind::Text},
          {QStringLiteral("Total Done"), 90, Kind::Number},
          {QStringLiteral("Need To Do"), 90, Kind::Number},
          {QStringLiteral("Has Done"), 90, Kind::Number},
          {QStringLiteral("Blocked"), 80, Kind::Number}};
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

}  // namespace

JobRows::JobRows(QObject* parent) : RowModel(JobColumns(), parent) {}

void JobRows::Append(std::vector<Row>& rows, const JobList& jobs, std::size_t index) {
  Row row;
  row.job = index;
  row.state = jobs.State(index, &row.batch);
  if (row.state == JobState::Empty) return;
  const SyncJob& job = jobs.At(index);
  row.applied = job.applied_count;
  row.blocked = job.blocked_count;
  {
    const std::lock_guard lock(job.config_mutex);
    row.name = job.name;
  }
  rows.push_back(std::move(row));
}

void JobRows::Fill(const JobList& jobs, std::size_t only) {
  std::vector<Row> fresh;
  if (only == JobList::kNotFound) {
    const std::size_t count = jobs.Count();
    fresh.reserve(count);
    for (std::size_t i = 0; i < count; ++i) Append(fresh, jobs, i);
  } else {
    Append(fresh, jobs, only);
  }
  const bool same =
      std::equal(fresh.begin(), fresh.end(), rows_.begin(), rows_.end(),
                 [](const Row& a, const Row& b) { return a.job == b.job && a.name == b.name; });
  ReplaceRows(same, [&] { rows_ = std::move(fresh); });
}

std::string_view JobRows::CellText(std::size_t row, int column) const {
  return column == Name ? std::string_view(rows_[row].name) : StateName(rows_[row].state);
}

std::int64_t JobRows::CellNumber(std::size_t row, int column) const {
  switch (column) {
    case TotalDone:
      return rows_[row].applied;
    case NeedToDo:
      return rows_[row].batch.batch_remaining;
    case HasDone:
      return rows_[row].batch.batch_applied;
    default:
      return rows_[row].blocked;
  }
}

QVariant JobRows::BatchDone(const Row& row) const {
  if (row.batch.batch_remaining == 0) return {};
  const std::uint64_t done = row.batch.batch_applied;
  return static_cast<int>(done * 1000 / (done + row.batch.batch_remaining));
}

QVariant JobRows::CellExtra(std::size_t row, int column, int role) const {
  const JobState state = rows_[row].state;
  if (role == Qt::DecorationRole && column == Name) return Icon("job");
  if (role == Qt::DecorationRole && column == Status) return JobStateIcon(state);
  if (role == Qt::ForegroundRole && column == Status) return StateColor(state);
  if (role == Qt::ToolTipRole && column == Name) return OneLine(rows_[row].name);
  if (role == kBatchRole && column == HasDone) return BatchDone(rows_[row]);
  return {};
}

}  // namespace quillmere
