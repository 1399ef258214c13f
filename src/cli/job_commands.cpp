// quillmere-cli job ...: the catalogue of jobs.
#include <optional>
#include <vector>

#include "cli/command.h"
#include "cli/job_output.h"
#include "engine/job_runner.h"
#include "workspace/job_operations.h"
#include "workspace/job_tables.h"

namespace quillmere::cli {
namespace {

constexpr int kLongestInterval = 10000;  // minutes

struct JobArguments {
  std::string name, new_name, from, to, description, owner, new_owner;
  std::optional<int> interval;
  std::vector<std::string> tables;
  bool all = false;
  bool json = false;
};

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

int Add(const CommandLine& line, const JobArguments& arguments) {
  const auto workspace = OpenToChange(line, Folder::MayBeMade);
  if (workspace == nullptr) return kFailed;
  JobProperties properties{arguments.name, arguments.description,      arguments.from,
                           arguments.to,   arguments.interval.value(), true};
  if (!SourcesExist(*workspace, properties)) return kFailed;
  std::size_t index = JobList::kNotFound;
  const Outcome added = AddJob(*workspace, properties, index);
  if (!added) return Fail(added.text);
  const SyncJob& job = workspace->Jobs().At(index);
  if (!job.table_list_fetched) return FailWithoutTables(job.name, added.text);
  return Print(added.text + ": tables " + TablesSummary(job) + "\n");
}

int Edit(const CommandLine& line, const JobArguments& arguments) {
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
  const bool sources_given = !arguments.from.empty() || !arguments.to.empty();
  if (sources_given && !SourcesExist(*open.workspace, properties)) return kFailed;
  const Outcome edited = EditJob(*open.workspace, open.index, properties);
  if (!edited) return Fail(edited.text);
  const std::string done = "Job " + open.Job().name + " changed";
  if (!edited.text.empty()) return FailWithoutTables(open.Job().name, done + ". " + edited.text);
  return Print(done + "\n");
}

int List(const CommandLine& line, bool json) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  return Print(json ? JobListJson(*workspace) : JobListText(*workspace));
}

int Show(const CommandLine& line, const JobArguments& arguments) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  const std::size_t index = FindJob(*workspace, arguments.name);
  if (index == JobList::kNotFound) return kFailed;
  return Print(arguments.json ? JobJson(*workspace, index) : JobText(*workspace, index));
}

int Refresh(const CommandLine& line, const JobArguments& arguments) {
  const OpenJob open(line, arguments.name);
  if (!open) return kFailed;
  const std::size_t from = open.workspace->Log().Entries().size();
  const Outcome refreshed = RefreshTables(*open.workspace, open.index);
  if (!refreshed) return Fail(refreshed.text);
  PrintErrors(open.workspace->Log(), from);
  return Print("Job " + arguments.name + ": tables " + TablesSummary(open.Job()) + "\n");
}

// Stop is a request that the engine serves: here there is no engine at work, so it is served at
// once.
int Stop(const CommandLine& line, const JobArguments& arguments) {
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
  RequestStop(workspace.Jobs(), open.index);
  JobRunner(workspace.EngineFor(listener)).Step(open.index);
  PrintErrors(workspace.Log(), from);
  return Print("Job " + arguments.name + " is stopped\n");
}

int Remove(const CommandLine& line, const JobArguments& arguments) {
  const OpenJob open(line, arguments.name);
  if (!open) return kFailed;
  const Outcome deleted = DeleteJob(*open.workspace, open.index);
  return deleted ? Print(deleted.text + "\n") : Fail(deleted.text);
}

std::string WhyTablesRefused(const SyncJob& job, const JobArguments& arguments) {
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

int Filter(const CommandLine& line, JobArguments& arguments, TableFilter filter) {
  const OpenJob open(line, arguments.name);
  if (!open) return kFailed;
  SyncJob& job = open.Job();
  if (IsRunning(open.workspace->Jobs().State(open.index))) return Fail(WhyBusy(job.name));
  std::string reason = WhyTablesRefused(job, arguments);
  if (!reason.empty()) return Fail(reason);
  if (arguments.all) {
    arguments.tables.clear();
    for (const JobTable& table : job.schemas.find(arguments.owner)->second.Tables()) {
      arguments.tables.push_back(table.name);
    }
  }
  const std::size_t changed =
      ApplyTableFilter(job, arguments.owner, arguments.tables, filter, arguments.new_owner);
  if (!open.workspace->SaveJobs(reason)) return Fail(reason);
  return Print("Job " + job.name + ": " + std::to_string(changed) + " tables changed, tables " +
               TablesSummary(job) + "\n");
}

class JobGroup {
 public:
  JobGroup(CLI::App& app, CommandLine& line)
      : line_(line), group_(*app.add_subcommand("job", "The catalogue of jobs")) {
    group_.require_subcommand(1);
  }

  template <typename Action>
  CLI::App& Add(const std::string& command, const std::string& what, Action action) {
    CLI::App& app = *group_.add_subcommand(command, what);
    app.callback([&line = line_, arguments = arguments_, action] {
      line.action = [&line, arguments, action] { return action(line, *arguments); };
    });
    return app;
  }

  template <typename Action>
  CLI::App& AddNamed(const std::string& command, const std::string& what, Action action) {
    CLI::App& app = Add(command, what, action);
    app.add_option("NAME", arguments_->name, "the job")->required();
    return app;
  }

  JobArguments& Arguments() { return *arguments_; }

 private:
  CommandLine& line_;
  CLI::App& group_;
  std::shared_ptr<JobArguments> arguments_ = std::make_shared<JobArguments>();
};

void AddTables(CLI::App& app, JobArguments& arguments) {
  CLI::Option* tables = app.add_option("TABLE", arguments.tables, "tables of that owner");
  CLI::Option* all = app.add_flag("--all", arguments.all, "all tables of that owner");
  tables->excludes(all);
  app.parse_complete_callback([&arguments] {
    if (arguments.tables.empty() && !arguments.all) throw CLI::RequiredError("TABLE or --all");
  });
}

void AddProperties(CLI::App& app, JobArguments& arguments, bool required) {
  app.add_option("--from", arguments.from, "source data source")->required(required);
  app.add_option("--to", arguments.to, "destination data source")->required(required);
  app.add_option("--interval", arguments.interval, "minutes between two passes; 0: at every sweep")
      ->required(required)
      ->check(CLI::Range(0, kLongestInterval));
  app.add_option("--description", arguments.description, "free text")->required(required);
}

}  // namespace

void AddJobCommands(CLI::App& app, CommandLine& line) {
  JobGroup group(app, line);
  JobArguments& arguments = group.Arguments();

  AddProperties(group.AddNamed("add", "Create a job", Add), arguments, true);
  CLI::App& edit = group.AddNamed("edit", "Change a stopped or paused job", Edit);
  edit.add_option("--name", arguments.new_name, "new name");
  AddProperties(edit, arguments, false);

  group
      .Add("list", "List the jobs",
           [](const CommandLine& the_line, const JobArguments& given) {
             return List(the_line, given.json);
           })
      .add_flag("--json", arguments.json, "as JSON");
  group.AddNamed("show", "Show a job with its tables", Show)
      .add_flag("--json", arguments.json, "as JSON");
  group.AddNamed("refresh", "Read the tables of the source anew", Refresh);
  group.AddNamed("stop", "Reset a paused job", Stop);
  group.AddNamed("remove", "Delete a stopped job", Remove);

  const auto add_filter = [&](const std::string& command, const std::string& what,
                              TableFilter filter) -> CLI::App& {
    CLI::App& filter_app =
        group.AddNamed(command, what, [filter](const CommandLine& the_line, JobArguments& given) {
          return Filter(the_line, given, filter);
        });
    filter_app.add_option("OWNER", arguments.owner, "source owner")->required();
    return filter_app;
  };
  AddTables(add_filter("include", "Synchronize tables", TableFilter::Include), arguments);
  AddTables(add_filter("exclude", "Do not synchronize tables", TableFilter::Exclude), arguments);
  CLI::App& owner = add_filter("owner", "Synchronize tables to another owner (and include them)",
                               TableFilter::ChangeOwner);
  owner.add_option("NEWOWNER", arguments.new_owner, "owner on the destination")->required();
  AddTables(owner, arguments);
}

}  // namespace quillmere::cli
