// SPDX-License-Identifier: MIT
// The tree of the job explorer: all jobs, each with its included and excluded tables.
#pragma once

#include <QAbstractItemModel>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "jobs/job_list.h"
#include "ui/jobs/job_actions.h"
#include "ui/jobs/job_health.h"

namespace quillmere {

// What a node stands for. job: its index in the job list; kNotFound at the root and without a node.
struct JobNodeRef {
  JobNode kind = JobNode::None;
  std::size_t job = JobList::kNotFound;

  bool operator==(const JobNodeRef&) const = default;
};

// Shows a copy of names and states as they were at the last Update. A node costs no allocation.
// User-interface thread.
class JobTreeModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  static constexpr int kTagRole = Qt::UserRole;  // the node's tag, as text

  // watch: who knows how the jobs are; it must outlive the model.
  explicit JobTreeModel(const JobWatch* watch = nullptr, QObject* parent = nullptr)
      : QAbstractItemModel(parent), watch_(watch) {}

  // Copies names and states anew. Nodes are only replaced when jobs came, went or changed their
  // names; true then: selection and expansion are lost.
  bool Update(const JobList& jobs);

  // Only the states of these jobs; of all that are shown.
  void UpdateStates(const JobList& jobs, const std::vector<std::size_t>& changed);
  void UpdateStates(const JobList& jobs);

  // As shown.
  HealthCounts Counts() const;

  JobNodeRef NodeOf(const QModelIndex& index) const;
  QModelIndex IndexOf(const JobNodeRef& node) const;  // invalid when there is none
  QModelIndex Root() const { return index(0, 0); }

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Job {
    std::size_t index = 0;
    std::string name;
    JobState state = JobState::Empty;
    Health health = Health::Stopped;
    std::string held{};  // why it can not be continued

    bool LooksLike(const Job& other) const {
      return state == other.state && health == other.health && held == other.held;
    }
  };

  Job ReadJob(const JobList& jobs, std::size_t index, std::string name) const;
  std::vector<Job> Read(const JobList& jobs) const;
  // Where the job stands among its siblings.
  std::optional<std::size_t> RowOf(std::size_t job) const;
  void Show(std::size_t row, Job fresh);

  const JobWatch* const watch_;
  std::vector<Job> jobs_;  // in index order
};

}  // namespace quillmere
