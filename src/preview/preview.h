// SPDX-License-Identifier: MIT
// What the next pass of a job would execute, and what it would block and why. The source is read as
// a pass reads it; no file is written and no destination is opened.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/engine_context.h"

namespace quillmere {

// One statement of the pass.
struct PreviewEntry {
  enum class Fate {
    Executed,  // by an earlier pass
    Execute,
    Blocked,
  };

  Fate fate = Fate::Execute;
  std::string owner, table;     // on the source; empty when it does not say
  std::string statement;        // as the destination would get it; of a blocked one as mined
  std::string why;              // it would be blocked
  std::int64_t commit_scn = 0;  // of its transaction; 0: not known
};

// What the pass would do to one table of the source, without what an earlier pass did.
struct PreviewTable {
  std::string owner, table;
  std::string to;  // OWNER.TABLE on the destination; empty when all is blocked
  std::size_t inserts = 0, updates = 0, deletes = 0, blocked = 0;
  std::string why;  // the first was blocked
};

// Made once and unchanged afterwards, on one thread; then read by any. An entry costs what it does
// in a batch, 17 bytes above its mined text, and is rewritten when it is asked for: 100,000 of them
// can be scrolled through.
class Preview {
 public:
  virtual ~Preview() = default;

  enum class Kind {
    Nothing,   // the next pass executes nothing, for the reason that Why() gives
    Failed,    // the source could not be read, for the reason that Why() gives
    Pending,   // goes on with a batch that is on disk
    Captured,  // what the source has now; there is more when Why() says so
  };
  virtual Kind What() const = 0;
  virtual const std::string& Why() const = 0;

  virtual std::size_t Size() const = 0;
  virtual std::size_t Next() const = 0;  // the entry that the pass begins with; Size() when none is
  virtual PreviewEntry At(std::size_t index) const = 0;  // index below Size()

  // From Next() on, by owner and name.
  virtual const std::vector<PreviewTable>& Tables() const = 0;
  virtual std::size_t ToExecute() const = 0;
  virtual std::size_t ToBlock() const = 0;

  // What else there is to be said of it, a line each.
  virtual const std::vector<std::string>& Notes() const = 0;
};

// Blocks for as long as a capture takes; stop, asked meanwhile, ends it (then it has Failed). Of
// the engine's parts the job at index, files, client library and clock are used. Any thread that
// may use the client library; the job may run meanwhile.
std::unique_ptr<Preview> LookAhead(const EngineContext& engine, std::size_t index,
                                   const OracleSession::StopCondition& stop = {});

}  // namespace quillmere
