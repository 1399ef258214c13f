// SPDX-License-Identifier: MIT
// One thread of redo: what its log writer has written of it, in groups that are used in turn, and
// the archived copies. It keeps SCN ranges and counts, not the changes.
#pragma once

#include <cstdint>
#include <deque>
#include <limits>
#include <vector>

namespace quillmere::sim {

inline constexpr std::int64_t kOpenEnd = std::numeric_limits<std::int64_t>::max();

struct LogShape {
  std::size_t groups = 3;   // at least 2
  std::size_t members = 1;  // of each group
  std::uint64_t bytes = 200'000;
  bool archived = false;  // else what a reused group held is gone
  std::size_t archives_kept = 4;
  std::int64_t late_ms = 3000;  // how late the log writer is at most
};

// Holds SCNs from first to below next; sequence 0 was never used.
struct LogFile {
  std::int64_t sequence = 0, first = 0, next = kOpenEnd;
  bool Holds(std::int64_t scn) const { return first <= scn && scn < next; }
};

class RedoThread {
 public:
  RedoThread(const LogShape& shape, std::int64_t scn, std::uint64_t seed);

  // A record in the buffer.
  void Append(std::int64_t now, std::int64_t scn, std::uint64_t bytes, bool commit) {
    buffer_.push_back({now, scn, bytes, commit});
  }
  // The log writer does what it has managed by now. True when a log was switched.
  bool Write(std::int64_t now);
  void WriteAll() { WriteUntil(kOpenEnd); }
  // It writes nothing of what comes between these times until the second one.
  void Stall(std::int64_t from, std::int64_t until) { stall_from_ = from, stall_until_ = until; }
  void Switch(std::int64_t scn);
  void SwitchSoon() { bytes_ = shape_.bytes; }
  // Sequences begin again with 1; all other groups are unused, older archives do not count.
  void ResetLogs(std::int64_t scn);

  const LogShape& Shape() const { return shape_; }
  const std::vector<LogFile>& Online() const { return online_; }  // by group
  const std::deque<LogFile>& Archived() const { return archived_; }
  std::size_t Current() const { return current_; }
  std::int64_t EnabledFrom() const { return enabled_from_; }
  std::int64_t LastWritten() const { return last_written_; }
  std::uint64_t CommitsWritten() const { return commits_written_; }  // since the beginning
  std::int64_t OldestHeld() const;

 private:
  struct Record {
    std::int64_t time, scn;
    std::uint64_t bytes;
    bool commit;
  };
  void WriteUntil(std::int64_t time);

  LogShape shape_;
  std::uint64_t seed_;
  std::deque<Record> buffer_;
  std::vector<LogFile> online_;
  std::deque<LogFile> archived_;
  std::size_t current_ = 0;
  std::uint64_t bytes_ = 0;  // in the current log
  std::int64_t enabled_from_ = 1, last_written_;
  std::uint64_t commits_written_ = 0;
  std::int64_t stall_from_ = 0, stall_until_ = 0;
};

}  // namespace quillmere::sim
