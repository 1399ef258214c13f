// SPDX-License-Identifier: MIT
// One LogMiner session on a source model, with the online dictionary and committed data only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sim/source_model.h"

namespace quillmere::sim {

// A row of v$logmnr_contents.
struct MinedRow {
  const Transaction* transaction = nullptr;  // null: none
  const Change* change = nullptr;            // RS_ID, SSN and the row address are made of it
  std::int64_t scn = 0, commit_scn = 0;      // -1: NULL
  int operation_code = 0;
  std::string_view operation, owner, table, sql_redo;
  int rollback = 0, csf = 0, status = 0;
};

std::string MemberName(std::size_t thread, std::size_t group, std::size_t member);
std::string ArchiveName(std::size_t thread, std::int64_t sequence, std::int64_t resetlogs);

class Mining {
 public:
  static constexpr std::size_t kPieceCharacters = 4000;

  explicit Mining(SourceModel& source) : source_(source) {}

  // Each gives 0 or the number of the ORA error.
  int Add(std::string_view name, bool new_list = false);
  int Start(std::int64_t scn);
  // Begins to read what is written of transactions with from <= COMMIT_SCN < below, of one
  // container or all.
  int Open(std::int64_t from = 0, std::int64_t below = kOpenEnd, std::string_view container = {});
  // The next row, valid until the next call; null at the end. What a log held that is used again
  // meanwhile is missing without a word, and so is what no log of the list holds.
  const MinedRow* Next();
  int End();

 private:
  struct Log {
    std::size_t thread, group;
    bool online;
    LogFile file;
    bool there = true;
  };
  bool IsThere(std::size_t thread, std::int64_t scn) const;
  void LookAtLogs();
  bool NextTransaction();
  bool NextChange();

  SourceModel& source_;
  std::vector<Log> logs_;
  std::uint64_t switches_seen_ = 0;
  bool started_ = false;
  std::int64_t start_ = 0, below_ = 0;
  std::string container_;
  std::vector<std::uint64_t> next_, end_;  // commits, by thread
  std::size_t thread_ = 0;                 // of the transaction in hand
  std::uint64_t index_ = 0, change_ = 0;
  bool in_transaction_ = false;
  std::string text_;
  std::size_t text_from_ = 0;
  MinedRow row_;
};

}  // namespace quillmere::sim
