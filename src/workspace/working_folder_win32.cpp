// SPDX-License-Identifier: MIT
#include <cstdlib>

#include "workspace/working_folder.h"

namespace quillmere {

std::filesystem::path UserDataFolder() {
  const wchar_t* data = ::_wgetenv(L"LOCALAPPDATA");
  if (data == nullptr || *data == L'\0') return {};
  return std::filesystem::path(data) / "Quillmere" / "workspace";
}

}  // namespace quillmere
