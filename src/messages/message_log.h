// SPDX-License-Identifier: MIT
// The message list of the program and its two log files, error.log and ravelkin.log, in the
// working folder. Owned by the workspace.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/H_tea.h"
#include "foundation/mutex.h"
#include "messages/recent_messages.h"

namespace quillmere {

// Takes lines for the log. What works beside the user interface has one of these, which brings them
// to the log on the thread that may write it.
class LogLines {
 public:
  virtual ~LogLines() = default;
  // False: it is known that the line could not be kept.
  virtual bool Add(std::string_view text, bool error) = 0;
};

class MessageLog final : public LogLines {
 public:
  // LeaveAlone: messages are listed but no file is written, for a program that only looks.
  enum class Files { Write, LeaveAlone };

  // All but the folder's path must outlive the log.
  MessageLog(FileSystem& file_system, std::filesystem::path folder, const Clock& clock,
             const Settings& settings, Files files = Files::Write);

  // Appends the line to error.log (further lines of the text indented under the first, no empty
  // ones at its end) and to the list (the text as it is); a full list is cleared first but for one
  // entry: the newest error that was not read, else the latest. False when error.log cannot be
  // written: then nothing is listed either, and the caller says so where it can. User-interface
  // thread only (the command line's only thread that talks).
  bool Add(std::string_view text, bool error) override { return AddOf({}, text, error); }

  // The same for a line about that job.
  bool AddOf(std::string_view job, std::string_view text, bool error);

  // Puts what the list had in an earlier run in front of what it has, and keeps it for the next one
  // from now on; what was there before does not fill the list. For a program with a list; once,
  // before there is a listener.
  void KeepRecent();

  // Errors that came since the operator last looked.
  std::size_t UnreadErrors() const { return unread_; }
  void MarkRead();

  // Appends the line to ravelkin.log, the text byte for byte; nothing is shown. Any thread.
  bool WriteGeneral(std::string_view text);

  // Keeps a log file that grew above its limit (2 MiB and 10 MiB) under its name with ".1" added,
  // and older ones up to ".5", and begins it anew with a fresh line. To be called at the start and
  // at every pause. User-interface thread.
  void LimitFiles();
  static constexpr std::chrono::seconds kLimitPause{100};

  const std::deque<MessageEntry>& Entries() const { return entries_; }

  // Told after each change of the list: true when it was cleared before the entry was added.
  // User-interface thread.
  void SetListener(std::function<void(bool cleared)> listener) { listener_ = std::move(listener); }

 private:
  std::string Line(std::string_view text) const;
  void Clear();
  void LimitFile(std::string_view name, std::uint64_t limit) const;

  FileSystem& file_system_;
  const std::filesystem::path folder_;
  const Clock& clock_;
  const Settings& settings_;
  const Files files_;
  std::deque<MessageEntry> entries_;
  std::size_t unread_ = 0;
  std::size_t earlier_ = 0;  // entries of an earlier run, which do not fill the list
  std::optional<RecentMessages> recent_;
  std::function<void(bool)> listener_;
  Mutex general_mutex_;  // ravelkin.log is written by the worker and limited by the window
};

}  // namespace quillmere
