// SPDX-License-Identifier: MIT
#include "ui/job_dialogs/skip_form.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/toolkit/appearance.h"
#include "ui/toolkit/text.h"
#include "watch/health_text.h"

namespace quillmere {
namespace {

constexpr int kTextHeight = 120;

QLabel* Words(const QString& text) {
  auto* words = new QLabel(text);
  words->setTextFormat(Qt::PlainText);
  words->setWordWrap(true);
  return words;
}

QString WhatIsSkipped(const JobProblem& problem, Follow follow) {
  QString what = PlaceWords(problem.what);
  what[0] = what[0].toUpper();
  if (!problem.what.table.empty()) {
    what = SkipForm::tr("%1, on %2").arg(what, OneLine(TableText(problem.what)));
  }
  what = (follow == Follow::Commits ? SkipForm::tr("%1, is left out with its whole transaction.")
                                    : SkipForm::tr("%1, is left out."))
             .arg(what);
  return what + u' ' +
         SkipForm::tr(
             "It counts as blocked and is kept in skipped.sql of the job's folder; its "
             "table bears the mark \"compare\" until it has been compared.");
}

}  // namespace

QString PlaceWords(const PassProblem& what) {
  if (what.where != PassProblem::Where::Statement) return Translated(PlaceText(what));
  return SkipForm::tr("statement %1 of %2")
      .arg(Grouped(static_cast<std::int64_t>(what.number)),
           Grouped(static_cast<std::int64_t>(what.of)));
}

SkipForm::SkipForm(const std::string& job, const JobProblem& problem, Follow follow,
                   QWidget* parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("SkipForm"));
  setWindowTitle(tr("Skip in %1").arg(OneLine(job)));
  setMinimumWidth(460);
  auto* statement = new QPlainTextEdit(ToQt(problem.what.statement));
  statement->setObjectName(QStringLiteral("SkippedStatement"));
  statement->setAccessibleName(tr("Statement"));
  statement->setReadOnly(true);
  statement->setTabChangesFocus(true);
  statement->setMaximumHeight(kTextHeight);
  reason_ = new QLineEdit;
  reason_->setObjectName(QStringLiteral("EditReason"));
  reason_->setAccessibleName(tr("Reason"));
  auto* label = new QLabel(tr("&Reason, for whoever asks later"));
  label->setBuddy(reason_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  auto* skip = buttons->addButton(tr("S&kip"), QDialogButtonBox::AcceptRole);
  skip->setObjectName(QStringLiteral("OkBtn"));
  skip->setEnabled(false);
  buttons->button(QDialogButtonBox::Cancel)->setText(tr("&Cancel"));
  connect(reason_, &QLineEdit::textChanged, skip,
          [skip](const QString& text) { skip->setEnabled(!text.trimmed().isEmpty()); });
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(kSpacing);
  column->addWidget(Words(WhatIsSkipped(problem, follow)));
  column->addWidget(statement);
  column->addWidget(label);
  column->addWidget(reason_);
  column->addWidget(buttons);
  skip->setDefault(true);  // from here on it is the dialog's
  reason_->setFocus();
}

bool SkipForm::Ask(std::string& reason) {
  if (exec() != Accepted) return false;
  reason = ToBytes(reason_->text().trimmed());
  return true;
}

}  // namespace quillmere
