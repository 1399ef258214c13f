// SPDX-License-Identifier: MIT
#include "ui/databases/database_actions.h"

#include <QAction>
#include <QMenu>
#include <QToolBar>
#include <QWidget>

#include "ui/toolkit/hints.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/kept_place.h"
#include "ui/toolkit/menu_entry.h"

namespace quillmere {
namespace {

QMenu* MakeMenu(QWidget& window, const char* name) {
  auto* menu = new QMenu(&window);
  menu->setObjectName(QLatin1String(name));
  return menu;
}

void SetKey(QWidget& window, QAction& action, const QKeySequence& key) {
  action.setShortcut(key);
  action.setShortcutContext(Qt::WidgetWithChildrenShortcut);
  window.addAction(&action);
}

}  // namespace

DatabaseActions MakeDatabaseActions(QWidget& window) {
  auto* list = new QObject(&window);
  list->setObjectName(QStringLiteral("ActionList1"));
  const auto make = [list](const char* name, const char* category, const QString& caption,
                           const char* icon) {
    auto* action = new QAction(Icon(icon), caption, list);
    action->setObjectName(QLatin1String(name));
    action->setProperty("category", QLatin1String(category));
    return action;
  };
  DatabaseActions actions;
  actions.ActOpenDbMgr = make("ActOpenDbMgr", "DSMgr", DatabaseActions::tr("OpenDbMgr"), "source");
  actions.ConnectDS = make("ConnectDS", "DataSource", DatabaseActions::tr("ConnectDS"), "connect");
  actions.DisConnectDS =
      make("DisConnectDS", "DataSource", DatabaseActions::tr("DisConnectDS"), "disconnect");
  actions.RefreshDS = make("RefreshDS", "DataSource", DatabaseActions::tr("RefreshDS"), "refresh");
  actions.DropMeta = make("DropMeta", "Meta", DatabaseActions::tr("DropMeta"), "drop");
  actions.ChangeMeta = make("ChangeMeta", "Meta", DatabaseActions::tr("ChangeName"), "rename");
  actions.MigrateMeta = make("MigrateMeta", "Meta", DatabaseActions::tr("MoveMeta"), "migrate");
  actions.BrowseData = make("BrowseData", "Meta", DatabaseActions::tr("BrowseData"), "browse");
  actions.BrowseData->setVisible(false);
  actions.BrowseData->setEnabled(false);
  actions.ExpandTree = make("ExpandTree", "TreeMgr", DatabaseActions::tr("Expand Tree"), "expand");
  actions.CollapseTree =
      make("CollapseTree", "TreeMgr", DatabaseActions::tr("Collapse Tree"), "collapse");
  SetKey(window, *actions.DropMeta, QKeySequence::Delete);
  SetKey(window, *actions.ChangeMeta, Qt::Key_F2);
  return actions;
}

DatabaseMenus MakeDatabaseMenus(QWidget& window, const DatabaseActions& actions) {
  DatabaseMenus menus;
  menus.root = MakeMenu(window, "PMDbMgr");
  AddEntry(*menus.root, "OpenDbConn", *actions.ActOpenDbMgr, DatabaseActions::tr("Open"));
  menus.data_source = MakeMenu(window, "PMDS");
  AddEntry(*menus.data_source, "ConnectDSMenu", *actions.ConnectDS);
  AddEntry(*menus.data_source, "DisConnectDSMenu", *actions.DisConnectDS);
  menus.meta = MakeMenu(window, "PMMeta");
  for (QAction* action : {actions.DropMeta, actions.ChangeMeta, actions.MigrateMeta}) {
    menus.meta->addAction(action);
  }
  menus.tree = MakeMenu(window, "PMTree");
  menus.tree->addAction(actions.ExpandTree);
  menus.tree->addAction(actions.CollapseTree);
  return menus;
}

void FillToolBar(QToolBar& tools, const DatabaseActions& actions) {
  const auto add = [&tools](const char* name, QAction& action, const QString& tooltip,
                            const QString& hint) {
    action.setToolTip(tooltip);
    QWidget* const button = AddKeepingPlace(tools, action);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(action.text());
    SetHint(button, hint);
  };
  add("TBOpenDSMgr", *actions.ActOpenDbMgr, DatabaseActions::tr("open data source manager"),
      DatabaseActions::tr("Open database manager to add/modify/delete a database connection"));
  add("TBConnectDS", *actions.ConnectDS, DatabaseActions::tr("connect to a data source "),
      DatabaseActions::tr("Connect to a data source."));
  add("TBDisConnectDS", *actions.DisConnectDS, DatabaseActions::tr("disconnect from a data source"),
      DatabaseActions::tr("DisConnect from a data source."));
  add("TBRefreshDS", *actions.RefreshDS,
      DatabaseActions::tr("refresh meta  information of a database"),
      DatabaseActions::tr(
          "Refresh contents of a data source, including: table/primary key/index..."));
  add("TBDropMeta", *actions.DropMeta, DatabaseActions::tr("drop a meta"),
      DatabaseActions::tr("Drop meata of a data source,can be: table/primary key/index... "));
  add("TBChangeMeta", *actions.ChangeMeta, DatabaseActions::tr("change meta name "),
      DatabaseActions::tr(
          "change meata name of a data source,can be: table/primary key/index... "));
  add("TBMigrateMeta", *actions.MigrateMeta, DatabaseActions::tr("migrate  meata  "),
      DatabaseActions::tr("migrate meata from one data source to another. "));
}

void ShowActions(const DatabaseActions& actions, const VisibleActions& visible) {
  actions.ConnectDS->setVisible(visible.connect);
  actions.DisConnectDS->setVisible(visible.disconnect);
  actions.RefreshDS->setVisible(visible.refresh);
  for (QAction* action : {actions.DropMeta, actions.ChangeMeta, actions.MigrateMeta}) {
    action->setVisible(visible.meta);
  }
}

}  // namespace quillmere
