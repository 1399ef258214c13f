// Reading the catalogue; what saves it is in job_catalogue.cpp.
#include <utility>

#include "jobs/job_catalogue.h"
#include "jobs/job_files.h"
#include "jobs/job_list.h"

namespace quillmere {

namespace {

bool IsJobState(JobState state) {
  return state >= JobState::Starting && state <= JobState::Paused;
}

JobLogin LoginOf(const LoginLookup& logins, std::string_view data_source) {
  if (!logins) return {};
  return logins(data_source).value_or(JobLogin{});
}

}  // namespace

void JobCatalogue::Load(const LoginLookup& logins, const RunStateRestorer& restore) {
  const std::lock_guard<std::mutex> saving(save_mutex_);
  for (std::size_t index = 0; index < jobs_.Count(); ++index) jobs_.Remove(index);
  saved_list_.clear();
  unreadable_.Clear();
  list_has_more_ = false;

  XmlDocument document;
  const FileStatus read = ReadFile(files_, ListFile(), saved_list_);
  if (read.Missing()) return;
  if (!read || !document.Parse(saved_list_)) {
    // The list stays empty without a message; the general log tells why to who looks for it.
    log_.WriteGeneral("Can not read " + PathText(ListFile()) + ": " +
                      (read ? document.Message() : read.reason));
    saved_list_.clear();
    unreadable_.Add(ListFile());
    return;
  }
  std::vector<const XmlNode*> nodes;
  document.Root().Children("job", nodes);
  for (const XmlNode* node : nodes) LoadJob(*node, logins, restore);
}

void JobCatalogue::LoadJob(const XmlNode& node, const LoginLookup& logins,
                           const RunStateRestorer& restore) {
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
    const std::lock_guard<std::mutex> lock(job.config_mutex);
    ReadJobElement(node, job);
    job.source = LoginOf(logins, job.src_database_name);
    job.destination = LoginOf(logins, job.des_database_name);
    job.save_mark = false;
    job.error_log_path = PathText(FolderOf(job.name).File(JobFile::ErrorLog));
  }
  LoadOwnFile(job);
  JobState state = restore ? restore(job) : JobState::Stopped;
  if (!IsJobState(state)) {
    log_.Add("Job " + job.name + " has no valid run state in its run record, it is stopped", true);
    state = JobState::Stopped;
  }
  job.next_due = {};
  jobs_.SetState(index, state);
}

void JobCatalogue::LoadOwnFile(SyncJob& job) {
  const std::filesystem::path file = FolderOf(job.name).File(JobFile::Tables);
  XmlDocument document;
  const FileStatus loaded = document.Load(files_, file);
  if (loaded) {
    SchemaMap schemas = ReadSchemas(document.Root());
    const std::lock_guard<std::mutex> lock(job.config_mutex);
    job.table_list_fetched = !schemas.empty();
    job.schemas = std::move(schemas);
  } else {
    log_.Add("open" + PathText(file) + " failed, please refresh contents when connected.", true);
    if (!loaded.Missing()) unreadable_.Add(file);
  }
  // Also after a failure: the file is left alone, and complained about at each start, until a
  // refresh has brought owners and tables to write over it.
  job.tables_saved_revision = job.tables_revision.Get();
}

}  // namespace quillmere
