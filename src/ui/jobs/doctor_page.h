// SPDX-License-Identifier: MIT
// The page with what could keep a job from running well, and what cures it; looked for when the
// operator asks for it.
#pragma once

#include <string>
#include <vector>

#include "doctor/doctor.h"
#include "ui/jobs/job_page.h"
#include "ui/toolkit/row_list.h"

class QHBoxLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace quillmere {

class RowTable;

// In the operator's language.
struct FindingRow {
  Finding finding;
  std::string grade;
};

class FindingRows final : public RowList<FindingRow> {
 public:
  explicit FindingRows(QObject* parent = nullptr);
  void Show(const std::vector<Finding>& findings);
};

class DoctorPage final : public JobPage {
  Q_OBJECT

 public:
  DoctorPage(UiContext& context, QWidget* parent);

  QString Title() const override { return tr("Docto&r"); }
  // Another job begins with an empty page: what was found is as of then.
  void ShowJob(std::size_t job, const WatchedJob& watched) override;

  // Looks at the job that is shown.
  void Examine();

 private:
  struct Visit {
    std::vector<Finding> findings;
    bool whole = false;  // it came to its end
  };

  QPushButton* AddButton(QHBoxLayout& row, const char* name, const QString& caption,
                         const QString& tip);
  QWidget* MakeHead();
  void Show(Patient patient, Visit visit);
  void ShowFinding(const QModelIndex& row);
  void CopyCures();
  void SaveCures();

  UiContext& context_;
  FindingRows rows_;
  QPushButton* examine_ = nullptr;
  QPushButton* copy_ = nullptr;
  QPushButton* save_ = nullptr;
  QLabel* summary_ = nullptr;
  RowTable* list_ = nullptr;
  QPlainTextEdit* finding_ = nullptr;
  Patient patient_;  // as it was examined
  std::vector<Finding> findings_;
  std::size_t job_ = JobList::kNotFound;
  std::string name_;
};

}  // namespace quillmere
