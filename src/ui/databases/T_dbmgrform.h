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

namespace quillmere {

class TDbMgrForm : public QWidget {
  Q_OBJECT

 public:
  explicit TDbMgrForm(UiContext& context, QWidget* parent = nullptr);

  const DatabaseActions& Actions() const { return actions_; }

  // Takes up what the registry says now; for whoever changed it. The selection stays where its node
  // is still there.
  void ShowRegistry();

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

  // Asks in a dialog and runs; false when nothing was run. items: afterwards, what is selected.
  using MetaAction = bool (TDbMgrForm::*)(std::size_t source, ObjectKind kind,
                                          std::vector<SchemaItem>& items);
  void RunOnSelection(MetaAction action, bool one_item_only);
  bool Drop(std::size_t source, ObjectKind kind, std::vector<SchemaItem>& items);
  bool Rename(std::size_t source, ObjectKind kind, std::vector<SchemaItem>& items);
  bool Migrate(std::size_t source, ObjectKind kind, std::vector<SchemaItem>& items);

  UiContext& context_;
  ExplorerFrame* frame_;
  DatabaseActions actions_;
  DatabaseMenus menus_;
  DatabaseTree* tree_;
  ListPane* list_;
  SourceConnection connection_;
};

}  // namespace quillmere
