// SPDX-License-Identifier: MIT
#include "sim/redo_thread.h"

#include <algorithm>

#include "sim/random.h"

namespace quillmere::sim {

// Every group was used before.
RedoThread::RedoThread(const LogShape& shape, std::int64_t scn, std::uint64_t seed)
    : shape_(shape), seed_(seed), online_(shape.groups), last_written_(scn - 1) {
  online_[0] = {1, scn - static_cast<std::int64_t>(10 * (shape.groups - 1)), kOpenEnd};
  while (current_ + 1 < shape.groups) Switch(online_[current_].first + 10);
  archived_.clear();
}

bool RedoThread::Write(std::int64_t now) {
  const std::uint64_t dice = Random::Mixed(seed_ + static_cast<std::uint64_t>(now / 500));
  auto late = static_cast<std::int64_t>(dice % 0x10000) * shape_.late_ms / 0x10000;
  // Mostly somebody waits for a commit, so that it writes at once.
  if (dice >> 62 != 0) late = std::min<std::int64_t>(late, 10);
  const bool stalled = now >= stall_from_ && now < stall_until_;
  const std::int64_t sequence = online_[current_].sequence;
  WriteUntil(stalled ? std::min(now - late, stall_from_) : now - late);
  return online_[current_].sequence != sequence;
}

void RedoThread::WriteUntil(std::int64_t time) {
  // Of what has one SCN all is written or nothing, as what is told of the last one written means.
  const auto goes = [&](const Record& record) {
    return record.time <= time || record.scn == last_written_;
  };
  for (; !buffer_.empty() && goes(buffer_.front()); buffer_.pop_front()) {
    const Record& record = buffer_.front();
    // A log ends between two SCNs.
    if (bytes_ >= shape_.bytes && record.scn > last_written_) Switch(record.scn);
    bytes_ += record.bytes;
    last_written_ = record.scn;
    commits_written_ += record.commit ? 1 : 0;
  }
}

void RedoThread::Switch(std::int64_t scn) {
  const std::int64_t sequence = online_[current_].sequence;
  // The archiver is one log behind, which two groups are enough for.
  for (const LogFile& file : online_) {
    if (shape_.archived && file.sequence == sequence - 1) archived_.push_back(file);
  }
  if (archived_.size() > shape_.archives_kept) archived_.pop_front();
  online_[current_].next = scn;
  current_ = (current_ + 1) % online_.size();
  online_[current_] = {sequence + 1, scn, kOpenEnd};
  bytes_ = 0;
}

void RedoThread::ResetLogs(std::int64_t scn) {
  buffer_.clear();
  archived_.clear();
  online_.assign(online_.size(), LogFile{});
  online_[0] = {1, scn, kOpenEnd};
  current_ = 0;
  bytes_ = 0;
  enabled_from_ = scn;
  last_written_ = scn - 1;
}

std::int64_t RedoThread::OldestHeld() const {
  std::int64_t oldest = archived_.empty() ? kOpenEnd : archived_.front().first;
  for (const LogFile& file : online_) {
    if (file.sequence != 0) oldest = std::min(oldest, file.first);
  }
  return oldest;
}

}  // namespace quillmere::sim
