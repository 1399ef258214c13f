// SPDX-License-Identifier: MIT
#include "workspace/working_folder.h"

#include <cstdlib>

namespace quillmere {
namespace {

// Relative paths are no answer: they would depend on where the program was started.
std::filesystem::path AbsolutePathIn(const char* variable) {
  const char* value = std::getenv(variable);
  const std::filesystem::path path = value != nullptr ? value : "";
  return path.is_absolute() ? path : std::filesystem::path();
}

}  // namespace

std::filesystem::path UserDataFolder() {
  std::filesystem::path data = AbsolutePathIn("XDG_DATA_HOME");
  if (data.empty()) {
    const std::filesystem::path home = AbsolutePathIn("HOME");
    if (home.empty()) return {};
    data = home / ".local" / "share";
  }
  return data / "quillmere" / "workspace";
}

}  // namespace quillmere
