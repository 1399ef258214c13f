// SPDX-License-Identifier: MIT
#include <system_error>

#include "workspace/program_folder.h"

namespace quillmere {

std::filesystem::path ProgramFolder() {
  std::error_code code;
  return std::filesystem::read_symlink("/proc/self/exe", code).parent_path();
}

}  // namespace quillmere
