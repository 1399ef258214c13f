// SPDX-License-Identifier: MIT
// What an empty folder shows in place of its empty lists: the three steps to a first job, and how
// to see one without any. It only asks; the main window acts. User-interface thread.
#pragma once

#include <QScrollArea>
#include <array>

#include "ui/H_global.h"

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace quillmere {

class FirstMinute final : public QScrollArea {
  Q_OBJECT

 public:
  FirstMinute(UiContext& context, QWidget* parent);

  // What is done and what can be done, as it is now.
  void Refresh();

 Q_SIGNALS:
  void SourceAsked();
  void JobAsked();
  void TrialAsked();

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  struct Step {
    QLabel* mark = nullptr;
    QPushButton* button = nullptr;
    QLabel* state = nullptr;
  };

  void AddSteps(QVBoxLayout& column);
  void AddTrial(QVBoxLayout& column);
  void Show(const Step& step, bool done, bool possible, const QString& state);

  UiContext& context_;
  std::array<Step, 3> steps_;
  QPushButton* trial_ = nullptr;
  QLabel* about_trial_ = nullptr;
};

}  // namespace quillmere
