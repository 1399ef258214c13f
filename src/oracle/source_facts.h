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
  static constexpr std::string_view kRoot = "CDB$ROOT";
  static constexpr oci::sb4 kNoSuchParameter = 2003;

  using TableName = std::pair<std::string, std::string>;  // owner and name

  explicit SourceFacts(OracleSession& session) : session_(session) {}

  bool ReadBanner(std::string& banner);
  // Before 12c there are none, and the question fails with kNoSuchParameter.
  bool ReadContainer(std::string& container);
  // Of a container, at the root: as READ WRITE; empty when there is none of that name.
  bool ReadOpenMode(std::string_view container, std::string& mode);
  // From the root of a container database into a container: its dictionary is read from then on.
  // Nothing is done elsewhere, or when the name is empty.
  bool Enter(std::string_view container);
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
