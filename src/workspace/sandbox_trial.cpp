// SPDX-License-Identifier: MIT
#include "workspace/sandbox_trial.h"

#include <optional>
#include <utility>

#include "workspace/job_operations.h"
#include "workspace/source_operations.h"

namespace quillmere {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTables[] = {
    "create user SHOP identified by sandbox",
    "create table SHOP.CUSTOMERS (ID number(10) primary key, NAME varchar2(80) not null, "
    "CREDIT number(12,2))",
    "create table SHOP.PRODUCTS (ID number(10) primary key, TITLE varchar2(120) not null, "
    "PRICE number(10,2) not null)",
    "create table SHOP.ORDERS (ID number(10) primary key, CUSTOMER_ID number(10) not null, "
    "PRODUCT_ID number(10) not null, ORDERED date, STATUS varchar2(12))"};
constexpr const char* kCustomers[] = {"Hara", "Lindqvist", "Okafor", "Moreau", "Tanaka", "Novak"};
constexpr const char* kProducts[] = {"Kettle", "Lamp", "Bicycle", "Notebook"};

// The files of a database, each of which may be there or not.
std::vector<fs::path> FilesOf(const fs::path& folder, const std::string& database) {
  std::vector<fs::path> files;
  for (const char* const end : {".db", ".db-wal", ".db-shm", ".open"}) {
    files.push_back(folder / (database + end));
  }
  return files;
}

// What could not be removed is added to left.
void RemoveDatabase(FileSystem& files, const fs::path& folder, const std::string& database,
                    std::string& left) {
  for (const fs::path& file : FilesOf(folder, database)) {
    const FileStatus removed = RemoveForGood(files, file);
    if (removed || removed.Missing()) continue;
    left += (left.empty() ? "" : ", ") + PathText(file) + " (" + removed.reason + ")";
  }
}

bool IsFree(const Workspace& workspace, const SandboxTrial& trial) {
  for (const std::string* name : {&trial.source, &trial.destination}) {
    if (workspace.Registry().IndexOf(*name) >= 0) return false;
    for (const fs::path& file : FilesOf(workspace.SandboxFolder(), *name)) {
      if (IsThere(workspace.Files(), file)) return false;
    }
  }
  return workspace.Jobs().IndexOf(trial.job) == JobList::kNotFound;
}

void ChooseNames(const Workspace& workspace, SandboxTrial& trial) {
  for (int number = 1;; ++number) {
    const std::string end = number == 1 ? "" : std::to_string(number);
    trial = {"TRY_SHOP" + end, "TRY_COPY" + end, "try" + end};
    if (IsFree(workspace, trial)) return;
  }
}

Outcome Define(OciLibrary& library, const std::string& database, SchemaListener& listener) {
  OracleSession session(library);
  LogOn maker = TrialLogOn(database);
  maker.name = "new:" + database;
  const std::vector<std::string> statements = TrialDefinitions();
  const std::string step = "make the sandbox database " + database;
  if (!listener.OnProgress(step, 0, statements.size())) return Outcome::Cancelled();
  bool done = session.Connect(maker);
  for (std::size_t i = 0; done && i < statements.size(); ++i) {
    if (!listener.OnProgress(step, i, statements.size())) return Outcome::Cancelled();
    done = session.Execute(statements[i]);
  }
  if (done && session.EndSession()) return Outcome::Done();
  return Outcome::Refused("The sandbox database " + database +
                          " could not be made: " + session.LastError());
}

// Wherever the work is done; takes away what it has made itself unless both are whole.
Outcome MakeDatabases(OciLibrary& library, FileSystem& files, const fs::path& folder,
                      const SandboxTrial& trial, SchemaListener& listener) {
  Outcome made = Define(library, trial.source, listener);
  if (made) made = Define(library, trial.destination, listener);
  if (made) return made;
  std::string left;
  RemoveDatabase(files, folder, trial.source, left);
  RemoveDatabase(files, folder, trial.destination, left);
  if (!left.empty()) {
    return Outcome::Refused(made.text + ". Left over, remove them by hand: " + left);
  }
  return made;
}

Outcome AddAll(Workspace& workspace, DatabaseWork& work, SandboxTrial& trial) {
  for (const std::string* name : {&trial.source, &trial.destination}) {
    Outcome added = AddDataSource(workspace, TrialLogOn(*name), work);
    if (!added) return added;
  }
  JobProperties job{trial.job,
                    "two sandbox databases, to try things out",
                    trial.source,
                    trial.destination,
                    0,
                    true,
                    Follow::Commits,
                    {}};
  Outcome added = AddJob(workspace, job, trial.index, work);
  if (added && !TablesFetched(workspace.Jobs().At(trial.index))) added.done = false;
  return added;
}

// Text: what is left all the same.
std::string TakeBack(Workspace& workspace, const SandboxTrial& trial) {
  std::string left;
  const auto note = [&](const std::string& what, const Outcome& removed) {
    if (!removed) left += (left.empty() ? "" : ", ") + what + " (" + removed.text + ")";
  };
  const std::size_t job = workspace.Jobs().IndexOf(trial.job);
  if (job != JobList::kNotFound) note("job " + trial.job, DeleteJob(workspace, job));
  for (const std::string* name : {&trial.source, &trial.destination}) {
    const int source = workspace.Registry().IndexOf(*name);
    if (source < 0) continue;
    const Outcome removed = RemoveDataSource(workspace, static_cast<std::size_t>(source));
    if (workspace.Registry().IndexOf(*name) >= 0) note("data source " + *name, removed);
  }
  for (const std::string* name : {&trial.source, &trial.destination}) {
    RemoveDatabase(workspace.Files(), workspace.SandboxFolder(), *name, left);
  }
  return left;
}

}  // namespace

std::vector<std::string> TrialDefinitions() {
  std::vector<std::string> all(std::begin(kTables), std::end(kTables));
  int id = 0;
  for (const char* const name : kCustomers) {
    all.push_back("insert into SHOP.CUSTOMERS values (" + std::to_string(++id) + ", '" + name +
                  "', 100)");
  }
  id = 0;
  for (const char* const title : kProducts) {
    all.push_back("insert into SHOP.PRODUCTS values (" + std::to_string(++id) + ", '" + title +
                  "', 9.9)");
  }
  return all;
}

LogOn TrialLogOn(const std::string& database) {
  return {database, "SYS", "sandbox", true};
}

std::string WhyNoTrial(const Workspace& workspace) {
  if (workspace.UsesSandbox()) {
    return workspace.Oci().Loaded() ? "" : "The sandbox library can not be loaded";
  }
  if (FindSandboxLibrary(workspace.ProgramFolder()).empty()) {
    return "The sandbox library is not installed: it comes with the package quillmere-sandbox";
  }
  if (workspace.Registry().CountInUse() == 0) return {};
  return "This folder has data sources of another client library: take a new working folder to try "
         "the sandbox";
}

Outcome MakeSandboxTrial(Workspace& workspace, DatabaseWork& work, SandboxTrial& trial) {
  std::string reason = WhyNoTrial(workspace);
  if (!reason.empty()) return Outcome::Refused(std::move(reason));
  const bool other_client = !workspace.UsesSandbox();
  if (other_client && !workspace.UseSandbox(reason)) return Outcome::Refused(std::move(reason));
  ChooseNames(workspace, trial);
  const auto part = [library = &workspace.Oci(), files = &workspace.Files(),
                     folder = workspace.SandboxFolder(),
                     names = trial](SchemaListener& listener, LogLines&) {
    return MakeDatabases(*library, *files, folder, names, listener);
  };
  Outcome made = RunFor(work, workspace.Log(), part).value_or(Outcome::Cancelled());
  if (made) {
    made = AddAll(workspace, work, trial);
    const std::string left = made ? std::string() : TakeBack(workspace, trial);
    if (!left.empty()) {
      made = Outcome::Refused(made.text + ". Left over, remove them by hand: " + left);
    }
  }
  if (!made) {
    if (other_client) workspace.LeaveSandbox();
    return made;
  }
  std::string text = "Made the sandbox databases " + trial.source + " and " + trial.destination +
                     " with 3 tables each in " + PathText(workspace.SandboxFolder()) +
                     ", and the job " + trial.job +
                     " that copies the first to the second. Select it and press Run";
  if (other_client && !workspace.KeepSandbox(reason)) {
    text += ". Choose the sandbox under Options, Settings before the next start: " + reason;
  }
  return Outcome::Done(std::move(text));
}

}  // namespace quillmere
