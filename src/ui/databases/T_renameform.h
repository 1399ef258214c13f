// SPDX-License-Identifier: MIT
// Gives one primary key, index or table of a data source another name.
#pragma once

#include "ui/databases/schema_dialog.h"

class QFormLayout;
class QLineEdit;

namespace quillmere {

class TRenameForm : public SchemaDialog {
  Q_OBJECT

 public:
  // One item is selected.
  TRenameForm(UiContext& context, SchemaSelection selection, QWidget* parent);

  // The item under the name it has now.
  SchemaItem Item() const;

 private:
  QLineEdit* AddField(QFormLayout& form, const char* name, const QString& caption,
                      const std::string& text);
  void SubmitBtnClick();

  QLineEdit* new_name_ = nullptr;
};

}  // namespace quillmere
