// SPDX-License-Identifier: MIT
#include "jobs/held_file.h"

#include "foundation/text.h"
#include "foundation/xml_document.h"

namespace quillmere {
namespace {

constexpr std::string_view kPass = "pass";

}  // namespace

bool WriteHeldFile(FileSystem& files, const JobFolder& folder, const HeldFile& held,
                   std::string& error) {
  XmlDocument document;
  XmlNode& node = document.Root().AddChild("held");
  node.AddChild("reason", FoldForXml(held.reason));
  node.AddChild("found_by", held.by_pass ? kPass : "start");
  return folder.Make(files, error) && ReplaceTextFile(files, folder.File(JobFile::Held),
                                                      document.Text(), FileAccess::Everyone, error);
}

HeldFile ReadHeldFile(FileSystem& files, const JobFolder& folder) {
  XmlDocument document;
  const FileStatus read = document.Load(files, folder.File(JobFile::Held));
  if (!read) return {{}, false, read.Missing() ? std::string() : read.reason};
  const XmlNode* const node = document.Root().Child("held");
  if (node == nullptr) return {};
  return {std::string(node->ChildValue("reason")), node->ChildValue("found_by") == kPass};
}

bool KeepHeldFile(FileSystem& files, const JobFolder& folder, const std::string& reason,
                  std::string& error) {
  const std::filesystem::path path = folder.File(JobFile::Held);
  if (!reason.empty()) {
    // Where there is no folder the job's own may still have another name.
    if (!IsThere(files, folder.Path())) return true;
    return ReadHeldFile(files, folder).reason == reason ||
           WriteHeldFile(files, folder, {reason}, error);
  }
  if (!IsThere(files, path)) return true;
  const FileStatus removed = RemoveForGood(files, path);
  if (!removed) error = "Can not remove " + PathText(path) + ": " + removed.reason;
  return static_cast<bool>(removed);
}

}  // namespace quillmere
