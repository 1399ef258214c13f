// SPDX-License-Identifier: MIT
// A fresh folder that goes with its owner.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

#include "foundation/system_files.h"

namespace quillmere::bench {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "quillmere-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
  }
  ~ScratchFolder() {
    std::error_code code;
    std::filesystem::remove_all(path_, code);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  FileSystem& Files() const { return files_; }

 private:
  std::filesystem::path path_;
  mutable SystemFiles files_;
};

}  // namespace quillmere::bench
