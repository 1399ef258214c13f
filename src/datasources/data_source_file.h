// SPDX-License-Identifier: MIT
// How a data source stands in its own file. Inside of datasources/.
#pragma once

#include "datasources/data_source_registry.h"
#include "foundation/xml_document.h"

namespace quillmere {

// Builds the file's tree; the password is enciphered.
void AppendDataSource(XmlNode& root, const DataSource& source);

// Fills all but the name. False when there is no data source in the file.
bool ReadDataSource(const XmlNode& root, DataSource& source);

}  // namespace quillmere
