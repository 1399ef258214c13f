// SPDX-License-Identifier: MIT
// Keeps a data source's cached lists in step with what was done in its database. Internal to
// schemaops/.
#pragma once

#include "schemaops/schema_operations.h"

namespace quillmere {

// Takes dropped objects out of the lists, tables with their keys and indexes.
void ForgetDropped(DataSource& source, ObjectKind kind, const std::vector<SchemaItem>& dropped);

void TakeNewName(DataSource& source, ObjectKind kind, const SchemaItem& item,
                 std::string_view new_name);

}  // namespace quillmere
