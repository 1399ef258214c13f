// SPDX-License-Identifier: MIT
// quillmere-cli schema ...: tables, primary keys and indexes of a data source.
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"
#include "schemaops/schema_operations.h"

namespace quillmere::cli::schema {

struct Arguments {
  std::string kind;  // "table", "key" or "index"
  std::string source, target, item, new_name, owner;
  std::vector<std::string> items, owners;  // owners: all that they have of the kind
  bool json = false;
  bool cascade = false;
  MigrateOptions options;
};

int Drop(const CommandLine& line, const Arguments& arguments);
int Rename(const CommandLine& line, const Arguments& arguments);
int Migrate(const CommandLine& line, const Arguments& arguments);

// Listings of the kind that the command is named after.
int Tables(const CommandLine& line, const Arguments& arguments);
int Keys(const CommandLine& line, const Arguments& arguments);
int Indexes(const CommandLine& line, const Arguments& arguments);

}  // namespace quillmere::cli::schema
