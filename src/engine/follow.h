// SPDX-License-Identifier: MIT
// The way a job follows its source: from where the redo is mined, which of it makes a batch, and
// when the job's positions move on. Internal to engine/.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "engine/engine_context.h"
#include "engine/rewriter.h"

namespace quillmere {

// One small implementation for each way. A pass keeps the order in which batch, record, commit
// point and session's end reach the disk; it does not know which way its job follows. Made for one
// step, on the thread that runs it.
class FollowWay {
 public:
  virtual ~FollowWay() = default;

  // Where a job that starts now stands. source is connected. On failure positions are as they were.
  virtual bool Start(OracleSession& source, Positions& positions, std::string& error) = 0;

  // Fills the job's empty batch, maybe with nothing, and keeps it in the batch file before it
  // returns: the record that is written next says that the batch is there. source is connected. On
  // failure the positions are as they were, so the same range is mined again; what the batch then
  // holds is to be dropped.
  virtual bool Capture(OracleSession& source, std::string& error) = 0;

  // The batch is worked off and committed, or there was none. The record that is written next has
  // the positions that this leaves.
  virtual void Finish() = 0;

  // How statements name their table on the destination.
  virtual NameQuotes Quotes() const = 0;
};

std::unique_ptr<FollowWay> WayOf(EngineContext& context, std::size_t index);

}  // namespace quillmere
