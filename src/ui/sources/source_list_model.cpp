#include "ui/sources/source_list_model.h"

#include <algorithm>
#include <array>

#include "ui/toolkit/icons.h"

namespace quillmere {

SourceListModel::SourceListModel(QObject* parent)
    : RowModel({{QStringLiteral("Data Source"), 140},
                {QStringLiteral("Version"), 80},
                {QStringLiteral("UserName"), 90},
                {QStringLiteral("Mode"), 64}},
               parent) {
  sort(-1, Qt::AscendingOrder);
}

void SourceListModel::Show(const DataSourceRegistry& registry) {
  ReplaceRows(false, [&] {
    rows_.clear();
    for (std::size_t index = 0; index < registry.Count(); ++index) {
      const DataSource& source = registry.At(index);
      if (source.state == ConnectionState::Empty) continue;
      rows_.push_back({index, source.name, source.version, source.user_id, source.mode});
    }
  });
}

int SourceListModel::RowOf(std::size_t index) const {
  const auto found =
      std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) { return row.index == index; });
  return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

std::string_view SourceListModel::CellText(std::size_t row, int column) const {
  const Row& source = rows_[row];
  const std::array<std::string_view, 4> cells = {source.name, source.version, source.user_id,
                                                 source.mode};
  return cells[static_cast<std::size_t>(column)];
}

QVariant SourceListModel::CellExtra(std::size_t, int column, int role) const {
  if (role == Qt::DecorationRole && column == 0) return Icon("source");
  return {};
}

}  // namespace quillmere
