// SPDX-License-Identifier: MIT
#include "ui/jobs/job_tree_model.h"

#include <algorithm>
#include <utility>

#include "ui/jobs/job_state_icon.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

// An index carries its node's number: 0 is the root; the job in row r of the root has 3r + 1, and
// its two children the two numbers behind it.
constexpr quintptr kNodesPerJob = 3;

quintptr NumberOf(std::size_t row, JobNode kind) {
  const quintptr first = row * kNodesPerJob + 1;
  if (kind == JobNode::Include) return first + 1;
  return kind == JobNode::Exclude ? first + 2 : first;
}

std::size_t RowOfNumber(quintptr number) {
  return (number - 1) / kNodesPerJob;
}

JobNode KindOf(quintptr number) {
  if (number == 0) return JobNode::AllJobs;
  switch ((number - 1) % kNodesPerJob) {
    case 0:
      return JobNode::Job;
    case 1:
      return JobNode::Include;
    default:
      return JobNode::Exclude;
  }
}

QIcon IconOf(JobNode kind, JobState state, Health health) {
  switch (kind) {
    case JobNode::AllJobs:
      return Icon("jobs");
    case JobNode::Include:
      return Icon("include");
    case JobNode::Exclude:
      return Icon("exclude");
    default:
      return JobStateIcon(state, health);
  }
}

}  // namespace

JobTreeModel::Job JobTreeModel::ReadJob(const JobList& jobs, std::size_t index,
                                        std::string name) const {
  WatchedJob watched = LookAt(jobs, watch_, index);
  return {index, std::move(name), watched.state, watched.health, std::move(watched.held)};
}

std::vector<JobTreeModel::Job> JobTreeModel::Read(const JobList& jobs) const {
  std::vector<Job> read;
  for (std::size_t i = 0; i < jobs.Count(); ++i) {
    if (jobs.State(i) == JobState::Empty) continue;
    read.push_back(ReadJob(jobs, i, NameOf(jobs.At(i))));
  }
  return read;
}

bool JobTreeModel::Update(const JobList& jobs) {
  std::vector<Job> read = Read(jobs);
  const bool same =
      std::equal(read.begin(), read.end(), jobs_.begin(), jobs_.end(),
                 [](const Job& a, const Job& b) { return a.index == b.index && a.name == b.name; });
  if (same) {
    for (std::size_t row = 0; row < read.size(); ++row) Show(row, std::move(read[row]));
    return false;
  }
  beginResetModel();
  jobs_ = std::move(read);
  endResetModel();
  return true;
}

void JobTreeModel::UpdateStates(const JobList& jobs, const std::vector<std::size_t>& changed) {
  for (const std::size_t job : changed) {
    if (const auto row = RowOf(job)) Show(*row, ReadJob(jobs, job, jobs_[*row].name));
  }
}

void JobTreeModel::UpdateStates(const JobList& jobs) {
  for (std::size_t row = 0; row < jobs_.size(); ++row) {
    Show(row, ReadJob(jobs, jobs_[row].index, jobs_[row].name));
  }
}

HealthCounts JobTreeModel::Counts() const {
  HealthCounts counts;
  for (const Job& job : jobs_) ++counts[job.health];
  return counts;
}

void JobTreeModel::Show(std::size_t row, Job fresh) {
  if (jobs_[row].LooksLike(fresh)) return;
  jobs_[row] = std::move(fresh);
  const QModelIndex changed = index(static_cast<int>(row), 0, Root());
  Q_EMIT dataChanged(changed, changed, {Qt::DecorationRole, Qt::ToolTipRole});
}

std::optional<std::size_t> JobTreeModel::RowOf(std::size_t job) const {
  const auto found =
      std::lower_bound(jobs_.begin(), jobs_.end(), job,
                       [](const Job& entry, std::size_t index) { return entry.index < index; });
  if (found == jobs_.end() || found->index != job) return std::nullopt;
  return static_cast<std::size_t>(found - jobs_.begin());
}

JobNodeRef JobTreeModel::NodeOf(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  const JobNode kind = KindOf(index.internalId());
  if (kind == JobNode::AllJobs) return {kind};
  return {kind, jobs_[RowOfNumber(index.internalId())].index};
}

QModelIndex JobTreeModel::IndexOf(const JobNodeRef& node) const {
  if (node.kind == JobNode::None) return {};
  if (node.kind == JobNode::AllJobs) return Root();
  const auto row = RowOf(node.job);
  if (!row) return {};
  const QModelIndex job = index(static_cast<int>(*row), 0, Root());
  if (node.kind == JobNode::Job) return job;
  return index(node.kind == JobNode::Include ? 0 : 1, 0, job);
}

QModelIndex JobTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  if (!parent.isValid()) return createIndex(row, column, quintptr{0});
  if (parent.internalId() == 0) {
    return createIndex(row, column, NumberOf(static_cast<std::size_t>(row), JobNode::Job));
  }
  return createIndex(row, column, parent.internalId() + 1 + static_cast<quintptr>(row));
}

QModelIndex JobTreeModel::parent(const QModelIndex& child) const {
  if (!child.isValid() || child.internalId() == 0) return {};
  if (KindOf(child.internalId()) == JobNode::Job) return createIndex(0, 0, quintptr{0});
  const std::size_t row = RowOfNumber(child.internalId());
  return createIndex(static_cast<int>(row), 0, NumberOf(row, JobNode::Job));
}

int JobTreeModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return 1;
  switch (KindOf(parent.internalId())) {
    case JobNode::AllJobs:
      return static_cast<int>(jobs_.size());
    case JobNode::Job:
      return 2;
    default:
      return 0;
  }
}

int JobTreeModel::columnCount(const QModelIndex&) const {
  return 1;
}

QVariant JobTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const JobNode kind = KindOf(index.internalId());
  const Job* const job =
      kind == JobNode::AllJobs ? nullptr : &jobs_[RowOfNumber(index.internalId())];
  switch (role) {
    case Qt::DisplayRole:
      if (kind == JobNode::AllJobs) return tr("All Jobs");
      if (kind == JobNode::Job) return OneLine(job->name);
      return kind == JobNode::Include ? tr("Include") : tr("Exclude");
    case Qt::DecorationRole:
      return IconOf(kind, job == nullptr ? JobState::Empty : job->state,
                    job == nullptr ? Health::Stopped : job->health);
    case Qt::ToolTipRole:
      if (kind != JobNode::Job) return {};
      return QString(OneLine(job->name) + QStringLiteral(": ") + Translated(StateName(job->state)) +
                     QStringLiteral(", ") + Translated(HealthName(job->health)) +
                     (job->held.empty() ? QString() : u'\n' + HeldText(job->held)));
    case kTagRole:
      return ToQt(NodeTag(kind));
    default:
      return {};
  }
}

}  // namespace quillmere
