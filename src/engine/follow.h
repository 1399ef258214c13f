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

enum class FollowResult {
  Done,
  Later,   // nothing can be said yet and nothing changed: to be asked again with the next sweep
  Failed,  // error says why; nothing changed
  Held,    // the same, and asking again will not help: somebody has to look
};

// One small implementation for each way. A pass keeps the order in which batch, record, commit
// point and session's end reach the disk; it does not know which way its job follows. Made for one
// step, on the thread that runs it.
class FollowWay {
 public:
  virtual ~FollowWay() = default;

  // Where a job that starts now stands. source is connected. Unless it is done positions are as
  // they were.
  virtual FollowResult Start(OracleSession& source, Positions& positions, std::string& error) = 0;

  // source stops when a request comes: it is Failed then, and nothing is told.
  // Fills the job's empty batch, maybe with nothing, and keeps it in the batch file before it
  // returns: the record that is written next says that the batch is there. source is connected.
  // Unless it is done the positions are as they were, so the same range is mined again; what the
  // batch then holds is to be dropped.
  virtual FollowResult Capture(OracleSession& source, std::string& error) = 0;

  // The batch is kept, or there was nothing. Positions that this moves must be on disk before
  // anything of the batch is executed.
  virtual void AfterCapture() = 0;

  // The batch is worked off and committed, or there was none. The record that is written next has
  // the positions that this leaves.
  virtual void Finish() = 0;

  // How statements name their table on the destination.
  virtual NameQuotes Quotes() const = 0;
};

// What one job's way remembers from step to step; the runner's.
struct FollowMemory;

std::unique_ptr<FollowWay> WayOf(EngineContext& context, std::size_t index, FollowMemory& memory);

}  // namespace quillmere
