// SPDX-License-Identifier: MIT
// Includes or excludes tables of a job, or gives them another owner on the destination.
#pragma once

#include <QDialog>

#include "ui/H_global.h"
#include "workspace/job_tables.h"

class QLabel;
class QLineEdit;
class QListView;
class QStringListModel;

namespace quillmere {

class TFilterForm : public QDialog {
  Q_OBJECT

 public:
  TFilterForm(UiContext& context, QWidget* parent);

  // Asks for the new owner, where there is to be one, and filters the tables of the job at that
  // index. True when that was done.
  bool Execute(std::size_t job, const TableChoice& choice);

 private:
  QWidget* MakeTop();
  QWidget* MakeMain();
  void Show();
  void SubmitBtnClick();

  UiContext& context_;
  std::size_t job_ = JobList::kNotFound;
  TableChoice choice_;

  QLineEdit* current_owner_ = nullptr;
  QLabel* new_owner_label_ = nullptr;
  QLineEdit* new_owner_ = nullptr;
  QStringListModel* names_;
  QListView* list_ = nullptr;
  QLabel* count_ = nullptr;
  QLabel* tips_ = nullptr;
};

}  // namespace quillmere
