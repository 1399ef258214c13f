// SPDX-License-Identifier: MIT
// Asks for the log-on of one data source and connects it.
#pragma once

#include <QDialog>
#include <memory>

#include "ui/H_global.h"
#include "ui/sources/login_fields.h"

namespace quillmere {

class TDbLoginForm : public QDialog {
  Q_OBJECT

 public:
  // proposed: what stands in the fields at first.
  TDbLoginForm(UiContext& context, const LogOn& proposed, QWidget* parent);
  ~TDbLoginForm() override;

  // Of the accepted dialog: the values that the session is connected with, and the session.
  const LogOn& Login() const { return login_; }
  std::unique_ptr<OracleSession> TakeSession() { return std::move(session_); }

 private:
  void LoginBtnClick();
  void CancelBtnClick() { reject(); }
  // Wipes the password.
  void TellRefusal(LogOn& login, const std::string& text);

  UiContext& context_;
  LogOn proposed_;
  LogOn login_;
  std::unique_ptr<LoginFields> fields_;
  std::unique_ptr<OracleSession> session_;
};

}  // namespace quillmere
