// SPDX-License-Identifier: MIT
// The properties of a job: its name, what it is for, from where to where it synchronizes, how
// often, and in which way.
#pragma once

#include <QDialog>
#include <map>

#include "ui/H_global.h"
#include "ui/job_dialogs/interval_field.h"
#include "ui/job_dialogs/source_choice.h"
#include "ui/sources/source_list_model.h"
#include "ui/toolkit/row_table.h"
#include "workspace/job_operations.h"

class QFormLayout;
class QGroupBox;
class QLabel;
class QPlainTextEdit;
class QRadioButton;

namespace quillmere {

class TJobEditForm : public QDialog {
  Q_OBJECT

 public:
  TJobEditForm(UiContext& context, QWidget* parent);
  ~TJobEditForm() override;

  // Shows the properties until they are confirmed or given up. index: of the job that they belong
  // to, JobList::kNotFound for a new one. True: properties holds what was entered, which has been
  // found good; storing it is the caller's.
  bool Edit(JobProperties& properties, std::size_t index);

 private:
  QWidget* MakeSourcePart();
  QWidget* MakeJobPart();
  void AddField(QFormLayout& form, const QString& caption, JobField which, QWidget* field);
  QLabel* AddJudgement(JobField field);
  void AddFields(QFormLayout& form);
  QWidget* MakeFollow();
  void ShowFollow(Follow follow);
  void Show(const JobProperties& properties);
  void ShowSources(std::string_view source, std::string_view destination);
  JobProperties Entered() const;
  std::string EnteredDescription() const;
  QWidget* Widget(JobField field) const;
  void HighlightRow(int choice);

  void Judge();
  void OkBtnClick();
  bool AgreesToDescription(std::string& description);
  void NewConnBtnClick();

  UiContext& context_;
  SourceListModel model_;
  JobProperties properties_;
  std::size_t index_ = JobList::kNotFound;
  QString shown_description_;  // as the field made it of the bytes

  RowTable* list_ = nullptr;
  std::map<JobField, QLabel*> judgements_;  // under the fields
  QWidget* new_source_ = nullptr;
  QLineEdit* name_ = nullptr;
  QPlainTextEdit* description_ = nullptr;
  SourceChoice* source_ = nullptr;
  SourceChoice* destination_ = nullptr;
  IntervalField* interval_ = nullptr;
  QGroupBox* follow_ = nullptr;
  QRadioButton* rows_ = nullptr;
  QRadioButton* commits_ = nullptr;
  QLineEdit* container_ = nullptr;
};

}  // namespace quillmere
