// SPDX-License-Identifier: MIT
// A fresh folder that goes with its owner.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/system_files.h"

namespace quillmere {

class TempFolder {
 public:
  TempFolder() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("quillmere-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  ~TempFolder() {
    std::error_code code;
    std::filesystem::remove_all(path_, code);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  FileSystem& Files() const { return files_; }
  std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

  // Makes the folders on the way, too.
  void Write(std::string_view name, std::string_view content) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << content;
  }

  // The file's content, or "(none)".
  std::string Read(std::string_view name) const {
    std::ifstream file(path_ / name, std::ios::binary);
    if (!file) return "(none)";
    return {std::istreambuf_iterator<char>(file), {}};
  }

  bool Exists(std::string_view name) const { return std::filesystem::exists(path_ / name); }

  // The names in a folder below, sorted.
  std::vector<std::string> List(std::string_view folder = ".") const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_ / folder)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::filesystem::path path_;
  mutable SystemFiles files_;
};

}  // namespace quillmere
