// SPDX-License-Identifier: MIT
#include "messages/recent_messages.h"

#include <optional>
#include <utility>

namespace quillmere {
namespace {

// What parts fields and lines, and how it is written within them.
constexpr std::pair<char, char> kEscapes[] = {{'\\', '\\'}, {'\t', 't'}, {'\n', 'n'}, {'\r', 'r'}};

void AppendEscaped(std::string& line, std::string_view text) {
  for (const char c : text) {
    char escape = '\0';
    for (const auto& [plain, letter] : kEscapes) {
      if (c == plain) escape = letter;
    }
    if (escape != '\0') line += '\\';
    line += escape != '\0' ? escape : c;
  }
}

std::string Unescaped(std::string_view text) {
  std::string plain_text;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      plain_text += text[i];
      continue;
    }
    ++i;
    for (const auto& [plain, letter] : kEscapes) {
      if (text[i] == letter) plain_text += plain;
    }
  }
  return plain_text;
}

std::string LineOf(const MessageEntry& entry) {
  std::string line = entry.error ? "E\t" : "I\t";
  AppendEscaped(line, entry.job);
  line += '\t';
  AppendEscaped(line, entry.text);
  line += '\n';
  return line;
}

std::optional<MessageEntry> EntryOf(std::string_view line) {
  const std::size_t tab = line.find('\t', 2);
  const bool whole = line.starts_with("E\t") || line.starts_with("I\t");
  if (!whole || tab == std::string_view::npos) return std::nullopt;
  return MessageEntry{Unescaped(line.substr(tab + 1)), line.front() == 'E',
                      Unescaped(line.substr(2, tab - 2)), true};
}

}  // namespace

RecentMessages::RecentMessages(FileSystem& files, std::filesystem::path path)
    : files_(files), path_(std::move(path)) {}

std::deque<MessageEntry> RecentMessages::Read() const {
  std::deque<MessageEntry> entries;
  std::string content;
  if (!ReadFile(files_, path_, content)) return entries;
  std::string_view rest = content;
  // A line without its end was cut short by a crash.
  for (std::size_t end; (end = rest.find('\n')) != std::string_view::npos;) {
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (auto entry = EntryOf(line)) entries.push_back(*std::move(entry));
    if (entries.size() > kKept) entries.pop_front();
  }
  return entries;
}

void RecentMessages::Write(const std::deque<MessageEntry>& entries) {
  std::string content, ignored;
  for (const MessageEntry& entry : entries) content += LineOf(entry);
  static_cast<void>(ReplaceTextFile(files_, path_, content, FileAccess::OwnerOnly, ignored));
  lines_ = entries.size();
}

std::deque<MessageEntry> RecentMessages::Begin(const std::deque<MessageEntry>& present) {
  std::deque<MessageEntry> earlier = Read();
  std::deque<MessageEntry> all = earlier;
  all.insert(all.end(), present.begin(), present.end());
  Write(all);
  return earlier;
}

void RecentMessages::Add(const MessageEntry& entry) {
  std::string ignored;
  if (!AppendTextFile(files_, path_, LineOf(entry), ignored)) return;
  if (++lines_ > 2 * kKept) Write(Read());
}

}  // namespace quillmere
