// SPDX-License-Identifier: MIT
// What a job with a position row does with it in a pass: locks it first, compares it with the
// record, writes it last. Jobs without one pass through. Internal to engine/.
#pragma once

#include <cstdint>
#include <string>

#include "engine/engine_context.h"
#include "engine/follow_memory.h"
#include "oracle/position_row.h"

namespace quillmere {

// Made for one pass, on its thread.
class PositionGuard {
 public:
  // memory is of this job and outlives it.
  PositionGuard(EngineContext& context, std::size_t index, FollowMemory& memory);

  bool InUse() const { return !owner_.empty(); }

  enum class Found {
    AsRecorded,
    NotTaken,  // a pass of which nobody knew: the job goes back to its commit point
    Taken,     // it counts, as far as Remaining says
    Failed,
    Held,
  };
  // Locks the row in the destination's transaction and compares it with the job's record, of which
  // so much remains, or with the commit point of a pass that is not settled. error is set when it
  // failed or the job is to be held.
  Found Lock(OracleSession& destination, std::uint32_t remaining, std::string& error);
  std::uint32_t Remaining() const { return found_.batch_remaining; }

  // What the destination is about to commit.
  bool Write(OracleSession& destination, std::uint32_t remaining, std::string& error);

  // The batch is worked off: what the row says now is what it will say when the next one begins. To
  // be kept before the record that says so.
  bool KeepFinished(std::string& error);

  // At the start of a job: the table, where it is missing, and the job's row in it, in a session of
  // its own. old_job_id: of the start before, whose row goes.
  bool Start(const std::string& old_job_id, std::int64_t cutoff_scn, std::string& error);

 private:
  bool ReadSource(std::string& error);
  bool Fits(std::int64_t cutoff_scn, std::uint32_t remaining) const;

  EngineContext& context_;
  const SyncJob& job_;
  const std::string owner_;
  const JobFolder folder_;
  FollowMemory& memory_;
  SourceFile source_;
  PositionRow::Value found_;
};

}  // namespace quillmere
