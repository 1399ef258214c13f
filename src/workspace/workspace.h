// SPDX-License-Identifier: MIT
// One working folder opened by one program, with everything that lives as long as it; and what an
// operator can do in it (the headers named below). The window and the command line stand on this.
#pragma once

#include <deque>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "datasources/data_source_registry.h"
#include "engine/job_runner.h"
#include "foundation/H_tea.h"
#include "jobs/job_list.h"
#include "messages/message_log.h"
#include "oracle/H_oracle.h"
#include "watch/health_hook.h"
#include "watch/watched_listener.h"
#include "workspace/action_log.h"
#include "workspace/folder_lock.h"
#include "workspace/settings_bundle.h"

namespace quillmere {

// Made by main before it starts threads, and passed on; outlives them. The parts live as long as it
// does; what one may be asked on which thread, its own header says. The calls of the workspace
// itself are the user-interface thread's (the command line's main thread), but for Folder and
// TimeSource.
class Workspace {
 public:
  enum class Access {
    Change,   // takes the folder's lock for as long as the workspace lives
    LookOnly  // no lock, and no file is written: another program may be at work
  };

  struct Options {
    std::filesystem::path folder = ".";
    std::string folder_origin;  // why it is this one, for the operator; empty: nothing to be said
    Access access = Access::Change;
    bool create_folder = false;            // a missing folder is made; otherwise it is refused
    std::string client;                    // as OciLibrary's choice; empty: what the settings say
    std::filesystem::path program_folder;  // where the sandbox library stands
    bool debug = false;                    // as if the setting were on
    std::string user = UserName();         // who is told of in history.log
    const OciApi* oci = nullptr;           // used instead of a client library
    const Clock* clock = nullptr;          // used instead of the system's
    FileSystem* files = nullptr;           // used instead of the system's
  };

  // Loads settings, data sources and jobs. What could not be read is in the log. Null and a reason
  // when the folder cannot be worked on; nothing is changed then, but that the folder may have been
  // made. Options' pointers must outlive the workspace.
  static std::unique_ptr<Workspace> Open(const Options& options, std::string& reason);

  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  const std::filesystem::path& Folder() const { return folder_; }  // absolute
  std::string FolderText() const;                                  // with why it is this one
  Settings& ProgramSettings() { return settings_; }
  const Clock& TimeSource() const { return *clock_; }
  FileSystem& Files() const { return *files_; }
  MessageLog& Log() { return log_; }
  OciLibrary& Oci() { return *oci_; }
  const OciLibrary& Oci() const { return *oci_; }
  DataSourceRegistry& Registry() { return registry_; }
  const DataSourceRegistry& Registry() const { return registry_; }
  JobList& Jobs() { return jobs_; }
  const JobList& Jobs() const { return jobs_; }
  JobCatalogue& Catalogue() { return catalogue_; }
  const JobCatalogue& Catalogue() const { return catalogue_; }

  // How the jobs are; what the engine made here does is known to it.
  JobWatch& Watch() { return watch_; }
  const JobWatch& Watch() const { return watch_; }

  // Tells how they change to a command of the operator's, while there is an engine.
  HealthHook& Hook() { return hook_; }

  // Jobs that were at work when the program ended, and are Paused now.
  const std::vector<std::size_t>& Interrupted() const { return interrupted_; }

  // Before settings, data sources or jobs are saved: keeps them once a day as they were. That it
  // could not is in the log.
  void KeepSettings();
  const KeptSettings& Kept() const { return kept_; }

  // What operators do, in history.log.
  ActionLog& Actions() { return actions_; }

  // What the engine works with; the listener must outlive it.
  EngineContext EngineFor(RunnerListener& listener);

  // How jobs log on to the data source of that name; nothing when it is not registered.
  std::optional<LogOn> LogOnOf(std::string_view data_source) const;

  // Copies the log-ons of the registered data sources into all jobs. After each change of the
  // registry. User-interface thread.
  void RefreshJobLogOns();

  // "X is not registered any more" for the first of a job's data sources that is not; empty when
  // both are. Jobs are held for that, until it is registered again.
  std::string WhyUnregistered(const SyncJob& job) const;

  // Saves all jobs; a failure goes to the log, too, and what it concerns is on disk as it was.
  bool SaveJobs(std::string& reason);

  // --- the sandbox as the client library
  bool UsesSandbox() const { return uses_sandbox_; }
  // Where its databases are, if nobody has said otherwise.
  std::filesystem::path SandboxFolder() const;
  const std::filesystem::path& ProgramFolder() const { return program_folder_; }
  // Takes it from now on, in place of a library that no data source of the folder needs; and back.
  bool UseSandbox(std::string& reason);
  void LeaveSandbox();
  // At the next start, too.
  bool KeepSandbox(std::string& reason);

  std::filesystem::path SettingsFile() const { return folder_ / "config" / "settings.xml"; }

 private:
  Workspace(const Options& options, std::filesystem::path folder);

  void BeginIfNew();
  void FlushWhatWasLeft();
  void LoadAll();
  void HoldUnregistered();
  void OpenClient(const Options& options);
  JobState RestoreJob(SyncJob& job);
  void HoldRestored(std::size_t index, std::string held, bool asks_again);

  SystemFiles system_files_;
  FileSystem* const files_;
  FolderLock lock_;  // let go of after all that writes
  const std::filesystem::path folder_;
  const std::string folder_origin_;
  const std::filesystem::path program_folder_;
  const Access access_;
  SystemClock system_clock_;
  const Clock* const clock_;
  Settings settings_;
  MessageLog log_;
  std::unique_ptr<OciLibrary> oci_;
  DataSourceRegistry registry_;
  JobList jobs_;
  JobCatalogue catalogue_;
  JobWatch watch_;
  HealthHook hook_;
  ActionLog actions_;
  KeptSettings kept_;
  std::deque<WatchedListener> listeners_;  // one for each engine
  std::vector<std::size_t> interrupted_;
  bool uses_sandbox_ = false;
  bool other_program_ = false;  // when looking only: it had the folder while this one read it
};

// Why nothing is added to a list that could not be read, from why it could not; else empty.
std::string WhyNotAdded(const std::string& why_not_read);

}  // namespace quillmere
