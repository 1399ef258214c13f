// SPDX-License-Identifier: MIT
// Asks for the log-on of one data source and tries it. Stores nothing.
#pragma once

#include <QDialog>
#include <memory>

#include "ui/H_global.h"
#include "ui/sources/login_fields.h"

namespace quillmere {

class TDbLoginForm : public QDialog {
  Q_OBJECT

 public:
  // proposed: what stands in the fields at first. why: what the stored log-on was refused with.
  TDbLoginForm(UiContext& context, const LogOn& proposed, const std::string& why, QWidget* parent);
  ~TDbLoginForm() override;

  // Of the accepted dialog: the values that connected.
  const LogOn& Login() const { return login_; }

 private:
  QWidget* MakeWhy(const std::string& why);
  void LoginBtnClick();
  void CancelBtnClick() { reject(); }
  // Wipes the password.
  void TellRefusal(LogOn& login, const std::string& text);

  UiContext& context_;
  LogOn proposed_;
  LogOn login_;
  std::unique_ptr<LoginFields> fields_;
};

}  // namespace quillmere
