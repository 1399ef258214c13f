// SPDX-License-Identifier: MIT
#include "ui/databases/database_node.h"

namespace quillmere {

std::string_view KindTag(NodeKind kind) {
  switch (kind) {
    case NodeKind::None:
      break;
    case NodeKind::Root:
      return "ORACLE";
    case NodeKind::DataSource:
      return "DATASOURCE";
    case NodeKind::PrimaryKey:
      return "PRIMARYKEY";
    case NodeKind::Index:
      return "INDEX";
    case NodeKind::Table:
      return "TABLE";
  }
  return {};
}

std::optional<ObjectKind> ObjectKindOf(NodeKind kind) {
  if (kind == NodeKind::PrimaryKey) return ObjectKind::PrimaryKey;
  if (kind == NodeKind::Index) return ObjectKind::Index;
  if (kind == NodeKind::Table) return ObjectKind::Table;
  return std::nullopt;
}

std::string_view ConnectionText(ConnectionState state) {
  if (state == ConnectionState::Connected) return "Connected";
  if (state == ConnectionState::Disconnected) return "DisConnected";
  return {};
}

VisibleActions VisibleActionsFor(NodeKind selected, bool source_connected) {
  VisibleActions visible;
  visible.connect = selected == NodeKind::DataSource && !source_connected;
  visible.disconnect = selected == NodeKind::DataSource && source_connected;
  visible.refresh = visible.disconnect;
  visible.meta = ObjectKindOf(selected).has_value();
  return visible;
}

bool MayOpenManager(std::size_t sources_in_use) {
  return sources_in_use < DataSourceRegistry::kMostDataSources;
}

}  // namespace quillmere
