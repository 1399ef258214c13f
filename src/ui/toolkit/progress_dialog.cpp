// SPDX-License-Identifier: MIT
#include "ui/toolkit/progress_dialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/toolkit/appearance.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr qint64 kServeEveryMs = 40;
constexpr int kSteps = 1000;  // of the bar: totals may be above what it counts with

// Long enough that no line makes the dialog jump.
constexpr int kWidthInCharacters = 72;

}  // namespace

class ProgressDialog::Window final : public QDialog {
 public:
  Window(QWidget* parent, const QString& title) : QDialog(parent) {
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
    result_.setForegroundRole(QPalette::PlaceholderText);
    bar_.setTextVisible(false);
    bar_.setRange(0, 0);
    bar_.setAccessibleName(title);
    layout->insertWidget(1, &bar_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    cancel_ = buttons->button(QDialogButtonBox::Cancel);
    cancel_->setObjectName(QStringLiteral("ProgressCancel"));
    connect(buttons, &QDialogButtonBox::rejected, this, &Window::Cancel);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
  }

  void ShowStep(std::string_view what, std::size_t done, std::size_t total) {
    SetText(what_, what);
    bar_.setRange(0, total == 0 ? 0 : kSteps);
    if (total > 0) {
      const double part = static_cast<double>(std::min(done, total)) / static_cast<double>(total);
      bar_.setValue(static_cast<int>(part * kSteps));
    }
  }

  void ShowResult(std::string_view line) { SetText(result_, line); }

  void HideCancel() { cancel_->hide(); }
  bool Cancelled() const { return cancelled_; }

  void reject() override { Cancel(); }

 protected:
  // The work decides when it is over.
  void closeEvent(QCloseEvent* event) override {
    event->ignore();
    Cancel();
  }

 private:
  void Cancel() {
    if (cancel_->isHidden()) return;
    cancelled_ = true;
    cancel_->setEnabled(false);
    cancel_->setText(QStringLiteral("Cancelling ..."));
  }

  static void SetText(QLabel& label, std::string_view text) {
    const QString line = OneLine(text);
    label.setText(label.fontMetrics().elidedText(line, Qt::ElideMiddle, label.width()));
  }

  QLabel what_;
  QLabel result_;
  QProgressBar bar_;
  QPushButton* cancel_ = nullptr;
  bool cancelled_ = false;
};

ProgressDialog::ProgressDialog(QWidget* parent, const QString& title, std::string_view first_step)
    : window_(std::make_unique<Window>(parent, title)) {
  window_->ShowStep(first_step, 0, 0);
  window_->show();
  // The first events map the window, the next ones paint it.
  for (int turn = 0; turn < 3; ++turn) Serve();
  window_->repaint();
  Serve();
}

ProgressDialog::~ProgressDialog() = default;

void ProgressDialog::Serve() {
  QApplication::processEvents();
  served_.start();
}

bool ProgressDialog::OnProgress(std::string_view what, std::size_t done, std::size_t total) {
  if (!served_.hasExpired(kServeEveryMs)) return !window_->Cancelled();
  window_->ShowStep(what, done, total);
  Serve();
  return !window_->Cancelled();
}

void ProgressDialog::OnResult(std::string_view line, bool) {
  window_->ShowResult(line);
}

void ProgressDialog::OnDetail(std::string_view line) {
  window_->ShowResult(line);
}

void ProgressDialog::HideCancel() {
  window_->HideCancel();
}

}  // namespace quillmere
