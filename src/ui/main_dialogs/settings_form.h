// SPDX-License-Identifier: MIT
// The program's settings.
#pragma once

#include <QDialog>
#include <string>

#include "ui/H_global.h"
#include "ui/main_dialogs/settings_values.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

namespace quillmere {

// OK stores them; until then nothing changes.
class SettingsForm : public QDialog {
  Q_OBJECT

 public:
  SettingsForm(UiContext& context, QWidget* parent);

 private:
  QWidget* MakeMessages();
  QWidget* MakeJobs();
  QWidget* MakeClient();
  QWidget* MakeLook();
  QWidget* MakeButtons();
  void Show(const SettingsValues& values);
  SettingsValues Entered() const;
  ClientKind Kind() const;
  std::string ClientPath() const;
  void ShowKind();

  void OkBtnClick();
  void BrowseBtnClick();

  UiContext& context_;
  const SettingsValues before_;
  QCheckBox* debug_ = nullptr;
  QCheckBox* statement_trace_ = nullptr;
  QCheckBox* registry_messages_ = nullptr;
  QSpinBox* message_limit_ = nullptr;
  QComboBox* client_ = nullptr;
  QLineEdit* client_path_ = nullptr;
  QPushButton* browse_ = nullptr;
  QComboBox* follow_ = nullptr;
  QCheckBox* resume_ = nullptr;
  QLineEdit* health_command_ = nullptr;
  QComboBox* scheme_ = nullptr;
  QComboBox* language_ = nullptr;
};

}  // namespace quillmere
