// SPDX-License-Identifier: MIT
#include <cstdlib>

#include "workspace/action_log.h"

namespace quillmere {

std::string UserName() {
  const char* const name = std::getenv("USERNAME");
  return name != nullptr ? name : "unknown";
}

}  // namespace quillmere
