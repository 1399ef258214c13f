// SPDX-License-Identifier: MIT
// The registered data sources as rows.
#pragma once

#include <QCoreApplication>
#include <string>
#include <vector>

#include "datasources/data_source_registry.h"
#include "ui/toolkit/row_list.h"

namespace quillmere {

struct SourceEntry {
  std::size_t index = 0;  // in the registry
  std::string name, version, user_id, mode;
  ConnectionState state = ConnectionState::Empty;
};

// In the order of the registry.
std::vector<SourceEntry> RowsOf(const DataSourceRegistry& registry);

// The list of the dialogs: in the registry's order until a column's head is clicked.
class SourceListModel final : public RowList<SourceEntry> {
  Q_DECLARE_TR_FUNCTIONS(SourceListModel)

 public:
  explicit SourceListModel(QObject* parent = nullptr);

  void Show(const DataSourceRegistry& registry) { Take(RowsOf(registry), false); }

  // The registry's index of a source row.
  std::size_t IndexOf(std::size_t row) const { return RowAt(row).index; }
  // The source row of the registry's index, or -1.
  int RowOf(std::size_t index) const;
};

}  // namespace quillmere
