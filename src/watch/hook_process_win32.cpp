// SPDX-License-Identifier: MIT
#include "watch/hook_process.h"

namespace quillmere {

struct HookProcess::Child {};

HookProcess::HookProcess() = default;
HookProcess::~HookProcess() = default;

bool HookProcess::Start(const std::vector<std::string>&, std::string_view, std::string& error) {
  error = "no command is run on Windows";
  return false;
}

bool HookProcess::Running() const {
  return false;
}

std::optional<std::string> HookProcess::Look() {
  return std::string();
}

void HookProcess::Kill() {}

}  // namespace quillmere
