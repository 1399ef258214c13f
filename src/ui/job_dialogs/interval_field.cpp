// SPDX-License-Identifier: MIT
#include "ui/job_dialogs/interval_field.h"

#include <QLineEdit>
#include <algorithm>

#include "ui/toolkit/text.h"
#include "workspace/job_operations.h"

namespace quillmere {

int SteppedInterval(int minutes, int steps) {
  return std::clamp(std::clamp(minutes, 0, kLongestInterval) + steps, 0, kLongestInterval);
}

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
  if (minutes < kLongestInterval) enabled |= StepUpEnabled;
  if (minutes > 0) enabled |= StepDownEnabled;
  return enabled;
}

}  // namespace quillmere
