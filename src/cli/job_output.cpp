// SPDX-License-Identifier: MIT
#include "cli/job_output.h"

#include <vector>

#include "cli/command.h"
#include "cli/text_table.h"
#include "oracle/position_row.h"
#include "watch/health_json.h"
#include "watch/health_text.h"
#include "workspace/job_operations.h"

namespace quillmere::cli {
namespace {

using Json = nlohmann::ordered_json;

struct TableCount {
  std::size_t all = 0;
  std::size_t included = 0;
  std::size_t to_compare = 0;
};

TableCount CountTables(const JobConfig& job) {
  TableCount count;
  for (const auto& [owner, schema] : job.schemas) {
    for (const JobTable& table : schema.Tables()) {
      ++count.all;
      if (table.includeflag) ++count.included;
      if (table.compare) ++count.to_compare;
    }
  }
  return count;
}

std::string Summary(const JobConfig& job) {
  const TableCount count = CountTables(job);
  return std::to_string(count.all) + " of " + std::to_string(job.schemas.size()) + " owners, " +
         std::to_string(count.included) + " included" +
         (count.to_compare == 0 ? "" : ", " + std::to_string(count.to_compare) + " to compare");
}

// The counters of "Total Done", "Need To Do", "Has Done" and "Blocked".
std::vector<std::string> Counters(const JobRun& run, const JobList::Progress& progress) {
  return {std::to_string(run.applied_count), std::to_string(progress.batch_remaining),
          std::to_string(progress.batch_applied), std::to_string(run.blocked_count)};
}

Json JobObject(const JobConfig& job, const JobRun& run, JobState state,
               const JobList::Progress& progress, const std::string& held) {
  const TableCount tables = CountTables(job);
  return {{"name", job.name},
          {"state", StateName(state)},
          {"description", job.description},
          {"source", job.src_database_name},
          {"destination", job.des_database_name},
          {"interval", job.sync_interval},
          {"has_runned", job.has_runned},
          {"table_list_fetched", job.table_list_fetched},
          {"total_done", run.applied_count.Get()},
          {"need_to_do", progress.batch_remaining},
          {"has_done", progress.batch_applied},
          {"blocked", run.blocked_count.Get()},
          {"tables", tables.all},
          {"tables_included", tables.included},
          {"tables_to_compare", tables.to_compare},
          {"follow", FollowName(job.follow)},
          {"position_owner", job.position_owner},
          {"container", job.container},
          {"held", held}};
}

Json TableObject(const JobTable& table) {
  return {{"name", table.name},
          {"remote_owner", table.desowner},
          {"included", table.includeflag},
          {"begin_rows", table.beginrows.Get()},
          {"rows", table.rows.Get()},
          {"total_synced", table.totalsynced.Get()},
          {"blocked", table.RecordsBlocked.Get()},
          {"compare", table.compare.Get()}};
}

}  // namespace

std::string JobListText(const Workspace& workspace) {
  const JobList& jobs = workspace.Jobs();
  std::vector<std::vector<std::string>> rows = {
      {"JOB ID", "Status", "Total Done", "Need To Do", "Has Done", "Blocked", "Follows"}};
  for (std::string& head : HealthHeads()) rows.front().push_back(std::move(head));
  std::string notes;
  for (std::size_t i = 0; i < jobs.Count(); ++i) {
    JobList::Progress progress;
    const JobState state = jobs.State(i, &progress);
    if (state == JobState::Empty) continue;
    const SyncJob& job = jobs.At(i);
    std::vector<std::string> row = {NameOf(job), std::string(StateName(state))};
    for (std::string& counter : Counters(job.run, progress)) row.push_back(std::move(counter));
    row.emplace_back(FollowName(FollowOf(job)));
    const WatchedJob watched = workspace.Watch().Look(i);
    for (std::string& cell : HealthCells(watched)) row.push_back(std::move(cell));
    const std::string& held = watched.held;
    if (!held.empty()) notes += "\n" + row.front() + " is held: " + held + "\n";
    if (watched.problem) {
      notes += "\n" + row.front() + ": " + OneLine(ProblemSummary(*watched.problem)) + "\n";
    }
    rows.push_back(std::move(row));
  }
  return TextTable(rows) + notes;
}

std::string JobListJson(const Workspace& workspace) {
  const JobList& jobs = workspace.Jobs();
  Json list = Json::array();
  for (std::size_t i = 0; i < jobs.Count(); ++i) {
    JobList::Progress progress;
    const JobState state = jobs.State(i, &progress);
    if (state == JobState::Empty) continue;
    const SyncJob& job = jobs.At(i);
    const std::string held = jobs.HeldBecause(i);
    const WatchedJob watched = workspace.Watch().Look(i);
    const MutexLock lock(job.config_mutex);
    list.push_back(JobObject(job.config, job.run, state, progress, held));
    AddHealth(list.back(), watched);
  }
  return JsonText(list);
}

std::string JobText(const Workspace& workspace, std::size_t index,
                    const std::vector<FootingLine>& footing) {
  const SyncJob& job = workspace.Jobs().At(index);
  JobList::Progress progress;
  const JobState state = workspace.Jobs().State(index, &progress);
  const std::vector<std::string> counters = Counters(job.run, progress);
  const WatchedJob watched = workspace.Watch().Look(index);
  const std::string& held = watched.held;
  const MutexLock lock(job.config_mutex);
  const JobConfig& config = job.config;
  std::vector<std::vector<std::string>> head = {
      {"JOB ID", config.name},
      {"Status", std::string(StateName(state))},
      {"Description", config.description},
      {"Source", config.src_database_name},
      {"Destination", config.des_database_name},
      {"Interval", std::to_string(config.sync_interval) + " min"},
      {"Total Done", counters[0]},
      {"Need To Do", counters[1]},
      {"Has Done", counters[2]},
      {"Blocked", counters[3]},
      {"Tables", Summary(config)},
      {"Follows", std::string(FollowName(config.follow)) + ". " +
                      std::string(WhatFollowingMeans(config.follow))},
      {"Position row", config.position_owner.empty()
                           ? "none: a pass can be applied again after a death in the one moment "
                             "between the destination's commit and ours"
                           : "in " + config.position_owner + "." + std::string(kPositionTable)}};
  if (!config.container.empty()) head.push_back({"Follows container", config.container});
  if (!held.empty()) head.push_back({"Held", held});
  for (std::vector<std::string>& line : HealthLines(watched)) head.push_back(std::move(line));
  for (const FootingLine& line : footing) {
    head.push_back({line.warning ? "Warning" : line.subject, line.text});
  }
  std::string text = TextTable(head);
  std::vector<std::vector<std::string>> rows = {{"Table Name", "Source Owner", "Remote Owner",
                                                 "Included", "Begin Rows", "Current Rows",
                                                 "Total Synced", "Total Blocked", "Compare"}};
  for (const auto& [owner, schema] : config.schemas) {
    for (const JobTable& table : schema.Tables()) {
      rows.push_back({table.name, owner, table.desowner, table.includeflag ? "yes" : "no",
                      std::to_string(table.beginrows), std::to_string(table.rows),
                      std::to_string(table.totalsynced), std::to_string(table.RecordsBlocked),
                      table.compare ? "yes" : ""});
    }
  }
  if (rows.size() > 1) text += "\n" + TextTable(rows);
  return text;
}

std::string JobJson(const Workspace& workspace, std::size_t index,
                    const std::vector<FootingLine>& footing) {
  const SyncJob& job = workspace.Jobs().At(index);
  JobList::Progress progress;
  const JobState state = workspace.Jobs().State(index, &progress);
  const WatchedJob watched = workspace.Watch().Look(index);
  const MutexLock lock(job.config_mutex);
  Json object = JobObject(job.config, job.run, state, progress, watched.held);
  AddHealth(object, watched);
  Json schemas = Json::array();
  for (const auto& [owner, schema] : job.config.schemas) {
    Json tables = Json::array();
    for (const JobTable& table : schema.Tables()) tables.push_back(TableObject(table));
    schemas.push_back({{"owner", owner}, {"tables", std::move(tables)}});
  }
  object["schemas"] = std::move(schemas);
  Json live = Json::array();
  for (const FootingLine& line : footing) {
    live.push_back({{"subject", line.subject}, {"text", line.text}, {"warning", line.warning}});
  }
  if (!live.empty()) object["live"] = std::move(live);
  return JsonText(object);
}

std::string TablesSummary(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  return Summary(job.config);
}

}  // namespace quillmere::cli
