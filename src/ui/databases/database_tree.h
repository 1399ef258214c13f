// SPDX-License-Identifier: MIT
// The tree of the database manager: the root, the registered data sources, and under each of them
// its primary keys, indexes and tables as three nodes. User-interface thread.
#pragma once

#include <QAbstractItemModel>
#include <cstdint>
#include <string>
#include <vector>

#include "ui/databases/database_node.h"

namespace quillmere {

class DatabaseTree : public QAbstractItemModel {
  Q_OBJECT

 public:
  static constexpr int kKindTagRole = Qt::UserRole + 1;

  explicit DatabaseTree(QObject* parent = nullptr) : QAbstractItemModel(parent) {}

  // Takes up what the registry says now. Nodes that are still there stay selected and expanded.
  void Show(const DataSourceRegistry& registry);

  DatabaseNode NodeAt(const QModelIndex& index) const;
  QModelIndex Root() const { return index(0, 0); }
  // An invalid index when there is no such node.
  QModelIndex IndexOf(const DatabaseNode& node) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Source {
    std::uint32_t id = 0;  // never used again, so that the indexes of its children stay valid
    std::string name;
    ConnectionState state = ConnectionState::Disconnected;
  };

  int RowOf(std::uint32_t id) const;
  void RemoveMissing(const std::vector<Source>& now);
  void InsertNew(std::vector<Source>& now);

  std::vector<Source> sources_;
  std::uint32_t last_id_ = 0;
};

}  // namespace quillmere
