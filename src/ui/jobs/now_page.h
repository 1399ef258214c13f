// SPDX-License-Identifier: MIT
// The page with how a job is at the moment.
#pragma once

#include "ui/jobs/fact_grid.h"
#include "ui/jobs/job_page.h"

namespace quillmere {

class NowPage final : public JobPage {
  Q_OBJECT

 public:
  NowPage(UiContext& context, QWidget* parent);

  QString Title() const override { return tr("&Now"); }
  void ShowJob(std::size_t job, const WatchedJob& watched) override;

 Q_SIGNALS:
  // A job that never ran is to be looked at by the doctor.
  void DoctorAsked();

 private:
  QWidget* MakeOffer();

  const JobList& jobs_;
  FactGrid facts_;
  QWidget* offer_ = nullptr;  // seen until the job has run
};

}  // namespace quillmere
