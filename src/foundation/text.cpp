// SPDX-License-Identifier: MIT
#include "foundation/text.h"

#include <algorithm>

namespace quillmere {

std::string_view TrimLeft(std::string_view text, std::string_view blanks) {
  return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

std::string_view TrimRight(std::string_view text, std::string_view blanks) {
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

std::string_view Trim(std::string_view text, std::string_view blanks) {
  return TrimRight(TrimLeft(text, blanks), blanks);
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = UpperCase(c);
  return upper;
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = LowerCase(c);
  return lower;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return LowerCase(x) == LowerCase(y); });
}

std::string OnOneLine(std::string_view text) {
  std::string line(text);
  std::replace_if(line.begin(), line.end(), IsControlCharacter, ' ');
  return line;
}

std::string SqlLiteral(std::string_view text) {
  std::string literal = "'";
  for (const char c : text) {
    literal += c;
    if (c == '\'') literal += c;
  }
  return literal + "'";
}

}  // namespace quillmere
