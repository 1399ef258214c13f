// SPDX-License-Identifier: MIT
#include "cli/source_commands.h"

#include "cli/password_input.h"
#include "cli/source_listings.h"
#include "workspace/source_operations.h"

namespace quillmere::cli::source {
namespace {

int Finish(const Outcome& outcome, const std::string& done_text) {
  return outcome ? Print(done_text + "\n") : Fail(outcome.text);
}

std::string CatalogueSize(const DataSource& source) {
  return std::to_string(source.tables.size()) + " tables, " +
         std::to_string(source.primary_keys.size()) + " primary keys, " +
         std::to_string(source.indexes.size()) + " indexes";
}

// Runs the operation with the log's errors on standard error.
template <typename Operation>
Outcome Watched(Workspace& workspace, const Operation& operation) {
  const std::size_t from = workspace.Log().Entries().size();
  Outcome outcome = operation();
  if (outcome) PrintErrors(workspace.Log(), from);
  return outcome;
}

bool AskPassword(const Arguments& arguments, std::string& password) {
  const std::string prompt = "Password of " + arguments.user + " on " + arguments.name + ": ";
  std::string reason;
  if (ReadPassword(arguments.password_file, prompt, password, reason)) return true;
  Fail(reason);
  return false;
}

}  // namespace

int Add(const CommandLine& line, const Arguments& arguments) {
  LogOn login{arguments.name, arguments.user, {}, arguments.mode == "SYSDBA"};
  if (!AskPassword(arguments, login.password)) return kFailed;
  const auto workspace = OpenToChange(line, Folder::MayBeMade);
  if (workspace == nullptr) return kFailed;
  const Outcome added = Watched(*workspace, [&] {
    InPlace work;
    return AddDataSource(*workspace, login, work);
  });
  if (!added) return Fail(added.text);
  const auto index = static_cast<std::size_t>(workspace->Registry().IndexOf(login.name));
  const DataSource& source = workspace->Registry().At(index);
  return Print("Data source " + login.name + " added: " + CatalogueSize(source) + "\n");
}

int Edit(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToChange(line);
  if (workspace == nullptr) return kFailed;
  const int index = FindSource(*workspace, arguments.name);
  if (index < 0) return kFailed;
  const DataSource& source = workspace->Registry().At(static_cast<std::size_t>(index));
  Arguments full = arguments;
  if (full.user.empty()) full.user = source.user_id;
  if (full.mode.empty()) full.mode = source.Mode();
  LogOn login{full.name, full.user, {}, full.mode == "SYSDBA"};
  if (!AskPassword(full, login.password)) return kFailed;
  InPlace work;
  return Finish(SaveDataSource(*workspace, login, work), "Data source " + login.name + " changed");
}

int List(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  return Print(SourceListing(workspace->Registry(), arguments.json));
}

int Test(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  const int index = FindSource(*workspace, arguments.name);
  if (index < 0) return kFailed;
  InPlace work;
  const Outcome outcome = TestDataSource(*workspace, static_cast<std::size_t>(index), work);
  return Finish(outcome, outcome.text);
}

int Refresh(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToChange(line);
  if (workspace == nullptr) return kFailed;
  const int index = FindSource(*workspace, arguments.name);
  if (index < 0) return kFailed;
  const auto slot = static_cast<std::size_t>(index);
  const Outcome outcome = Watched(*workspace, [&] {
    InPlace work;
    return RefreshDataSource(*workspace, slot, work);
  });
  return Finish(outcome, arguments.name + ": " + CatalogueSize(workspace->Registry().At(slot)));
}

int Remove(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToChange(line);
  if (workspace == nullptr) return kFailed;
  const int index = FindSource(*workspace, arguments.name);
  if (index < 0) return kFailed;
  return Finish(RemoveDataSource(*workspace, static_cast<std::size_t>(index)),
                "Data source " + arguments.name + " removed");
}

}  // namespace quillmere::cli::source
