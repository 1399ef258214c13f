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
#include <string>
#include <string_view>

#include "foundation/H_tea.h"
#include "foundation/mutex.h"

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
  struct Entry {
    std::string text;  // with its time stamp, without a line feed
    bool error = false;
  };

  // LeaveAlone: messages are listed but no file is written, for a program that only looks.
  enum class Files { Write, LeaveAlone };

  // All but the folder's path must outlive the log.
  MessageLog(FileSystem& file_system, std::filesystem::path folder, const Clock& clock,
             const Settings& settings, Files files = Files::Write);

  // Appends the line to error.log (further lines of the text indented under the first, no empty
  // ones at its end) and to the list (the text as it is); a full list is cleared first but for its
  // latest entry. False when error.log cannot be written: then nothing is listed either, and the
  // caller says so where it can. User-interface thread only (the command line's only thread that
  // talks).
  bool Add(std::string_view text, bool error) override;

  // Appends the line to ravelkin.log, the text byte for byte; nothing is shown. Any thread.
  bool WriteGeneral(std::string_view text);

  // Keeps a log file that grew above its limit (2 MiB and 10 MiB) under its name with ".1" added,
  // and older ones up to ".5", and begins it anew with a fresh line. To be called at the start and
  // at every pause. User-interface thread.
  void LimitFiles();
  static constexpr std::chrono::seconds kLimitPause{100};

  const std::deque<Entry>& Entries() const { return entries_; }

  // Told after each change of the list: true when it was cleared before the entry was added.
  // User-interface thread.
  void SetListener(std::function<void(bool cleared)> listener) { listener_ = std::move(listener); }

 private:
  std::string Line(std::string_view text) const;
  void LimitFile(std::string_view name, std::uint64_t limit) const;

  FileSystem& file_system_;
  const std::filesystem::path folder_;
  const Clock& clock_;
  const Settings& settings_;
  const Files files_;
  std::deque<Entry> entries_;
  std::function<void(bool)> listener_;
  Mutex general_mutex_;  // ravelkin.log is written by the worker and limited by the window
};

}  // namespace quillmere
