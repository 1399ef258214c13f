// SPDX-License-Identifier: MIT
#include "ui/main_dialogs/settings_form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <limits>

#include "ui/toolkit/icons.h"
#include "ui/toolkit/language.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "workspace/job_operations.h"

namespace quillmere {
namespace {

constexpr int kWidth = 520;
constexpr int kWordsWidth = kWidth - 6 * kMargin;

QCheckBox* AddCheck(QFormLayout& form, const char* object, const QString& caption,
                    const QString& tip) {
  auto* check = new QCheckBox(caption);
  check->setObjectName(QLatin1String(object));
  check->setToolTip(tip);
  form.addRow(check);
  return check;
}

// Quiet words under a field.
QLabel* AddWords(QFormLayout& form, const char* object, const QString& text) {
  auto* words = new QLabel(text);
  words->setObjectName(QLatin1String(object));
  words->setTextFormat(Qt::PlainText);
  words->setWordWrap(true);
  words->setForegroundRole(QPalette::PlaceholderText);
  words->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  // The form does not ask for the height that goes with a width.
  words->setMinimumHeight(words->heightForWidth(kWordsWidth));
  words->setToolTip(text);
  form.addRow(words);
  return words;
}

QFormLayout* FormIn(QWidget* box) {
  auto* form = new QFormLayout(box);
  form->setSpacing(kSpacing);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  return form;
}

}  // namespace

SettingsForm::SettingsForm(UiContext& context, QWidget* parent)
    : QDialog(parent), context_(context), before_(ValuesOf(context.workspace.ProgramSettings())) {
  setObjectName(QStringLiteral("SettingsForm"));
  setWindowTitle(tr("Settings"));
  setMinimumWidth(kWidth);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kMargin);
  layout->addWidget(MakeMessages());
  layout->addWidget(MakeJobs());
  layout->addWidget(MakeClient());
  layout->addWidget(MakeLook());
  layout->addStretch();
  layout->addWidget(MakeButtons());
  Show(before_);
  debug_->setFocus();
}

QWidget* SettingsForm::MakeMessages() {
  auto* box = new QGroupBox(tr("Messages"));
  QFormLayout* form = FormIn(box);
  debug_ = AddCheck(*form, "CheckDebug", tr("Log &diagnostic lines"),
                    tr("The message log also says what each step of a job does"));
  statement_trace_ =
      AddCheck(*form, "CheckStatementTrace", tr("Log CREATE TABLE &statements before they run"),
               tr("Migrating a table logs the statement that creates it"));
  registry_messages_ =
      AddCheck(*form, "CheckRegistryMessages", tr("Log data sources whose file is &written"),
               tr("Saving the registry logs each data source whose file is written"));
  message_limit_ = new QSpinBox;
  message_limit_->setObjectName(QStringLiteral("EditMessageLimit"));
  message_limit_->setAccessibleName(tr("Rows of the message list"));
  message_limit_->setRange(1, kMostMessageRows);
  message_limit_->setGroupSeparatorShown(true);
  message_limit_->setLocale(QLocale());
  message_limit_->setToolTip(
      tr("When the message list is full it is emptied but for its latest row. The log "
         "files keep everything."));
  form->addRow(tr("&Rows of the message list:"), message_limit_);
  return box;
}

QWidget* SettingsForm::MakeJobs() {
  auto* box = new QGroupBox(tr("Jobs"));
  QFormLayout* form = FormIn(box);
  follow_ = new QComboBox;
  follow_->setObjectName(QStringLiteral("CBNewJobsFollow"));
  follow_->setAccessibleName(tr("What new jobs follow"));
  for (const Follow follow : {Follow::Rows, Follow::Commits}) {
    follow_->addItem(follow == Follow::Commits ? tr("Commits (recommended)") : tr("Rows"));
    follow_->setItemData(follow_->count() - 1, Translated(WhatFollowingMeans(follow)),
                         Qt::ToolTipRole);
  }
  follow_->setToolTip(
      tr("What the dialog of a new job proposes; jobs that are there stay as they "
         "are"));
  form->addRow(tr("&New jobs follow:"), follow_);
  resume_ =
      AddCheck(*form, "CheckResume", tr("Jobs that were at work at the end &go on by themselves"),
               tr("At the next start they are continued, as Run does with a paused job; "
                  "otherwise they wait for somebody to do so"));
  health_command_ = new QLineEdit;
  health_command_->setObjectName(QStringLiteral("EditHealthCommand"));
  health_command_->setAccessibleName(tr("Health command"));
  health_command_->setMaxLength(std::numeric_limits<int>::max());
  health_command_->setPlaceholderText(tr("None"));
  health_command_->setToolTip(
      tr("A program with its arguments that is run once for each change of a job's health, with "
         "what changed as JSON on its standard input; 30 s at most"));
  form->addRow(tr("&Health command:"), health_command_);
  return box;
}

QWidget* SettingsForm::MakeClient() {
  auto* box = new QGroupBox(tr("Oracle client library"));
  QFormLayout* form = FormIn(box);
  client_ = new QComboBox;
  client_->setObjectName(QStringLiteral("CBClient"));
  client_->setAccessibleName(tr("Oracle client library"));
  client_->addItem(tr("The installed Oracle client"), static_cast<int>(ClientKind::Oracle));
  client_->addItem(tr("The sandbox database, to try things out"),
                   static_cast<int>(ClientKind::Sandbox));
  client_->addItem(tr("A library file"), static_cast<int>(ClientKind::File));
  connect(client_, &QComboBox::currentIndexChanged, this, &SettingsForm::ShowKind);
  form->addRow(tr("&Use:"), client_);

  auto* row = new QHBoxLayout;
  client_path_ = new QLineEdit;
  client_path_->setObjectName(QStringLiteral("EditClientPath"));
  client_path_->setAccessibleName(tr("Path of the client library"));
  client_path_->setMaxLength(std::numeric_limits<int>::max());
  client_path_->setPlaceholderText(tr("Path of the client library"));
  row->addWidget(client_path_, 1);
  browse_ = new QPushButton(Icon("folder"), tr("&Browse..."));
  browse_->setObjectName(QStringLiteral("BrowseBtn"));
  browse_->setAutoDefault(false);
  connect(browse_, &QPushButton::clicked, this, &SettingsForm::BrowseBtnClick);
  row->addWidget(browse_);
  auto* label = new QLabel(tr("&File:"));
  label->setBuddy(client_path_);
  form->addRow(label, row);

  const OciLibrary& library = context_.workspace.Oci();
  const QString in_use = library.Loaded() ? OneLine(library.Path()) : tr("none could be loaded");
  AddWords(*form, "LblClientInUse",
           tr("In use now: %1\nA change takes effect at the next start.").arg(in_use));
  return box;
}

QWidget* SettingsForm::MakeLook() {
  auto* box = new QGroupBox(tr("Appearance"));
  QFormLayout* form = FormIn(box);
  scheme_ = new QComboBox;
  scheme_->setObjectName(QStringLiteral("CBAppearance"));
  scheme_->setAccessibleName(tr("Colours"));
  scheme_->addItem(tr("As the system"), static_cast<int>(Appearance::Scheme::System));
  scheme_->addItem(tr("Light"), static_cast<int>(Appearance::Scheme::Light));
  scheme_->addItem(tr("Dark"), static_cast<int>(Appearance::Scheme::Dark));
  form->addRow(tr("&Colours:"), scheme_);
  language_ = new QComboBox;
  language_->setObjectName(QStringLiteral("CBLanguage"));
  language_->setAccessibleName(tr("Language"));
  // Each in its own words: who can not read the present one must find his.
  language_->addItem(QStringLiteral("English"), static_cast<int>(Language::English));
  language_->addItem(QStringLiteral("Deutsch"), static_cast<int>(Language::German));
  form->addRow(tr("&Language:"), language_);
  AddWords(*form, "LblLanguage",
           tr("The language changes at the next start. Messages and log files stay English."));
  if (!context_.appearance.SkinFile().isEmpty()) {
    AddWords(*form, "LblSkin", tr("A skin is on; it may have colours of its own."));
  }
  return box;
}

QWidget* SettingsForm::MakeButtons() {
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("OkBtn"));
  buttons->button(QDialogButtonBox::Ok)->setDefault(true);
  buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("CancelBtn"));
  buttons->button(QDialogButtonBox::Ok)->setText(tr("&OK"));
  buttons->button(QDialogButtonBox::Cancel)->setText(tr("C&ancel"));
  connect(buttons, &QDialogButtonBox::accepted, this, &SettingsForm::OkBtnClick);
  connect(buttons, &QDialogButtonBox::rejected, this, &SettingsForm::reject);
  return buttons;
}

void SettingsForm::Show(const SettingsValues& values) {
  debug_->setChecked(values.debug);
  statement_trace_->setChecked(values.statement_trace);
  registry_messages_->setChecked(values.registry_messages);
  message_limit_->setValue(values.message_limit);
  follow_->setCurrentIndex(values.new_jobs_follow_commits ? 1 : 0);
  resume_->setChecked(values.resume_jobs);
  health_command_->setText(ToQt(values.health_command));
  const ClientKind kind = KindOf(values.client_library);
  if (kind == ClientKind::File) client_path_->setText(ToQt(values.client_library));
  client_->setCurrentIndex(client_->findData(static_cast<int>(kind)));
  scheme_->setCurrentIndex(scheme_->findData(static_cast<int>(context_.appearance.ChosenScheme())));
  language_->setCurrentIndex(
      language_->findData(static_cast<int>(ChosenLanguage(context_.memory))));
  ShowKind();
}

ClientKind SettingsForm::Kind() const {
  return static_cast<ClientKind>(client_->currentData().toInt());
}

std::string SettingsForm::ClientPath() const {
  return EditedText(*client_path_, before_.client_library);
}

SettingsValues SettingsForm::Entered() const {
  const bool as_before = Kind() == KindOf(before_.client_library) && Kind() != ClientKind::File;
  return {debug_->isChecked(),
          statement_trace_->isChecked(),
          registry_messages_->isChecked(),
          message_limit_->value(),
          as_before ? before_.client_library : ClientSetting(Kind(), ClientPath()),
          follow_->currentIndex() == 1,
          resume_->isChecked(),
          EditedText(*health_command_, before_.health_command)};
}

void SettingsForm::ShowKind() {
  const bool file = Kind() == ClientKind::File;
  client_path_->setEnabled(file);
  browse_->setEnabled(file);
}

void SettingsForm::BrowseBtnClick() {
  const QString chosen =
      QFileDialog::getOpenFileName(this, tr("Oracle client library"), client_path_->text(),
                                   tr("Libraries (*.so *.so.* *.dll *.dylib);;All files (*)"));
  if (!chosen.isEmpty()) client_path_->setText(chosen);
}

void SettingsForm::OkBtnClick() {
  const SettingsValues entered = Entered();
  const bool as_stored = KindOf(before_.client_library) == ClientKind::File &&
                         entered.client_library == before_.client_library;
  Workspace& workspace = context_.workspace;
  if (Kind() == ClientKind::File && !as_stored) {
    const QString refused = WhyClientFileRefused(workspace.Files(), entered.client_library);
    if (!refused.isEmpty()) return ShowNotice(this, refused, client_path_);
  }
  std::vector<std::string> words;
  std::string reason;
  if (!SplitCommand(entered.health_command, words, reason)) {
    return ShowNotice(this, tr("The health command can not be understood: %1").arg(ToQt(reason)),
                      health_command_);
  }
  workspace.KeepSettings();
  if (!StoreSettings(workspace.Files(), workspace.SettingsFile(), entered,
                     workspace.ProgramSettings(), reason)) {
    return ShowFailure(this, reason);
  }
  workspace.Hook().Use(entered.health_command);
  const auto scheme = static_cast<Appearance::Scheme>(scheme_->currentData().toInt());
  if (scheme != context_.appearance.ChosenScheme()) context_.appearance.SetScheme(scheme);
  KeepLanguage(context_.memory, static_cast<Language>(language_->currentData().toInt()));
  accept();
}

}  // namespace quillmere
