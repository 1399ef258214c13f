// SPDX-License-Identifier: MIT
// The list of jobs with their state and progress.
#pragma once

#include <QCoreApplication>
#include <cstddef>
#include <cstdint>
#include <string>

#include "jobs/job_list.h"
#include "ui/jobs/job_health.h"
#include "ui/toolkit/row_list.h"

namespace quillmere {

struct JobRow {
  std::size_t job = 0;
  std::string name;
  JobState state = JobState::Empty;
  std::string state_words, health_words;                           // in the language of the window
  std::string held;                                                // why it can not be continued
  std::int64_t applied = 0, remaining = 0, done = 0, blocked = 0;  // done: of the latest batch
  Health health = Health::Stopped;
  std::string problem;  // of a failing job, in short
  std::int64_t behind = -1, since_good = -1, next_pass = -1, loss = -1;  // seconds; -1: not known
};

// Shows a copy as of the last Fill.
class JobRows final : public RowList<JobRow> {
  Q_DECLARE_TR_FUNCTIONS(JobRows)

 public:
  // How much of its batch a job has applied, in thousandths; invalid when it has no batch in work,
  // and in the columns that are not about it.
  static constexpr int kBatchRole = Qt::UserRole + 1;

  // watch: who knows how the jobs are; it must outlive the list.
  explicit JobRows(const JobWatch* watch = nullptr, QObject* parent = nullptr);

  // All jobs, or the one given.
  void Fill(const JobList& jobs, std::size_t only = JobList::kNotFound);

  std::size_t JobOf(std::size_t source_row) const { return RowAt(source_row).job; }

 private:
  const JobWatch* const watch_;
};

}  // namespace quillmere
