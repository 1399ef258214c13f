#include "foundation/xml_reader.h"

#include <algorithm>
#include <array>
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

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool IsIdentifier(std::string_view name) {
  return !name.empty() && IsLetter(name[0]) && std::all_of(name.begin(), name.end(), [](char c) {
    return IsLetter(c) || (c >= '0' && c <= '9');
  });
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
  SkipBlanks(at, end);
  while (end > at && end[-1] == ' ' && !(end - at > 1 && end[-2] == '\\')) --end;
  if (at == end) return true;
  if (*at == '<') return ReadTags(at, end);
  char* const begin = at;
  return AddText(Unescape(begin, at, end, false));
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
