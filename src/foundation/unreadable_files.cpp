// SPDX-License-Identifier: MIT
#include "foundation/unreadable_files.h"

#include <utility>

#include "foundation/files.h"

namespace quillmere {

void UnreadableFiles::Rename(const std::filesystem::path& from, const std::filesystem::path& to) {
  auto file = files_.extract(from);
  if (file.empty()) return;
  file.key() = to;
  files_.insert(std::move(file));
}

std::string UnreadableFiles::WhyNotRead(const std::filesystem::path& file) const {
  const auto found = files_.find(file);
  if (found == files_.end()) return {};
  const bool damaged = found->second.code == FileCode::Damaged;
  return damaged ? PathText(file) + " is damaged: " + found->second.reason : found->second.reason;
}

std::string UnreadableFiles::WhyNotSaved(const std::filesystem::path& file) const {
  const auto found = files_.find(file);
  if (found == files_.end() || found->second.code == FileCode::Damaged) return {};
  return found->second.reason +
         ". Nothing is saved over it: make it readable and start the program again";
}

bool UnreadableFiles::Keep(FileSystem& files, const std::filesystem::path& file,
                           std::string& error) {
  if (!Contains(file)) return true;
  error = WhyNotSaved(file);
  if (!error.empty() || !KeepBadFile(files, file, error)) return false;
  Forget(file);
  return true;
}

}  // namespace quillmere
