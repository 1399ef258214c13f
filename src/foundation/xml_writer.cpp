// SPDX-License-Identifier: MIT
#include "foundation/xml_writer.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <vector>

#include "foundation/text.h"

namespace quillmere {

namespace {

constexpr std::size_t kIndent = 3;
constexpr std::size_t kFirstBuffer = std::size_t{64} << 10;

bool NeedsEscape(char c) {
  return c == '<' || c == '>' || c == '\\';
}

}  // namespace

bool XmlWriter::Write(const XmlNode& root, std::size_t expected_size) {
  used_ = 0;
  ok_ = Reserve(std::min(expected_size, kXmlTextLimit));
  std::vector<const XmlNode*> open;
  const XmlNode* node = root.FirstChild();
  while (ok_ && (node != nullptr || !open.empty())) {
    if (node == nullptr) {
      Close();
      node = open.back()->NextSibling();
      open.pop_back();
    } else if (node->FirstChild() != nullptr) {
      Open(node->Name());
      open.push_back(node);
      node = node->FirstChild();
    } else {
      Leaf(node->Name(), node->Data());
      node = node->NextSibling();
    }
  }
  return ok_;
}

void XmlWriter::Open(std::string_view name) {
  open_.push_back(name);
  ok_ = ok_ && WriteTagLine("<", name, open_.size());
}

void XmlWriter::Leaf(std::string_view name, std::string_view data) {
  ok_ = ok_ && WriteLeaf(name, data, open_.size() + 1);
}

void XmlWriter::Number(std::string_view name, long long value) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  Leaf(name, {digits, static_cast<std::size_t>(end - digits)});
}

void XmlWriter::Close() {
  ok_ = ok_ && WriteTagLine("</", open_.back(), open_.size());
  open_.pop_back();
}

bool XmlWriter::Reserve(std::size_t bytes) {
  if (bytes > kXmlTextLimit - used_) return false;
  if (bytes <= size_ - used_) return true;
  size_ = std::max({used_ + bytes, size_ * 2, kFirstBuffer});
  auto larger = std::make_unique_for_overwrite<char[]>(size_);
  if (used_ > 0) std::memcpy(larger.get(), buffer_.get(), used_);
  buffer_ = std::move(larger);
  return true;
}

bool XmlWriter::WriteTagLine(std::string_view opening, std::string_view name, std::size_t depth) {
  if (!Reserve(kIndent * depth + opening.size() + name.size() + 2)) return false;
  PutBlanks(kIndent * (depth - 1));
  Put(opening);
  Put(name);
  Put(">\n");
  return true;
}

bool XmlWriter::WriteLeaf(std::string_view name, std::string_view data, std::size_t depth) {
  std::string_view rest = data;
  if (rest.empty()) return true;
  std::size_t feed = rest.find('\n');
  if (feed == std::string_view::npos) return WriteOneLine(name, data, depth);
  if (!WriteTagLine("<", name, depth)) return false;
  for (; feed != std::string_view::npos; feed = rest.find('\n')) {
    if (!WriteTextLine(rest.substr(0, feed), depth)) return false;
    rest.remove_prefix(feed + 1);
  }
  return WriteTextLine(rest, depth) && WriteTagLine("</", name, depth);
}

bool XmlWriter::WriteOneLine(std::string_view name, std::string_view data, std::size_t depth) {
  if (!Reserve(kIndent * depth + 2 * name.size() + 2 * data.size() + 6)) return false;
  PutBlanks(kIndent * (depth - 1));
  Put("<");
  Put(name);
  Put(">");
  PutEscaped(data);
  Put("</");
  Put(name);
  Put(">\n");
  return true;
}

bool XmlWriter::WriteTextLine(std::string_view line, std::size_t depth) {
  if (!Reserve(kIndent * depth + 2 * line.size() + 2)) return false;
  PutBlanks(kIndent * depth);
  if (line.starts_with(' ')) Put("\\");
  PutEscaped(line);
  Put("\n");
  return true;
}

void XmlWriter::Put(std::string_view text) {
  if (text.empty()) return;
  std::memcpy(buffer_.get() + used_, text.data(), text.size());
  used_ += text.size();
}

void XmlWriter::PutBlanks(std::size_t count) {
  std::memset(buffer_.get() + used_, ' ', count);
  used_ += count;
}

void XmlWriter::PutEscaped(std::string_view text) {
  char* out = buffer_.get() + used_;
  for (const char c : text) {
    if (NeedsEscape(c)) *out++ = '\\';
    *out++ = c;
  }
  used_ = static_cast<std::size_t>(out - buffer_.get());
}

std::string FoldForXml(std::string_view value) {
  // Indentation, tags and the escape of a leading blank fit into what is left of the line.
  constexpr std::size_t kRoom = kXmlLineLimit - 150;
  if (value.size() <= kRoom / 2) return std::string(value);  // fits however much is escaped
  std::string folded;
  folded.reserve(value.size());
  std::size_t width = 0;  // of the line so far, as it will be written
  for (std::size_t at = 0; at < value.size(); ++at) {
    const char c = value[at];
    const bool starts_character = !ContinuesCharacter(c);
    // Not before a tail byte of UTF-8, and not behind a blank, which would be lost at a line's end;
    // but a line of nothing else must end somewhere.
    const bool may_break = starts_character && !folded.empty() && folded.back() != ' ';
    if (c != '\n' && ((width >= kRoom && may_break) || width >= kRoom + 100)) {
      folded += '\n';
      width = 0;
    }
    folded += c;
    width = c == '\n' ? 0 : width + (NeedsEscape(c) ? 2 : 1);
  }
  return folded;
}

}  // namespace quillmere
