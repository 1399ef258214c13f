// SPDX-License-Identifier: MIT
// Minutes in an edit that up and down buttons, arrow keys and the wheel change. It takes any text:
// what is no number counts as 0.
#pragma once

#include <QAbstractSpinBox>

namespace quillmere {

// The minutes after so many steps of the buttons, which stop at 0 and at the longest interval.
int SteppedInterval(int minutes, int steps);

class IntervalField : public QAbstractSpinBox {
  Q_OBJECT

 public:
  explicit IntervalField(QWidget* parent = nullptr);

  QLineEdit& Edit() const { return *lineEdit(); }

  void stepBy(int steps) override;
  QValidator::State validate(QString& input, int& position) const override;

 protected:
  StepEnabled stepEnabled() const override;
};

}  // namespace quillmere
