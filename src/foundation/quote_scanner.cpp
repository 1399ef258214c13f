// SPDX-License-Identifier: MIT
#include "foundation/quote_scanner.h"

#include <cstring>

namespace quillmere {

std::size_t QuoteScanner::Find(std::string_view text, std::size_t from, char a, char b) {
  const char* position = text.data() + from;
  const char* const end = text.data() + text.size();
  while (position < end) {
    if (quote_ != '\0') {
      // Most of a statement is literals: let the library look for their end.
      position = static_cast<const char*>(
          std::memchr(position, quote_, static_cast<std::size_t>(end - position)));
      if (position == nullptr) return std::string_view::npos;
      quote_ = '\0';
      ++position;
      continue;
    }
    const char c = *position;
    if (c == a || c == b) return static_cast<std::size_t>(position - text.data());
    if (c == '\'' || c == '"') quote_ = c;
    ++position;
  }
  return std::string_view::npos;
}

}  // namespace quillmere
