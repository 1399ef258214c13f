// SPDX-License-Identifier: MIT
#include "ui/sources/login_fields.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <limits>

#include "ui/sources/secret.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kFieldWidth = 260;

QLineEdit* AddField(QFormLayout& layout, const char* object, const QString& label,
                    const QString& placeholder, const QString& tip) {
  auto* field = new QLineEdit;
  field->setObjectName(QLatin1String(object));
  field->setAccessibleName(QString(label).remove(u'&'));
  field->setAccessibleDescription(tip);
  field->setPlaceholderText(placeholder);
  field->setToolTip(tip);
  field->setMaxLength(std::numeric_limits<int>::max());
  field->setMinimumWidth(kFieldWidth);
  layout.addRow(label, field);
  return field;
}

QComboBox* AddMode(QFormLayout& layout) {
  auto* mode = new QComboBox;
  mode->setObjectName(QStringLiteral("CBMode"));
  mode->setAccessibleName(LoginFields::tr("Mode"));
  mode->addItems({QStringLiteral("NORMAL"), QStringLiteral("SYSDBA")});
  mode->setCurrentText(QStringLiteral("SYSDBA"));
  mode->setToolTip(
      LoginFields::tr("SYSDBA for the source of a job: reading its redo takes a SYSDBA log-on. "
                      "NORMAL is enough for a destination."));
  layout.addRow(LoginFields::tr("&Mode"), mode);
  return mode;
}

}  // namespace

LoginFields::LoginFields(QFormLayout& layout, const char* name_object)
    : name_(AddField(layout, name_object, LoginFields::tr("Data&base Name"),
                     LoginFields::tr("TNS name, such as ORCL"),
                     LoginFields::tr("The TNS name under which the Oracle client finds the "
                                     "database. With the sandbox: the name of a database in the "
                                     "sandbox folder."))),
      user_id_(AddField(layout, "EditUserId", LoginFields::tr("&User ID"),
                        LoginFields::tr("Database user"),
                        LoginFields::tr("The database user to log on as"))),
      password_(AddField(layout, "EditPassword", LoginFields::tr("&Password"), {},
                         LoginFields::tr("The user's password. It is stored enciphered, in a file "
                                         "that only you can read."))),
      mode_(AddMode(layout)) {
  password_->setEchoMode(QLineEdit::Password);
  password_->setInputMethodHints(Qt::ImhHiddenText | Qt::ImhSensitiveData |
                                 Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
}

void LoginFields::Show(const LogOn& login) {
  name_->setText(ToQt(login.name));
  user_id_->setText(ToQt(login.user_id));
  WipePassword();
  password_->setText(ToQt(login.password));
  mode_->setCurrentText(ToQt(login.Mode()));
  for (QLineEdit* field : {name_, user_id_}) field->setCursorPosition(0);
}

LogOn LoginFields::Entered(const LogOn& original) const {
  return {EditedText(*name_, original.name), EditedText(*user_id_, original.user_id),
          EditedText(*password_, original.password),
          mode_->currentText() == QStringLiteral("SYSDBA")};
}

void LoginFields::SetEnabled(bool enabled) {
  for (QWidget* field : {Widget(LoginField::Name), Widget(LoginField::UserId),
                         Widget(LoginField::Password), Widget(LoginField::Mode)}) {
    field->setEnabled(enabled);
  }
}

void LoginFields::WipePassword() {
  WipeText(*password_);
}

QWidget* LoginFields::Widget(LoginField field) const {
  switch (field) {
    case LoginField::Name:
      return name_;
    case LoginField::UserId:
      return user_id_;
    case LoginField::Password:
      return password_;
    case LoginField::Mode:
      break;
  }
  return mode_;
}

}  // namespace quillmere
