// SPDX-License-Identifier: MIT
// quillmere-cli job ...: the catalogue of jobs.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/command.h"

namespace quillmere::cli::job {

// Texts that are not given are empty.
struct Arguments {
  std::string name, new_name, from, to, description, owner, new_owner, follow, position_owner;
  std::string container, reason;
  std::optional<int> interval;      // minutes
  std::vector<std::string> tables;  // of owner
  bool all = false;                 // its tables, whatever they are called
  bool json = false;
  int limit = 20;     // statements of a preview
  bool row = false;   // of the destination, beside the problem
  bool live = false;  // the source is asked, too
  bool no_position_table = false;
  bool no_container = false;
};

int Add(const CommandLine& line, const Arguments& arguments);
int Edit(const CommandLine& line, const Arguments& arguments);
int List(const CommandLine& line, const Arguments& arguments);
int Show(const CommandLine& line, const Arguments& arguments);
int Refresh(const CommandLine& line, const Arguments& arguments);
int Include(const CommandLine& line, const Arguments& arguments);
int Exclude(const CommandLine& line, const Arguments& arguments);
int Owner(const CommandLine& line, const Arguments& arguments);
// Clears the mark "compare" of tables.
int Compared(const CommandLine& line, const Arguments& arguments);
int Stop(const CommandLine& line, const Arguments& arguments);
int Remove(const CommandLine& line, const Arguments& arguments);

}  // namespace quillmere::cli::job
