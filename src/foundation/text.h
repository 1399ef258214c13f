// SPDX-License-Identifier: MIT
// Small work on texts, which are bytes. Letters are those of ASCII: no locale has a say in what is
// sent to a database or becomes a file name. Any thread.
#pragma once

#include <charconv>
#include <string>
#include <string_view>

namespace quillmere {

inline constexpr std::string_view kBlanks = " \t\r\n\v\f";

// What is left of the text without the blanks at its ends. It lies in the same memory.
std::string_view TrimLeft(std::string_view text, std::string_view blanks = kBlanks);
std::string_view TrimRight(std::string_view text, std::string_view blanks = kBlanks);
std::string_view Trim(std::string_view text, std::string_view blanks = kBlanks);

constexpr bool IsBlank(char c) {
  return kBlanks.find(c) != std::string_view::npos;
}

constexpr char UpperCase(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr char LowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

constexpr bool IsControlCharacter(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}
// A byte behind the first one of a character in UTF-8.
constexpr bool ContinuesCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Blanks instead of line breaks and other control characters.
std::string OnOneLine(std::string_view text);

// As a literal of SQL: 'it''s'.
std::string SqlLiteral(std::string_view text);

// As configuration files have it.
constexpr std::string_view BoolText(bool value) {
  return value ? "true" : "false";
}

// False unless the whole text is one number that the type can hold; value is left alone then.
template <typename Number>
bool ParseNumber(std::string_view text, Number& value) {
  const char* const end = text.data() + text.size();
  Number parsed{};
  const auto [stop, error] = std::from_chars(text.data(), end, parsed);
  if (error != std::errc() || stop != end) return false;
  value = parsed;
  return true;
}

// Of several reasons the first is the one to tell.
inline void KeepFirst(std::string& first, std::string_view reason) {
  if (first.empty()) first = reason;
}

}  // namespace quillmere
