// SPDX-License-Identifier: MIT
// What a job is, above whatever is shown of it: from where to where, how often, how, its state, its
// description. User-interface thread.
#pragma once

#include <QFrame>
#include <cstddef>

#include "ui/jobs/job_health.h"

class QLabel;

namespace quillmere {

class JobHead final : public QFrame {
  Q_OBJECT

 public:
  explicit JobHead(QWidget* parent);

  // loss_hours: see Settings; a time to loss below it is shown.
  void ShowJob(const SyncJob& job, const WatchedJob& watched, int loss_hours);

 private:
  QLabel* picture_ = nullptr;
  QLabel* facts_ = nullptr;
  QLabel* description_ = nullptr;
};

}  // namespace quillmere
