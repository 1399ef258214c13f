// SPDX-License-Identifier: MIT
#include "ui/main/first_minute.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/toolkit/appearance.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"
#include "workspace/sandbox_trial.h"

namespace quillmere {
namespace {

constexpr int kMarkSize = 20;
constexpr int kColumnWidth = 620;

QLabel* MakeWords(const QString& text, bool quiet) {
  auto* words = new QLabel(text);
  words->setTextFormat(Qt::PlainText);
  words->setWordWrap(true);
  if (quiet) words->setForegroundRole(QPalette::PlaceholderText);
  return words;
}

QPushButton* MakeButton(const char* name, const QString& text) {
  auto* button = new QPushButton(text);
  button->setObjectName(QLatin1StringView(name));
  button->setAutoDefault(true);  // Return presses it, as Space does
  return button;
}

// Of the registered data sources, in their order; empty when there are not as many.
QString SourceName(const DataSourceRegistry& registry, std::size_t number) {
  for (std::size_t i = 0; i < registry.Count(); ++i) {
    if (registry.At(i).state == ConnectionState::Empty) continue;
    if (number-- == 0) return OneLine(registry.At(i).name);
  }
  return {};
}

}  // namespace

FirstMinute::FirstMinute(UiContext& context, QWidget* parent)
    : QScrollArea(parent), context_(context) {
  setObjectName(QStringLiteral("FirstMinute"));
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  auto* page = new QWidget(this);
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(2 * kMargin, kMargin, 2 * kMargin, kMargin);
  column->setSpacing(kSpacing);
  AddSteps(*column);
  AddTrial(*column);
  column->addStretch(1);
  page->setMaximumWidth(kColumnWidth);
  setWidget(page);
  Refresh();
}

void FirstMinute::AddSteps(QVBoxLayout& column) {
  QLabel* const head = MakeWords(tr("Nothing is copied yet. Three steps to the first job:"), false);
  QFont bold = head->font();
  bold.setBold(true);
  head->setFont(bold);
  column.addWidget(head);
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kSpacing);
  grid->setVerticalSpacing(kSpacing);
  grid->setColumnStretch(2, 1);
  steps_[0].button = MakeButton("FirstSource", tr("1.  Register the database to copy &from"));
  steps_[1].button = MakeButton("FirstDestination", tr("2.  Register the database to cop&y to"));
  steps_[2].button = MakeButton("FirstJob", tr("3.  Make a job bet&ween them"));
  for (std::size_t i = 0; i < steps_.size(); ++i) {
    Step& step = steps_[i];
    step.mark = new QLabel;
    step.mark->setFixedSize(kMarkSize, kMarkSize);
    step.state = MakeWords({}, true);
    const int row = static_cast<int>(i);
    grid->addWidget(step.mark, row, 0);
    grid->addWidget(step.button, row, 1);
    grid->addWidget(step.state, row, 2);
  }
  for (const std::size_t i : {0U, 1U}) {
    connect(steps_[i].button, &QPushButton::clicked, this, &FirstMinute::SourceAsked);
  }
  connect(steps_[2].button, &QPushButton::clicked, this, &FirstMinute::JobAsked);
  column.addLayout(grid);
}

void FirstMinute::AddTrial(QVBoxLayout& column) {
  column.addSpacing(kMargin);
  trial_ = MakeButton("FirstTrial", tr("&Try it with two sandbox databases"));
  connect(trial_, &QPushButton::clicked, this, &FirstMinute::TrialAsked);
  about_trial_ = MakeWords({}, true);
  about_trial_->setObjectName(QStringLiteral("LblTrial"));
  column.addWidget(trial_, 0, Qt::AlignLeft);
  column.addWidget(about_trial_);
}

void FirstMinute::Show(const Step& step, bool done, bool possible, const QString& state) {
  step.mark->setPixmap(done ? Icon("up-to-date").pixmap(kMarkSize, kMarkSize) : QPixmap());
  step.state->setText(done ? tr("Done: %1").arg(state) : state);
  step.button->setAccessibleDescription(step.state->text());
  step.button->setEnabled(possible);
}

void FirstMinute::Refresh() {
  const Workspace& workspace = context_.workspace;
  const std::size_t sources = workspace.Registry().CountInUse();
  for (const std::size_t i : {0U, 1U}) {
    Show(steps_[i], sources > i, sources == i, SourceName(workspace.Registry(), i));
  }
  const bool both = sources >= 2;
  Show(steps_[2], false, both, both ? QString() : tr("It needs both databases"));
  const std::string why_not = WhyNoTrial(workspace);
  trial_->setEnabled(why_not.empty());
  about_trial_->setText(
      why_not.empty()
          ? tr("No Oracle server is needed: it makes two small databases in %1 and a job between "
               "them, and changes the first one every second while this window is open.")
                .arg(ToQt(PathText(workspace.SandboxFolder())))
          : Translated(why_not));
}

void FirstMinute::showEvent(QShowEvent* event) {
  Refresh();
  QScrollArea::showEvent(event);
}

// Behind a dialog that may have registered something.
void FirstMinute::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ActivationChange && isVisible()) Refresh();
  QScrollArea::changeEvent(event);
}

}  // namespace quillmere
