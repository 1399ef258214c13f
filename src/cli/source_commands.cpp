// quillmere-cli source ...: the registered data sources.
#include "cli/command.h"
#include "cli/json_text.h"
#include "cli/password_input.h"
#include "cli/text_table.h"
#include "workspace/source_operations.h"

namespace quillmere::cli {
namespace {

struct SourceArguments {
  std::string name, user, mode, password_file;
  bool json = false;
};

// Nobody watches, nobody cancels.
class NoProgress final : public ProgressListener {
 public:
  bool OnProgress(std::string_view, std::size_t, std::size_t) override { return true; }
};

int Finish(const Outcome& outcome, const std::string& done_text) {
  return outcome ? Print(done_text + "\n") : Fail(outcome.text);
}

std::string CatalogueSize(const DataSource& source) {
  return std::to_string(source.tables.size()) + " tables, " +
         std::to_string(source.primary_keys.size()) + " primary keys, " +
         std::to_string(source.indexes.size()) + " indexes";
}

// Runs the operation with the log's errors on standard error.
template <typename Operation>
Outcome Watched(Workspace& workspace, const Operation& operation) {
  const std::size_t from = workspace.Log().Entries().size();
  Outcome outcome = operation();
  if (outcome) PrintErrors(workspace.Log(), from);
  return outcome;
}

bool AskPassword(const SourceArguments& arguments, std::string& password) {
  const std::string prompt = "Password of " + arguments.user + " on " + arguments.name + ": ";
  std::string reason;
  if (ReadPassword(arguments.password_file, prompt, password, reason)) return true;
  Fail(reason);
  return false;
}

int Add(const CommandLine& line, const SourceArguments& arguments) {
  SourceLogin login{arguments.name, arguments.user, {}, arguments.mode};
  if (!AskPassword(arguments, login.password)) return kFailed;
  const auto workspace = OpenToChange(line, Folder::MayBeMade);
  if (workspace == nullptr) return kFailed;
  const Outcome added = Watched(*workspace, [&] {
    NoProgress progress;
    return AddDataSource(*workspace, login, progress);
  });
  if (!added) return Fail(added.text);
  const auto index = static_cast<std::size_t>(workspace->Registry().IndexOf(login.name));
  const DataSource& source = workspace->Registry().At(index);
  return Print("Data source " + login.name + " added: " + CatalogueSize(source) + "\n");
}

int Edit(const CommandLine& line, const SourceArguments& arguments) {
  const auto workspace = OpenToChange(line);
  if (workspace == nullptr) return kFailed;
  const int index = FindSource(*workspace, arguments.name);
  if (index < 0) return kFailed;
  const DataSource& source = workspace->Registry().At(static_cast<std::size_t>(index));
  SourceArguments full = arguments;
  if (full.user.empty()) full.user = source.user_id;
  if (full.mode.empty()) full.mode = source.mode;
  SourceLogin login{full.name, full.user, {}, full.mode};
  if (!AskPassword(full, login.password)) return kFailed;
  return Finish(SaveDataSource(*workspace, login), "Data source " + login.name + " changed");
}

int List(const CommandLine& line, bool json) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  const DataSourceRegistry& registry = workspace->Registry();
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  std::vector<std::vector<std::string>> rows = {
      {"Data Source", "Version", "UserName", "Mode", "Tables"}};
  for (std::size_t i = 0; i < registry.Count(); ++i) {
    const DataSource& source = registry.At(i);
    if (source.state == ConnectionState::Empty) continue;
    rows.push_back({source.name, source.version, source.user_id, source.mode,
                    std::to_string(source.tables.size())});
    list.push_back({{"name", source.name},
                    {"type", source.database_type},
                    {"version", source.version},
                    {"user", source.user_id},
                    {"mode", source.mode},
                    {"tables", source.tables.size()},
                    {"primary_keys", source.primary_keys.size()},
                    {"indexes", source.indexes.size()}});
  }
  return Print(json ? JsonText(list) : TextTable(rows));
}

int Test(const CommandLine& line, const std::string& name) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  const int index = FindSource(*workspace, name);
  if (index < 0) return kFailed;
  const Outcome outcome = TestDataSource(*workspace, static_cast<std::size_t>(index));
  return Finish(outcome, outcome.text);
}

int Refresh(const CommandLine& line, const std::string& name) {
  const auto workspace = OpenToChange(line);
  if (workspace == nullptr) return kFailed;
  const int index = FindSource(*workspace, name);
  if (index < 0) return kFailed;
  const auto slot = static_cast<std::size_t>(index);
  const Outcome outcome = Watched(*workspace, [&] {
    NoProgress progress;
    return RefreshDataSource(*workspace, slot, progress);
  });
  return Finish(outcome, name + ": " + CatalogueSize(workspace->Registry().At(slot)));
}

int Remove(const CommandLine& line, const std::string& name) {
  const auto workspace = OpenToChange(line);
  if (workspace == nullptr) return kFailed;
  const int index = FindSource(*workspace, name);
  if (index < 0) return kFailed;
  return Finish(RemoveDataSource(*workspace, static_cast<std::size_t>(index)),
                "Data source " + name + " removed");
}

CLI::App* AddNamed(CLI::App* group, const std::string& command, const std::string& what,
                   std::string& name) {
  CLI::App* app = group->add_subcommand(command, what);
  app->add_option("NAME", name, "the data source, which is also the connect name")->required();
  return app;
}

void AddLogin(CLI::App* app, SourceArguments& arguments) {
  app->add_option("--mode", arguments.mode, "how to log on: NORMAL or SYSDBA")
      ->check(CLI::IsMember({"NORMAL", "SYSDBA"}));
  app->add_option("--password-file", arguments.password_file,
                  "file that holds the password; otherwise it is read from standard input");
}

}  // namespace

void AddSourceCommands(CLI::App& app, CommandLine& line) {
  const auto arguments = std::make_shared<SourceArguments>();
  CLI::App* group = app.add_subcommand("source", "The registered data sources");
  group->require_subcommand(1);

  CLI::App* add = AddNamed(group, "add", "Register a data source", arguments->name);
  add->add_option("--user", arguments->user, "user id to log on with")->required();
  AddLogin(add, *arguments);
  add->callback([&line, arguments] {
    if (arguments->mode.empty()) arguments->mode = "NORMAL";
    line.action = [&line, arguments] { return Add(line, *arguments); };
  });

  CLI::App* edit = AddNamed(group, "edit", "Give a data source another log-on", arguments->name);
  edit->add_option("--user", arguments->user, "user id to log on with");
  AddLogin(edit, *arguments);
  edit->callback(
      [&line, arguments] { line.action = [&line, arguments] { return Edit(line, *arguments); }; });

  CLI::App* list = group->add_subcommand("list", "List the data sources");
  list->add_flag("--json", arguments->json, "as JSON");
  list->callback([&line, arguments] {
    line.action = [&line, arguments] { return List(line, arguments->json); };
  });

  const auto simple = [&](const std::string& command, const std::string& what, auto run) {
    AddNamed(group, command, what, arguments->name)->callback([&line, arguments, run] {
      line.action = [&line, arguments, run] { return run(line, arguments->name); };
    });
  };
  simple("test", "Connect with the stored log-on", Test);
  simple("refresh", "Read tables, keys and indexes anew", Refresh);
  simple("remove", "Remove a data source with its stored password", Remove);
}

}  // namespace quillmere::cli
