// SPDX-License-Identifier: MIT
#include "ui/jobs/fact_grid.h"

#include <QGridLayout>
#include <QLabel>

#include "ui/toolkit/appearance.h"

namespace quillmere {

FactGrid::FactGrid(const QString& name, QWidget* parent) : QScrollArea(parent), name_(name) {
  setObjectName(name);
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  auto* inside = new QWidget;
  // No form layout: that of Qt 6.4 writes beyond its memory when rows with wrapped texts are
  // hidden.
  grid_ = new QGridLayout(inside);
  grid_->setContentsMargins(kMargin, kSpacing, kMargin, kSpacing);
  grid_->setHorizontalSpacing(kMargin);
  grid_->setVerticalSpacing(kSpacing / 2);
  grid_->setColumnStretch(1, 1);
  setWidget(inside);
}

void FactGrid::Add(const char* object, const QString& caption) {
  auto* words = new QLabel;
  words->setObjectName(name_ + QLatin1StringView(object));
  words->setAccessibleName(caption);
  words->setTextFormat(Qt::PlainText);
  words->setWordWrap(true);
  words->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto* name = new QLabel(caption);
  name->setForegroundRole(QPalette::PlaceholderText);
  const int row = static_cast<int>(words_.size());
  grid_->addWidget(name, row, 0, Qt::AlignTop);
  grid_->addWidget(words, row, 1, Qt::AlignTop);
  grid_->setRowStretch(row, 0);
  grid_->setRowStretch(row + 1, 1);
  names_.push_back(name);
  words_.push_back(words);
}

void FactGrid::Show(const std::vector<QString>& words) {
  for (std::size_t i = 0; i < words_.size(); ++i) {
    // What is being selected in a text that stays is not disturbed.
    if (words_[i]->text() != words[i]) words_[i]->setText(words[i]);
    words_[i]->setHidden(words[i].isEmpty());
    names_[i]->setHidden(words[i].isEmpty());
  }
}

}  // namespace quillmere
