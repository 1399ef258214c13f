// SPDX-License-Identifier: MIT
// The files of the job list: jobs/jobs.xml and jobs/<name>/<name>.xml.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/mutex.h"
#include "foundation/unreadable_files.h"
#include "jobs/job_folder.h"
#include "jobs/sync_job.h"
#include "messages/message_log.h"

namespace quillmere {

class JobList;
class XmlNode;

// The log-on of the data source of that name, if it is registered.
using LogOnLookup = std::function<std::optional<LogOn>(std::string_view data_source)>;

// Sets the log-ons that belong to the names of the job's source and destination; of one that is not
// registered it keeps the name alone.
void ResolveLogOns(JobConfig& job, const LogOnLookup& log_ons);

// Restores a loaded job's run record and pending batch from its folder and returns the state it
// rests in.
using RunStateRestorer = std::function<JobState(SyncJob& job)>;

// Where a file can not be read or written, the reason names it; what is in memory stays, and so do
// the files, which are replaced whole or not at all.
class JobCatalogue {
 public:
  // All but the folder's path must outlive the catalogue.
  JobCatalogue(FileSystem& files, std::filesystem::path working_folder, JobList& jobs,
               MessageLog& log);

  // jobs/<name> under the working folder.
  JobFolder FolderOf(std::string_view name) const { return {working_folder_, name}; }

  // Why the name cannot be given to the job at index (kNotFound: a new one); empty when it can. Any
  // thread, as FolderOf.
  std::string WhyNameRefused(std::string_view name, std::size_t index) const;

  // Builds the list anew from the files. Call once, before the worker runs. User-interface thread.
  // What could not be read is in the log; a job without its own file is there without tables.
  void Load(const LogOnLookup& log_ons, const RunStateRestorer& restore);

  // Makes the job at index, which may be a free slot, what a kept element of jobs.xml says, with
  // its owners and tables in it. Tables that are there keep their counters. The job must rest.
  // User-interface thread.
  void TakeKept(std::size_t index, const XmlNode& node, const LogOnLookup& log_ons);

  // Why the list of jobs is empty although it may hold some; empty when it was read, or there is
  // none. Of a damaged one the log says nothing.
  std::string WhyListNotRead() const;

  // Writes jobs.xml with every live job that bears the save mark, then the own file of each of them
  // that changed since it was last read or written. Any thread; saves come one after another. A job
  // edited meanwhile is written as before or after the edit. Keeps the first reason in error.
  bool SaveMarked(std::string& error);

  // The same for every live job, marked or not; clears the marks.
  bool SaveAll(std::string& error);

  // Renames the job's folder and its own file (another folder that stands there is set aside), then
  // the job, then writes jobs.xml. If one of them fails, the rename is refused and everything
  // stays. The job must rest. User-interface thread.
  bool Rename(std::size_t index, std::string_view new_name, LocalTime now, std::string& error);

  // Before a held job starts anew or is reset: the files of its run that were left alone so far,
  // and its own file when that could not be read, are kept as .bad. False: the reason. The thread
  // that runs the job.
  bool KeepHeldFiles(std::size_t index, std::initializer_list<JobFile> run_files,
                     std::string& error);

  // Frees the slot and removes the files that the program keeps in the job's folder, and the folder
  // unless there is something else in it. Saving is the caller's. The job must rest.
  // User-interface thread. False: a file stayed, error says which; the slot is free all the same.
  bool Remove(std::size_t index, std::string& error);

 private:
  std::filesystem::path ListFile() const;

  std::string TakeBackMoved(std::string_view name, const std::vector<std::string_view>& taken)
      REQUIRES(save_mutex_);
  void LoadJob(const XmlNode& node, const std::string& not_taken_back, const LogOnLookup& log_ons,
               const RunStateRestorer& restore) REQUIRES(save_mutex_);
  void LoadOwnFile(SyncJob& job, const std::filesystem::path& file) REQUIRES(save_mutex_);

  enum class Selection { Marked, All };
  bool Save(Selection selection, std::string& error) REQUIRES(save_mutex_);
  bool SaveList(Selection selection, std::vector<SyncJob*>& changed, std::string& error)
      REQUIRES(save_mutex_);
  bool SaveOwnFile(SyncJob& job, std::string& error) REQUIRES(save_mutex_);
  bool IsOnDisk(std::string list);
  void HoldIfMoved(std::size_t index, std::string_view old_name, std::string_view new_name,
                   const std::string& error);
  bool MoveFolder(std::string_view from, std::string_view to, LocalTime now, std::string& error)
      REQUIRES(save_mutex_);

  static constexpr std::string_view kOnTheirWay =
      ". The job's files were on their way to another name: start the program again before the job "
      "is started anew";

  FileSystem& files_;
  const std::filesystem::path working_folder_;
  JobList& jobs_;
  MessageLog& log_;
  mutable Mutex save_mutex_;
  // What jobs.xml holds, to skip an equal write.
  std::string saved_list_ GUARDED_BY(save_mutex_);
  UnreadableFiles unreadable_ GUARDED_BY(save_mutex_);
  // jobs.xml names jobs that were left out: a copy is kept as .bad.
  bool list_has_more_ GUARDED_BY(save_mutex_) = false;
};

}  // namespace quillmere
