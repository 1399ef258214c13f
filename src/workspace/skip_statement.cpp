// SPDX-License-Identifier: MIT
#include "workspace/skip_statement.h"

#include <memory>

#include "engine/rewriter.h"
#include "engine/skip.h"
#include "foundation/text.h"

namespace quillmere {
namespace {

constexpr std::string_view kHead =
    "-- Statements that an operator skipped: they were not applied to the destination. Compare\n"
    "-- their tables. One that stands here twice was skipped once: the program died before.\n\n";

std::string Flat(std::string_view text) {
  std::string flat(Trim(text));
  for (char& c : flat) {
    if (IsControlCharacter(c)) c = ' ';
  }
  return flat;
}

std::string PlaceText(const NextToSkip& next) {
  const std::string first = std::to_string(next.first + 1);
  const std::string of = " of " + std::to_string(next.of);
  if (next.count == 1) return "statement " + first + of;
  return "statements " + first + " to " + std::to_string(next.first + next.count) + of;
}

// Down to the disk before anything is left out.
bool Record(Workspace& workspace, const JobFolder& folder, const std::string& text,
            std::string& error) {
  FileSystem& files = workspace.Files();
  const std::filesystem::path path = folder.File(JobFile::Skipped);
  std::unique_ptr<OpenFile> file;
  FileStatus status = files.Open(path, OpenMode::Append, FileSystem::kOwnerOnly, file);
  const bool is_new = status && file->Size() == 0;
  if (status) status = file->Append((is_new ? std::string(kHead) : std::string()) + text);
  if (status) status = file->Flush();
  if (status) status = file->Close();
  if (status && is_new) status = files.FlushFolder(folder.Path());
  if (!status) error = "Can not write " + PathText(path) + ": " + status.reason;
  return static_cast<bool>(status);
}

}  // namespace

Outcome SkipStatement(Workspace& workspace, std::size_t index, const std::string& reason) {
  SyncJob& job = workspace.Jobs().At(index);
  const std::string name = NameOf(job);
  const std::string why = Flat(reason);
  NextToSkip next;
  std::string error;
  if (why.empty()) return Outcome::Refused("Say why the statement is skipped");
  if (!FindNextToSkip(workspace.Jobs(), index, next, error))
    return Outcome::Refused(std::move(error));
  const JobFolder folder = workspace.Catalogue().FolderOf(name);
  const std::string what = PlaceText(next);
  const std::string table = next.table.empty() ? "" : ", " + next.owner + "." + next.table;
  std::string text = "-- " + FormatTimeStamp(workspace.TimeSource().Now()) + " " +
                     Flat(workspace.Actions().User()) + ", " + what + Flat(table) + ": " + why +
                     "\n";
  for (const std::string& statement : next.statements) text += statement + ";\n";
  if (!Record(workspace, folder, text + "\n", error) ||
      !MarkToSkip(workspace.Files(), folder, job.run, next, error)) {
    return Outcome::Refused(std::move(error));
  }
  for (const std::string& statement : next.statements) {
    const ParsedStatement parsed = ParseStatement(statement);
    static_cast<void>(MarkToCompare(job, parsed.owner, parsed.table));
  }
  workspace.Actions().Note("skip", "job " + name, {}, what + table + ": " + why);
  std::string done = "The next pass of " + name + " leaves out " + what + table;
  workspace.Log().AddOf(name, done + ": " + why, false);
  if (!workspace.SaveJobs(error)) done += ". " + error;
  return Outcome::Done(std::move(done));
}

}  // namespace quillmere
