// SPDX-License-Identifier: MIT
// Every dialog by keyboard and by a reading aid, in every language: each control has a name, a
// letter of its own and room for its text.
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>
#include <map>

#include "support/temp_folder.h"
#include "ui/databases/T_dropform.h"
#include "ui/databases/T_migrateform.h"
#include "ui/databases/T_renameform.h"
#include "ui/job_dialogs/T_jobedit.h"
#include "ui/job_dialogs/T_newownerform.h"
#include "ui/job_dialogs/skip_form.h"
#include "ui/main/T_mainform.h"
#include "ui/main_dialogs/about.h"
#include "ui/main_dialogs/settings_form.h"
#include "ui/sources/Dbconnection.h"
#include "ui/sources/T_dblogin.h"
#include "ui/toolkit/language.h"
#include "workspace/scripted_workspace.h"

namespace quillmere {
namespace {

// What is worked with: neither a part of another control nor for reading only.
bool IsControl(const QWidget& widget) {
  const QWidget* const parent = widget.parentWidget();
  if (qobject_cast<const QAbstractSpinBox*>(parent) || qobject_cast<const QComboBox*>(parent) ||
      qobject_cast<const QLineEdit*>(parent) || widget.objectName().startsWith("qt_")) {
    return false;
  }
  if (const auto* line = qobject_cast<const QLineEdit*>(&widget)) return !line->isReadOnly();
  if (const auto* text = qobject_cast<const QPlainTextEdit*>(&widget)) return !text->isReadOnly();
  return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QComboBox*>(&widget) ||
         qobject_cast<const QAbstractSpinBox*>(&widget) ||
         (qobject_cast<const QAbstractItemView*>(&widget) && !widget.inherits("QHeaderView"));
}

// Whether a label or button has room for what it says.
bool HasRoom(const QWidget& widget) {
  const auto* const label = qobject_cast<const QLabel*>(&widget);
  if (label == nullptr && !qobject_cast<const QAbstractButton*>(&widget)) return true;
  if (widget.property("text").toString().isEmpty()) return true;
  if (label != nullptr && label->wordWrap()) {
    return label->height() >= label->heightForWidth(label->width());
  }
  // One whose text may be long on purpose shows what there is room for.
  if (widget.sizePolicy().horizontalPolicy() == QSizePolicy::Ignored) return true;
  const QSize room = widget.size(), text = widget.minimumSizeHint();
  return room.width() >= text.width() && room.height() >= text.height();
}

// The letters of a menu bar are also those of the window.
void CheckMenus(QWidget& window) {
  for (const QMenu* const menu : window.findChildren<QMenu*>()) {
    std::map<QString, QString> letters;
    for (const QAction* const action : menu->actions()) {
      const QString letter = QKeySequence::mnemonic(action->text()).toString();
      if (letter.isEmpty()) continue;
      EXPECT_TRUE(letters.try_emplace(letter, action->text()).second)
          << menu->objectName().toStdString() << ": " << action->text().toStdString() << " and "
          << letters[letter].toStdString();
    }
  }
}

// main: menus and keys lead to what has no letter there. To lists, the tabulator does.
void Check(QWidget& dialog, bool main = false) {
  std::map<QString, QString> letters;
  std::map<const QWidget*, bool> reached;
  const auto take = [&](QWidget* widget, const QString& text) {
    const QString letter = QKeySequence::mnemonic(text).toString();
    if (letter.isEmpty()) return;
    reached[widget] = true;
    const auto [first, is_new] = letters.try_emplace(letter, text);
    EXPECT_TRUE(is_new) << dialog.objectName().toStdString() << ": " << letter.toStdString()
                        << " of " << text.toStdString() << " and " << first->second.toStdString();
  };
  if (const auto* bar = dialog.findChild<QMenuBar*>()) {
    for (const QAction* const menu : bar->actions()) take(menu->menu(), menu->text());
  }
  for (QWidget* const widget : dialog.findChildren<QWidget*>()) {
    if (!widget->isVisibleTo(&dialog)) continue;
    EXPECT_TRUE(HasRoom(*widget)) << dialog.objectName().toStdString() << ": "
                                  << widget->objectName().toStdString() << " of " << widget->width()
                                  << "x" << widget->height() << " pixels for "
                                  << widget->property("text").toString().toStdString();
    if (const auto* label = qobject_cast<QLabel*>(widget)) take(label->buddy(), label->text());
    if (const auto* button = qobject_cast<QAbstractButton*>(widget)) take(widget, button->text());
    if (const auto* box = qobject_cast<QGroupBox*>(widget)) take(widget, box->title());
  }
  for (const auto* bar : dialog.findChildren<QTabBar*>()) {
    for (int i = 0; bar->isVisibleTo(&dialog) && i < bar->count(); ++i) {
      take(nullptr, bar->tabText(i));
    }
  }
  for (QWidget* const widget : dialog.findChildren<QWidget*>()) {
    if (!IsControl(*widget) || !widget->isVisibleTo(&dialog)) continue;
    const std::string what = dialog.objectName().toStdString() + ": " +
                             widget->metaObject()->className() + " " +
                             widget->objectName().toStdString();
    const QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(widget);
    EXPECT_TRUE(seen != nullptr && !seen->text(QAccessible::Name).isEmpty())
        << what << " has no name";
    EXPECT_TRUE(main || reached[widget] || widget->inherits("QAbstractItemView"))
        << what << " has no letter";
  }
}

class Keyboard : public ScriptedWorkspace, public ::testing::WithParamInterface<Language> {};

TEST_P(Keyboard, LeadsToEveryControlOfEveryDialog) {
  const auto scaled = qScopeGuard([] { qunsetenv("QT_SCALE_FACTOR"); });
  qputenv("QT_SCALE_FACTOR", "2");
  int argc = 3;
  char name[] = "test", option[] = "-platform", platform[] = "offscreen";
  char* argv[] = {name, option, platform, nullptr};
  const QApplication application(argc, argv);
  UseLanguage(GetParam());
  const TempFolder folder;
  WindowMemory memory(folder.Path());
  Appearance appearance(files, memory);
  DatabaseThread databases;
  UiContext context{*workspace, memory, appearance, databases};
  DataSource source;
  source.name = "A";
  source.state = ConnectionState::Connected;
  workspace->Registry().Add(source);
  const SchemaSelection table{0, ObjectKind::Table, {{}}}, key{0, ObjectKind::PrimaryKey, {{}}};
  JobProblem problem;
  problem.what.table = "T";
  const auto show = [](QDialog& dialog) {
    dialog.show();
    QCoreApplication::processEvents();
    Check(dialog);
  };
  {
    TDbConnForm dialog(context, nullptr);
    dialog.StartNew();
    show(dialog);
  }
  for (const auto& make : std::initializer_list<std::function<QDialog*()>>{
           [&] { return new TDropForm(context, table, nullptr); },
           [&] { return new TMigrateForm(context, table, nullptr); },
           [&] { return new TRenameForm(context, key, nullptr); },
           [&] { return new TJobEditForm(context, nullptr); },
           [&] { return new TFilterForm(context, nullptr); },
           [&] { return new SkipForm("J", problem, Follow::Commits, nullptr); },
           [&] { return new AboutBox(context, nullptr); },
           [&] { return new SettingsForm(context, nullptr); },
           [&] {
             return new TDbLoginForm(context, {"A", "u", "p"}, "why", nullptr);
           }}) {
    const std::unique_ptr<QDialog> dialog(make());
    show(*dialog);
  }
  source.name = "B";
  workspace->Registry().Add(source);
  NewJob();
  TMainForm main(context, std::chrono::hours(1));
  main.resize(800, 560);
  main.show();
  QCoreApplication::processEvents();
  Check(main, true);
  EXPECT_FALSE(main.findChild<QToolButton*>("qt_toolbar_ext_button")->isVisible())
      << "the tool bar is wider than the smallest window";
  CheckMenus(main);
  auto* tree = main.findChild<QTreeView*>("JobMgrTV");
  tree->setCurrentIndex(tree->model()->index(0, 0, tree->model()->index(0, 0)));
  auto* pages = main.findChild<QTabWidget*>("JobPages");
  ASSERT_GE(pages->count(), 3);
  for (int page = 0; page < pages->count(); ++page) {
    pages->setCurrentIndex(page);
    QCoreApplication::processEvents();
    ASSERT_TRUE(pages->currentWidget()->isVisibleTo(&main));
    EXPECT_TRUE(main.size() == QSize(800, 560))
        << "page " << page << " needs " << main.width() << "x" << main.height();
    Check(main, true);
  }
}

INSTANTIATE_TEST_SUITE_P(In, Keyboard, ::testing::Values(Language::English, Language::German));

}  // namespace
}  // namespace quillmere
