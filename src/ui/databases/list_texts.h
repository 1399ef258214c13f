// SPDX-License-Identifier: MIT
// What stands beside and inside the database manager's list.
#pragma once

#include <QString>
#include <cstddef>

#include "ui/databases/database_node.h"

namespace quillmere {

// "1 primary key", "2,500 indexes".
QString CountedObjects(ObjectKind kind, std::size_t count);

// How many rows the list of a node shows, of how many, and how many are selected.
struct ListCounts {
  std::size_t shown = 0;
  std::size_t all = 0;
  std::size_t selected = 0;
};

// state: of the node's data source.
QString CountText(const DatabaseNode& node, const ListCounts& counts, ConnectionState state);

// What to do about an empty list.
QString EmptyText(const DatabaseNode& node, ConnectionState state);

}  // namespace quillmere
