// The engine: runs jobs step by step, each step as the job's state asks for, on one thread of its
// own (work_thread.h) or on whichever thread calls Step.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>

#include "engine/engine_context.h"
#include "jobs/run_state_files.h"

namespace quillmere {

// One thread at a time may call Step; RequestEnd may come from any thread.
class JobRunner {
 public:
  explicit JobRunner(EngineContext context);

  // Serves one job once: starts, pauses or resets it when that was requested, or makes one pass of
  // a started job whose next due time has come. Everything that fails is told to the listener.
  void Step(std::size_t index);

  // Makes a pass in progress stop behind the statement in hand, as a pause would.
  void RequestEnd() { end_requested_ = true; }
  bool EndRequested() const { return end_requested_; }

 private:
  void Start(std::size_t index);
  void Pause(std::size_t index);
  void Reset(std::size_t index);

  EngineContext context_;
  std::atomic<bool> end_requested_{false};
};

// --- Requests of the user interface -----------------------------------------------------------

// Run: starts a stopped job or continues a paused one with its kept batch and positions. Refused
// with a reason until the job's table list has been fetched.
bool RequestRun(EngineContext& context, std::size_t index, std::string& reason);
void RequestPause(JobList& jobs, std::size_t index);
void RequestStop(JobList& jobs, std::size_t index);

}  // namespace quillmere
