// SPDX-License-Identifier: MIT
// The items of a drop or migrate dialog as a list, drawn from the items as they are shown.
#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <string>
#include <vector>

#include "schemaops/schema_operations.h"

namespace quillmere {

class SchemaItemModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  struct Column {
    QString caption;
    std::function<std::string(const SchemaItem&)> text;
  };

  // items must outlive the model and stay as they are.
  SchemaItemModel(const std::vector<SchemaItem>& items, std::vector<Column> columns,
                  QObject* parent);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const std::vector<SchemaItem>& items_;
  const std::vector<Column> columns_;
};

}  // namespace quillmere
