// SPDX-License-Identifier: MIT
#include "watch/hook_process.h"

namespace quillmere {

bool SplitCommand(std::string_view line, std::vector<std::string>& words, std::string& error) {
  words.clear();
  bool quoted = false, open = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    char c = line[i];
    if (!quoted && (c == ' ' || c == '\t' || c == '\n' || c == '\r')) {
      open = false;
      continue;
    }
    if (!open) words.emplace_back();
    open = true;
    if (c == '"') {
      quoted = !quoted;
      continue;
    }
    const bool escaped =
        quoted && c == '\\' && i + 1 < line.size() && (line[i + 1] == '"' || line[i + 1] == '\\');
    if (escaped) c = line[++i];
    words.back() += c;
  }
  if (quoted) error = "a quote is not closed";
  return !quoted;
}

}  // namespace quillmere
