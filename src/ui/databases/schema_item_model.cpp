// SPDX-License-Identifier: MIT
#include "ui/databases/schema_item_model.h"

#include "ui/toolkit/text.h"

namespace quillmere {

SchemaItemModel::SchemaItemModel(const std::vector<SchemaItem>& items, std::vector<Column> columns,
                                 QObject* parent)
    : QAbstractTableModel(parent), items_(items), columns_(std::move(columns)) {}

int SchemaItemModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(items_.size());
}

int SchemaItemModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant SchemaItemModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
  const Column& column = columns_[static_cast<std::size_t>(index.column())];
  return OneLine(column.text(items_[static_cast<std::size_t>(index.row())]));
}

QVariant SchemaItemModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return columns_[static_cast<std::size_t>(section)].caption;
}

}  // namespace quillmere
