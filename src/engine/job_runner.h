// SPDX-License-Identifier: MIT
// The engine: runs jobs step by step, each step as the job's state asks for, on one thread of its
// own (work_thread.h) or on whichever thread calls Step.
#pragma once

#include <atomic>
#include <cstddef>
#include <map>
#include <string>

#include "engine/engine_context.h"
#include "engine/follow_memory.h"
#include "engine/job_footing.h"
#include "jobs/run_state_files.h"

namespace quillmere {

// One thread at a time may call Step; RequestEnd may come from any thread. What context refers to
// must outlive the runner.
class JobRunner {
 public:
  explicit JobRunner(EngineContext context);

  // Serves one job once: starts, pauses or resets it when that was requested, or makes one pass of
  // a started job whose next due time has come. It comes back after connects, statements and
  // writes: seconds or hours. Everything that fails is told to the listener and nothing is thrown;
  // a pass that failed leaves its batch and positions and is due again an interval later, a start
  // that failed leaves the job stopped.
  void Step(std::size_t index);

  // Makes a pass in progress, and each one after it, stop behind the statement in hand, as a pause
  // would; a capture or a start at its next exchange with the source, with nothing begun. There is
  // no way back.
  void RequestEnd() { end_requested_ = true; }
  bool EndRequested() const { return end_requested_; }

 private:
  bool IsDue(std::size_t index);
  // False: to be asked again with the next sweep.
  bool FindPositions(std::size_t index, Positions& positions, bool& found,
                     std::vector<FootingLine>& footing);
  void Start(std::size_t index);
  void Pause(std::size_t index);
  void Reset(std::size_t index);

  EngineContext context_;
  std::map<std::size_t, FollowMemory> memories_;  // by index
  std::atomic<bool> end_requested_{false};
};

// --- Requests of the user interface, on its thread ---------------------------------------------

// Each comes back at once; the next Step serves it. One that does not fit the job's state changes
// nothing.

// Run: starts a stopped job or continues a paused one with its kept batch and positions. Refused
// with a reason until the job's table list has been fetched, while a paused job is held, and when
// the record of a job that is to continue can not be written: its state stays then.
bool RequestRun(EngineContext& context, std::size_t index, std::string& reason);
// Of a started job.
void RequestPause(JobList& jobs, std::size_t index);
// Of a started or paused job.
void RequestStop(JobList& jobs, std::size_t index);

}  // namespace quillmere
