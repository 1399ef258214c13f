// SPDX-License-Identifier: MIT
// The configuration files that were there and could not be read. None of them is destroyed by a
// save: one that was read and is damaged is kept beside itself, under its name with ".bad" added,
// before the first one; over one that could not even be read nothing is saved.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "foundation/file_system.h"

namespace quillmere {

// Not locked: whoever reads and saves the files sees to it that they do so one at a time.
class UnreadableFiles {
 public:
  // why: of the failed reading.
  void Add(const std::filesystem::path& file, const FileStatus& why) { files_[file] = why; }
  void Clear() { files_.clear(); }
  bool Contains(const std::filesystem::path& file) const { return files_.contains(file); }

  // The file is gone, or has another name.
  void Forget(const std::filesystem::path& file) { files_.erase(file); }
  void Rename(const std::filesystem::path& from, const std::filesystem::path& to);

  // Why it could not be read, with its name; empty for a file that bears no mark.
  std::string WhyNotRead(const std::filesystem::path& file) const;

  // Why nothing may be saved over the file as long as the program runs; empty when it may, maybe
  // after Keep.
  std::string WhyNotSaved(const std::filesystem::path& file) const;

  // To be asked before a file is written. False: it could not be kept, must not be written, and
  // stays marked. True for a file that bears no mark.
  bool Keep(FileSystem& files, const std::filesystem::path& file, std::string& error);

 private:
  std::map<std::filesystem::path, FileStatus> files_;
};

}  // namespace quillmere
