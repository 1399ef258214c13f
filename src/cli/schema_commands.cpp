#include "cli/schema_commands.h"

#include <functional>

#include "cli/source_listings.h"
#include "workspace/source_operations.h"

namespace quillmere::cli::schema {
namespace {

ObjectKind KindOf(const Arguments& arguments) {
  if (arguments.kind == "key") return ObjectKind::PrimaryKey;
  return arguments.kind == "index" ? ObjectKind::Index : ObjectKind::Table;
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

bool FindItems(const DataSource& source, const Arguments& arguments,
               std::vector<SchemaItem>& items) {
  const ObjectKind kind = KindOf(arguments);
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

int Change(const CommandLine& line, const Arguments& arguments,
           const std::function<SchemaRun(Work& work)>& run) {
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
            KindOf(arguments),
            {},
            {}};
  if (!FindItems(*source, arguments, work.items)) return kFailed;
  const SchemaRun done = run(work);
  return Finish(*workspace, done, work.printer.FirstFailure());
}

int List(const CommandLine& line, const Arguments& arguments, ObjectKind kind) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  const DataSource* source = SourceOf(*workspace, arguments.source);
  if (source == nullptr) return kFailed;
  return Print(SchemaListing(*source, kind, arguments.owner, arguments.json));
}

}  // namespace

int Drop(const CommandLine& line, const Arguments& arguments) {
  return Change(line, arguments, [&](Work& work) {
    return work.operations.DropItems(work.source, work.kind, work.items, arguments.cascade,
                                     work.printer);
  });
}

int Rename(const CommandLine& line, const Arguments& arguments) {
  return Change(line, arguments, [&](Work& work) {
    return work.operations.RenameItem(work.source, work.kind, work.items[0], arguments.new_name,
                                      work.printer);
  });
}

int Migrate(const CommandLine& line, const Arguments& arguments) {
  return Change(line, arguments, [&](Work& work) {
    return work.operations.MigrateItems(work.source, *work.target, work.kind, work.items,
                                        arguments.options, work.printer);
  });
}

int Tables(const CommandLine& line, const Arguments& arguments) {
  return List(line, arguments, ObjectKind::Table);
}

int Keys(const CommandLine& line, const Arguments& arguments) {
  return List(line, arguments, ObjectKind::PrimaryKey);
}

int Indexes(const CommandLine& line, const Arguments& arguments) {
  return List(line, arguments, ObjectKind::Index);
}

}  // namespace quillmere::cli::schema
