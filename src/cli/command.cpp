// SPDX-License-Identifier: MIT
#include "cli/command.h"

#include <algorithm>

#include "foundation/text.h"
#include "workspace/program_folder.h"

namespace quillmere::cli {
namespace {

void PrintError(const MessageEntry& entry) {
  Write(Stream::Error, OneLine(entry.text) + "\n");
}

Workspace::Options OptionsOf(const CommandLine& line) {
  Workspace::Options options;
  options.folder = line.workdir;
  options.client = line.client;
  options.program_folder = ProgramFolder();
  options.debug = line.debug;
  return options;
}

// A folder without a registry is a new one; that is no news to whoever works from a shell.
bool IsNews(const Workspace& workspace, const MessageEntry& entry) {
  return !entry.text.ends_with("Can't not open database.xml") ||
         IsThere(workspace.Files(), workspace.Folder() / "config" / "database.xml");
}

bool IsTold(Workspace& workspace, std::string_view text) {
  const auto& entries = workspace.Log().Entries();
  return std::any_of(entries.begin(), entries.end(), [&](const MessageEntry& entry) {
    return entry.text.find(text) != std::string::npos;
  });
}

std::unique_ptr<Workspace> Open(const Workspace::Options& options) {
  std::string reason;
  std::unique_ptr<Workspace> workspace = Workspace::Open(options, reason);
  if (workspace == nullptr) {
    Fail(reason);
  } else {
    for (const MessageEntry& entry : workspace->Log().Entries()) {
      if (entry.error && IsNews(*workspace, entry)) PrintError(entry);
    }
    // The log must not tell of damaged lists.
    for (const std::string& why :
         {workspace->Registry().WhyListNotRead(), workspace->Catalogue().WhyListNotRead()}) {
      if (!why.empty() && !IsTold(*workspace, why)) Write(Stream::Error, OneLine(why) + "\n");
    }
  }
  return workspace;
}

}  // namespace

std::unique_ptr<Workspace> OpenToLook(const CommandLine& line) {
  Workspace::Options options = OptionsOf(line);
  options.access = Workspace::Access::LookOnly;
  return Open(options);
}

std::unique_ptr<Workspace> OpenToChange(const CommandLine& line, Folder folder) {
  Workspace::Options options = OptionsOf(line);
  options.create_folder = folder == Folder::MayBeMade;
  return Open(options);
}

int FindSource(const Workspace& workspace, const std::string& name) {
  const int index = workspace.Registry().IndexOf(name);
  if (index < 0) {
    Fail("There is no data source " + name + "; 'source list' names them");
  }
  return index;
}

std::size_t FindJob(const Workspace& workspace, const std::string& name) {
  const std::size_t index = workspace.Jobs().IndexOf(name);
  if (index == JobList::kNotFound) Fail("There is no job " + name + "; 'job list' names them");
  return index;
}

std::string OneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  for (const char c : text) {
    if (!IsControlCharacter(c)) {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  line.resize(TrimRight(line, " ").size());
  return line;
}

int Fail(std::string_view reason) {
  Write(Stream::Error, "quillmere-cli: " + OneLine(reason) + "\n");
  return kFailed;
}

int Print(std::string_view text) {
  return Write(Stream::Output, text) ? kDone : Fail("The output cannot be written");
}

void PrintErrors(const MessageLog& log, std::size_t from) {
  const auto& entries = log.Entries();
  for (std::size_t i = from; i < entries.size(); ++i) {
    if (entries[i].error) PrintError(entries[i]);
  }
}

}  // namespace quillmere::cli
