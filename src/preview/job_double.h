// SPDX-License-Identifier: MIT
// A job's double to try things on: configured alike, standing where the job's files say, alone in a
// list of its own. What is done to it changes neither the job nor any file. Internal to preview/.
#pragma once

#include <string>
#include <vector>

#include "engine/engine_context.h"
#include "jobs/run_state_files.h"

namespace quillmere {

// Used by one thread; the file system, client library and clock of the real engine outlive it.
class JobDouble {
 public:
  // Copies the job's configuration under its lock and reads its run from its folder, so that it
  // does not matter which thread the run belongs to, or whether another program has the folder.
  // most_statements: see Settings.
  JobDouble(const EngineContext& real, std::size_t index, int most_statements);

  SyncJob& Job() { return jobs_.At(0); }
  const RestoredRun& Restored() const { return restored_; }
  JobFolder Folder() const { return catalogue_.FolderOf(NameOf(jobs_.At(0))); }
  // For a capture: what it tells is in Told(), its index is 0.
  EngineContext& Context() { return context_; }
  std::vector<std::string>& Told() { return listener_.told; }

 private:
  struct Listener final : RunnerListener {
    void OnJobChanged(std::size_t, bool) override {}
    void OnError(std::size_t, std::string_view text) override { told.emplace_back(text); }
    void OnInformation(std::size_t, std::string_view text) override { told.emplace_back(text); }
    std::vector<std::string> told;
  };

  void Restore(FileSystem& files);

  Settings settings_;
  MessageLog log_;
  JobList jobs_;
  JobCatalogue catalogue_;
  Listener listener_;
  EngineContext context_;
  RestoredRun restored_;
};

}  // namespace quillmere
