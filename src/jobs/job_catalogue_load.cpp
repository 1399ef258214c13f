// SPDX-License-Identifier: MIT
// Reading the catalogue; what saves it is in job_catalogue.cpp.
#include <algorithm>
#include <utility>

#include "jobs/job_catalogue.h"
#include "jobs/job_files.h"
#include "jobs/job_list.h"

namespace quillmere {

namespace {

bool IsJobState(JobState state) {
  return state >= JobState::Starting && state <= JobState::Paused;
}

LogOn LogOnOf(const LogOnLookup& log_ons, const std::string& data_source) {
  const LogOn unknown{.name = data_source};
  return log_ons ? log_ons(data_source).value_or(unknown) : unknown;
}

}  // namespace

void ResolveLogOns(JobConfig& job, const LogOnLookup& log_ons) {
  job.source = LogOnOf(log_ons, job.src_database_name);
  job.destination = LogOnOf(log_ons, job.des_database_name);
}

void JobCatalogue::Load(const LogOnLookup& log_ons, const RunStateRestorer& restore) {
  const MutexLock saving(save_mutex_);
  for (std::size_t index = 0; index < jobs_.Count(); ++index) jobs_.Remove(index);
  saved_list_.clear();
  unreadable_.Clear();
  list_has_more_ = false;

  XmlDocument document;
  const FileStatus read = ReadFile(files_, ListFile(), saved_list_);
  if (read.Missing()) return;
  if (!read || !document.Parse(saved_list_)) {
    // A damaged list stays empty without a message; the general log tells why to who looks for it.
    log_.WriteGeneral("Can not read " + PathText(ListFile()) + ": " +
                      (read ? document.Message() : read.reason));
    saved_list_.clear();
    unreadable_.Add(ListFile(), read ? FileStatus{FileCode::Damaged, document.Message()} : read);
    if (!read) log_.Add(unreadable_.WhyNotSaved(ListFile()), true);
    return;
  }
  std::vector<const XmlNode*> nodes;
  document.Root().Children("job", nodes);
  std::vector<std::string_view> names(nodes.size());
  std::transform(nodes.begin(), nodes.end(), names.begin(),
                 [](const XmlNode* node) { return node->ChildValue("name"); });
  for (const XmlNode* node : nodes) {
    const std::string not_taken_back = TakeBackMoved(node->ChildValue("name"), names);
    LoadJob(*node, not_taken_back, log_ons, restore);
  }
}

// A renaming that was cut off before the list had the new name. Why it could not be taken back, or
// nothing.
std::string JobCatalogue::TakeBackMoved(std::string_view name,
                                        const std::vector<std::string_view>& taken) {
  if (!WhyNameRefused(name, JobList::kNotFound).empty()) return {};
  std::string error;
  const std::string moved = FolderOf(name).FindMoved(files_, taken, error);
  if (!moved.empty() && RenamePath(files_, FolderOf(moved).Path(), FolderOf(name).Path(), error)) {
    FolderOf(name).ForgetFormer(files_, FolderOf(moved));
  }
  if (!error.empty()) log_.Add(error, true);
  return error;
}

std::string JobCatalogue::WhyListNotRead() const {
  const MutexLock saving(save_mutex_);
  return unreadable_.WhyNotRead(ListFile());
}

void JobCatalogue::LoadJob(const XmlNode& node, const std::string& not_taken_back,
                           const LogOnLookup& log_ons, const RunStateRestorer& restore) {
  const std::string_view name = node.ChildValue("name");
  const std::string refused = WhyNameRefused(name, JobList::kNotFound);
  if (!refused.empty()) {
    list_has_more_ = true;
    log_.Add("Job \"" + std::string(name) + "\" in " + PathText(ListFile()) +
                 " left out: " + refused + ". The next save keeps the list as it is now in " +
                 PathText(ListFile()) + ".bad",
             true);
    return;
  }
  const std::size_t index = jobs_.Claim();
  SyncJob& job = jobs_.At(index);
  {
    const MutexLock lock(job.config_mutex);
    ReadJobElement(node, job.config);
    ResolveLogOns(job.config, log_ons);
    job.config.error_log_path = PathText(FolderOf(name).File(JobFile::ErrorLog));
  }
  LoadOwnFile(job, FolderOf(name).File(JobFile::Tables));
  if (!not_taken_back.empty()) {
    jobs_.Hold(index, not_taken_back + std::string(kOnTheirWay));
  }
  JobState state = restore ? restore(job) : JobState::Stopped;
  if (!IsJobState(state)) {
    log_.Add(
        "Job " + std::string(name) + " has no valid run state in its run record, it is stopped",
        true);
    state = JobState::Stopped;
  }
  jobs_.SetState(index, state);
}

void JobCatalogue::TakeKept(std::size_t index, const XmlNode& node, const LogOnLookup& log_ons) {
  SyncJob& job = jobs_.At(index);
  SchemaMap kept = ReadSchemas(node);
  const MutexLock lock(job.config_mutex);
  JobConfig& config = job.config;
  const bool has_runned = config.has_runned;
  const bool same_source = config.src_database_name == node.ChildValue("src_database_name");
  ReadJobElement(node, config);
  config.has_runned = has_runned;
  ResolveLogOns(config, log_ons);
  config.error_log_path = PathText(FolderOf(config.name).File(JobFile::ErrorLog));
  for (auto& [owner, schema] : kept) {
    const auto now = config.schemas.find(owner);
    if (now == config.schemas.end() || !same_source) continue;
    for (JobTable& table : schema.Tables()) {
      const JobTable* const counted = now->second.Find(table.name);
      if (counted == nullptr) continue;
      table.beginrows = counted->beginrows;
      table.rows = counted->rows;
      table.totalsynced = counted->totalsynced;
      table.RecordsBlocked = counted->RecordsBlocked;
      table.synced = counted->synced;
      table.compare = counted->compare;
    }
  }
  config.table_list_fetched = !kept.empty();
  config.schemas = std::move(kept);
  ++config.tables_revision;
}

void JobCatalogue::LoadOwnFile(SyncJob& job, const std::filesystem::path& file) {
  XmlDocument document;
  SchemaMap schemas;
  const FileStatus loaded = document.Load(files_, file);
  if (loaded) {
    schemas = ReadSchemas(document.Root());
  } else {
    log_.Add("open" + PathText(file) + " failed, please refresh contents when connected.", true);
    if (!loaded.Missing()) {
      unreadable_.Add(file, loaded);
      jobs_.Hold(jobs_.IndexOf(job),
                 unreadable_.WhyNotRead(file) +
                     ". It says which tables the job carries, and to which owners: bring it back "
                     "and start the program again, or refresh the job, stop it and start it anew");
    }
  }
  const MutexLock lock(job.config_mutex);
  job.config.table_list_fetched = !schemas.empty();
  job.config.schemas = std::move(schemas);
  // Also after a failure: the file is left alone, and complained about at each start, until a
  // refresh has brought owners and tables to write over it.
  job.config.tables_saved_revision = job.config.tables_revision;
}

}  // namespace quillmere
