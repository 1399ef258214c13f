// SPDX-License-Identifier: MIT
#include "cli/job_commands.h"

#include "cli/job_output.h"
#include "engine/job_footing.h"
#include "engine/job_runner.h"
#include "workspace/job_operations.h"
#include "workspace/job_tables.h"
#include "workspace/position_table.h"

namespace quillmere::cli::job {
namespace {

// A job of a folder that is open for changes.
struct OpenJob {
  OpenJob(const CommandLine& line, const std::string& name) : workspace(OpenToChange(line)) {
    if (workspace != nullptr) index = FindJob(*workspace, name);
  }
  explicit operator bool() const { return index != JobList::kNotFound; }
  SyncJob& Job() const { return workspace->Jobs().At(index); }

  std::unique_ptr<Workspace> workspace;
  std::size_t index = JobList::kNotFound;
};

bool SourcesExist(const Workspace& workspace, const JobProperties& properties) {
  return FindSource(workspace, properties.source) >= 0 &&
         FindSource(workspace, properties.destination) >= 0;
}

// The job is there, but of no use yet.
int FailWithoutTables(const std::string& name, const std::string& reason) {
  return Fail(reason + ". Use 'job refresh " + name + "' when the source can be reached");
}

// The window offers what there is; names that were typed are judged.
std::string WhyTablesUnknown(const SyncJob& record, const Arguments& arguments) {
  const MutexLock lock(record.config_mutex);
  const JobConfig& job = record.config;
  const auto schema = job.schemas.find(arguments.owner);
  if (schema == job.schemas.end()) {
    return "Job " + job.name + " has no owner " + arguments.owner + "; 'job show' lists them";
  }
  for (const std::string& table : arguments.tables) {
    if (schema->second.Find(table) == nullptr) {
      return "Job " + job.name + " has no table " + arguments.owner + "." + table +
             "; 'job show' lists them";
    }
  }
  return {};
}

// What was given on the command line, else what there was.
Follow ChosenFollow(const std::string& given, Follow otherwise) {
  if (given.empty()) return otherwise;
  return given == FollowName(Follow::Commits) ? Follow::Commits : Follow::Rows;
}

std::vector<FootingLine> LookAtSource(Workspace& workspace, std::size_t index) {
  const SyncJob& job = workspace.Jobs().At(index);
  const LogOn log_on = [&] {
    const MutexLock lock(job.config_mutex);
    return job.config.source;
  }();
  OracleSession source(workspace.Oci());
  if (!source.Connect(log_on)) {
    return {{"Server", "not known: Connect source fail : " + source.LastError(), true}};
  }
  return ReadFooting(source, job);
}

int Filter(const CommandLine& line, const Arguments& arguments, TableFilter filter) {
  const OpenJob open(line, arguments.name);
  if (!open) return kFailed;
  const std::string unknown = WhyTablesUnknown(open.Job(), arguments);
  if (!unknown.empty()) return Fail(unknown);
  const FilterResult result =
      FilterTables(*open.workspace, open.index,
                   {filter, arguments.owner, arguments.tables, arguments.all, arguments.new_owner,
                    OwnerSaving::AtOnce});
  if (!result.refused.empty()) return Fail(result.refused);
  if (!result.unsaved.empty()) return Fail(result.unsaved);
  return Print("Job " + NameOf(open.Job()) + ": " + std::to_string(result.changed) +
               " tables changed, tables " + TablesSummary(open.Job()) + "\n");
}

}  // namespace

int Add(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToChange(line, Folder::MayBeMade);
  if (workspace == nullptr) return kFailed;
  JobProperties properties{
      arguments.name,
      arguments.description,
      arguments.from,
      arguments.to,
      arguments.interval.value(),
      true,
      ChosenFollow(arguments.follow, FollowOfNewJobs(workspace->ProgramSettings())),
      arguments.container};
  if (!SourcesExist(*workspace, properties)) return kFailed;
  std::size_t index = JobList::kNotFound;
  InPlace work;
  const Outcome added = AddJob(*workspace, properties, index, work);
  if (!added) return Fail(added.text);
  const SyncJob& job = workspace->Jobs().At(index);
  if (!TablesFetched(job)) return FailWithoutTables(NameOf(job), added.text);
  return Print(added.text + ": tables " + TablesSummary(job) + "\n");
}

int Edit(const CommandLine& line, const Arguments& arguments) {
  const OpenJob open(line, arguments.name);
  if (!open) return kFailed;
  JobProperties properties = PropertiesOf(open.Job());
  properties.zero_allowed = true;
  const auto replace = [](std::string& value, const std::string& given) {
    if (!given.empty()) value = given;
  };
  replace(properties.name, arguments.new_name);
  replace(properties.source, arguments.from);
  replace(properties.destination, arguments.to);
  replace(properties.description, arguments.description);
  if (arguments.interval) properties.interval = *arguments.interval;
  properties.follow = ChosenFollow(arguments.follow, properties.follow);
  replace(properties.container, arguments.container);
  if (arguments.no_container) properties.container.clear();
  const bool sources_given = !arguments.from.empty() || !arguments.to.empty();
  if (sources_given && !SourcesExist(*open.workspace, properties)) return kFailed;
  InPlace work;
  const Outcome edited = EditJob(*open.workspace, open.index, properties, work);
  if (!edited) return Fail(edited.text);
  const std::string name = NameOf(open.Job());
  const std::string done = "Job " + name + " changed";
  if (!edited.text.empty()) return FailWithoutTables(name, done + ". " + edited.text);
  const bool use_row = !arguments.position_owner.empty();
  if (!use_row && !arguments.no_position_table) return Print(done + "\n");
  const Outcome row = use_row
                          ? UsePositionTable(*open.workspace, open.index, arguments.position_owner)
                          : LeavePositionTable(*open.workspace, open.index);
  return row ? Print(row.text + "\n") : Fail(row.text);
}

int List(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  return Print(arguments.json ? JobListJson(*workspace) : JobListText(*workspace));
}

int Show(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  const std::size_t index = FindJob(*workspace, arguments.name);
  if (index == JobList::kNotFound) return kFailed;
  std::vector<FootingLine> footing;
  if (arguments.live) footing = LookAtSource(*workspace, index);
  return Print(arguments.json ? JobJson(*workspace, index, footing)
                              : JobText(*workspace, index, footing));
}

int Refresh(const CommandLine& line, const Arguments& arguments) {
  const OpenJob open(line, arguments.name);
  if (!open) return kFailed;
  const std::size_t from = open.workspace->Log().Entries().size();
  InPlace work;
  const Outcome refreshed = RefreshTables(*open.workspace, open.index, work);
  if (!refreshed) return Fail(refreshed.text);
  PrintErrors(open.workspace->Log(), from);
  return Print("Job " + arguments.name + ": tables " + TablesSummary(open.Job()) + "\n");
}

// Stop is a request that the engine serves: here there is no engine at work, so it is served at
// once.
int Stop(const CommandLine& line, const Arguments& arguments) {
  const OpenJob open(line, arguments.name);
  if (!open) return kFailed;
  Workspace& workspace = *open.workspace;
  if (workspace.Jobs().State(open.index) == JobState::Stopped) {
    return Fail("Job " + arguments.name + " is stopped already");
  }
  struct Listener final : RunnerListener {
    explicit Listener(MessageLog& the_log) : log(the_log) {}
    void OnJobChanged(std::size_t, bool) override {}
    void OnError(std::size_t, std::string_view text) override { log.Add(text, true); }
    void OnInformation(std::size_t, std::string_view text) override { log.Add(text, false); }
    MessageLog& log;
  } listener(workspace.Log());
  const std::size_t from = workspace.Log().Entries().size();
  StopJob(workspace, open.index);
  JobRunner(workspace.EngineFor(listener)).Step(open.index);
  PrintErrors(workspace.Log(), from);
  return Print("Job " + arguments.name + " is stopped\n");
}

int Remove(const CommandLine& line, const Arguments& arguments) {
  const OpenJob open(line, arguments.name);
  if (!open) return kFailed;
  const Outcome deleted = DeleteJob(*open.workspace, open.index);
  return deleted ? Print(deleted.text + "\n") : Fail(deleted.text);
}

int Include(const CommandLine& line, const Arguments& arguments) {
  return Filter(line, arguments, TableFilter::Include);
}

int Exclude(const CommandLine& line, const Arguments& arguments) {
  return Filter(line, arguments, TableFilter::Exclude);
}

int Owner(const CommandLine& line, const Arguments& arguments) {
  return Filter(line, arguments, TableFilter::ChangeOwner);
}

int Compared(const CommandLine& line, const Arguments& arguments) {
  const OpenJob open(line, arguments.name);
  if (!open) return kFailed;
  const std::string unknown = WhyTablesUnknown(open.Job(), arguments);
  if (!unknown.empty()) return Fail(unknown);
  const FilterResult result = ClearCompareMarks(*open.workspace, open.index, arguments.owner,
                                                arguments.tables, arguments.all);
  if (!result.unsaved.empty()) return Fail(result.unsaved);
  return Print("Job " + NameOf(open.Job()) + ": " + std::to_string(result.changed) +
               " marks taken away, tables " + TablesSummary(open.Job()) + "\n");
}

}  // namespace quillmere::cli::job
