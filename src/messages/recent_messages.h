// SPDX-License-Identifier: MIT
// messages.tsv in the working folder: the last lines of the message list with their kind and job,
// so that the list is there again after a start. docs/file-formats.md has its layout. Nothing
// depends on it: what fails is left alone.
#pragma once

#include <cstddef>
#include <deque>
#include <filesystem>
#include <string>
#include <string_view>

#include "foundation/files.h"

namespace quillmere {

// A line of the message list.
struct MessageEntry {
  std::string text;  // with its time stamp, without a line feed at its end
  bool error = false;
  std::string job{};  // which one it is about; empty: none, or it is not known
  bool read = false;  // the operator has seen it, as far as the list can tell
};

// One thread.
class RecentMessages {
 public:
  static constexpr std::size_t kKept = 500;

  RecentMessages(FileSystem& files, std::filesystem::path path);

  // What the file has, the latest lines in their order, as read ones; damaged lines are left out.
  // Leaves it with them and with those that are there already.
  std::deque<MessageEntry> Begin(const std::deque<MessageEntry>& present);

  void Add(const MessageEntry& entry);

 private:
  std::deque<MessageEntry> Read() const;
  void Write(const std::deque<MessageEntry>& entries);

  FileSystem& files_;
  const std::filesystem::path path_;
  std::size_t lines_ = 0;  // of the file
};

}  // namespace quillmere
