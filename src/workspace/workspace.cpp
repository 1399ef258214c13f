// SPDX-License-Identifier: MIT
#include "workspace/workspace.h"

#include <cstdlib>
#include <system_error>
#include <utility>

#include "jobs/held_file.h"
#include "jobs/run_state_files.h"
#include "oracle/platform.h"

namespace quillmere {
namespace {

namespace fs = std::filesystem;

// The working folder may be a link; what is in it is its own.
bool OwnsFolders(FileSystem& files, const fs::path& folder, std::string& reason) {
  for (const char* const name : {"config", "jobs"}) {
    FileFacts facts;
    if (!files.Look(folder / name, facts) || !facts.link) continue;
    reason = PathText(folder / name) +
             " is a symbolic link. Put the folder itself there: links in a working folder are not "
             "followed";
    return false;
  }
  return true;
}

bool OpenFolder(FileSystem& files, const Workspace::Options& options, fs::path& folder,
                std::string& reason) {
  std::error_code code;
  folder = fs::absolute(options.folder, code).lexically_normal();
  if (IsFolder(files, folder)) return OwnsFolders(files, folder, reason);
  if (IsThere(files, folder)) {
    reason = PathText(folder) + " is no folder";
    return false;
  }
  if (options.create_folder) return MakeFolders(files, folder, reason);
  reason = "There is no working folder " + PathText(folder) +
           ". Name an existing one, or add a data source to make it";
  return false;
}

// Without it nobody would hear of what fails.
bool LogCanBeWritten(FileSystem& files, const fs::path& folder, std::string& reason) {
  if (AppendTextFile(files, folder / "error.log", "", reason)) return true;
  reason += ". Messages would be lost: make the file writable";
  return false;
}

constexpr std::string_view kNotRegistered = " is not registered any more";

constexpr const char* kSandboxFolder = "QUILLMERE_SANDBOX_DIR";

bool IsSandbox(std::string_view client) {
  return client == "sandbox" || fs::path(client).filename() == SandboxLibraryName();
}

}  // namespace

std::unique_ptr<Workspace> Workspace::Open(const Options& options, std::string& reason) {
  SystemFiles system_files;
  fs::path folder;
  if (!OpenFolder(options.files != nullptr ? *options.files : system_files, options, folder,
                  reason)) {
    return nullptr;
  }
  std::unique_ptr<Workspace> workspace(new Workspace(options, std::move(folder)));
  FileSystem& files = workspace->Files();
  if (options.access == Access::LookOnly) {
    workspace->other_program_ = FolderLock::IsTaken(files, workspace->folder_);
  } else if (!workspace->lock_.Take(files, workspace->folder_, reason) ||
             !LogCanBeWritten(files, workspace->folder_, reason)) {
    return nullptr;
  }
  workspace->log_.LimitFiles();
  std::string error;
  if (!LoadSettings(files, workspace->SettingsFile(), workspace->settings_, error)) {
    workspace->log_.Add(error + ". The default settings are used", true);
  }
  if (options.debug) workspace->settings_.debug = true;
  workspace->OpenClient(options);
  workspace->BeginIfNew();
  workspace->LoadAll();
  return workspace;
}

Workspace::Workspace(const Options& options, fs::path folder)
    : files_(options.files != nullptr ? options.files : &system_files_),
      folder_(std::move(folder)),
      folder_origin_(options.folder_origin),
      program_folder_(options.program_folder),
      access_(options.access),
      clock_(options.clock != nullptr ? options.clock : &system_clock_),
      log_(*files_, folder_, *clock_, settings_,
           access_ == Access::Change ? MessageLog::Files::Write : MessageLog::Files::LeaveAlone),
      registry_(*files_, folder_, log_, settings_),
      catalogue_(*files_, folder_, jobs_, log_),
      watch_(*files_, folder_, jobs_, catalogue_, *clock_),
      hook_(jobs_, watch_, *clock_, PathText(folder_)),
      actions_(*files_, folder_ / "history.log", *clock_, log_, options.user,
               access_ == Access::Change),
      kept_(*files_, folder_) {}

std::string Workspace::FolderText() const {
  const std::string path = PathText(folder_);
  return folder_origin_.empty() ? path : path + " (" + folder_origin_ + ")";
}

void Workspace::OpenClient(const Options& options) {
  const std::string& client = options.client.empty() ? settings_.client_library : options.client;
  uses_sandbox_ = IsSandbox(client);
  if (options.oci != nullptr) {
    oci_ = std::make_unique<OciLibrary>(*options.oci);
    return;
  }
  // Whatever the client is: it may become the sandbox when there are threads that read this.
  SetEnvironmentDefault(kSandboxFolder, PathText(folder_ / "sandbox").c_str());
  oci_ = std::make_unique<OciLibrary>(client, options.program_folder);
}

fs::path Workspace::SandboxFolder() const {
  const char* const named = std::getenv(kSandboxFolder);  // NOLINT(concurrency-mt-unsafe)
  return named == nullptr || *named == '\0' ? folder_ / "sandbox" : fs::path(named);
}

bool Workspace::UseSandbox(std::string& reason) {
  if (!oci_->Replace("sandbox", program_folder_, reason)) return false;
  uses_sandbox_ = true;
  return true;
}

void Workspace::LeaveSandbox() {
  oci_->TakeBack();
  uses_sandbox_ = false;
}

bool Workspace::KeepSandbox(std::string& reason) {
  KeepSettings();
  settings_.client_library = "sandbox";
  return SaveSettings(*files_, SettingsFile(), settings_, reason);
}

// A folder that has neither of these gets its two lists, so that one that is missing afterwards is
// one that somebody lost.
void Workspace::BeginIfNew() {
  if (access_ == Access::LookOnly) return;
  FileFacts facts;
  for (const char* const name : {"jobs", "config"}) {
    // Only one that is not there for sure: a list that can not be looked at must not be replaced.
    if (!files_->Look(folder_ / name, facts).Missing()) return;
  }
  std::string error;
  if (!registry_.Save(error) || !catalogue_.SaveAll(error)) log_.Add(error, true);
}

// A program that was killed may have replaced a file without having flushed its folder. What is
// read now is what people and jobs go by from here on: a power cut must not bring the former file
// back.
void Workspace::FlushWhatWasLeft() {
  if (access_ == Access::LookOnly) return;
  std::vector<fs::path> folders = {folder_ / "config", folder_ / "jobs"};
  for (const SyncJob* job : jobs_.LiveJobs()) {
    folders.push_back(catalogue_.FolderOf(NameOf(*job)).Path());
  }
  for (const fs::path& folder : folders) {
    std::string error;
    if (!FlushFolder(*files_, folder, error)) log_.Add(error, true);
  }
}

void Workspace::LoadAll() {
  registry_.Load();
  catalogue_.Load([this](std::string_view name) { return LogOnOf(name); },
                  [this](SyncJob& job) { return RestoreJob(job); });
  FlushWhatWasLeft();
  HoldUnregistered();
  for (std::size_t index = 0; index < jobs_.Count(); ++index) {
    if (jobs_.State(index) == JobState::Empty) continue;
    const std::string reason = watch_.Load(index);
    if (reason.empty()) continue;
    log_.Add("What is shown of the past of " + NameOf(jobs_.At(index)) + " has gaps: " + reason,
             true);
  }
}

JobState Workspace::RestoreJob(SyncJob& job) {
  const bool look_only = access_ == Access::LookOnly;
  const RestoreMode mode = !look_only       ? RestoreMode::Resume
                           : other_program_ ? RestoreMode::LookBeside
                                            : RestoreMode::LookOnly;
  RestoredRun restored = RestoreRunState(*files_, job, catalogue_.FolderOf(NameOf(job)), mode);
  if (!restored.problem.empty()) log_.Add(restored.problem, true);
  const std::size_t index = jobs_.IndexOf(job);
  if (restored.was_running) {
    interrupted_.push_back(index);
    const std::string until =
        restored.until == LocalTime{} ? "" : " until " + ReadableTime(restored.until);
    const auto left = restored.progress.batch_remaining;
    log_.AddOf(NameOf(job),
               NameOf(job) + " was running" + until + ", is Paused with " + std::to_string(left) +
                   (left == 1 ? " statement left" : " statements left") +
                   (restored.held.empty() ? ". Continue it with Run" : ""),
               false);
  }
  jobs_.SetProgress(index, restored.progress);
  HoldRestored(index, std::move(restored.held), restored.asks_again);
  // Nobody runs it: this is how it would come back.
  if (look_only && !other_program_ && restored.state == JobState::Started) return JobState::Paused;
  return restored.state;
}

// What its own file of tables says stands in the list already.
void Workspace::HoldRestored(std::size_t index, std::string held, bool asks_again) {
  const std::string name = NameOf(jobs_.At(index));
  const std::string of_tables = jobs_.HeldBecause(index);
  if (!of_tables.empty()) {
    held = of_tables + (held.empty() ? "" : ". " + held);
    asks_again = false;
  }
  if (!held.empty()) log_.AddOf(name, name + " is held: " + held, true);
  if (access_ == Access::Change && !asks_again) {
    std::string error;
    if (!KeepHeldFile(*files_, catalogue_.FolderOf(name), held, error)) log_.Add(error, true);
  }
  jobs_.Hold(index, std::move(held), asks_again);
}

EngineContext Workspace::EngineFor(RunnerListener& listener) {
  hook_.Use(settings_.health_command);
  return {*files_,    folder_,   jobs_,
          catalogue_, *oci_,     log_,
          *clock_,    settings_, listeners_.emplace_back(watch_, listener, &hook_)};
}

std::optional<LogOn> Workspace::LogOnOf(std::string_view data_source) const {
  const int index = registry_.IndexOf(data_source);
  if (index < 0) return std::nullopt;
  return registry_.At(static_cast<std::size_t>(index));
}

void Workspace::RefreshJobLogOns() {
  for (std::size_t index = 0; index < jobs_.Count(); ++index) {
    if (jobs_.State(index) == JobState::Empty) continue;
    SyncJob& job = jobs_.At(index);
    const MutexLock lock(job.config_mutex);
    ResolveLogOns(job.config, [this](std::string_view name) { return LogOnOf(name); });
  }
  HoldUnregistered();
}

std::string Workspace::WhyUnregistered(const SyncJob& job) const {
  const MutexLock lock(job.config_mutex);
  for (const std::string* name : {&job.config.src_database_name, &job.config.des_database_name}) {
    if (registry_.IndexOf(*name) < 0) return *name + std::string(kNotRegistered);
  }
  return {};
}

// Whatever else a job is held for stays.
void Workspace::HoldUnregistered() {
  for (std::size_t index = 0; index < jobs_.Count(); ++index) {
    if (jobs_.State(index) == JobState::Empty) continue;
    const std::string held = jobs_.HeldBecause(index);
    std::string why = WhyUnregistered(jobs_.At(index));
    if (why == held || (!held.empty() && !held.ends_with(kNotRegistered))) continue;
    const std::string name = NameOf(jobs_.At(index));
    if (!why.empty()) log_.AddOf(name, name + " is held: " + why, true);
    jobs_.Hold(index, std::move(why));
  }
}

std::string WhyNotAdded(const std::string& why_not_read) {
  if (why_not_read.empty()) return {};
  return why_not_read +
         ". Nothing is added to it: mend it or move it away, then start the program again";
}

void Workspace::KeepSettings() {
  const std::string error = kept_.BeforeChange(clock_->Now());
  if (!error.empty()) log_.Add(error, true);
}

bool Workspace::SaveJobs(std::string& reason) {
  KeepSettings();
  if (catalogue_.SaveAll(reason)) return true;
  log_.Add(reason, true);
  return false;
}

}  // namespace quillmere
