// SPDX-License-Identifier: MIT
#include "jobs/skip_file.h"

#include "foundation/text.h"
#include "foundation/xml_document.h"

namespace quillmere {
namespace {

// FNV-1a: it tells batches apart that nobody forges.
void Digest(std::uint64_t& digest, std::string_view text) {
  constexpr std::uint64_t kPrime = 0x100000001b3;
  for (const char c : text) digest = (digest ^ static_cast<unsigned char>(c)) * kPrime;
  digest = (digest ^ 0xff) * kPrime;  // where one ends
}

bool ReadMark(const XmlNode& node, SkipMark& mark) {
  return ParseNumber(node.ChildValue("first"), mark.first) &&
         ParseNumber(node.ChildValue("count"), mark.count) &&
         ParseNumber(node.ChildValue("digest"), mark.digest);
}

}  // namespace

SkipMark MarkOf(const PendingBatch& batch, std::uint32_t first, std::uint32_t count) {
  SkipMark mark{first, count, 0xcbf29ce484222325};
  for (std::uint32_t i = first; i < first + count; ++i) Digest(mark.digest, batch[i].text);
  return mark;
}

bool WriteSkipFile(FileSystem& files, const JobFolder& folder, const Positions& positions,
                   const std::vector<SkipMark>& marks, std::string& error) {
  XmlDocument document;
  XmlNode& node = document.Root().AddChild("skip");
  node.AddNumber("mining_start_scn", positions.mining_start_scn);
  node.AddNumber("cutoff_scn", positions.cutoff_scn);
  for (const SkipMark& mark : marks) {
    XmlNode& entries = node.AddChild("entries");
    entries.AddNumber("first", mark.first);
    entries.AddNumber("count", mark.count);
    entries.AddChild("digest", std::to_string(mark.digest));
  }
  return ReplaceTextFile(files, folder.File(JobFile::Skip), document.Text(), FileAccess::OwnerOnly,
                         error);
}

FileStatus ReadSkipFile(FileSystem& files, const JobFolder& folder, const JobRun& run,
                        std::vector<SkipMark>& marks) {
  marks.clear();
  const auto path = folder.File(JobFile::Skip);
  std::string text;
  FileStatus status = ReadFile(files, path, text);
  if (!status) return status.Missing() ? FileStatus{} : status;
  XmlDocument document;
  const XmlNode* const node = document.Parse(text) ? document.Root().Child("skip") : nullptr;
  Positions positions;
  const FileStatus damaged{FileCode::Damaged,
                           PathText(path) + " is damaged. Remove it, and skip the statement again"};
  if (node == nullptr ||
      !ParseNumber(node->ChildValue("mining_start_scn"), positions.mining_start_scn) ||
      !ParseNumber(node->ChildValue("cutoff_scn"), positions.cutoff_scn)) {
    return damaged;
  }
  if (positions != run.positions) return {};
  std::vector<const XmlNode*> entries;
  node->Children("entries", entries);
  std::vector<SkipMark> read;
  for (const XmlNode* one : entries) {
    SkipMark mark;
    if (!ReadMark(*one, mark)) return damaged;
    const std::size_t size = run.pending_batch.Size();
    const bool there = mark.first < size && mark.count <= size - mark.first;
    if (there && MarkOf(run.pending_batch, mark.first, mark.count) == mark) read.push_back(mark);
  }
  marks = std::move(read);
  return {};
}

}  // namespace quillmere
