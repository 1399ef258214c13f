// SPDX-License-Identifier: MIT
// What a job's source is and keeps, for the operator to look at: which server and container, what
// its redo says of a changed row, how far back the redo can be read.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "oracle/H_oracle.h"

namespace quillmere {

// Which columns the redo of an update names besides those that changed.
struct SupplementalLogging {
  bool minimal = false;
  bool key = false;
  bool all = false;
};

// A part of the redo: how many logs, and where and when the oldest of them begins.
struct RedoReach {
  std::int64_t logs = 0;
  std::int64_t from_scn = 0;
  std::int64_t minutes = 0;  // until now
};

// Made for one look on a session that is connected and outlives it; used by the session's thread.
// Each call asks by itself and returns false on failure, with the reason in the session's
// LastError(): that one view can not be read says nothing of the next.
class SourceFacts {
 public:
  using TableName = std::pair<std::string, std::string>;  // owner and name

  explicit SourceFacts(OracleSession& session) : session_(session) {}

  bool ReadBanner(std::string& banner);
  // Before 12c there are none, and the question fails.
  bool ReadContainer(std::string& container);
  bool ReadSupplemental(SupplementalLogging& logging);
  // What tables log of their own, beyond what all do. Groups of single columns are not among them.
  bool ReadTableLogging(std::map<TableName, SupplementalLogging>& tables);
  bool ReadKeyedTables(std::map<TableName, bool>& tables);
  bool ReadOnlineReach(RedoReach& reach);
  bool ReadArchivedReach(RedoReach& reach);

 private:
  bool ReadReach(std::string_view sql, RedoReach& reach);

  OracleSession& session_;
};

}  // namespace quillmere
