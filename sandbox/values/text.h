// SPDX-License-Identifier: MIT
// Text measured in characters: UTF-8, where a byte that belongs to no character counts as one.
// Plain functions, for any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillmere::sandbox {

inline bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
std::size_t CountCharacters(std::string_view text);
// The byte where the character of that number (from 0) begins; the size behind the last.
std::size_t ByteOfCharacter(std::string_view text, std::size_t character);
// The longest beginning of at most `bytes` bytes that does not split a character.
std::size_t CutAtCharacter(std::string_view text, std::size_t bytes);
std::string Upper(std::string_view text);
// 'it''s'
std::string QuoteLiteral(std::string_view text);

}  // namespace quillmere::sandbox
