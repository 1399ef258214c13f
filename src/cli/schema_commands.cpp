// SPDX-License-Identifier: MIT
#include "cli/schema_commands.h"

#include "cli/source_listings.h"
#include "workspace/schema_changes.h"

namespace quillmere::cli::schema {
namespace {

ObjectKind KindOf(const Arguments& arguments) {
  if (arguments.kind == "key") return ObjectKind::PrimaryKey;
  return arguments.kind == "index" ? ObjectKind::Index : ObjectKind::Table;
}

// Result lines as they come; an end that is asked for takes effect between two items.
class Printer final : public InPlace {
 public:
  bool OnProgress(std::string_view, std::size_t, std::size_t) override {
    return written_ && !end_.Came();
  }
  void OnResult(std::string_view line, bool) override { Show(line); }
  void OnDetail(std::string_view line) override { Show(line); }

 private:
  void Show(std::string_view line) {
    written_ = Write(Stream::Output, OneLine(line) + "\n") && written_;
  }

  EndRequest end_;
  bool written_ = true;
};

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

int Finish(const SchemaRun& run) {
  if (!run.refused.empty()) return Fail(run.refused);
  if (!run.logged) return Fail("error.log cannot be written");
  if (!run.unsaved.empty()) return Fail(run.unsaved);
  if (run.cancelled) return Fail("Ended before all was done");
  if (run.failed == 0) return kDone;
  const std::size_t all = run.failed + run.succeeded;
  return Fail(std::to_string(run.failed) + " of " + std::to_string(all) +
              " failed: " + run.first_failure);
}

// Opens the folder and finds the objects that are named in it.
struct Opened {
  Opened(const CommandLine& line, const Arguments& arguments) : workspace(OpenToChange(line)) {
    if (workspace == nullptr) return;
    const int index = FindSource(*workspace, arguments.source);
    if (index < 0) return;
    selection.source = static_cast<std::size_t>(index);
    selection.kind = KindOf(arguments);
    found = FindItems(workspace->Registry().At(selection.source), arguments, selection.items);
  }

  std::unique_ptr<Workspace> workspace;
  SchemaSelection selection;
  bool found = false;
};

int List(const CommandLine& line, const Arguments& arguments, ObjectKind kind) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  const int index = FindSource(*workspace, arguments.source);
  if (index < 0) return kFailed;
  const DataSource& source = workspace->Registry().At(static_cast<std::size_t>(index));
  return Print(SchemaListing(source, kind, arguments.owner, arguments.json));
}

}  // namespace

int Drop(const CommandLine& line, const Arguments& arguments) {
  const Opened opened(line, arguments);
  if (!opened.found) return kFailed;
  Printer printer;
  return Finish(DropObjects(*opened.workspace, opened.selection, arguments.cascade, printer));
}

int Rename(const CommandLine& line, const Arguments& arguments) {
  const Opened opened(line, arguments);
  if (!opened.found) return kFailed;
  Printer printer;
  return Finish(RenameObject(*opened.workspace, opened.selection, arguments.new_name, printer));
}

int Migrate(const CommandLine& line, const Arguments& arguments) {
  const Opened opened(line, arguments);
  if (!opened.found) return kFailed;
  const int target = FindSource(*opened.workspace, arguments.target);
  if (target < 0) return kFailed;
  Printer printer;
  return Finish(MigrateObjects(*opened.workspace, opened.selection,
                               {static_cast<std::size_t>(target), arguments.options}, printer));
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
