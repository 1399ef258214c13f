// SPDX-License-Identifier: MIT
#include "foundation/unreadable_files.h"

#include <algorithm>

#include "foundation/files.h"

namespace quillmere {

void UnreadableFiles::Rename(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::replace(files_.begin(), files_.end(), from, to);
}

bool UnreadableFiles::Keep(FileSystem& files, const std::filesystem::path& file,
                           std::string& error) {
  const auto found = std::find(files_.begin(), files_.end(), file);
  if (found == files_.end()) return true;
  if (!KeepBadFile(files, file, error)) return false;
  files_.erase(found);
  return true;
}

}  // namespace quillmere
