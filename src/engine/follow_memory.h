// SPDX-License-Identifier: MIT
// What is remembered of a job from step to step, as long as the runner lives.
// Internal to engine/.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "engine/definition_check.h"
#include "engine/source_readings.h"
#include "jobs/source_file.h"

namespace quillmere {

// What of the source's redo is there: where it begins, 0 when that is not known, and how old that
// is.
struct KnownReach {
  std::int64_t from_scn = 0;
  std::chrono::minutes age{0};
};

struct FollowMemory {
  std::optional<SourceFile> source;  // source.dat as the pass in hand has read it
  std::string job_id;  // of the start that the rest belongs to; empty while a start is in hand
  SourceReadings readings;
  std::optional<std::int64_t> clock_ahead;  // ms, of the clock that nobody sets, at the last step
  std::optional<SteadyTime> waiting_since;  // for a reading that can be used
  bool told_of_waiting = false;
  bool container_checked = false;        // the source is, or has, the one that the job follows
  std::int64_t source_scn = 0;           // where the source stood at this step; 0: not asked
  std::optional<KnownReach> redo_reach;  // when this pass has asked
  std::string reach_refused;             // why it is not known, which was told
  bool nothing_archived = false;         // so that the online logs are all there is
  bool told_of_loss = false;
  DefinitionMemory definitions;
  std::int64_t told_of_oldest = 0;  // the SCN where the transaction begins that was warned of
};

// Reads source.dat into the memory unless the pass has done that.
inline FileStatus ReadSourceOnce(FileSystem& files, const JobFolder& folder, FollowMemory& memory) {
  if (memory.source) return {};
  SourceFile source;
  FileStatus read = ReadSourceFile(files, folder, source);
  if (read) memory.source = std::move(source);
  return read;
}

}  // namespace quillmere
