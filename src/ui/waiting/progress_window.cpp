// SPDX-License-Identifier: MIT
#include "ui/waiting/progress_window.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/toolkit/appearance.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kSteps = 1000;  // of the bar: totals may be above what it counts with

// Long enough that no line makes the dialog jump.
constexpr int kWidthInCharacters = 72;

void SetText(QLabel& label, std::string_view text) {
  const QString line = OneLine(ToBytes(Translated(text)));
  label.setText(label.fontMetrics().elidedText(line, Qt::ElideMiddle, label.width()));
}

}  // namespace

ProgressWindow::ProgressWindow(QWidget* parent, const QString& title, std::function<void()> cancel)
    : QDialog(parent), cancel_(std::move(cancel)) {
  setObjectName(QStringLiteral("ProgressDialog"));
  setWindowTitle(title);
  setWindowModality(Qt::ApplicationModal);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kSpacing);
  const int width = fontMetrics().averageCharWidth() * kWidthInCharacters;
  for (QLabel* label : {&what_, &result_}) {
    label->setTextFormat(Qt::PlainText);
    label->setFixedWidth(width);
    layout->addWidget(label);
  }
  what_.setObjectName(QStringLiteral("ProgressWhat"));
  what_.setText(title);
  result_.setForegroundRole(QPalette::PlaceholderText);
  bar_.setTextVisible(false);
  bar_.setRange(0, 0);
  bar_.setAccessibleName(title);
  layout->insertWidget(1, &bar_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  button_ = buttons->button(QDialogButtonBox::Cancel);
  button_->setObjectName(QStringLiteral("ProgressCancel"));
  connect(buttons, &QDialogButtonBox::rejected, this, &ProgressWindow::Cancel);
  layout->addWidget(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

void ProgressWindow::ShowStep(std::string_view what, std::size_t done, std::size_t total) {
  SetText(what_, what);
  bar_.setRange(0, total == 0 ? 0 : kSteps);
  if (total == 0) return;
  const double part = static_cast<double>(std::min(done, total)) / static_cast<double>(total);
  bar_.setValue(static_cast<int>(part * kSteps));
}

void ProgressWindow::ShowResult(std::string_view line) {
  SetText(result_, line);
}

void ProgressWindow::paintEvent(QPaintEvent* event) {
  QDialog::paintEvent(event);
  painted_ = true;
}

void ProgressWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  Cancel();
}

void ProgressWindow::Cancel() {
  if (!button_->isEnabled()) return;
  button_->setEnabled(false);
  button_->setText(tr("Cancelling ..."));
  cancel_();
}

}  // namespace quillmere
