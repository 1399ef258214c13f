// SPDX-License-Identifier: MIT
#include "messages/message_help.h"

#include <utility>

namespace quillmere {
namespace {

// So few words are in many messages.
constexpr std::size_t kFewest = 8;

// What stands between two marks, from a place on; the place is moved behind it. Empty, and the
// place at the text's end, when there is no more.
std::string_view Between(std::string_view text, std::string_view begin, std::string_view end,
                         std::size_t& place) {
  const std::size_t found = text.find(begin, place);
  const std::size_t first = found == text.npos ? found : found + begin.size();
  const std::size_t last = first == text.npos ? first : text.find(end, first);
  if (last == text.npos) {
    place = text.size();
    return {};
  }
  place = last + end.size();
  return text.substr(first, last - first);
}

std::string Unescaped(std::string_view text) {
  static constexpr std::pair<std::string_view, char> kEntities[] = {
      {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&amp;", '&'}};
  std::string plain;
  while (!text.empty()) {
    std::size_t taken = 1;
    char c = text.front();
    for (const auto& [entity, character] : kEntities) {
      if (text.starts_with(entity)) taken = entity.size(), c = character;
    }
    plain += c;
    text.remove_prefix(taken);
  }
  return plain;
}

// How many bytes of the message the words account for; 0 when they are not all in it, in order.
std::size_t Common(std::string_view words, std::string_view message) {
  std::size_t common = 0;
  std::size_t place = 0;
  while (!words.empty()) {
    const std::size_t name = words.find("<var>");
    const std::string part = Unescaped(words.substr(0, name));
    place = message.find(part, place);
    if (place == message.npos) return 0;
    place += part.size();
    common += part.size();
    const std::size_t end = name == words.npos ? name : words.find("</var>", name);
    words = end == words.npos ? std::string_view() : words.substr(end + 6);
  }
  return common;
}

}  // namespace

std::string AnchorOfMessage(std::string_view page, std::string_view message) {
  std::string_view anchor;
  std::size_t most = kFewest;
  for (std::size_t place = 0; place < page.size();) {
    const std::string_view row = Between(page, "<tr id=\"", "</td>", place);
    for (std::size_t in_row = 0; in_row < row.size();) {
      const std::size_t common = Common(Between(row, "<code>", "</code>", in_row), message);
      if (common <= most) continue;
      most = common;
      anchor = row.substr(0, row.find('"'));
    }
  }
  return std::string(anchor);
}

}  // namespace quillmere
