// SPDX-License-Identifier: MIT
#include "cli/arguments.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <functional>
#include <sstream>
#include <string>

#include "cli/doctor_command.h"
#include "cli/health_command.h"
#include "cli/job_commands.h"
#include "cli/preview_command.h"
#include "cli/run_command.h"
#include "cli/schema_commands.h"
#include "cli/source_commands.h"
#include "cli/sql_command.h"
#include "cli/terminal.h"
#include "cli/trouble_commands.h"
#include "cli/workspace_commands.h"
#include "foundation/version.h"
#include "workspace/job_operations.h"

namespace quillmere::cli {
namespace {

constexpr double kLongestRun = 1e9;  // seconds
constexpr int kMostPreviewed = 1'000'000;
constexpr int kLongestSweep = 60'000;  // milliseconds

struct SqlArguments {
  std::string source, file;
};

// All that can stand on the command line, and the command that does.
struct Parsed {
  CommandLine line;
  source::Arguments source;
  job::Arguments job;
  schema::Arguments schema;
  RunArguments run;
  HealthArguments health;
  DoctorArguments doctor;
  SqlArguments sql;
  workspace::Arguments workspace;
  std::function<int()> command;
};

// The group's command of that name, with the function behind it.
template <typename Arguments>
CLI::App& Add(CLI::App& group, const std::string& name, const std::string& what, Parsed& parsed,
              const Arguments& arguments, int (*run)(const CommandLine&, const Arguments&)) {
  CLI::App& app = *group.add_subcommand(name, what);
  app.callback([&parsed, &arguments, run] {
    parsed.command = [&parsed, &arguments, run] { return run(parsed.line, arguments); };
  });
  return app;
}

CLI::App& AddGroup(CLI::App& app, const std::string& name, const std::string& what) {
  CLI::App& group = *app.add_subcommand(name, what);
  group.require_subcommand(1);
  return group;
}

void AddSourceCommands(CLI::App& app, Parsed& parsed) {
  source::Arguments& arguments = parsed.source;
  CLI::App& group = AddGroup(app, "source", "The registered data sources");
  const auto add = [&](const std::string& name, const std::string& what, auto run) -> CLI::App& {
    CLI::App& command = Add(group, name, what, parsed, arguments, run);
    command.add_option("NAME", arguments.name, "the data source, which is also the connect name")
        ->required();
    return command;
  };
  const auto add_login = [&](CLI::App& command) {
    command.add_option("--mode", arguments.mode, "how to log on: NORMAL or SYSDBA")
        ->check(CLI::IsMember({"NORMAL", "SYSDBA"}));
    command.add_option("--password-file", arguments.password_file,
                       "file that holds the password; otherwise it is read from standard input");
  };

  CLI::App& add_command = add("add", "Register a data source", source::Add);
  add_command.add_option("--user", arguments.user, "user id to log on with")->required();
  add_login(add_command);
  CLI::App& edit = add("edit", "Give a data source another log-on", source::Edit);
  edit.add_option("--user", arguments.user, "user id to log on with");
  add_login(edit);
  Add(group, "list", "List the data sources", parsed, arguments, source::List)
      .add_flag("--json", arguments.json, "as JSON");
  add("test", "Connect with the stored log-on", source::Test);
  add("refresh", "Read tables, keys and indexes anew", source::Refresh);
  add("remove", "Remove a data source with its stored password", source::Remove);
}

void AddProperties(CLI::App& app, job::Arguments& arguments, bool required) {
  app.add_option("--from", arguments.from, "source data source")->required(required);
  app.add_option("--to", arguments.to, "destination data source")->required(required);
  app.add_option("--interval", arguments.interval, "minutes between two passes; 0: at every sweep")
      ->required(required)
      ->check(CLI::Range(0, kLongestInterval));
  app.add_option("--description", arguments.description, "free text")->required(required);
  app.add_option("--follow", arguments.follow,
                 required ? "rows or commits (recommended); otherwise as the settings have it"
                          : "rows or commits (recommended); of a stopped job only")
      ->check(CLI::IsMember({"rows", "commits"}));
  CLI::Option* container =
      app.add_option("--container", arguments.container,
                     "pluggable database to follow by commits, when the source is the root");
  if (required) return;
  app.add_flag("--no-container", arguments.no_container, "the source is no root")
      ->excludes(container);
}

void AddPositionTable(CLI::App& app, job::Arguments& arguments) {
  CLI::Option* use =
      app.add_option("--position-table", arguments.position_owner,
                     "owner on the destination that gets a table with the job's position row");
  app.add_flag("--no-position-table", arguments.no_position_table, "without a position row")
      ->excludes(use);
}

void AddTables(CLI::App& app, job::Arguments& arguments) {
  CLI::Option* tables = app.add_option("TABLE", arguments.tables, "tables of that owner");
  CLI::Option* all = app.add_flag("--all", arguments.all, "all tables of that owner");
  tables->excludes(all);
  app.parse_complete_callback([&arguments] {
    if (arguments.tables.empty() && !arguments.all) throw CLI::RequiredError("TABLE or --all");
  });
}

void AddJobCommands(CLI::App& app, Parsed& parsed) {
  job::Arguments& arguments = parsed.job;
  CLI::App& group = AddGroup(app, "job", "The catalogue of jobs");
  const auto add = [&](const std::string& name, const std::string& what, auto run) -> CLI::App& {
    CLI::App& command = Add(group, name, what, parsed, arguments, run);
    command.add_option("NAME", arguments.name, "the job")->required();
    return command;
  };

  AddProperties(add("add", "Create a job", job::Add), arguments, true);
  CLI::App& edit = add("edit", "Change a stopped or paused job", job::Edit);
  edit.add_option("--name", arguments.new_name, "new name");
  AddProperties(edit, arguments, false);
  AddPositionTable(edit, arguments);
  Add(group, "list", "List the jobs", parsed, arguments, job::List)
      .add_flag("--json", arguments.json, "as JSON");
  CLI::App& show = add("show", "Show a job with its tables", job::Show);
  show.add_flag("--json", arguments.json, "as JSON");
  show.add_flag("--live", arguments.live, "ask the source what the job stands on");
  add("refresh", "Read the tables of the source anew", job::Refresh);
  CLI::App& problem =
      add("problem", "Show what keeps a job from going on, and what usually helps", job::Problem);
  problem.add_flag("--json", arguments.json, "as JSON");
  problem.add_flag("--row", arguments.row,
                   "ask the destination for the row of a refused statement");
  CLI::App& preview =
      add("preview", "Show what the next pass would execute and block; nothing is written",
          job::ShowPreview);
  preview.add_option("--limit", arguments.limit, "so many statements at most (default: 20)")
      ->check(CLI::Range(0, kMostPreviewed));
  preview.add_flag("--json", arguments.json, "as JSON");
  add("retry", "Make one pass of a paused job now", job::Retry);
  add("skip", "Leave out the statement, by commits the transaction, that a paused job is stuck at",
      job::Skip)
      .add_option("--reason", arguments.reason, "why; kept with the statement in skipped.sql")
      ->required();
  add("stop", "Reset a paused job", job::Stop);
  add("remove", "Delete a stopped job", job::Remove);

  const auto add_filter = [&](const std::string& name, const std::string& what,
                              auto run) -> CLI::App& {
    CLI::App& command = add(name, what, run);
    command.add_option("OWNER", arguments.owner, "source owner")->required();
    return command;
  };
  AddTables(add_filter("include", "Synchronize tables", job::Include), arguments);
  AddTables(add_filter("exclude", "Do not synchronize tables", job::Exclude), arguments);
  AddTables(add_filter("compared", "Take the mark \"compare\" from tables that were compared",
                       job::Compared),
            arguments);
  CLI::App& owner =
      add_filter("owner", "Synchronize tables to another owner (and include them)", job::Owner);
  owner.add_option("NEWOWNER", arguments.new_owner, "owner on the destination")->required();
  AddTables(owner, arguments);
}

void AddRunCommand(CLI::App& app, Parsed& parsed) {
  RunArguments& arguments = parsed.run;
  CLI::App& run = Add(
      app, "run",
      "Drive jobs until SIGINT, SIGTERM, SIGHUP or the time is over; messages on standard output",
      parsed, arguments, Run);
  run.add_option("--start", arguments.start, "start a stopped job")
      ->type_name("NAME")
      ->allow_extra_args(false);
  run.add_option("--continue", arguments.go_on, "continue a paused job")
      ->type_name("NAME")
      ->allow_extra_args(false);
  run.add_flag("--continue-all", arguments.go_on_all, "continue all paused jobs, for a service");
  run.add_option("--for", arguments.seconds, "end after so many seconds")
      ->check(CLI::Range(0.0, kLongestRun));
  run.add_option("--sweep-ms", arguments.sweep_ms, "milliseconds between two sweeps")
      ->check(CLI::Range(1, kLongestSweep));
  run.add_flag("--progress", arguments.progress, "a line each second on what has been done");
  run.add_flag("--json", arguments.json, "a JSON object a line instead of text");
}

void AddHealthCommand(CLI::App& app, Parsed& parsed) {
  HealthArguments& arguments = parsed.health;
  CLI::App& health =
      Add(app, "health", "Tell how jobs are; exit status 0 well, 1 warning, 2 trouble, 3 unknown",
          parsed, arguments, ShowHealth);
  health.add_option("JOB", arguments.job, "the job; otherwise all that are not stopped");
  health
      .add_option("--max-behind", arguments.max_behind,
                  "minutes; trouble when a job is further behind its source")
      ->check(CLI::Range(0, kLongestInterval));
  health.add_flag("--json", arguments.json, "as JSON");
}

void AddDoctorCommand(CLI::App& app, Parsed& parsed) {
  DoctorArguments& arguments = parsed.doctor;
  CLI::App& doctor = Add(app, "doctor",
                         "Look at what could keep a job from running well; exit status 0 well, 1 "
                         "warnings, 2 failures, 3 not examined",
                         parsed, arguments, RunDoctor);
  doctor.add_option("JOB", arguments.job, "the job")->required();
  doctor.add_flag("--json", arguments.json, "as JSON");
  doctor
      .add_option("--cures", arguments.cures,
                  "write the statements that cure what was found to this file")
      ->type_name("FILE");
}

void AddWorkspaceCommands(CLI::App& app, Parsed& parsed) {
  workspace::Arguments& arguments = parsed.workspace;
  CLI::App& group = AddGroup(app, "workspace", "Settings, data sources and jobs as a whole");
  CLI::App& out = Add(group, "export", "Write them to a file, without passwords", parsed, arguments,
                      workspace::Export);
  out.add_option("FILE", arguments.file, "a new file")->required();
  CLI::App& in = Add(group, "import",
                     "Add the data sources and jobs of such a file that are not there; jobs come "
                     "Stopped",
                     parsed, arguments, workspace::Import);
  in.add_option("FILE", arguments.file, "as 'workspace export' writes it")->required();
  CLI::App& back = Add(group, "restore",
                       "Bring back the settings and the stopped jobs of the beginning of a day",
                       parsed, arguments, workspace::Restore);
  back.add_option("DAY", arguments.day,
                  "one that is kept, as 2026-01-31; otherwise they are listed");
}

int RunSql(const CommandLine& line, const SqlArguments& arguments) {
  return Sql(line, arguments.source, arguments.file);
}

void AddSqlCommand(CLI::App& app, Parsed& parsed) {
  CLI::App& sql =
      Add(app, "sql", "Run statements, each ended by ';' at a line's end, in one session", parsed,
          parsed.sql, RunSql);
  sql.add_option("SOURCE", parsed.sql.source, "the data source")->required();
  sql.add_option("FILE", parsed.sql.file, "the script; otherwise standard input");
}

void AddSchemaListings(CLI::App& group, Parsed& parsed) {
  schema::Arguments& arguments = parsed.schema;
  const auto add = [&](const std::string& name, const std::string& what, auto run) {
    CLI::App& listing = Add(group, name, what + ", as they were last read", parsed, arguments, run);
    listing.add_option("SOURCE", arguments.source, "the data source")->required();
    listing.add_option("--owner", arguments.owner, "of this owner only");
    listing.add_flag("--json", arguments.json, "as JSON");
  };
  add("tables", "Tables", schema::Tables);
  add("keys", "Primary keys", schema::Keys);
  add("indexes", "Indexes that do not belong to a key", schema::Indexes);
}

void AddSchemaCommands(CLI::App& app, Parsed& parsed) {
  schema::Arguments& arguments = parsed.schema;
  CLI::App& group = AddGroup(app, "schema", "Tables, primary keys and indexes");
  AddSchemaListings(group, parsed);
  const std::string naming = "OWNER.TABLE; OWNER.NAME or OWNER.TABLE.NAME of a key or index";
  const auto add = [&](const std::string& name, const std::string& what, auto run) -> CLI::App& {
    CLI::App& command = Add(group, name, what, parsed, arguments, run);
    command.add_option("SOURCE", arguments.source, "the data source")->required();
    return command;
  };
  const auto add_kind = [&](CLI::App& command) {
    command.add_option("KIND", arguments.kind, "table, key or index")
        ->required()
        ->check(CLI::IsMember({"table", "key", "index"}));
  };

  CLI::App& drop = add("drop", "Drop tables, keys or indexes", schema::Drop);
  add_kind(drop);
  drop.add_option("ITEM", arguments.items, naming)->required();
  drop.add_flag("--cascade", arguments.cascade, "drop foreign keys that reference a table, too");

  CLI::App& rename = add("rename", "Give a table, key or index another name", schema::Rename);
  add_kind(rename);
  rename.add_option("ITEM", arguments.item, naming)->required();
  rename.add_option("NEWNAME", arguments.new_name, "without an owner")->required();

  CLI::App& migrate =
      add("migrate", "Create tables, keys or indexes of a data source in another one, without rows",
          schema::Migrate);
  migrate.add_option("TARGET", arguments.target, "the data source to create them in")->required();
  add_kind(migrate);
  migrate.add_option("ITEM", arguments.items, naming);
  migrate.add_option("--owner", arguments.owners, "all that the lists have of this owner")
      ->allow_extra_args(false);
  migrate.add_flag("--drop-target", arguments.options.drop_target,
                   "drop what has the same name on the target first");
  migrate.add_flag("--with-key", arguments.options.include_primary_key,
                   "tables along with their primary keys");
  migrate.add_flag("--with-indexes", arguments.options.include_index,
                   "tables along with their indexes; takes effect with --with-key only");
}

// The answer to --help or to a mistake.
int Answer(const CLI::App& app, const CLI::ParseError& error) {
  std::ostringstream out;
  std::ostringstream err;
  if (app.exit(error, out, err) == 0) return Print(out.str());  // it was --help
  // That a command is missing is no answer to one that was mistyped.
  const std::vector<std::string> unknown = app.remaining(true);
  if (error.get_name() == "RequiredError" && !unknown.empty()) {
    err.str("There is no command " + OneLine(unknown.front()) +
            "\nRun with --help for more information.\n");
  }
  Write(Stream::Error, err.str());
  return kWrongUsage;
}

}  // namespace

int RunCommandLine(int argc, const char* const* argv) {
  CLI::App app("Replicates Oracle databases: data sources, jobs and their running.",
               "quillmere-cli");
  app.set_version_flag("--version", std::string("quillmere-cli ") + ProgramVersion());
  Parsed parsed;
  app.add_option("--workdir", parsed.line.workdir, "working folder (default: the current one)")
      ->type_name("DIR");
  app.add_option("--client", parsed.line.client, "client library: oracle, sandbox or a path")
      ->type_name("CLIENT");
  app.add_flag("--debug", parsed.line.debug,
               "more messages; what is mined and executed goes to a log");
  app.require_subcommand(1);
  app.fallthrough();  // these options may stand behind the command, too
  AddSourceCommands(app, parsed);
  AddJobCommands(app, parsed);
  AddRunCommand(app, parsed);
  AddHealthCommand(app, parsed);
  AddDoctorCommand(app, parsed);
  AddWorkspaceCommands(app, parsed);
  AddSqlCommand(app, parsed);
  AddSchemaCommands(app, parsed);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return Answer(app, error);
  }
  return parsed.command();
}

}  // namespace quillmere::cli
