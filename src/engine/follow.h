// SPDX-License-Identifier: MIT
// The way a job follows its source: from where the redo is mined, which of it makes a batch, and
// when the job's positions move on. For a pass, which keeps what was captured, and for a preview,
// which does not.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "engine/engine_context.h"
#include "engine/rewriter.h"

namespace quillmere {

// What the reason begins with when the redo itself could not be read, before the server's words.
inline constexpr std::string_view kMiningFailed = "GetSqlStrings fail : ";

enum class FollowResult {
  Done,
  Later,   // nothing can be said yet and nothing changed: to be asked again with the next sweep
  Failed,  // error says why; nothing changed
  Held,    // the same, and asking again will not help: somebody has to look
};

// Looks on while a batch is filled, on the thread of the capture.
class CaptureWatcher {
 public:
  virtual ~CaptureWatcher() = default;
  // This entry of the batch is there to be counted as blocked only. text: the mined statement, or
  // what is known of a change that came without one; valid during the call only. Owner and table
  // may be empty.
  virtual void OnBlocked(std::size_t entry, std::string_view owner, std::string_view table,
                         std::string_view why, std::string_view text) = 0;
  // True ends a capture by rows as failed: the batch has so many entries.
  virtual bool Enough(std::size_t entries) = 0;
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
  // Fills the job's empty batch, maybe with nothing; source is connected. Reads files only, writes
  // none. Unless it is done the positions are as they were, so the same range is mined again; what
  // the batch then holds is to be dropped.
  virtual FollowResult Capture(OracleSession& source, std::string& error) = 0;

  // Keeps what was captured in the batch file, what was set aside in a file of its own, and tells
  // of it: the record that is written next says that the batch is there. False: as if the capture
  // had failed.
  virtual bool Keep(std::string& error) = 0;

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

// watcher outlives the way, where there is one.
std::unique_ptr<FollowWay> WayOf(EngineContext& context, std::size_t index, FollowMemory& memory,
                                 CaptureWatcher* watcher = nullptr);

}  // namespace quillmere
