// quillmere-cli schema ...: tables, primary keys and indexes of a data source.
#include <map>

#include "cli/command.h"
#include "cli/schema_listings.h"
#include "workspace/source_operations.h"

namespace quillmere::cli {
namespace {

struct SchemaArguments {
  std::string source, target, kind, item, new_name, owner;
  std::vector<std::string> items, owners;
  bool json = false;
  bool cascade = false;
  MigrateOptions options;
};

const std::map<std::string, ObjectKind>& Kinds() {
  static const std::map<std::string, ObjectKind> kinds = {
      {"table", ObjectKind::Table}, {"key", ObjectKind::PrimaryKey}, {"index", ObjectKind::Index}};
  return kinds;
}

// Result lines as they come; an end that is asked for takes effect between two items.
class Printer final : public SchemaListener {
 public:
  bool OnProgress(std::string_view, std::size_t, std::size_t) override {
    return written_ && !end_.Came();
  }
  void OnResult(std::string_view line, bool failed) override {
    if (failed && first_failure_.empty()) first_failure_ = line;
    Show(line);
  }
  void OnDetail(std::string_view line) override { Show(line); }

  const std::string& FirstFailure() const { return first_failure_; }

 private:
  void Show(std::string_view line) {
    written_ = Write(Stream::Output, OneLine(line) + "\n") && written_;
  }

  EndRequest end_;
  bool written_ = true;
  std::string first_failure_;
};

DataSource* SourceOf(Workspace& workspace, const std::string& name) {
  const int index = FindSource(workspace, name);
  return index < 0 ? nullptr : &workspace.Registry().At(static_cast<std::size_t>(index));
}

bool FindItems(const DataSource& source, const SchemaArguments& arguments,
               std::vector<SchemaItem>& items) {
  const ObjectKind kind = Kinds().at(arguments.kind);
  for (const std::string& owner : arguments.owners) {
    const std::vector<SchemaItem> all = ItemsOfOwner(source, kind, owner);
    if (all.empty()) {
      Fail("The lists of " + source.name + " have no " + arguments.kind + " of " + owner +
           "; 'source refresh' reads them anew");
      return false;
    }
    items.insert(items.end(), all.begin(), all.end());
  }
  std::vector<std::string> names = arguments.items;
  if (!arguments.item.empty()) names.push_back(arguments.item);
  for (const std::string& name : names) {
    SchemaItem item;
    std::string reason;
    if (!FindItem(source, kind, name, item, reason)) {
      Fail(reason);
      return false;
    }
    items.push_back(std::move(item));
  }
  if (items.empty()) Fail("Nothing is named to work on");
  return !items.empty();
}

int Finish(Workspace& workspace, const SchemaRun& run, const std::string& first_failure) {
  std::string reason;
  const bool saved = workspace.Registry().Save(reason);
  if (!run.refused.empty()) return Fail(run.refused);
  if (!run.logged) return Fail("error.log cannot be written");
  if (!saved) return Fail(reason);
  if (run.cancelled) return Fail("Ended before all was done");
  if (run.failed == 0) return kDone;
  const std::size_t all = run.failed + run.succeeded;
  return Fail(std::to_string(run.failed) + " of " + std::to_string(all) +
              " failed: " + first_failure);
}

// What a command works on, found in the working folder.
struct Work {
  SchemaOperations operations;
  DataSource& source;
  const DataSource* target;  // of a migrate
  ObjectKind kind;
  std::vector<SchemaItem> items;
  Printer printer;
};

int Change(const CommandLine& line, const SchemaArguments& arguments,
           SchemaRun (*run)(Work& work, const SchemaArguments& arguments)) {
  const auto workspace = OpenToChange(line);
  if (workspace == nullptr) return kFailed;
  DataSource* source = SourceOf(*workspace, arguments.source);
  if (source == nullptr) return kFailed;
  const DataSource* target = source;
  if (!arguments.target.empty()) target = SourceOf(*workspace, arguments.target);
  if (target == nullptr) return kFailed;
  for (const DataSource* used : {static_cast<const DataSource*>(source), target}) {
    if (IsUsedByRunningJob(workspace->Jobs(), used->name)) {
      return Fail("Database is used in a running job");
    }
  }
  Work work{{workspace->Oci(), workspace->Log(), workspace->ProgramSettings()},
            *source,
            target,
            Kinds().at(arguments.kind),
            {},
            {}};
  if (!FindItems(*source, arguments, work.items)) return kFailed;
  const SchemaRun done = run(work, arguments);
  return Finish(*workspace, done, work.printer.FirstFailure());
}

SchemaRun Drop(Work& work, const SchemaArguments& arguments) {
  return work.operations.DropItems(work.source, work.kind, work.items, arguments.cascade,
                                   work.printer);
}

SchemaRun Rename(Work& work, const SchemaArguments& arguments) {
  return work.operations.RenameItem(work.source, work.kind, work.items[0], arguments.new_name,
                                    work.printer);
}

SchemaRun Migrate(Work& work, const SchemaArguments& arguments) {
  return work.operations.MigrateItems(work.source, *work.target, work.kind, work.items,
                                      arguments.options, work.printer);
}

int List(const CommandLine& line, const SchemaArguments& arguments, ObjectKind kind) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  const DataSource* source = SourceOf(*workspace, arguments.source);
  if (source == nullptr) return kFailed;
  return Print(SchemaListing(*source, kind, arguments.owner, arguments.json));
}

CLI::Option* AddSource(CLI::App* app, SchemaArguments& arguments) {
  return app->add_option("SOURCE", arguments.source, "the data source")->required();
}

void AddKind(CLI::App* app, SchemaArguments& arguments) {
  app->add_option("KIND", arguments.kind, "table, key or index")
      ->required()
      ->check(CLI::IsMember({"table", "key", "index"}));
}

void AddListings(CLI::App* group, CommandLine& line,
                 const std::shared_ptr<SchemaArguments>& arguments) {
  const auto listing = [&](const std::string& name, const std::string& what, ObjectKind kind) {
    CLI::App* app = group->add_subcommand(name, what + ", as they were last read");
    AddSource(app, *arguments);
    app->add_option("--owner", arguments->owner, "of this owner only");
    app->add_flag("--json", arguments->json, "as JSON");
    app->callback([&line, arguments, kind] {
      line.action = [&line, arguments, kind] { return List(line, *arguments, kind); };
    });
  };
  listing("tables", "Tables", ObjectKind::Table);
  listing("keys", "Primary keys", ObjectKind::PrimaryKey);
  listing("indexes", "Indexes that do not belong to a key", ObjectKind::Index);
}

}  // namespace

void AddSchemaCommands(CLI::App& app, CommandLine& line) {
  const auto arguments = std::make_shared<SchemaArguments>();
  CLI::App* group = app.add_subcommand("schema", "Tables, primary keys and indexes");
  group->require_subcommand(1);
  AddListings(group, line, arguments);
  const auto command = [&](CLI::App* sub, auto run) {
    sub->callback([&line, arguments, run] {
      line.action = [&line, arguments, run] { return Change(line, *arguments, run); };
    });
  };
  const std::string naming = "OWNER.TABLE; OWNER.NAME or OWNER.TABLE.NAME of a key or index";

  CLI::App* drop = group->add_subcommand("drop", "Drop tables, keys or indexes");
  AddSource(drop, *arguments);
  AddKind(drop, *arguments);
  drop->add_option("ITEM", arguments->items, naming)->required();
  drop->add_flag("--cascade", arguments->cascade, "drop foreign keys that reference a table, too");
  command(drop, Drop);

  CLI::App* rename = group->add_subcommand("rename", "Give a table, key or index another name");
  AddSource(rename, *arguments);
  AddKind(rename, *arguments);
  rename->add_option("ITEM", arguments->item, naming)->required();
  rename->add_option("NEWNAME", arguments->new_name, "without an owner")->required();
  command(rename, Rename);

  CLI::App* migrate = group->add_subcommand(
      "migrate", "Create tables, keys or indexes of a data source in another one, without rows");
  AddSource(migrate, *arguments);
  migrate->add_option("TARGET", arguments->target, "the data source to create them in")->required();
  AddKind(migrate, *arguments);
  migrate->add_option("ITEM", arguments->items, naming);
  migrate->add_option("--owner", arguments->owners, "all that the lists have of this owner")
      ->allow_extra_args(false);
  migrate->add_flag("--drop-target", arguments->options.drop_target,
                    "drop what has the same name on the target first");
  migrate->add_flag("--with-key", arguments->options.include_primary_key,
                    "tables along with their primary keys");
  migrate->add_flag("--with-indexes", arguments->options.include_index,
                    "tables along with their indexes; takes effect with --with-key only");
  command(migrate, Migrate);
}

}  // namespace quillmere::cli
