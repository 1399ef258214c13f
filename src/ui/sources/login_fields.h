// SPDX-License-Identifier: MIT
// The four fields of a log-on, as both data-source dialogs have them.
#pragma once

#include <QCoreApplication>
#include <string_view>

#include "ui/sources/login_advice.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QWidget;

namespace quillmere {

// The widgets belong to the dialog that they are laid out in, which outlives this.
class LoginFields {
  Q_DECLARE_TR_FUNCTIONS(LoginFields)

 public:
  // name_object: the object name of the first field.
  LoginFields(QFormLayout& layout, const char* name_object);

  void Show(const LogOn& login);
  // In bytes; a field that was not touched gives back what stands in original.
  LogOn Entered(const LogOn& original) const;
  void SetEnabled(bool enabled);
  void WipePassword();

  QLineEdit& Name() { return *name_; }
  QLineEdit& Password() { return *password_; }
  QWidget* Widget(LoginField field) const;

 private:
  QLineEdit* name_;
  QLineEdit* user_id_;
  QLineEdit* password_;
  QComboBox* mode_;
};

}  // namespace quillmere
