// SPDX-License-Identifier: MIT
// Where the literals of a redo statement begin and end. Capture and the batch file follow the same
// rules, so what is written a statement a line reads back the same.
#pragma once

#include <cstddef>
#include <string_view>

namespace quillmere {

// Walks over statement text piece by piece. A single quote toggles inside a literal, a double quote
// inside a quoted name; an escaped quote (two in a row) toggles twice and changes nothing.
class QuoteScanner {
 public:
  // The first position at or after from that is one of the two characters outside of literals and
  // names, or npos; the state then stands behind that character, or at the end of the text.
  std::size_t Find(std::string_view text, std::size_t from, char a, char b);

  bool Inside() const { return quote_ != '\0'; }

 private:
  char quote_ = '\0';
};

}  // namespace quillmere
