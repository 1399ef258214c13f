// SPDX-License-Identifier: MIT
// What stands beside and inside the database manager's list.
#pragma once

#include <QString>
#include <cstddef>

#include "ui/databases/database_node.h"

namespace quillmere {

// "1 primary key", "2,500 indexes".
QString CountedObjects(ObjectKind kind, std::size_t count);

// How many rows the list of a node has; of a data source, its state.
QString CountText(const DatabaseNode& node, std::size_t rows, ConnectionState state);

// What to do about an empty list.
QString EmptyText(const DatabaseNode& node, ConnectionState state);

}  // namespace quillmere
