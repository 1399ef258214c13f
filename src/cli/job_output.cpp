#include "cli/job_output.h"

#include <vector>

#include "cli/json_text.h"
#include "cli/text_table.h"

namespace quillmere::cli {
namespace {

using Json = nlohmann::ordered_json;

struct TableCount {
  std::size_t all = 0;
  std::size_t included = 0;
};

TableCount CountTables(const SyncJob& job) {
  TableCount count;
  for (const auto& [owner, schema] : job.schemas) {
    for (const JobTable& table : schema.Tables()) {
      ++count.all;
      if (table.includeflag) ++count.included;
    }
  }
  return count;
}

// The counters of "Total Done", "Need To Do", "Has Done" and "Blocked".
std::vector<std::string> Counters(const SyncJob& job, const JobList::Progress& progress) {
  return {std::to_string(job.applied_count), std::to_string(progress.batch_remaining),
          std::to_string(progress.batch_applied), std::to_string(job.blocked_count)};
}

Json JobObject(const SyncJob& job, JobState state, const JobList::Progress& progress) {
  const TableCount tables = CountTables(job);
  return {{"name", job.name},
          {"state", StateName(state)},
          {"description", job.description},
          {"source", job.src_database_name},
          {"destination", job.des_database_name},
          {"interval", job.sync_interval},
          {"has_runned", job.has_runned},
          {"table_list_fetched", job.table_list_fetched},
          {"total_done", job.applied_count.Get()},
          {"need_to_do", progress.batch_remaining},
          {"has_done", progress.batch_applied},
          {"blocked", job.blocked_count.Get()},
          {"tables", tables.all},
          {"tables_included", tables.included}};
}

Json TableObject(const JobTable& table) {
  return {{"name", table.name},
          {"remote_owner", table.desowner},
          {"included", table.includeflag},
          {"begin_rows", table.beginrows.Get()},
          {"rows", table.rows.Get()},
          {"total_synced", table.totalsynced.Get()},
          {"blocked", table.RecordsBlocked.Get()}};
}

}  // namespace

std::string JobListText(const Workspace& workspace) {
  const JobList& jobs = workspace.Jobs();
  std::vector<std::vector<std::string>> rows = {
      {"JOB ID", "Status", "Total Done", "Need To Do", "Has Done", "Blocked"}};
  for (std::size_t i = 0; i < jobs.Count(); ++i) {
    JobList::Progress progress;
    const JobState state = jobs.State(i, &progress);
    if (state == JobState::Empty) continue;
    const SyncJob& job = jobs.At(i);
    std::vector<std::string> row = {job.name, std::string(StateName(state))};
    for (std::string& counter : Counters(job, progress)) row.push_back(std::move(counter));
    rows.push_back(std::move(row));
  }
  return TextTable(rows);
}

std::string JobListJson(const Workspace& workspace) {
  const JobList& jobs = workspace.Jobs();
  Json list = Json::array();
  for (std::size_t i = 0; i < jobs.Count(); ++i) {
    JobList::Progress progress;
    const JobState state = jobs.State(i, &progress);
    if (state != JobState::Empty) list.push_back(JobObject(jobs.At(i), state, progress));
  }
  return JsonText(list);
}

std::string JobText(const Workspace& workspace, std::size_t index) {
  const SyncJob& job = workspace.Jobs().At(index);
  JobList::Progress progress;
  const JobState state = workspace.Jobs().State(index, &progress);
  const std::vector<std::string> counters = Counters(job, progress);
  std::string text = TextTable({{"JOB ID", job.name},
                                {"Status", std::string(StateName(state))},
                                {"Description", job.description},
                                {"Source", job.src_database_name},
                                {"Destination", job.des_database_name},
                                {"Interval", std::to_string(job.sync_interval) + " min"},
                                {"Total Done", counters[0]},
                                {"Need To Do", counters[1]},
                                {"Has Done", counters[2]},
                                {"Blocked", counters[3]},
                                {"Tables", TablesSummary(job)}});
  std::vector<std::vector<std::string>> rows = {{"Table Name", "Source Owner", "Remote Owner",
                                                 "Included", "Begin Rows", "Current Rows",
                                                 "Total Synced", "Total Blocked"}};
  for (const auto& [owner, schema] : job.schemas) {
    for (const JobTable& table : schema.Tables()) {
      rows.push_back({table.name, owner, table.desowner, table.includeflag ? "yes" : "no",
                      std::to_string(table.beginrows), std::to_string(table.rows),
                      std::to_string(table.totalsynced), std::to_string(table.RecordsBlocked)});
    }
  }
  if (rows.size() > 1) text += "\n" + TextTable(rows);
  return text;
}

std::string JobJson(const Workspace& workspace, std::size_t index) {
  const SyncJob& job = workspace.Jobs().At(index);
  JobList::Progress progress;
  const JobState state = workspace.Jobs().State(index, &progress);
  Json object = JobObject(job, state, progress);
  Json schemas = Json::array();
  for (const auto& [owner, schema] : job.schemas) {
    Json tables = Json::array();
    for (const JobTable& table : schema.Tables()) tables.push_back(TableObject(table));
    schemas.push_back({{"owner", owner}, {"tables", std::move(tables)}});
  }
  object["schemas"] = std::move(schemas);
  return JsonText(object);
}

std::string TablesSummary(const SyncJob& job) {
  const TableCount count = CountTables(job);
  return std::to_string(count.all) + " of " + std::to_string(job.schemas.size()) + " owners, " +
         std::to_string(count.included) + " included";
}

}  // namespace quillmere::cli
