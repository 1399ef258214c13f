// SPDX-License-Identifier: MIT
#include "ui/sources/T_dblogin.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/sources/secret.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "ui/waiting/waiting.h"

namespace quillmere {
namespace {

constexpr int kWhyWidth = 420;

}  // namespace

TDbLoginForm::TDbLoginForm(UiContext& context, const LogOn& proposed, const std::string& why,
                           QWidget* parent)
    : QDialog(parent), context_(context), proposed_(proposed) {
  setObjectName(QStringLiteral("TDbLoginForm"));
  setWindowTitle(tr("Log-on"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kSpacing);
  auto* box = new QGroupBox(tr("Logon  to:"));
  auto* form = new QFormLayout(box);
  form->setSpacing(kSpacing);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  fields_ = std::make_unique<LoginFields>(*form, "EditDatabaseName");
  fields_->Show(proposed_);
  layout->addWidget(MakeWhy(why));
  layout->addWidget(box);
  layout->addStretch();

  auto* buttons = new QDialogButtonBox;
  auto* login = buttons->addButton(tr("&Login"), QDialogButtonBox::AcceptRole);
  login->setObjectName(QStringLiteral("LoginBtn"));
  login->setToolTip(tr("Connect to the database"));
  login->setDefault(true);
  auto* cancel = buttons->addButton(tr("&Abort"), QDialogButtonBox::RejectRole);
  cancel->setObjectName(QStringLiteral("CancelBtn"));
  cancel->setToolTip(tr("Close without connecting (Esc)"));
  connect(login, &QPushButton::clicked, this, &TDbLoginForm::LoginBtnClick);
  connect(cancel, &QPushButton::clicked, this, &TDbLoginForm::CancelBtnClick);
  layout->addWidget(buttons);

  if (proposed_.name.empty()) return;
  if (proposed_.user_id.empty()) {
    fields_->Widget(LoginField::UserId)->setFocus();
  } else {
    fields_->Password().setFocus();
  }
}

TDbLoginForm::~TDbLoginForm() {
  fields_->WipePassword();
  WipeText(proposed_.password);
  WipeText(login_.password);
}

QWidget* TDbLoginForm::MakeWhy(const std::string& why) {
  auto* label = new QLabel(WhyAsked(proposed_.name, why));
  label->setObjectName(QStringLiteral("LblWhy"));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setMinimumWidth(kWhyWidth);
  return label;
}

void TDbLoginForm::LoginBtnClick() {
  LogOn login = fields_->Entered(proposed_);
  const std::string refused = WhyLoginRefused(login);
  if (!refused.empty()) return TellRefusal(login, refused);
  Waiting waiting(context_, this, tr("Log-on"));
  const Outcome connected = TryLogOn(context_.workspace, login, waiting);
  if (connected.cancelled) return WipeText(login.password);
  if (!connected) return TellRefusal(login, connected.text);
  login_ = std::move(login);
  accept();
}

void TDbLoginForm::TellRefusal(LogOn& login, const std::string& text) {
  WipeText(login.password);
  ShowNotice(this, text, fields_->Widget(FieldToCorrect(login, text)));
}

}  // namespace quillmere
