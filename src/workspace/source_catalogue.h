// What a data source's database says of itself.
#pragma once

#include <string>
#include <string_view>

#include "datasources/data_source_registry.h"
#include "messages/message_log.h"
#include "oracle/H_oracle.h"

namespace quillmere {

// The word of a version banner that carries the release number; empty when there is none.
std::string FindReleaseNumber(std::string_view banner);

// The release number of the server; empty when it does not tell.
std::string ReadVersion(OracleSession& session);

// Replaces the record's tables by those of the database. What fails goes to the log; false when the
// table list itself could not be read, with the reason. The record is as far read as it came.
bool ReadSourceCatalogue(OracleSession& session, DataSource& source, MessageLog& log,
                         std::string& reason);

}  // namespace quillmere
