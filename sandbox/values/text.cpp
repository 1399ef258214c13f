// SPDX-License-Identifier: MIT
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

bool Continues(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

}  // namespace

std::size_t CountCharacters(std::string_view text) {
  std::size_t count = 0;
  for (const char c : text) count += Continues(c) ? 0 : 1;
  return count;
}

std::size_t ByteOfCharacter(std::string_view text, std::size_t character) {
  std::size_t at = 0;
  while (at < text.size() && character > 0) {
    ++at;
    while (at < text.size() && Continues(text[at])) ++at;
    --character;
  }
  return at;
}

std::size_t CutAtCharacter(std::string_view text, std::size_t bytes) {
  if (bytes >= text.size()) return text.size();
  std::size_t cut = bytes;
  for (int back = 0; back < 3 && cut > 0 && Continues(text[cut]); ++back) --cut;
  // Four continuation bytes in a row are no character: cut where asked.
  return cut == 0 || Continues(text[cut]) ? bytes : cut;
}

std::string Upper(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return result;
}

std::string QuoteLiteral(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    quoted += c;
    if (c == '\'') quoted += c;
  }
  quoted += '\'';
  return quoted;
}

}  // namespace quillmere::sandbox
