// SPDX-License-Identifier: MIT
// definitions.xml of a job: the columns of its tables on the source as they were when they were
// compared last, and what keeps the destination from taking their rows. docs/file-formats.md has
// its layout.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "jobs/job_folder.h"
#include "oracle/table_columns.h"

namespace quillmere {

struct DefinitionDifference {
  std::string owner, table;  // on the destination
  std::string column;        // empty: of the whole table
  std::string what;          // "has no column NOTE"
  std::string cure;          // the statement that brings the destination up

  bool operator==(const DefinitionDifference&) const = default;
};

using TableColumns = std::map<std::pair<std::string, std::string>, std::vector<TableColumn>>;

struct Definitions {
  std::string carried;  // tells which tables the job carried
  // As ReadNewestChange gave them; empty: not known, to be read again.
  std::string source_newest, destination_newest;
  TableColumns source;
  std::vector<DefinitionDifference> differences;
};

// Replaces the file, down to the disk.
bool WriteDefinitionsFile(FileSystem& files, const JobFolder& folder,
                          const Definitions& definitions, std::string& error);

// definitions is set on success only.
FileStatus ReadDefinitionsFile(FileSystem& files, const JobFolder& folder,
                               Definitions& definitions);

}  // namespace quillmere
