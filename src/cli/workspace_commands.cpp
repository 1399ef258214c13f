// SPDX-License-Identifier: MIT
#include "cli/workspace_commands.h"

#include <algorithm>
#include <filesystem>

#include "workspace/settings_bundle.h"
#include "workspace/settings_restore.h"

namespace quillmere::cli::workspace {
namespace {

// False: the reason is on standard error.
bool ReadBundleFile(FileSystem& files, const std::filesystem::path& file, XmlDocument& document) {
  std::string text;
  const FileStatus read = ReadFile(files, file, text, Links::Followed);
  std::string reason = read.reason;
  if (read) {
    if (document.Parse(text) && BundleIn(document) != nullptr) return true;
    reason = PathText(file) + " holds no exported settings";
    if (!document.Message().empty()) reason += ": " + document.Message();
  }
  Fail(reason);
  return false;
}

int Take(Workspace& workspace, const std::filesystem::path& file, Bring what) {
  XmlDocument document;
  if (!ReadBundleFile(workspace.Files(), file, document)) return kFailed;
  std::vector<std::string> told;
  const Outcome brought = BringSettings(workspace, *BundleIn(document), what, told);
  std::string text;
  for (const std::string& line : told) text += OneLine(line) + "\n";
  const int printed = Print(text);
  return brought ? printed : Fail(brought.text);
}

}  // namespace

int Export(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  if (IsThere(workspace->Files(), arguments.file)) {
    return Fail(arguments.file + " is there already: name another file, or move it away");
  }
  XmlDocument bundle;
  std::vector<std::string> left_out;
  ReadBundle(workspace->Files(), workspace->Folder(), workspace->TimeSource().Now(), bundle,
             left_out);
  std::string error;
  if (!ReplaceTextFile(workspace->Files(), arguments.file, bundle.Text(), FileAccess::OwnerOnly,
                       error)) {
    return Fail(error);
  }
  for (const std::string& reason : left_out) Fail("Left out: " + reason);
  if (!left_out.empty()) return kFailed;
  return Print("Settings, data sources without their passwords, and jobs are in " + arguments.file +
               "\n");
}

int Import(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToChange(line, Folder::MayBeMade);
  return workspace == nullptr ? kFailed : Take(*workspace, arguments.file, Bring::Missing);
}

int Restore(const CommandLine& line, const Arguments& arguments) {
  if (arguments.day.empty()) {
    const auto workspace = OpenToLook(line);
    if (workspace == nullptr) return kFailed;
    std::string text;
    for (const std::string& day : workspace->Kept().Days()) text += day + "\n";
    return Print(text.empty() ? "Nothing is kept yet\n" : text);
  }
  const auto workspace = OpenToChange(line);
  if (workspace == nullptr) return kFailed;
  const std::vector<std::string> days = workspace->Kept().Days();
  if (std::find(days.begin(), days.end(), arguments.day) == days.end()) {
    return Fail("Nothing is kept of " + arguments.day + "; 'workspace restore' lists the days");
  }
  return Take(*workspace, workspace->Kept().FileOf(arguments.day), Bring::Back);
}

}  // namespace quillmere::cli::workspace
