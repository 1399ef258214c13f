// SPDX-License-Identifier: MIT
#include "sim/mining.h"

#include <algorithm>

namespace quillmere::sim {
namespace {

// By Operation: code, name, status.
constexpr struct {
  int code;
  std::string_view name;
  int status;
} kShown[] = {{1, "INSERT", 0},     {2, "DELETE", 0},        {3, "UPDATE", 0},
              {10, "LOB_WRITE", 0}, {255, "UNSUPPORTED", 2}, {1, "INSERT", 0}};

bool BeginsCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

}  // namespace

std::string MemberName(std::size_t thread, std::size_t group, std::size_t member) {
  return "/redo/t" + std::to_string(thread + 1) + "_g" + std::to_string(group + 1) + "_m" +
         std::to_string(member + 1) + ".log";
}

std::string ArchiveName(std::size_t thread, std::int64_t sequence, std::int64_t resetlogs) {
  return "/archive/" + std::to_string(thread + 1) + "_" + std::to_string(sequence) + "_" +
         std::to_string(resetlogs) + ".arc";
}

int Mining::Add(std::string_view name, bool new_list) {
  if (new_list) logs_.clear();
  std::vector<Log> found;
  for (std::size_t t = 0; t < source_.Threads().size(); ++t) {
    const RedoThread& thread = source_.Threads()[t];
    const std::size_t members = thread.Shape().members;
    for (std::size_t i = 0; i < thread.Online().size() * members; ++i) {
      if (MemberName(t, i / members, i % members) != name) continue;
      found.push_back({t, i / members, true, thread.Online()[i / members]});
    }
    for (const LogFile& file : thread.Archived()) {
      if (!name.starts_with(ArchiveName(t, file.sequence, source_.ResetlogsScn()))) continue;
      found.push_back({t, 0, false, file});
    }
  }
  if (found.empty() || found[0].file.sequence == 0) return 1284;
  for (const Log& log : logs_) {
    const bool same = log.file.sequence == found[0].file.sequence;
    if (same && log.thread == found[0].thread) return 1289;
  }
  logs_.push_back(found[0]);
  return 0;
}

int Mining::Start(std::int64_t scn) {
  if (logs_.empty()) return 1292;
  LookAtLogs();
  for (const Log& log : logs_) started_ |= log.there && log.file.Holds(scn);
  start_ = scn;
  return started_ ? 0 : 1291;
}

int Mining::Open(std::int64_t from, std::int64_t below, std::string_view container) {
  if (!started_) return 1306;
  next_.clear();
  end_.clear();
  for (std::size_t t = 0; t < source_.Threads().size(); ++t) {
    next_.push_back(source_.FirstCommitted(t, std::max(from, start_)));
    end_.push_back(source_.Threads()[t].CommitsWritten());
  }
  below_ = below;
  container_ = container;
  in_transaction_ = false;
  text_from_ = text_.size();
  return 0;
}

int Mining::End() {
  if (!started_) return 1307;
  started_ = false;
  logs_.clear();
  return 0;
}

void Mining::LookAtLogs() {
  switches_seen_ = source_.Switches();
  for (Log& log : logs_) {
    const RedoThread& thread = source_.Threads()[log.thread];
    const auto same = [&](const LogFile& file) {
      return file.sequence == log.file.sequence && file.first == log.file.first;
    };
    const auto& archived = thread.Archived();
    log.there = log.online ? same(thread.Online()[log.group])
                           : std::any_of(archived.begin(), archived.end(), same);
    if (log.online && log.there) log.file = thread.Online()[log.group];
  }
}

bool Mining::IsThere(std::size_t thread, std::int64_t scn) const {
  for (const Log& log : logs_) {
    if (log.there && log.thread == thread && log.file.Holds(scn)) return true;
  }
  return false;
}

// The threads' commits merged by their SCNs.
bool Mining::NextTransaction() {
  for (;;) {
    const Transaction* first = nullptr;
    for (std::size_t t = 0; t < next_.size(); ++t) {
      while (next_[t] < end_[t] && source_.Committed(t, next_[t]) == nullptr) ++next_[t];
      if (next_[t] >= end_[t]) continue;
      const Transaction* candidate = source_.Committed(t, next_[t]);
      if (first == nullptr || candidate->commit_scn < first->commit_scn) first = candidate;
    }
    if (first == nullptr || first->commit_scn >= below_) return false;
    thread_ = first->thread;
    index_ = next_[thread_]++;
    change_ = 0;
    if (!container_.empty() && kContainers[first->container] != container_) continue;
    if (!IsThere(thread_, first->commit_scn)) continue;
    const bool whole = first->start_scn >= start_ && IsThere(thread_, first->start_scn);
    if (whole || source_.Shape().straddling == Straddling::PartInside) return true;
  }
}

bool Mining::NextChange() {
  for (;;) {
    if (switches_seen_ != source_.Switches()) LookAtLogs();
    if (!in_transaction_ && !NextTransaction()) return false;
    const Transaction* transaction = source_.Committed(thread_, index_);
    in_transaction_ = transaction != nullptr && change_ < transaction->changes.size();
    if (!in_transaction_) continue;
    const Change& change = transaction->changes[change_++];
    if (change.scn < start_ || !IsThere(thread_, change.scn)) continue;
    const auto& shown = kShown[static_cast<std::size_t>(change.operation)];
    const bool temporary = change.operation == Operation::Temporary;
    row_ = {.transaction = transaction,
            .change = &change,
            .scn = change.scn,
            .commit_scn = transaction->commit_scn,
            .operation_code = shown.code,
            .operation = shown.name,
            .owner = "SHOP",
            .table = temporary ? "BASKET" : kTables[change.table],
            .sql_redo = {},
            .rollback = change.undo ? 1 : 0,
            .csf = 0,
            .status = shown.status};
    text_ = Redo(change);
    text_from_ = 0;
    return true;
  }
}

const MinedRow* Mining::Next() {
  if (text_from_ == text_.size() && !NextChange()) return nullptr;
  std::size_t end = text_from_, room = kPieceCharacters;
  if (text_.size() - end <= room) end = text_.size();
  for (; end < text_.size() && (room > 0 || !BeginsCharacter(text_[end])); ++end) {
    room -= BeginsCharacter(text_[end]) ? 1 : 0;
  }
  row_.sql_redo = std::string_view(text_).substr(text_from_, end - text_from_);
  row_.csf = end < text_.size() ? 1 : 0;
  text_from_ = end;
  return &row_;
}

}  // namespace quillmere::sim
