// The files of the job list: jobs/jobs.xml and jobs/<name>/<name>.xml.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jobs/sync_job.h"
#include "messages/message_log.h"

namespace quillmere {

class JobList;

// The log-on of the data source of that name, if it is registered.
using LoginLookup = std::function<std::optional<JobLogin>(std::string_view data_source)>;

// Restores a loaded job's run record and pending batch from its folder (the engine's files) and
// returns the state it rests in.
using RunStateRestorer = std::function<JobState(SyncJob& job)>;

class JobCatalogue {
 public:
  JobCatalogue(std::filesystem::path working_folder, JobList& jobs, MessageLog& log);

  // jobs/<name> under the working folder.
  std::filesystem::path JobFolder(std::string_view name) const;

  // Why the name cannot be given to the job at index (kNotFound: a new one); empty when it can.
  std::string WhyNameRefused(std::string_view name, std::size_t index) const;

  // Builds the list anew from the files. Call once, before the worker runs. User-interface thread.
  void Load(const LoginLookup& logins, const RunStateRestorer& restore);

  // Writes jobs.xml with every live job that bears the save mark, then the own file of each of them
  // that changed since it was last read or written. Any thread; saves come one after another. A job
  // edited meanwhile is written as before or after the edit. Keeps the first reason in error.
  bool SaveMarked(std::string& error);

  // Marks every live job, saves, clears the marks.
  bool SaveAll(std::string& error);

 private:
  std::filesystem::path ListFile() const;

  const std::filesystem::path working_folder_;
  JobList& jobs_;
  MessageLog& log_;
  std::mutex save_mutex_;
  std::string saved_list_;                         // what jobs.xml holds, to skip an equal write
  std::vector<std::filesystem::path> unreadable_;  // kept as .bad before the first save over them
};

}  // namespace quillmere
