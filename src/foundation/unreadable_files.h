// SPDX-License-Identifier: MIT
// The configuration files that were there and could not be read. None of them is destroyed by a
// save: it is kept beside itself, under its name with ".bad" added, before the first one.
#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "foundation/file_system.h"

namespace quillmere {

// Not locked: whoever reads and saves the files sees to it that they do so one at a time.
class UnreadableFiles {
 public:
  void Add(std::filesystem::path file) { files_.push_back(std::move(file)); }
  void Clear() { files_.clear(); }

  // The file is gone, or has another name.
  void Forget(const std::filesystem::path& file) { std::erase(files_, file); }
  void Rename(const std::filesystem::path& from, const std::filesystem::path& to);

  // To be asked before a file is written. False: it could not be kept, must not be written, and
  // stays marked. True for a file that bears no mark.
  bool Keep(FileSystem& files, const std::filesystem::path& file, std::string& error);

 private:
  std::vector<std::filesystem::path> files_;
};

}  // namespace quillmere
