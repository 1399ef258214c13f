// SPDX-License-Identifier: MIT
// quillmere-cli source ...: the registered data sources.
#pragma once

#include <string>

#include "cli/command.h"

namespace quillmere::cli::source {

struct Arguments {
  std::string name, user;
  std::string mode;           // empty: NORMAL, or as it is when a log-on is changed
  std::string password_file;  // empty: the password comes from standard input
  bool json = false;
};

int Add(const CommandLine& line, const Arguments& arguments);
int Edit(const CommandLine& line, const Arguments& arguments);
int List(const CommandLine& line, const Arguments& arguments);
int Test(const CommandLine& line, const Arguments& arguments);
int Refresh(const CommandLine& line, const Arguments& arguments);
int Remove(const CommandLine& line, const Arguments& arguments);

}  // namespace quillmere::cli::source
