// SPDX-License-Identifier: MIT
// The one row that a job may keep on its destination, in a table of the program's own: it is
// committed with what it tells of, so it is known after a death whether a pass was taken.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "oracle/H_oracle.h"

namespace quillmere {

inline constexpr std::string_view kPositionTable = "QUILLMERE_POSITION";

// Made for one task on one session, which must outlive it; used by the session's thread. Each call
// returns false on failure, with the reason in the session's LastError(). Nothing is committed but
// by MakeTable and the session's end.
class PositionRow {
 public:
  struct Value {
    std::int64_t cutoff_scn = 0;
    std::uint32_t batch_remaining = 0;
    bool operator==(const Value&) const = default;
  };

  // owner goes into the statements as it stands.
  PositionRow(OracleSession& session, std::string owner, std::string job_id)
      : session_(session), owner_(std::move(owner)), job_id_(std::move(job_id)) {}

  // made: it was not there.
  bool MakeTable(bool& made);
  bool Insert(const Value& value);
  // Waits up to 5 s for a session that is still dying. Null: there is no such row.
  bool Lock(std::optional<Value>& value);
  bool Update(const Value& value);
  bool Delete();

 private:
  OracleSession& session_;
  const std::string owner_, job_id_;
};

}  // namespace quillmere
