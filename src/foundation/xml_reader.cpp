// SPDX-License-Identifier: MIT
#include "foundation/xml_reader.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace quillmere {

namespace {

enum CharacterClass : unsigned char { kPlain = 0, kStop = 1, kEscape = 2 };

constexpr std::array<unsigned char, 256> MakeClasses() {
  std::array<unsigned char, 256> classes{};
  classes['<'] = classes['>'] = kStop;
  classes['\\'] = kEscape;
  return classes;
}
constexpr std::array<unsigned char, 256> kClasses = MakeClasses();

unsigned char ClassOf(char c) {
  return kClasses[static_cast<unsigned char>(c)];
}

// Resolves escapes from at on, in place; ends at an unescaped tag character if stop is set. A
// backslash at the very end stands for itself.
std::string_view Unescape(char* begin, char*& at, char* end, bool stop) {
  char* out = at;
  while (at < end && !(stop && ClassOf(*at) == kStop)) {
    if (*at == '\\' && at + 1 < end) ++at;
    *out++ = *at++;
  }
  return {begin, static_cast<std::size_t>(out - begin)};
}

// A name or a text: what stands before the next unescaped "<" or ">" or the end of the line.
std::string_view TakeToken(char*& at, char* end) {
  char* const begin = at;
  while (at < end && ClassOf(*at) == kPlain) ++at;
  if (at < end && *at == '\\') return Unescape(begin, at, end, true);
  return {begin, static_cast<std::size_t>(at - begin)};
}

void SkipBlanks(char*& at, const char* end) {
  while (at < end && *at == ' ') ++at;
}

// Name characters are 1 for letters and "_", 2 for digits.
constexpr std::array<unsigned char, 256> MakeNameClasses() {
  std::array<unsigned char, 256> classes{};
  for (unsigned char c = 'a'; c <= 'z'; ++c) classes[c] = classes[c - 'a' + 'A'] = 1;
  for (unsigned char c = '0'; c <= '9'; ++c) classes[c] = 2;
  classes['_'] = 1;
  return classes;
}
constexpr std::array<unsigned char, 256> kNameClasses = MakeNameClasses();

unsigned char NameClassOf(char c) {
  return kNameClasses[static_cast<unsigned char>(c)];
}

// Whether one of the eight bytes of the word is c.
bool HasByte(std::uint64_t word, char c) {
  constexpr std::uint64_t kOnes = 0x0101010101010101u;
  const std::uint64_t zero_where_equal = word ^ (kOnes * static_cast<unsigned char>(c));
  return ((zero_where_equal - kOnes) & ~zero_where_equal & (kOnes << 7)) != 0;
}

// Whether a text stands for itself: no tag character, no escape.
bool IsPlain(const char* at, const char* end) {
  for (; end - at >= 8; at += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    if (HasByte(word, '<') || HasByte(word, '>') || HasByte(word, '\\')) return false;
  }
  while (at < end && ClassOf(*at) == kPlain) ++at;
  return at == end;
}

bool IsIdentifier(std::string_view name) {
  return NameClassOf(name[0]) == 1 &&
         std::all_of(name.begin(), name.end(), [](char c) { return NameClassOf(c) != 0; });
}

}  // namespace

bool XmlReader::Read() {
  char* at = text_.data();
  char* const end = at + text_.size();
  // Looked for first, because hardly any file has one.
  if (std::memchr(at, '\t', text_.size()) != nullptr) std::replace(at, end, '\t', ' ');
  while (at < end) {
    ++line_;
    void* const feed = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
    char* const stop = feed == nullptr ? end : static_cast<char*>(feed);
    char* line_end = stop;
    if (line_end > at && line_end[-1] == '\r') --line_end;
    line_end = std::min(line_end, at + std::min<std::ptrdiff_t>(line_end - at, kXmlLineLimit));
    if (!ReadLine(at, line_end)) return false;
    at = feed == nullptr ? end : stop + 1;
  }
  if (open_.size() == 1) return true;
  message_ = "Unexpected EOF";
  return false;
}

bool XmlReader::ReadLine(char* at, char* end) {
  // Indentation, a level at a time.
  while (end - at >= 3 && std::memcmp(at, "   ", 3) == 0) at += 3;
  SkipBlanks(at, end);
  while (end > at && end[-1] == ' ' && !(end - at > 1 && end[-2] == '\\')) --end;
  if (at == end) return true;
  if (*at == '<') return ReadLeaf(at, end) || ReadTags(at, end);
  char* const begin = at;
  return AddText(Unescape(begin, at, end, false));
}

// Nearly every line is a leaf that stands there whole and without an escape; it is taken here in
// one go, and everything else is left to ReadTags, which knows all forms and all errors.
bool XmlReader::ReadLeaf(char* at, char* end) {
  const char* const name = at + 1;
  const char* name_end = name;
  while (name_end < end && NameClassOf(*name_end) != 0) ++name_end;
  const std::ptrdiff_t name_size = name_end - name;
  constexpr std::ptrdiff_t kMarks = 5;  // "<", ">", "</" and ">"
  if (name_size == 0 || end - at < 2 * name_size + kMarks || NameClassOf(*name) != 1) return false;
  char* text = at + name_size + 2;
  char* const closing = end - (name_size + 3);
  if (*name_end != '>' || closing[0] != '<' || closing[1] != '/' || end[-1] != '>' ||
      std::memcmp(closing + 2, name, static_cast<std::size_t>(name_size)) != 0 ||
      !IsPlain(text, closing) || !open_.back()->data_.empty()) {
    return false;
  }
  SkipBlanks(text, closing);
  open_.back()->Append({name, static_cast<std::size_t>(name_size)},
                       {text, static_cast<std::size_t>(closing - text)});
  return true;
}

bool XmlReader::ReadTags(char* at, char* end) {
  bool text_may_follow = false;
  while (true) {
    SkipBlanks(at, end);
    if (at == end) return true;
    if (*at == '<') {
      if (!ReadTag(at, end, text_may_follow)) return false;
    } else if (*at == '>' || !text_may_follow) {
      return Fail("syntax error");
    } else {
      if (!AddText(TakeToken(at, end))) return false;
      text_may_follow = false;
    }
  }
}

bool XmlReader::ReadTag(char*& at, char* end, bool& opened) {
  SkipBlanks(++at, end);
  if (at == end || *at == '>') return Fail("invalid tag(NULL)");
  if (*at == '<') return Fail("syntax error");
  opened = *at != '/';
  if (!opened) SkipBlanks(++at, end);
  const std::string_view name = TakeToken(at, end);
  if (name.empty()) return Fail("invalid tag(NULL)");
  if (opened && !IsIdentifier(name)) return FailAt("invalid tag(", name, ")");
  if (!opened && name != open_.back()->Name()) return FailAt("tag(", name, ") not match");
  if (at == end || *at != '>') return Fail("syntax error");
  ++at;
  if (opened) return OpenElement(name);
  open_.pop_back();
  return true;
}

bool XmlReader::OpenElement(std::string_view name) {
  XmlNode& parent = *open_.back();
  if (!parent.data_.empty()) return Fail("node with data must not have child");
  open_.push_back(&parent.Append(name, {}));
  return true;
}

bool XmlReader::AddText(std::string_view text) {
  XmlNode& node = *open_.back();
  // Text belongs into an element, and into none that has elements already.
  if (open_.size() == 1 || node.first_child_ != nullptr) return Fail("syntax error");
  if (node.data_.empty()) {
    node.data_ = text;
    return true;
  }
  // Between two lines of one element there is nothing that still points into the buffer, and at
  // least a line end: the line moves up to the one before.
  char* const buffer = text_.data();
  char* out = buffer + (node.data_.data() - buffer) + node.data_.size();
  *out++ = '\n';
  std::memmove(out, text.data(), text.size());
  node.data_ = {node.data_.data(), node.data_.size() + 1 + text.size()};
  return true;
}

bool XmlReader::Fail(std::string_view what) {
  message_ = "Line " + std::to_string(line_) + " : ";
  message_ += what;
  return false;
}

bool XmlReader::FailAt(std::string_view before, std::string_view name, std::string_view after) {
  std::string what(before);
  what.append(name).append(after);
  return Fail(what);
}

}  // namespace quillmere
