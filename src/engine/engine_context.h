// SPDX-License-Identifier: MIT
// What every part of the engine works with. Made by the workspace; all of it outlives the engine
// and may be used on the thread that runs the jobs, of the message log its general log alone.
#pragma once

#include <filesystem>

#include "engine/runner_listener.h"
#include "foundation/H_tea.h"
#include "jobs/job_list.h"
#include "messages/message_log.h"
#include "oracle/H_oracle.h"

namespace quillmere {

struct EngineContext {
  FileSystem& files;
  std::filesystem::path working_folder;
  JobList& jobs;
  JobCatalogue& catalogue;
  OciLibrary& oci;
  MessageLog& log;
  const Clock& clock;
  const Settings& settings;
  RunnerListener& listener;
};

}  // namespace quillmere
