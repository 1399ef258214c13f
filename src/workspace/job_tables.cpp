// SPDX-License-Identifier: MIT
#include "workspace/job_tables.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "oracle/source_facts.h"

namespace quillmere {
namespace {

JobTable NewTable(const TableInfo& info) {
  JobTable table;
  table.name = info.table_name;
  table.desowner = info.owner;
  table.beginrows = info.num_rows;
  table.rows = info.num_rows;
  return table;
}

const JobTable* FindTable(const SchemaMap& schemas, const TableInfo& info) {
  const auto schema = schemas.find(info.owner);
  return schema == schemas.end() ? nullptr : schema->second.Find(info.table_name);
}

LogOn SourceOf(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  return job.config.source;
}

// Where the tables of a job are.
struct TablesPlace {
  std::string job;
  LogOn log_on;
  std::string container;
};

TablesPlace PlaceOf(const SyncJob& job) {
  return {NameOf(job), SourceOf(job), ContainerOf(job)};
}

// What a source answers.
struct SourceLists {
  Outcome outcome;
  std::vector<std::string> owners;
  std::vector<TableInfo> tables;
};

Outcome Failed(LogLines& log, std::string text) {
  log.Add(text, true);
  return Outcome::Refused(std::move(text));
}

Outcome Failed(const OracleSession& session, LogLines& log, const std::string& what) {
  if (session.ListEnded()) return Outcome::Cancelled();
  return Failed(log, what + session.LastError());
}

bool ReadNext(OracleSession& session, const std::string& what, SchemaListener& listener) {
  WatchLists(session, listener, what);
  return listener.OnProgress("read the " + what, 0, 0);
}

Outcome FetchLists(OracleSession& session, const TablesPlace& place, SourceLists& lists,
                   SchemaListener& listener, LogLines& log) {
  const LogOn& source = place.log_on;
  if (!listener.OnConnect("connect to " + source.name)) return Outcome::Cancelled();
  if (!session.Connect(source)) {
    const std::string text = "Can not connect to source, refresh failed";
    log.Add(text, true);
    log.Add(place.job + ": " + source.name + ": " + session.LastError(), true);
    return Outcome::Refused(text + ". Reason: " + session.LastError());
  }
  if (!place.container.empty() &&
      !listener.OnProgress("enter container " + place.container, 0, 0)) {
    return Outcome::Cancelled();
  }
  if (!SourceFacts(session).Enter(place.container)) {
    return Failed(session, log,
                  "Can not enter container " + place.container + " of " + source.name +
                      ", refresh failed. Reason: ");
  }
  if (!ReadNext(session, "owners of " + source.name, listener)) return Outcome::Cancelled();
  if (!session.ListUsers(lists.owners)) {
    return Failed(session, log, "Can't get source owner list, refresh failed. Reason: ");
  }
  if (!ReadNext(session, "tables of " + source.name, listener)) return Outcome::Cancelled();
  lists.tables.reserve(50);
  if (!session.ListTables(lists.tables)) {
    return Failed(session, log, "Can't get source table info list, refresh failed. Reason: ");
  }
  for (const std::string& warning : session.TakeWarnings()) {
    log.Add(place.job + ": " + warning, true);
  }
  return Outcome::Done();
}

// What a job carries from where to where.
struct Carried {
  std::string from, to;
  std::set<std::string> tables;
};

Carried CarriedBy(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  Carried carried{job.config.src_database_name, job.config.des_database_name, {}};
  for (const auto& [owner, schema] : job.config.schemas) {
    for (const JobTable& table : schema.Tables()) {
      if (table.includeflag) carried.tables.insert(owner + "." + table.name);
    }
  }
  return carried;
}

std::string_view ActionOf(TableFilter filter) {
  switch (filter) {
    case TableFilter::Include:
      return "include";
    case TableFilter::Exclude:
      return "exclude";
    case TableFilter::ChangeOwner:
      break;
  }
  return "redirect";
}

std::string TablesText(const std::string& owner, const std::vector<std::string>& tables, bool all) {
  if (all) return owner + ".*";
  std::string text;
  for (const std::string& table : tables) text += (text.empty() ? "" : ", ") + owner + "." + table;
  return text;
}

void Redirect(JobTable& table, const TableChoice& choice) {
  table.includeflag = choice.filter != TableFilter::Exclude;
  if (!table.includeflag) return;
  table.desowner = choice.new_owner.empty() ? choice.owner : choice.new_owner;
}

// change(table) for each of the tables of the owner; returns how many there were.
template <typename Change>
std::size_t ForEachTable(SchemaMap& schemas, const std::string& owner,
                         const std::vector<std::string>& tables, bool all_tables, Change change) {
  const auto found = schemas.find(owner);
  if (found == schemas.end()) return 0;
  JobSchema& schema = found->second;
  std::size_t count = 0;
  const auto take = [&](JobTable& table) {
    change(table);
    ++count;
  };
  if (all_tables) {
    for (JobTable& table : schema.Tables()) take(table);
    return count;
  }
  for (const std::string& name : tables) {
    if (JobTable* const table = schema.Find(name)) take(*table);
  }
  return count;
}

std::size_t Apply(SyncJob& job, const TableChoice& choice) {
  const MutexLock lock(job.config_mutex);
  job.config.table_list_changed = true;
  ++job.config.tables_revision;
  return ForEachTable(job.config.schemas, choice.owner, choice.tables, choice.all_tables,
                      [&](JobTable& table) { Redirect(table, choice); });
}

// The flag stays raised behind an inclusion and is lowered behind an exclusion.
void SaveFiltered(Workspace& workspace, SyncJob& job, const TableChoice& choice,
                  std::string& unsaved) {
  if (choice.filter == TableFilter::ChangeOwner &&
      choice.owner_saving == OwnerSaving::WithTheNextSave) {
    return;
  }
  workspace.SaveJobs(unsaved);
  if (choice.filter != TableFilter::Exclude) return;
  const MutexLock lock(job.config_mutex);
  job.config.table_list_changed = false;
}

}  // namespace

std::string WhyBusy(std::string_view job_name) {
  return "Job " + std::string(job_name) + " is running. Pause or stop it first";
}

SchemaMap MergeTables(const std::vector<std::string>& owners, const std::vector<TableInfo>& tables,
                      const SchemaMap& known) {
  SchemaMap merged;
  for (const std::string& owner : owners) merged.try_emplace(owner);
  auto schema = merged.end();
  for (const TableInfo& info : tables) {
    // Tables come ordered by owner, so the schema is seldom another one.
    if (schema == merged.end() || schema->first != info.owner) schema = merged.find(info.owner);
    if (schema == merged.end() || schema->second.Find(info.table_name) != nullptr) continue;
    const JobTable* const old = FindTable(known, info);
    JobTable& table = schema->second.Append(old != nullptr ? *old : NewTable(info));
    table.rows = info.num_rows;
  }
  return merged;
}

Outcome ReadTables(Workspace& workspace, std::size_t index, DatabaseWork& work) {
  SyncJob& job = workspace.Jobs().At(index);
  const auto fetch = [library = &workspace.Oci(), place = PlaceOf(job)](SchemaListener& listener,
                                                                        LogLines& log) {
    SourceLists lists;
    OracleSession session(*library);
    lists.outcome = FetchLists(session, place, lists, listener, log);
    return lists;
  };
  std::optional<SourceLists> lists = RunFor(work, workspace.Log(), fetch);
  if (!lists || lists->outcome.cancelled) {
    Outcome cancelled = Outcome::Cancelled();
    cancelled.text = NameOf(job) + ": reading the tables of its source was cancelled";
    workspace.Log().Add(cancelled.text, false);
    return cancelled;
  }
  if (!lists->outcome) return lists->outcome;
  SchemaMap old;  // freed outside of the lock
  const MutexLock lock(job.config_mutex);
  const SchemaMap none;
  JobConfig& config = job.config;
  SchemaMap merged =
      MergeTables(lists->owners, lists->tables, config.table_list_fetched ? config.schemas : none);
  old = std::exchange(config.schemas, std::move(merged));
  config.table_list_fetched = true;
  ++config.tables_revision;
  return Outcome::Done();
}

void TellOverlap(Workspace& workspace, std::size_t index) {
  const JobList& jobs = workspace.Jobs();
  const Carried mine = CarriedBy(jobs.At(index));
  for (std::size_t other = 0; other < jobs.Count(); ++other) {
    if (other == index || jobs.State(other) == JobState::Empty) continue;
    const Carried others = CarriedBy(jobs.At(other));
    if (others.from != mine.from || others.to != mine.to) continue;
    std::vector<std::string> both;
    std::set_intersection(mine.tables.begin(), mine.tables.end(), others.tables.begin(),
                          others.tables.end(), std::back_inserter(both));
    if (both.empty()) continue;
    workspace.Log().AddOf(
        NameOf(jobs.At(index)),
        NameOf(jobs.At(index)) + " and " + NameOf(jobs.At(other)) + " both carry " + both.front() +
            (both.size() == 1 ? "" : " and " + std::to_string(both.size() - 1) + " more") +
            " from " + mine.from + " to " + mine.to +
            ": each change arrives twice. Exclude them in one of the jobs",
        true);
  }
}

Outcome RefreshTables(Workspace& workspace, std::size_t index, DatabaseWork& work) {
  SyncJob& job = workspace.Jobs().At(index);
  if (!Rests(workspace.Jobs().State(index))) return Outcome::Refused(WhyBusy(NameOf(job)));
  const std::string unregistered = workspace.WhyUnregistered(job);
  if (!unregistered.empty()) {
    return Failed(workspace.Log(), NameOf(job) + ": " + unregistered + ", refresh failed");
  }
  Outcome read = ReadTables(workspace, index, work);
  {
    const MutexLock lock(job.config_mutex);
    job.config.table_list_changed = true;
  }
  workspace.Actions().Note("refresh", "job " + NameOf(job));
  std::string reason;
  if (!workspace.SaveJobs(reason) && read.done) return Outcome::Refused(std::move(reason));
  return read;
}

FilterResult FilterTables(Workspace& workspace, std::size_t index, const TableChoice& choice) {
  SyncJob& job = workspace.Jobs().At(index);
  FilterResult result;
  if (!Rests(workspace.Jobs().State(index))) {
    result.refused = WhyBusy(NameOf(job));
    return result;
  }
  result.changed = Apply(job, choice);
  if (choice.filter == TableFilter::Include) TellOverlap(workspace, index);
  workspace.Actions().Note(ActionOf(choice.filter), "job " + NameOf(job), {},
                           TablesText(choice.owner, choice.tables, choice.all_tables) +
                               (choice.new_owner.empty() ? "" : " to " + choice.new_owner));
  SaveFiltered(workspace, job, choice, result.unsaved);
  return result;
}

std::vector<BlockedTable> BlockedTables(SyncJob& job, const std::string& owner,
                                        const std::vector<std::string>& tables, bool all_tables) {
  std::vector<BlockedTable> blocked;
  const MutexLock lock(job.config_mutex);
  ForEachTable(job.config.schemas, owner, tables, all_tables, [&](const JobTable& table) {
    if (table.RecordsBlocked > 0) blocked.push_back({table.name, table.RecordsBlocked});
  });
  return blocked;
}

FilterResult MarkForComparison(Workspace& workspace, std::size_t index, const std::string& owner,
                               const std::vector<BlockedTable>& tables) {
  FilterResult result;
  for (const BlockedTable& table : tables) {
    if (MarkToCompare(workspace.Jobs().At(index), owner, table.name)) ++result.changed;
  }
  workspace.SaveJobs(result.unsaved);
  return result;
}

FilterResult ClearCompareMarks(Workspace& workspace, std::size_t index, const std::string& owner,
                               const std::vector<std::string>& tables, bool all_tables) {
  SyncJob& job = workspace.Jobs().At(index);
  FilterResult result;
  {
    const MutexLock lock(job.config_mutex);
    ForEachTable(job.config.schemas, owner, tables, all_tables, [&](JobTable& table) {
      if (table.compare) ++result.changed;
      table.compare = false;
    });
    if (result.changed > 0) ++job.config.tables_revision;
  }
  workspace.SaveJobs(result.unsaved);
  workspace.Actions().Note("compared", "job " + NameOf(job), {},
                           TablesText(owner, tables, all_tables));
  return result;
}

}  // namespace quillmere
