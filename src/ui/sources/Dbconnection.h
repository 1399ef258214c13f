// SPDX-License-Identifier: MIT
// The dialog of the registered data sources: add, change, delete and test them.
#pragma once

#include <QDialog>
#include <memory>
#include <optional>

#include "ui/H_global.h"
#include "ui/sources/login_fields.h"
#include "ui/sources/source_list_model.h"
#include "ui/toolkit/row_table.h"

class QGroupBox;
class QPushButton;

namespace quillmere {

class TDbConnForm : public QDialog {
  Q_OBJECT

 public:
  TDbConnForm(UiContext& context, QWidget* parent);
  ~TDbConnForm() override;

  // Opens the panel for a new data source; exec or show afterwards.
  void StartNew();

  // The registry was changed. It is saved then, and the jobs know the new log-ons.
  bool Changed() const { return changed_; }

 protected:
  // Escape leaves the panel first.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  enum class Panel { Looking, Adding, Editing };

  QWidget* MakeTools();
  QWidget* MakeButton(const char* object, const QString& caption, const char* icon,
                      const QString& tip, void (TDbConnForm::*clicked)());
  QWidget* MakePanel();
  void MakePanelButtons();

  void NewDSNClick();
  void EditDSNClick();
  void DelDSNClick();
  void TestDSNClick();
  void AddBtnClick();
  void SaveBtnClick();
  void CancelBtnClick();
  void DbConnLVChange();

  // The registry's index of the selected row.
  std::optional<std::size_t> Selected() const;
  void ShowRegistry(std::optional<std::size_t> select);
  void OpenPanel(Panel panel, const LogOn& login);
  void ShowAdvice();
  LogOn EditedLogin() const;
  // Wipes the password.
  void TellRefusal(LogOn& login, const std::string& text);

  UiContext& context_;
  SourceListModel model_;
  RowTable* list_;
  QGroupBox* panel_box_;
  std::unique_ptr<LoginFields> fields_;
  QLabel* advice_ = nullptr;
  QPushButton* add_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* abort_ = nullptr;
  Panel panel_ = Panel::Looking;
  std::size_t edited_ = 0;  // the registry's index while the panel is Editing
  bool changed_ = false;
};

}  // namespace quillmere
