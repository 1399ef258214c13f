// SPDX-License-Identifier: MIT
// What the tree of the database manager consists of, and which actions its nodes offer.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "datasources/data_source_registry.h"
#include "schemaops/schema_operations.h"

namespace quillmere {

enum class NodeKind { None, Root, DataSource, PrimaryKey, Index, Table };

// The children of a data source, in the tree's order.
inline constexpr NodeKind kMetaTypes[] = {NodeKind::PrimaryKey, NodeKind::Index, NodeKind::Table};

struct DatabaseNode {
  NodeKind kind = NodeKind::None;
  std::string source;  // of a data source and its children: its name

  friend bool operator==(const DatabaseNode&, const DatabaseNode&) = default;
};

// "ORACLE", "DATASOURCE", "PRIMARYKEY", "INDEX", "TABLE".
std::string_view KindTag(NodeKind kind);

// What the objects of a meta-type node are; nothing for the other nodes.
std::optional<ObjectKind> ObjectKindOf(NodeKind kind);

// "Connected", "DisConnected" or nothing.
std::string_view ConnectionText(ConnectionState state);

struct VisibleActions {
  bool connect = false;
  bool disconnect = false;
  bool refresh = false;
  bool meta = false;  // drop, change name, move

  friend bool operator==(const VisibleActions&, const VisibleActions&) = default;
};

VisibleActions VisibleActionsFor(NodeKind selected, bool source_connected);

// The manager of data sources is not opened when there is no room for another one.
bool MayOpenManager(std::size_t sources_in_use);

}  // namespace quillmere
