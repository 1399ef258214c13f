// SPDX-License-Identifier: MIT
#include "foundation/xml_long_text.h"

#include <algorithm>
#include <vector>

#include "foundation/text.h"

namespace quillmere {
namespace {

constexpr std::size_t kPiece = 600;  // bytes; three times as many on a line are still read whole

// The dialect drops blanks at the ends of texts and has no control characters: they stand as "%20".
std::string Plain(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool at_end = i == 0 || i + 1 == text.size();
    if (c == '%' || IsControlCharacter(c) || (c == ' ' && at_end)) {
      const auto byte = static_cast<unsigned char>(c);
      (plain += '%') += kDigits[byte >> 4];
      plain += kDigits[byte & 15];
    } else {
      plain += c;
    }
  }
  return plain;
}

std::string Meant(std::string_view plain) {
  std::string text;
  for (std::size_t i = 0; i < plain.size(); ++i) {
    int byte = 0;
    const char* const digits = plain.data() + i + 1;
    if (plain[i] == '%' && i + 2 < plain.size() &&
        std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
      text += static_cast<char>(byte);
      i += 2;
    } else {
      text += plain[i];
    }
  }
  return text;
}

}  // namespace

void AddLongText(XmlNode& node, std::string_view name, std::string_view text) {
  for (; !text.empty(); text.remove_prefix(std::min(text.size(), kPiece))) {
    node.AddChild(name, Plain(text.substr(0, kPiece)));
  }
}

std::string LongTextOf(const XmlNode& node, std::string_view name) {
  std::vector<const XmlNode*> pieces;
  node.Children(name, pieces);
  std::string text;
  for (const XmlNode* piece : pieces) text += Meant(piece->Data());
  return text;
}

}  // namespace quillmere
