// SPDX-License-Identifier: MIT
// The database manager: the registered data sources with their primary keys, indexes and tables,
// and what can be done with them.
#pragma once

#include <QWidget>
#include <optional>

#include "ui/H_global.h"
#include "ui/databases/database_actions.h"
#include "ui/databases/database_tree.h"
#include "ui/databases/list_pane.h"
#include "ui/databases/source_connection.h"
#include "workspace/schema_changes.h"

namespace quillmere {

class TDbMgrForm : public QWidget {
  Q_OBJECT

 public:
  explicit TDbMgrForm(UiContext& context, QWidget* parent = nullptr);

  const DatabaseActions& Actions() const { return actions_; }

  // What stands in place of the list while no data source is registered; the form's from then on.
  void SetFirst(QWidget* widget) { frame_->SetFirst(widget); }

  // Takes up what the registry says now; for whoever changed it. The selection stays where its node
  // is still there.
  void ShowRegistry();

 Q_SIGNALS:
  // An action begins: whoever chose it in the main menu ought to see what it acts on.
  void Acting();

 private:
  void SetUpTree();
  void SetUpList();
  void ConnectActions();

  DatabaseNode SelectedNode() const;
  std::optional<std::size_t> SelectedSource() const;  // the registry's index
  void Select(const DatabaseNode& node);
  void UpdateActions();
  void ShowSelectedList();
  void ShowTreeMenu(const QPoint& position);
  void OpenRow(const QModelIndex& row);

  void OpenManager();
  void ConnectSource();
  void DisconnectSource();
  void RefreshSource();
  void PressRefresh();

  void RunOnSelection(SchemaAction action);
  // Asks in the action's dialog, which runs it; false when nothing was run. selected: what is to be
  // selected in the list afterwards.
  bool Ask(SchemaAction action, const SchemaSelection& selection,
           std::vector<SchemaItem>& selected);

  UiContext& context_;
  ExplorerFrame* frame_;
  DatabaseActions actions_;
  DatabaseMenus menus_;
  DatabaseTree* tree_;
  ListPane* list_;
  SourceConnection connection_;
};

}  // namespace quillmere
