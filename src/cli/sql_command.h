// SPDX-License-Identifier: MIT
// quillmere-cli sql: runs statements in one session on a data source.
#pragma once

#include <string>

#include "cli/command.h"

namespace quillmere::cli {

// file: empty for standard input.
int Sql(const CommandLine& line, const std::string& source, const std::string& file);

}  // namespace quillmere::cli
