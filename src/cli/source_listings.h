// SPDX-License-Identifier: MIT
// What is shown of the registered data sources and of their cached lists, and the objects that
// arguments name in them.
#pragma once

#include <string>
#include <vector>

#include "schemaops/schema_operations.h"

namespace quillmere::cli {

// The registered data sources.
std::string SourceListing(const DataSourceRegistry& registry, bool json);

// All owners when none is named.
std::string SchemaListing(const DataSource& source, ObjectKind kind, const std::string& owner,
                          bool json);

// Everything of that kind that belongs to the owner.
std::vector<SchemaItem> ItemsOfOwner(const DataSource& source, ObjectKind kind,
                                     const std::string& owner);

// name: OWNER.TABLE for a table; OWNER.TABLE.NAME or, when it is in the lists, OWNER.NAME for a key
// or index. False: the reason.
bool FindItem(const DataSource& source, ObjectKind kind, const std::string& name, SchemaItem& item,
              std::string& reason);

}  // namespace quillmere::cli
