// The registered data sources as rows, in the order of the registry.
#pragma once

#include <string>
#include <vector>

#include "datasources/data_source_registry.h"
#include "ui/toolkit/row_model.h"

namespace quillmere {

class SourceListModel final : public RowModel {
  Q_OBJECT

 public:
  explicit SourceListModel(QObject* parent = nullptr);

  void Show(const DataSourceRegistry& registry);

  // The registry's index of a source row.
  std::size_t IndexOf(std::size_t row) const { return rows_[row].index; }
  // The source row of the registry's index, or -1.
  int RowOf(std::size_t index) const;
  const std::string& NameOf(std::size_t row) const { return rows_[row].name; }

 protected:
  std::size_t SourceRows() const override { return rows_.size(); }
  std::string_view CellText(std::size_t row, int column) const override;
  QVariant CellExtra(std::size_t row, int column, int role) const override;

 private:
  struct Row {
    std::size_t index = 0;
    std::string name, version, user_id, mode;
  };
  std::vector<Row> rows_;
};

}  // namespace quillmere
