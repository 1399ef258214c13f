// SPDX-License-Identifier: MIT
#include "jobs/source_file.h"

#include <array>
#include <random>

#include "foundation/text.h"
#include "foundation/xml_document.h"

namespace quillmere {

std::string NewJobId() {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::random_device random;
  std::string id;
  for (int i = 0; i < 8; ++i) {
    auto bits = static_cast<std::uint32_t>(random());
    for (int digit = 0; digit < 4; ++digit, bits >>= 4) id += kDigits[bits & 15];
  }
  return id;
}

bool WriteSourceFile(FileSystem& files, const JobFolder& folder, const SourceFile& source,
                     std::string& error) {
  XmlDocument document;
  XmlNode& node = document.Root().AddChild("source");
  node.AddChild("follow", source.dbid.empty() ? "rows" : "commits");
  node.AddChild("job_id", source.job_id);
  node.AddChild("dbid", source.dbid);
  node.AddChild("resetlogs_change", source.resetlogs_change);
  node.AddChild("row_cutoff", std::to_string(source.row_cutoff));
  return folder.Make(files, error) && ReplaceTextFile(files, folder.File(JobFile::Source),
                                                      document.Text(), FileAccess::Everyone, error);
}

FileStatus ReadSourceFile(FileSystem& files, const JobFolder& folder, SourceFile& source) {
  const auto path = folder.File(JobFile::Source);
  std::string text;
  FileStatus status = ReadFile(files, path, text);
  if (!status) return status;
  XmlDocument document;
  const XmlNode* node = document.Parse(text) ? document.Root().Child("source") : nullptr;
  SourceFile read;
  if (node != nullptr) {
    read = {std::string(node->ChildValue("job_id")), std::string(node->ChildValue("dbid")),
            std::string(node->ChildValue("resetlogs_change"))};
  }
  const bool whole =
      node != nullptr && ParseNumber(node->ChildValue("row_cutoff"), read.row_cutoff);
  if (!whole || read.job_id.empty() || read.dbid.empty() != read.resetlogs_change.empty()) {
    return {FileCode::Damaged, PathText(path) + " is damaged"};
  }
  source = std::move(read);
  return {};
}

}  // namespace quillmere
