// SPDX-License-Identifier: MIT
#include "ui/main/shared_files.h"

#include "foundation/files.h"

namespace quillmere {

std::filesystem::path FindSharedFile(FileSystem& files, const std::filesystem::path& relative,
                                     const std::filesystem::path& working_folder,
                                     const std::filesystem::path& program_folder,
                                     std::string& tried) {
  tried.clear();
  for (const std::filesystem::path& place :
       {working_folder, program_folder, program_folder / ".." / "share" / "quillmere"}) {
    std::filesystem::path file = (place / relative).lexically_normal();
    if (IsFile(files, file)) return file;
    tried += (tried.empty() ? "" : ", ") + PathText(file);
  }
  return {};
}

}  // namespace quillmere
