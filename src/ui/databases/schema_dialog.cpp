// SPDX-License-Identifier: MIT
#include "ui/databases/schema_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>
#include <utility>

#include "ui/toolkit/dialog_size.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "ui/waiting/waiting.h"

namespace quillmere {

SchemaDialog::SchemaDialog(UiContext& context, SchemaSelection selection, const QString& name,
                           const QString& tips, QWidget* parent)
    : QDialog(parent), context_(context), selection_(std::move(selection)), name_(name) {
  setObjectName(name);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(kMargin);
  body_ = new QVBoxLayout;
  body_->setSpacing(kSpacing);
  column->addLayout(body_, 1);

  advice_ = new QLabel(this);
  advice_->setObjectName(QStringLiteral("LblAdvice"));
  advice_->setTextFormat(Qt::PlainText);
  advice_->setWordWrap(true);
  warning_ = new QLabel(this);
  const int size = style()->pixelMetric(QStyle::PM_LargeIconSize);
  warning_->setPixmap(Icon("warning").pixmap(size));
  auto* words = new QHBoxLayout;
  words->setSpacing(kMargin);
  words->addWidget(warning_, 0, Qt::AlignTop);
  words->addWidget(advice_, 1);
  column->addLayout(words);

  tips_ = new QLabel(tips, this);
  tips_->setObjectName(QStringLiteral("LblTips"));
  tips_->setTextFormat(Qt::PlainText);
  // A long line must not widen the dialog; its tooltip has all of it.
  tips_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  QPalette quiet = tips_->palette();
  quiet.setColor(QPalette::WindowText, QuietColor());
  tips_->setPalette(quiet);
  buttons_ = new QHBoxLayout;
  buttons_->setSpacing(kSpacing);
  buttons_->addWidget(tips_, 1);
  column->addLayout(buttons_);
}

SchemaDialog::~SchemaDialog() {
  KeepSize(*this, context_.memory, name_);
}

void SchemaDialog::MakeReadOnly(QLineEdit& field) const {
  field.setReadOnly(true);
  field.setFocusPolicy(Qt::ClickFocus);
  QPalette colours = field.palette();
  colours.setColor(QPalette::Base, palette().color(QPalette::Window));
  field.setPalette(colours);
}

void SchemaDialog::RestoreDialogSize(int width, int height) {
  RestoreSize(*this, context_.memory, name_, width, height);
}

void SchemaDialog::SetAdvice(const QString& text, bool destroys) {
  warning_->setVisible(destroys);
  advice_->setText(text);
}

QPushButton& SchemaDialog::AddSubmit(const QString& object_name, const QString& caption) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(object_name);
  buttons_->addWidget(button);
  return *button;
}

QPushButton& SchemaDialog::AddCancel() {
  auto* button = new QPushButton(tr("&Abort"), this);
  button->setObjectName(QStringLiteral("CancelBtn"));
  button->setToolTip(tr("Closes the dialog; nothing is changed"));
  connect(button, &QPushButton::clicked, this, &QDialog::reject);
  buttons_->addWidget(button);
  return *button;
}

void SchemaDialog::ShowTip(std::string_view line, bool failed) {
  QPalette colours = palette();
  if (failed) colours.setColor(QPalette::WindowText, FailureColor());
  tips_->setPalette(colours);
  const QString text = OneLine(ToBytes(Translated(line)));
  tips_->setText(tips_->fontMetrics().elidedText(text, Qt::ElideRight, tips_->width()));
  tips_->setToolTip(text);
}

void SchemaDialog::Run(const QString& title, const Operation& operation) {
  Waiting waiting(context_, this, title);
  waiting.SetListener([this](std::string_view line, bool failed) { ShowTip(line, failed); });
  const SchemaRun run = operation(waiting);
  if (!run.refused.empty()) {
    ShowFailure(this, run.refused);
    return;
  }
  if (run.cancelled && run.succeeded + run.failed == 0) return;
  succeeded_ = run.succeeded > 0;
  if (!run.unsaved.empty()) ShowFailure(this, run.unsaved);
  const QString summary = RunSummary(run, Items().size());
  if (!summary.isEmpty()) ShowNotice(this, summary);
  accept();
}

}  // namespace quillmere
