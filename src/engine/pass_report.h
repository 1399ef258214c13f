// SPDX-License-Identifier: MIT
// What a pass was, as plain values: what it did, how far the job has come, and what went wrong when
// it failed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/definitions_file.h"
#include "engine/redo_room.h"
#include "foundation/clock.h"

namespace quillmere {

struct PassProblem {
  enum class Where { Source, Destination, Statement, Disk };
  Where where = Where::Disk;
  std::string error;  // the first that was told; empty: there is no problem

  // Of a statement that was refused. Owner and table as the source has them.
  std::string owner, table;
  std::size_t number = 0;  // in its batch, from 1 on; 0: it was no statement
  std::size_t of = 0;
  std::string statement;  // as it was executed
};

struct PassReport {
  enum class Outcome {
    WorkedOff,    // the batch, or there was none
    Interrupted,  // by a request, behind the statement in hand
    Failed,
    Later,  // the source could not say enough yet: asked again with the next sweep
  };
  Outcome outcome = Outcome::Failed;
  std::size_t captured = 0;
  // Negative when an earlier pass turned out not to have been taken.
  std::int64_t applied = 0;
  std::int64_t blocked = 0;
  LocalTime begin, end;
  SteadyTime took{0};
  // Whatever is below reached_scn is on the destination. source_scn: where the source stood when
  // this pass asked; 0 when it did not ask.
  std::int64_t reached_scn = 0;
  std::int64_t source_scn = 0;
  // By commits, when this pass has asked.
  std::optional<RedoRoom> room;
  // What keeps the destination's tables from taking the source's rows; null when this pass has not
  // compared them.
  std::shared_ptr<const std::vector<DefinitionDifference>> definitions;
  PassProblem problem;
};

}  // namespace quillmere
