// SPDX-License-Identifier: MIT
#include "messages/message_log.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

#include "foundation/text.h"

namespace quillmere {

namespace {

constexpr std::string_view kErrorLog = "error.log";
constexpr std::string_view kRecentFile = "messages.tsv";
constexpr std::string_view kGeneralLog = "ravelkin.log";
constexpr std::uint64_t kErrorLogLimit = std::uint64_t{2} << 20;
constexpr std::uint64_t kGeneralLogLimit = std::uint64_t{10} << 20;
constexpr int kKeptFiles = 5;
constexpr std::size_t kStampWidth = sizeof("20260131 23:59:07 ") - 1;

// A message of several lines, as the server sends them, stays one entry to the eye and to a search
// for the stamps: its further lines are indented under the first.
std::string ForErrorLog(std::string_view line) {
  line = TrimRight(line, "\r\n");
  std::string text;
  text.reserve(line.size() + 1);
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '\r' && i + 1 < line.size() && line[i + 1] == '\n') continue;
    text += line[i];
    if (line[i] == '\n') text.append(kStampWidth, ' ');
  }
  text += '\n';
  return text;
}

}  // namespace

MessageLog::MessageLog(FileSystem& file_system, std::filesystem::path folder, const Clock& clock,
                       const Settings& settings, Files files)
    : file_system_(file_system),
      folder_(std::move(folder)),
      clock_(clock),
      settings_(settings),
      files_(files) {}

std::string MessageLog::Line(std::string_view text) const {
  std::string line = FormatTimeStamp(clock_.Now());
  line += ' ';
  line += text;
  return line;
}

void MessageLog::KeepRecent() {
  if (files_ == Files::LeaveAlone || recent_) return;
  recent_.emplace(file_system_, folder_ / kRecentFile);
  std::deque<MessageEntry> earlier = recent_->Begin(entries_);
  earlier_ = earlier.size();
  entries_.insert(entries_.begin(), std::move_iterator(earlier.begin()),
                  std::move_iterator(earlier.end()));
}

void MessageLog::MarkRead() {
  unread_ = 0;
  for (auto entry = entries_.rbegin(); entry != entries_.rend() && !entry->read; ++entry) {
    entry->read = true;
  }
}

void MessageLog::Clear() {
  const auto unread = std::find_if(entries_.rbegin(), entries_.rend(),
                                   [](const MessageEntry& one) { return one.error && !one.read; });
  MessageEntry kept = std::move(unread == entries_.rend() ? entries_.back() : *unread);
  entries_.clear();
  earlier_ = 0;
  unread_ = kept.error && !kept.read ? 1 : 0;
  entries_.push_back(std::move(kept));
}

bool MessageLog::AddOf(std::string_view job, std::string_view text, bool error) {
  std::string line = Line(text);
  std::string reason;
  if (files_ == Files::Write &&
      !AppendTextFile(file_system_, folder_ / kErrorLog, ForErrorLog(line), reason)) {
    return false;
  }
  const int limit = settings_.message_limit;
  const bool cleared = limit >= 0 && entries_.size() - earlier_ > static_cast<std::size_t>(limit);
  if (cleared) Clear();
  entries_.push_back({std::move(line), error, std::string(job)});
  if (error) ++unread_;
  if (recent_) recent_->Add(entries_.back());
  if (listener_) listener_(cleared);
  return true;
}

bool MessageLog::WriteGeneral(std::string_view text) {
  if (files_ == Files::LeaveAlone) return true;
  // Byte for byte: an operator may have to run a statement from here by hand.
  const std::string line = Line(text) + '\n';
  std::string reason;
  const MutexLock lock(general_mutex_);
  return AppendTextFile(file_system_, folder_ / kGeneralLog, line, reason);
}

void MessageLog::LimitFiles() {
  if (files_ == Files::LeaveAlone) return;
  LimitFile(kErrorLog, kErrorLogLimit);
  const MutexLock lock(general_mutex_);
  LimitFile(kGeneralLog, kGeneralLogLimit);
}

void MessageLog::LimitFile(std::string_view name, std::uint64_t limit) const {
  const std::filesystem::path file = folder_ / name;
  FileFacts facts;
  if (!file_system_.Look(file, facts) || facts.link || facts.size <= limit) return;
  const auto kept = [&](int number) {
    std::filesystem::path path = file;
    return number == 0 ? path : path += "." + std::to_string(number);
  };
  // One that can not be renamed is not lost: it grows on, and this is tried again.
  for (int number = kKeptFiles - 1; number >= 0; --number) {
    const FileStatus renamed = file_system_.Rename(kept(number), kept(number + 1));
    if (!renamed && !renamed.Missing()) return;
  }
  std::string reason;
  AppendTextFile(file_system_, file, Line("") + '\n', reason);
}

}  // namespace quillmere
