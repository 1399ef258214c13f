// SPDX-License-Identifier: MIT
#include "ui/sources/source_list_model.h"

#include <algorithm>

#include "ui/toolkit/icons.h"

namespace quillmere {
namespace {

QVariant NameExtra(const SourceEntry&, int role) {
  return role == Qt::DecorationRole ? QVariant(Icon("source")) : QVariant();
}

}  // namespace

std::vector<SourceEntry> RowsOf(const DataSourceRegistry& registry) {
  std::vector<SourceEntry> rows;
  for (std::size_t index = 0; index < registry.Count(); ++index) {
    const DataSource& source = registry.At(index);
    if (source.state == ConnectionState::Empty) continue;
    rows.push_back(
        {index, source.name, source.version, source.user_id, source.Mode(), source.state});
  }
  return rows;
}

SourceListModel::SourceListModel(QObject* parent)
    : RowList({Text<&SourceEntry::name>(tr("Data Source"), 140, NameExtra),
               Text<&SourceEntry::version>(tr("Version"), 80),
               Text<&SourceEntry::user_id>(tr("UserName"), 90),
               Text<&SourceEntry::mode>(tr("Mode"), 64)},
              parent) {
  sort(-1, Qt::AscendingOrder);
}

int SourceListModel::RowOf(std::size_t index) const {
  const auto found = std::find_if(Rows().begin(), Rows().end(),
                                  [&](const SourceEntry& row) { return row.index == index; });
  return found == Rows().end() ? -1 : static_cast<int>(found - Rows().begin());
}

}  // namespace quillmere
