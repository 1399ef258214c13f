// SPDX-License-Identifier: MIT
#include "engine/source_container.h"

#include "oracle/source_facts.h"

namespace quillmere {

bool CheckContainer(OracleSession& source, const SyncJob& job, std::string& error) {
  const std::string chosen = ContainerOf(job);
  const std::string name = NameOf(job);
  const std::string from = [&] {
    const MutexLock lock(job.config_mutex);
    return job.config.source.name;
  }();
  SourceFacts facts(source);
  std::string connected_to;
  const bool has_containers = facts.ReadContainer(connected_to);
  if (!has_containers && source.LastErrorCode() != SourceFacts::kNoSuchParameter) {
    error = "GetLastScn fail : " + source.LastError();
    return false;
  }
  if (chosen == connected_to) return true;  // neither has a name, or they have the same
  const std::string choose =
      "Stop the job and choose with 'job edit " + name + " --container' or --no-container";
  if (connected_to != SourceFacts::kRoot) {
    if (chosen.empty()) return true;
    error = "GetLastScn fail : " + name + " follows the container " + chosen + ", but " + from +
            (has_containers ? " leads into " + connected_to : " has no containers") + ". " + choose;
    return false;
  }
  if (chosen.empty()) {
    error = "GetLastScn fail : " + from +
            " is the root of a container database, which shows the changes of all containers. " +
            choose;
    return false;
  }
  std::string mode;
  if (!facts.ReadOpenMode(chosen, mode)) {
    error = "GetLastScn fail : " + source.LastError();
    return false;
  }
  if (!mode.empty()) return true;
  error = "GetLastScn fail : " + from + " has no container " + chosen + ". " + choose;
  return false;
}

}  // namespace quillmere
