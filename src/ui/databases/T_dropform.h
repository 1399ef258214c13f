// SPDX-License-Identifier: MIT
// Drops the selected primary keys, indexes or tables of a data source.
#pragma once

#include "ui/databases/schema_dialog.h"

class QCheckBox;

namespace quillmere {

class TDropForm : public SchemaDialog {
  Q_OBJECT

 public:
  TDropForm(UiContext& context, SchemaSelection selection, QWidget* parent);

 private:
  void ShowAdvice();
  void DropBtnClick();

  QCheckBox* cascade_ = nullptr;
};

}  // namespace quillmere
