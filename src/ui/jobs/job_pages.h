// SPDX-License-Identifier: MIT
// The place of a job's pages (job_page.h), below its one row in the list.
#pragma once

#include <QTabWidget>
#include <QTimer>
#include <vector>

#include "jobs/job_list.h"
#include "ui/jobs/job_page.h"

namespace quillmere {

// User-interface thread.
class JobPages final : public QTabWidget {
  Q_OBJECT

 public:
  JobPages(UiContext& context, WayOutRunner& ways, QWidget* parent);

  // Shows that job, or what is new of it. Another job that is failing opens with its problem.
  void ShowJob(std::size_t job);

  // Without a job there is nothing to be seen.
  void ShowNone();

 private:
  void Update();

  const JobWatch& watch_;
  std::vector<JobPage*> pages_;
  std::size_t job_ = JobList::kNotFound;
  QTimer second_{this};  // the clocks go on
};

}  // namespace quillmere
