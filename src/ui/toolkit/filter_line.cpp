// SPDX-License-Identifier: MIT
#include "ui/toolkit/filter_line.h"

#include <QAction>
#include <QKeyEvent>

#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {

FilterLine::FilterLine(QWidget* parent) : QLineEdit(parent) {
  setPlaceholderText(tr("Find in the list"));
  setToolTip(tr("Shows only the rows with this text in one of their columns (Ctrl+F)"));
  setAccessibleName(tr("Find in the list"));
  setClearButtonEnabled(true);
  addAction(Icon("search"), LeadingPosition);
  connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (model_ != nullptr) model_->SetFilter(ToBytes(text));
  });
}

void FilterLine::SetModel(RowModel* model) {
  if (model == model_) return;
  clear();  // the list that was shown is whole again
  model_ = model;
}

void FilterLine::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && !text().isEmpty()) {
    clear();
    return;
  }
  QLineEdit::keyPressEvent(event);
}

}  // namespace quillmere
