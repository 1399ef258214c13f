// SPDX-License-Identifier: MIT
#include <pwd.h>
#include <unistd.h>

#include <array>

#include "workspace/action_log.h"

namespace quillmere {

std::string UserName() {
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 4096> texts{};
  const uid_t user = getuid();
  if (getpwuid_r(user, &entry, texts.data(), texts.size(), &found) == 0 && found != nullptr) {
    return found->pw_name;
  }
  return "user " + std::to_string(user);
}

}  // namespace quillmere
