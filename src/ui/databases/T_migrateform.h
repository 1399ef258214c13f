// SPDX-License-Identifier: MIT
// Creates the selected primary keys, indexes or tables of a data source on another one.
#pragma once

#include <optional>

#include "ui/databases/schema_dialog.h"

class QComboBox;
class QStandardItemModel;
class QTreeView;

namespace quillmere {

class TMigrateForm : public SchemaDialog {
  Q_OBJECT

 public:
  TMigrateForm(UiContext& context, SchemaSelection selection, QWidget* parent);

 private:
  QWidget* MakeDatabases();
  QWidget* MakeOptions();
  QTreeView* MakeList(const char* name, const QString& accessible_name);

  std::optional<std::size_t> Target() const;  // the registry's index
  MigrateChoices Choices() const;
  void ShowAdvice();
  void SubmitBtnClick();

  QComboBox* target_ = nullptr;
  QStandardItemModel* options_ = nullptr;
};

}  // namespace quillmere
