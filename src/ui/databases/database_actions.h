// SPDX-License-Identifier: MIT
// The actions of the database manager, its tool bar and its pop-up menus. User-interface thread.
#pragma once

#include <QCoreApplication>

#include "ui/databases/database_node.h"

class QAction;
class QMenu;
class QToolBar;
class QWidget;

namespace quillmere {

// Owned by the window that they are made for.
struct DatabaseActions {
  Q_DECLARE_TR_FUNCTIONS(DatabaseActions)

 public:
  QAction* ActOpenDbMgr = nullptr;
  QAction* ConnectDS = nullptr;
  QAction* DisConnectDS = nullptr;
  QAction* RefreshDS = nullptr;
  QAction* DropMeta = nullptr;
  QAction* ChangeMeta = nullptr;
  QAction* MigrateMeta = nullptr;
  QAction* BrowseData = nullptr;  // always hidden: there is nothing it could do
  QAction* ExpandTree = nullptr;
  QAction* CollapseTree = nullptr;
};

struct DatabaseMenus {
  QMenu* root = nullptr;         // of the tree's root
  QMenu* data_source = nullptr;  // of a data source in the tree
  QMenu* meta = nullptr;         // of the list of objects
  QMenu* tree = nullptr;         // expand and collapse
};

DatabaseActions MakeDatabaseActions(QWidget& window);
DatabaseMenus MakeDatabaseMenus(QWidget& window, const DatabaseActions& actions);
void FillToolBar(QToolBar& tools, const DatabaseActions& actions);

void ShowActions(const DatabaseActions& actions, const VisibleActions& visible);

}  // namespace quillmere
