// SPDX-License-Identifier: MIT
// quillmere-cli workspace: what was set up in a working folder, as a file and back.
#pragma once

#include "cli/command.h"

namespace quillmere::cli::workspace {

struct Arguments {
  std::string file, day;
};

int Export(const CommandLine& line, const Arguments& arguments);
int Import(const CommandLine& line, const Arguments& arguments);
int Restore(const CommandLine& line, const Arguments& arguments);

}  // namespace quillmere::cli::workspace
