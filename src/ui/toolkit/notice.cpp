// SPDX-License-Identifier: MIT
#include "ui/toolkit/notice.h"

#include <QCoreApplication>
#include <QMessageBox>

#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

QMessageBox::StandardButton Show(QWidget* parent, const QString& text, QMessageBox::Icon icon,
                                 QMessageBox::StandardButtons buttons,
                                 QMessageBox::StandardButton preset) {
  QMessageBox box(icon, QCoreApplication::applicationName(), text, buttons, parent);
  // Names come from databases and operators: they are text, not mark-up.
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  box.setDefaultButton(preset);
  return static_cast<QMessageBox::StandardButton>(box.exec());
}

void ShowWithOk(QWidget* parent, const QString& text, QMessageBox::Icon icon, QWidget* focus) {
  Show(parent, text, icon, QMessageBox::Ok, QMessageBox::Ok);
  if (focus != nullptr) focus->setFocus(Qt::OtherFocusReason);
}

}  // namespace

void ShowNotice(QWidget* parent, const QString& text, QWidget* focus) {
  ShowWithOk(parent, text, QMessageBox::Warning, focus);
}

void ShowNotice(QWidget* parent, std::string_view text, QWidget* focus) {
  ShowNotice(parent, Translated(text), focus);
}

void ShowInformation(QWidget* parent, std::string_view text, QWidget* focus) {
  ShowWithOk(parent, Translated(text), QMessageBox::Information, focus);
}

void ShowFailure(QWidget* parent, const QString& text, QWidget* focus) {
  ShowWithOk(parent, text, QMessageBox::Critical, focus);
}

void ShowFailure(QWidget* parent, std::string_view text, QWidget* focus) {
  ShowFailure(parent, Translated(text), focus);
}

bool Confirm(QWidget* parent, const QString& question) {
  return Show(parent, question, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
              QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace quillmere
