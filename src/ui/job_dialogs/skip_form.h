// SPDX-License-Identifier: MIT
// Asks why the statement that a job is stuck at is to be left out.
#pragma once

#include <QDialog>
#include <string>

#include "jobs/sync_job.h"
#include "watch/problem_file.h"

class QLineEdit;

namespace quillmere {

// Where a pass failed: "source", "statement 12 of 1,300".
QString PlaceWords(const PassProblem& what);

class SkipForm final : public QDialog {
  Q_OBJECT

 public:
  SkipForm(const std::string& job, const JobProblem& problem, Follow follow, QWidget* parent);

  // False: nothing is to be skipped. A reason is never blank.
  bool Ask(std::string& reason);

 private:
  QLineEdit* reason_ = nullptr;
};

}  // namespace quillmere
