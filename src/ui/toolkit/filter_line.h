// SPDX-License-Identifier: MIT
// The field above a list that shows only the rows with what is typed, letter by letter. Ctrl+F
// leads to it, Escape empties it. User-interface thread.
#pragma once

#include <QLineEdit>

#include "ui/toolkit/row_model.h"

namespace quillmere {

class FilterLine : public QLineEdit {
  Q_OBJECT

 public:
  explicit FilterLine(QWidget* parent = nullptr);

  // Filters this list from now on, with an empty field; the list before it is shown whole again.
  // Both must live until then. Null: none.
  void SetModel(RowModel* model);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  RowModel* model_ = nullptr;
};

}  // namespace quillmere
