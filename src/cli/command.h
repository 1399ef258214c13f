// SPDX-License-Identifier: MIT
// What every command of quillmere-cli works with. A command is a function that takes what stands on
// the command line and returns the exit status; how it is written there, arguments.cpp describes.
// Main thread.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "cli/terminal.h"
#include "workspace/workspace.h"

namespace quillmere::cli {

inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;
inline constexpr int kInTrouble = 3;  // of `run`: a job failed or was held when it ended

// What any command may be given.
struct CommandLine {
  std::string workdir = ".";
  std::string client;  // empty: as the settings say
  bool debug = false;
};

enum class Folder { MustExist, MayBeMade };

// The working folder that the command line names. Null: the reason is on standard error. What could
// not be loaded is there, too.
std::unique_ptr<Workspace> OpenToLook(const CommandLine& line);
std::unique_ptr<Workspace> OpenToChange(const CommandLine& line, Folder folder = Folder::MustExist);

// The index of the data source or job; -1 or kNotFound when there is none, told on standard error.
int FindSource(const Workspace& workspace, const std::string& name);
std::size_t FindJob(const Workspace& workspace, const std::string& name);

// The text without line breaks and other control characters.
std::string OneLine(std::string_view text);

// One line on standard error, standing for a refusal or a failure.
int Fail(std::string_view reason);

// Text on standard output. kFailed, and a line on standard error, when it cannot be written.
int Print(std::string_view text);

// What the log got since its entry number `from` that is an error, on standard error.
void PrintErrors(const MessageLog& log, std::size_t from);

}  // namespace quillmere::cli
