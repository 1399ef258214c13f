// SPDX-License-Identifier: MIT
// The menus of the main window and what its own entries do.
#include <QAction>
#include <QActionGroup>
#include <QDesktopServices>
#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QUrl>

#include "foundation/files.h"
#include "messages/message_help.h"
#include "ui/databases/T_dbmgrform.h"
#include "ui/jobs/T_jobmgrform.h"
#include "ui/main/T_mainform.h"
#include "ui/main/message_panel.h"
#include "ui/main/shared_files.h"
#include "ui/main/tray.h"
#include "ui/main_dialogs/about.h"
#include "ui/main_dialogs/settings_form.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "workspace/program_folder.h"

namespace quillmere {
namespace {

QString FileText(const std::filesystem::path& file) {
  return ToQt(PathText(file));
}

}  // namespace

void TMainForm::MakeMenus() {
  QMenuBar* const bar = menuBar();
  bar->setObjectName(QStringLiteral("MainMenu1"));
  bar->addMenu(MakeJobMenu());
  bar->addMenu(MakeDatabaseMenu());
  QMenu* const options = MakeOptionsMenu();
  QMenu* const skin = MakeSkinMenu();
  bar->addMenu(options);
  bar->addMenu(skin);

  QAction* const help = MakeAction("Help", tr(" &Help"), "help");
  help->setShortcut(QKeySequence::HelpContents);
  connect(help, &QAction::triggered, this, &TMainForm::OpenHelp);
  QMenu* const help_menu = bar->addMenu(tr("&Help"));
  help_menu->setObjectName(QStringLiteral("HelpMenu"));
  QAction* const about = MakeAction("About", tr(" &About"), "about");
  help_menu->addActions({about, help});

  auto* popup = new QMenu(this);
  popup->setObjectName(QStringLiteral("PMOptions"));
  popup->addMenu(options);
  popup->addMenu(skin);
  QMenu* const popup_help = popup->addMenu(tr("&Help"));
  QAction* const about_program = MakeAction("AboutProgram", tr("&About"), "about");
  popup_help->addActions({about_program, help});
  for (QAction* const action : {about, about_program}) {
    connect(action, &QAction::triggered, this, [this] { AboutBox(context_, this).exec(); });
  }
}

QMenu* TMainForm::MakeJobMenu() {
  auto* menu = new QMenu(tr("&Job "), this);
  menu->setObjectName(QStringLiteral("JobMenu"));
  const JobActionList& jobs = job_manager_->Actions();
  menu->addActions({jobs.FileNew, jobs.FileOpen, jobs.FileDelete});
  menu->addSeparator();
  menu->addActions({jobs.RunRun, jobs.RunPause, jobs.RunStop});
  menu->addSeparator();
  menu->addAction(MakeHide(*menu));
  QAction* const leave = MakeAction("Exit", tr("&Exit"), "exit");
  leave->setShortcut(QKeySequence::Quit);
  connect(leave, &QAction::triggered, this, &QWidget::close);
  menu->addAction(leave);
  return menu;
}

// Whether there is a way back is looked up when the menu opens: trays come and go.
QAction* TMainForm::MakeHide(QMenu& menu) {
  QAction* const hide = MakeAction("Hide", tr("&Hide"), "");
  connect(hide, &QAction::triggered, tray_, &Tray::Hide);
  connect(&menu, &QMenu::aboutToShow, hide, [this, hide] {
    const bool may = tray_->MayHide();
    hide->setEnabled(may);
    // Where a menu has shortcuts.
    hide->setText(may ? tr("&Hide") : tr("&Hide") + u'\t' + tr("this desktop has no tray"));
  });
  return hide;
}

QMenu* TMainForm::MakeDatabaseMenu() {
  auto* menu = new QMenu(tr("&Database"), this);
  menu->setObjectName(QStringLiteral("DatabaseMenu"));
  const DatabaseActions& databases = database_manager_->Actions();
  menu->addActions({databases.ActOpenDbMgr, databases.ConnectDS, databases.DisConnectDS});
  return menu;
}

QMenu* TMainForm::MakeOptionsMenu() {
  auto* menu = new QMenu(tr("&Options"), this);
  menu->setObjectName(QStringLiteral("OptionsMenu"));
  show_log_ = MakeAction("ShowLog", tr(" &ShowLog"), "");
  show_log_->setCheckable(true);
  show_log_->setToolTip(tr("Shows or hides the message list"));
  connect(show_log_, &QAction::toggled, this, [this](bool shown) { messages_->setVisible(shown); });
  menu->addAction(show_log_);
  menu->addSeparator();
  AddSwitches(*menu);
  menu->addSeparator();
  menu->addMenu(MakeAppearanceMenu());
  QAction* const settings = MakeAction("ProgramSettings", tr(" S&ettings ..."), "settings");
  settings->setShortcut(QKeySequence::Preferences);
  connect(settings, &QAction::triggered, this, [this] { SettingsForm(context_, this).exec(); });
  menu->addAction(settings);
  return menu;
}

// What is checked is looked up when the menu opens: the settings have a form, too.
void TMainForm::AddSwitches(QMenu& menu) {
  Settings& settings = context_.workspace.ProgramSettings();
  const auto add = [&](const char* name, const QString& caption, std::atomic<bool>& setting) {
    QAction* const action = MakeAction(name, caption, "");
    action->setCheckable(true);
    action->setChecked(setting);
    connect(action, &QAction::triggered, this, [this, &setting](bool on) {
      setting = on;
      SaveProgramSettings();
    });
    connect(&menu, &QMenu::aboutToShow, action,
            [action, &setting] { action->setChecked(setting); });
    menu.addAction(action);
  };
  add("DebugMessages", tr(" &Debug messages"), settings.debug);
  add("StatementTrace", tr(" S&tatement trace"), settings.statement_trace);
  add("RegistryMessages", tr(" &Registry messages"), settings.registry_messages);
}

QMenu* TMainForm::MakeAppearanceMenu() {
  using Scheme = Appearance::Scheme;
  auto* menu = new QMenu(tr(" &Appearance"), this);
  menu->setObjectName(QStringLiteral("AppearanceMenu"));
  auto* group = new QActionGroup(this);
  const auto add = [&](const char* name, const QString& caption, Scheme scheme) {
    QAction* const action = MakeAction(name, caption, "");
    action->setCheckable(true);
    group->addAction(action);
    menu->addAction(action);
    connect(menu, &QMenu::aboutToShow, action, [this, action, scheme] {
      action->setChecked(context_.appearance.ChosenScheme() == scheme);
    });
    connect(action, &QAction::triggered, this,
            [this, scheme] { context_.appearance.SetScheme(scheme); });
  };
  add("AppearanceSystem", tr("As the &system"), Scheme::System);
  add("AppearanceLight", tr("&Light"), Scheme::Light);
  add("AppearanceDark", tr("&Dark"), Scheme::Dark);
  return menu;
}

QMenu* TMainForm::MakeSkinMenu() {
  auto* menu = new QMenu(tr("&Skin"), this);
  menu->setObjectName(QStringLiteral("SkinMenu"));
  const auto add = [&](const char* name, const QString& caption, auto&& run) {
    QAction* const action = MakeAction(name, caption, "");
    connect(action, &QAction::triggered, this, run);
    menu->addAction(action);
  };
  add("Basic", tr("&Basic"), [this] { LoadBasicSkin(); });
  add("Advanced", tr("&Advanced"), [this] { LoadOtherSkin(); });
  add("Default", tr("&Default"), [this] { context_.appearance.RemoveSkin(); });
  return menu;
}

QAction* TMainForm::MakeAction(const char* name, const QString& caption, const char* icon) {
  auto* action = new QAction(Icon(icon), caption, this);
  action->setObjectName(QLatin1StringView(name));
  return action;
}

void TMainForm::SaveProgramSettings() {
  Workspace& workspace = context_.workspace;
  std::string reason;
  workspace.KeepSettings();
  if (SaveSettings(workspace.Files(), workspace.SettingsFile(), workspace.ProgramSettings(),
                   reason))
    return;
  ShowFailure(this, tr("%1. The choice holds until the program ends").arg(Translated(reason)));
}

void TMainForm::LoadBasicSkin() {
  std::string tried;
  const std::filesystem::path file =
      FindSharedFile(context_.workspace.Files(), std::filesystem::path("skin") / "redfox.qss",
                     context_.workspace.Folder(), ProgramFolder(), tried);
  if (file.empty())
    return ShowNotice(this, tr("The skin is not there. Looked for: %1").arg(ToQt(tried)));
  LoadSkin(file);
}

void TMainForm::LoadOtherSkin() {
  const QString file = QFileDialog::getOpenFileName(
      this, tr("Load a skin"), FileText(context_.workspace.Folder()), tr("Skins (*.qss)"));
  if (!file.isEmpty()) LoadSkin(QFileInfo(file).filesystemAbsoluteFilePath());
}

void TMainForm::LoadSkin(const std::filesystem::path& file) {
  std::string reason;
  if (!context_.appearance.LoadSkin(file, reason)) ShowFailure(this, reason);
}

void TMainForm::OpenHelp() {
  const std::filesystem::path file = FindPage("index.html");
  if (!file.empty()) Open(QUrl::fromLocalFile(FileText(file)));
}

// The page's beginning, when no row of it is about the message.
void TMainForm::ExplainMessage(const QString& message) {
  const std::filesystem::path file = FindPage("messages.html");
  if (file.empty()) return;
  std::string page;
  static_cast<void>(ReadFile(context_.workspace.Files(), file, page));
  QUrl url = QUrl::fromLocalFile(FileText(file));
  url.setFragment(ToQt(AnchorOfMessage(page, ToBytes(message))));
  Open(url);
}

// Of the manual; empty, and said, when it is not there.
std::filesystem::path TMainForm::FindPage(const char* name) {
  std::string tried;
  std::filesystem::path file =
      FindSharedFile(context_.workspace.Files(), std::filesystem::path("HTML") / name,
                     context_.workspace.Folder(), ProgramFolder(), tried);
  if (file.empty())
    ShowNotice(this, tr("The manual is not there. Looked for: %1").arg(ToQt(tried)));
  return file;
}

void TMainForm::Open(const QUrl& url) {
  if (QDesktopServices::openUrl(url)) return;
  ShowNotice(this, tr("The system has no program to open %1").arg(url.toLocalFile()));
}

}  // namespace quillmere
