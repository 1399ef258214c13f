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

#include "foundation/unreadable_files.h"
#include "jobs/job_folder.h"
#include "jobs/sync_job.h"
#include "messages/message_log.h"

namespace quillmere {

class JobList;
class XmlNode;

// The log-on of the data source of that name, if it is registered.
using LoginLookup = std::function<std::optional<JobLogin>(std::string_view data_source)>;

// Restores a loaded job's run record and pending batch from its folder and returns the state it
// rests in.
using RunStateRestorer = std::function<JobState(SyncJob& job)>;

class JobCatalogue {
 public:
  // All but the folder's path must outlive the catalogue.
  JobCatalogue(FileSystem& files, std::filesystem::path working_folder, JobList& jobs,
               MessageLog& log);

  // jobs/<name> under the working folder.
  JobFolder FolderOf(std::string_view name) const { return {working_folder_, name}; }

  // Why the name cannot be given to the job at index (kNotFound: a new one); empty when it can.
  std::string WhyNameRefused(std::string_view name, std::size_t index) const;

  // Builds the list anew from the files. Call once, before the worker runs. User-interface thread.
  void Load(const LoginLookup& logins, const RunStateRestorer& restore);

  // Writes jobs.xml with every live job that bears the save mark, then the own file of each of them
  // that changed since it was last read or written. Any thread; saves come one after another. A job
  // edited meanwhile is written as before or after the edit. Keeps the first reason in error.
  bool SaveMarked(std::string& error);

  // The same for every live job, marked or not; clears the marks.
  bool SaveAll(std::string& error);

  // Renames the job's folder and its own file, then the job, then writes jobs.xml. If one of
  // them fails, the rename is refused and everything stays. The job must rest. User-interface
  // thread.
  bool Rename(std::size_t index, std::string_view new_name, std::string& error);

  // Frees the slot and removes the files that the program keeps in the job's folder, and the folder
  // unless there is something else in it. Saving is the caller's. The job must rest.
  // User-interface thread.
  bool Remove(std::size_t index, std::string& error);

 private:
  std::filesystem::path ListFile() const;

  void LoadJob(const XmlNode& node, const LoginLookup& logins, const RunStateRestorer& restore);
  void LoadOwnFile(SyncJob& job);

  // All of these with save_mutex_ held.
  enum class Selection { Marked, All };
  bool Save(Selection selection, std::string& error);
  bool SaveList(Selection selection, std::vector<SyncJob*>& changed, std::string& error);
  bool SaveOwnFile(SyncJob& job, std::string& error);
  bool MoveFolder(std::string_view from, std::string_view to, std::string& error);

  FileSystem& files_;
  const std::filesystem::path working_folder_;
  JobList& jobs_;
  MessageLog& log_;
  std::mutex save_mutex_;
  std::string saved_list_;  // what jobs.xml holds, to skip an equal write
  UnreadableFiles unreadable_;
  bool list_has_more_ = false;  // jobs.xml names jobs that were left out: a copy is kept as .bad
};

}  // namespace quillmere
