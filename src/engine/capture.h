// Turns the source's redo into a job's batch of executable statements.
#pragma once

#include <cstddef>
#include <string>

#include "engine/engine_context.h"

namespace quillmere {

// Connects the job's source, mines its redo from the mining start SCN, keeps the statements
// completed below the cut-off SCN as the pending batch, writes the batch file and fills the two
// working SCNs. On failure the listener has been told why, the batch is empty and the stored SCNs
// are untouched, so the same range is mined again.
bool CaptureBatch(EngineContext& context, std::size_t index);

// The part in the middle, on a session whose logs are set: mines into the job's batch and moves the
// working SCNs on. On failure the reason is in the session's LastError().
bool GetStatements(EngineContext& context, std::size_t index, OracleSession& session);

}  // namespace quillmere
