// SPDX-License-Identifier: MIT
#include "ui/job_dialogs/interval_field.h"

#include <QLineEdit>

#include "ui/job_dialogs/job_advice.h"
#include "ui/toolkit/text.h"

namespace quillmere {

IntervalField::IntervalField(QWidget* parent) : QAbstractSpinBox(parent) {
  lineEdit()->setText(QStringLiteral("0"));
}

void IntervalField::stepBy(int steps) {
  const int minutes = ParseInterval(ToBytes(lineEdit()->text()));
  lineEdit()->setText(QString::number(SteppedInterval(minutes, steps)));
  lineEdit()->selectAll();
}

QValidator::State IntervalField::validate(QString&, int&) const {
  return QValidator::Acceptable;
}

QAbstractSpinBox::StepEnabled IntervalField::stepEnabled() const {
  const int minutes = ParseInterval(ToBytes(lineEdit()->text()));
  StepEnabled enabled = StepNone;
  if (minutes < kMostInterval) enabled |= StepUpEnabled;
  if (minutes > 0) enabled |= StepDownEnabled;
  return enabled;
}

}  // namespace quillmere
