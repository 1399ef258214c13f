// Includes or excludes tables of a job, or gives them another owner on the destination.
#pragma once

#include <QDialog>
#include <string>
#include <vector>

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

  // Asks, then changes the named tables of one source owner in the job at that index. True when
  // that was done; saving is the caller's.
  bool Execute(std::size_t job, const std::string& owner, const std::vector<std::string>& tables,
               TableFilter mode);

 private:
  QWidget* MakeTop();
  QWidget* MakeMain();
  void Show(const std::string& owner, const std::vector<std::string>& tables, TableFilter mode);
  void SubmitBtnClick();

  UiContext& context_;
  std::size_t job_ = JobList::kNotFound;
  std::string owner_;
  std::vector<std::string> tables_;
  TableFilter mode_ = TableFilter::Include;

  QLineEdit* current_owner_ = nullptr;
  QLabel* new_owner_label_ = nullptr;
  QLineEdit* new_owner_ = nullptr;
  QStringListModel* names_;
  QListView* list_ = nullptr;
  QLabel* count_ = nullptr;
  QLabel* tips_ = nullptr;
};

}  // namespace quillmere
