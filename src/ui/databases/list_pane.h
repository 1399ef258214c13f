// SPDX-License-Identifier: MIT
// The right side of the database manager: shows a node's list with its filter, counts and hints,
// and tells which rows are selected. User-interface thread.
#pragma once

#include <QObject>
#include <map>
#include <string>
#include <vector>

#include "ui/databases/database_lists.h"
#include "ui/toolkit/explorer_frame.h"

namespace quillmere {

class ListPane : public QObject {
  Q_OBJECT

 public:
  // Both must outlive the pane.
  ListPane(const DataSourceRegistry& registry, ExplorerFrame& frame);

  // Shows the node's list as the registry has it now. The same node again: filter, order and
  // scroll position stay, the selection goes.
  void Show(const DatabaseNode& node);

  // The selected objects, in the order shown, of a list of objects; of other lists none.
  std::vector<SchemaItem> SelectedItems() const;

  // Selects those of the items that are in the list, and shows the first of them.
  void Select(const std::vector<SchemaItem>& items);

  // The node that a row leads to; none when it leads nowhere.
  DatabaseNode NodeBehind(const QModelIndex& row) const;

 private:
  RowModel& Fill();
  void Empty(const RowModel& but);
  ObjectList* Objects(NodeKind kind) const;  // null for a node whose list has other rows
  const DataSource* Source() const;

  const DataSourceRegistry& registry_;
  ExplorerFrame& frame_;
  DataSourceList sources_;
  MetaTypeList meta_types_;
  KeyList keys_;
  IndexList indexes_;
  TableList tables_;
  const std::map<NodeKind, ObjectList*> objects_{
      {NodeKind::PrimaryKey, &keys_}, {NodeKind::Index, &indexes_}, {NodeKind::Table, &tables_}};
  DatabaseNode node_;
};

}  // namespace quillmere
