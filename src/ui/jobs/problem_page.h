// SPDX-License-Identifier: MIT
// The page with what a job fails at, and the ways out.
#pragma once

#include <optional>

#include "ui/jobs/fact_grid.h"
#include "ui/jobs/job_page.h"
#include "watch/row_beside.h"

class QPushButton;

namespace quillmere {

class ProblemPage final : public JobPage {
  Q_OBJECT

 public:
  ProblemPage(UiContext& context, WayOutRunner& ways, QWidget* parent);

  QString Title() const override { return tr("&Problem"); }
  void ShowJob(std::size_t job, const WatchedJob& watched) override;
  std::string_view Mark(const WatchedJob& watched) const override;

 private:
  QPushButton* AddButton(const char* name, const QString& caption, const QString& tip);
  QWidget* MakeButtons();
  void ShowProblem(const JobProblem& problem);
  void Skip();
  void Exclude();
  void Look();

  UiContext& context_;
  WayOutRunner& ways_;
  FactGrid facts_;
  QPushButton* retry_ = nullptr;
  QPushButton* skip_ = nullptr;
  QPushButton* look_ = nullptr;
  QPushButton* exclude_ = nullptr;
  QPushButton* stop_ = nullptr;
  std::size_t job_ = JobList::kNotFound;
  std::optional<JobProblem> problem_;  // as shown
  std::optional<RowBeside> beside_;    // when it was asked for
};

}  // namespace quillmere
