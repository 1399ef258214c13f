// SPDX-License-Identifier: MIT
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <string>

#include "workspace/program_folder.h"

namespace quillmere {

std::filesystem::path ProgramFolder() {
  constexpr std::size_t kLongestPath = 32768;
  std::wstring name(kLongestPath, L'\0');
  const DWORD length = ::GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(kLongestPath));
  name.resize(length < kLongestPath ? length : 0);
  return std::filesystem::path(name).parent_path();
}

}  // namespace quillmere
