// SPDX-License-Identifier: MIT
// Two small sandbox databases with a job between them, to try the program with: what a newcomer
// needs to see a job run, made in one step. User-interface thread; the databases are made where the
// DatabaseWork wants it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "workspace/database_work.h"
#include "workspace/outcome.h"
#include "workspace/workspace.h"

namespace quillmere {

struct SandboxTrial {
  std::string source, destination, job;  // names that nothing in the folder had
  std::size_t index = 0;                 // of the job
};

// Why there is nothing to try with; empty when there is. The sandbox must be installed, and where
// another client library is in use the folder must have no data source: they would be lost to it.
std::string WhyNoTrial(const Workspace& workspace);

// Makes the databases in the folder of the sandbox's databases, equal on both sides, registers
// them, makes the job, and takes the sandbox for the folder's client library. What failed or was
// cancelled leaves nothing; where something can not be taken away, the text names it. The job is
// not started: positions of a job are those of its start, so what is to arrive has to be changed
// afterwards (trial_workload.h).
Outcome MakeSandboxTrial(Workspace& workspace, DatabaseWork& work, SandboxTrial& trial);

// Tables and rows as statements; the same for every database.
std::vector<std::string> TrialDefinitions();

// How whoever works on such a database logs on to it.
LogOn TrialLogOn(const std::string& database);

}  // namespace quillmere
