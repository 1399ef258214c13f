// SPDX-License-Identifier: MIT
#include "workspace/settings_restore.h"

#include <utility>

#include "workspace/source_operations.h"

namespace quillmere {
namespace {

class Bringing {
 public:
  Bringing(Workspace& workspace, Bring what, std::vector<std::string>& told)
      : workspace_(workspace), what_(what), told_(told) {}

  void BringSource(const XmlNode& node) {
    DataSource source;
    source.name = node.ChildValue("name");
    DataSourceRegistry& registry = workspace_.Registry();
    if (registry.IndexOf(source.name) >= 0) return;  // its log-on may be a newer one
    source.user_id = node.ChildValue("userid");
    source.sysdba = node.ChildValue("mode") == "SYSDBA";
    source.database_type = node.ChildValue("dbtype", "ORACLE");
    source.state = ConnectionState::Disconnected;
    const std::string refused = WhyNewSourceRefused(workspace_, source);
    if (!refused.empty()) return Tell("Data source " + source.name + " left out: " + refused);
    Tell("Data source " + source.name + " added: give it its password");
    registry.Add(std::move(source));
  }

  void BringJob(const XmlNode& node) {
    const std::string name(node.ChildValue("name"));
    const std::size_t index = workspace_.Jobs().IndexOf(name);
    if (index == JobList::kNotFound) return AddJob(name, node);
    if (what_ == Bring::Missing) return Tell("Job " + name + " is there already: left as it is");
    const JobState state = workspace_.Jobs().State(index);
    if (state != JobState::Stopped) {
      return Tell("Job " + name + " is " + std::string(StateName(state)) +
                  ": left as it is. Stop it, then restore again");
    }
    workspace_.Catalogue().TakeKept(index, node, LogOns());
    Tell("Job " + name + " is as it was");
  }

 private:
  LogOnLookup LogOns() {
    return [this](std::string_view name) { return workspace_.LogOnOf(name); };
  }

  void AddJob(const std::string& name, const XmlNode& node) {
    JobCatalogue& catalogue = workspace_.Catalogue();
    std::string reason = WhyNotAdded(catalogue.WhyListNotRead());
    if (reason.empty()) reason = catalogue.WhyNameRefused(name, JobList::kNotFound);
    const JobFolder folder = catalogue.FolderOf(name);
    FileSystem& files = workspace_.Files();
    if (reason.empty() && folder.Make(files, reason) &&
        folder.SetOldFilesAside(files, workspace_.TimeSource().Now(), reason)) {
      const std::size_t index = workspace_.Jobs().Claim();
      catalogue.TakeKept(index, node, LogOns());
      workspace_.Jobs().SetState(index, JobState::Stopped, {});
      workspace_.Watch().Forget(index);
      return Tell("Job " + name + " added, Stopped");
    }
    Tell("Job " + name + " left out: " + reason);
  }

  void Tell(std::string line) { told_.push_back(std::move(line)); }

  Workspace& workspace_;
  const Bring what_;
  std::vector<std::string>& told_;
};

// The file as it was, and what it says.
bool BringProgramSettings(Workspace& workspace, const XmlNode& kept, std::string& error) {
  XmlDocument document;
  XmlNode& settings = document.Root().AddChild("settings");
  for (const XmlNode* node = kept.FirstChild(); node != nullptr; node = node->NextSibling()) {
    settings.AddChild(node->Name(), node->Data());
  }
  FileSystem& files = workspace.Files();
  const std::filesystem::path file = workspace.SettingsFile();
  Settings unused;
  if (!LoadSettings(files, file, unused, error) && !KeepBadFile(files, file, error)) return false;
  return MakeFolders(files, file.parent_path(), error) &&
         ReplaceTextFile(files, file, document.Text(), FileAccess::Everyone, error) &&
         LoadSettings(files, file, workspace.ProgramSettings(), error);
}

}  // namespace

Outcome BringSettings(Workspace& workspace, const XmlNode& bundle, Bring what,
                      std::vector<std::string>& told) {
  workspace.KeepSettings();
  std::string error;
  const XmlNode* const settings = bundle.Child("settings");
  if (what == Bring::Back && settings != nullptr) {
    if (!BringProgramSettings(workspace, *settings, error)) return Outcome::Refused(error);
    told.emplace_back("The settings are as they were");
  }
  // What a file from elsewhere names, as a command or a library, is never run.
  if (what == Bring::Missing && settings != nullptr) {
    std::string line = "The settings are left as they are";
    const std::string command(settings->ChildValue("health_command"));
    if (!command.empty()) {
      line += ". The bundle's health command is left out: " + command +
              ". Set it in Options > Settings if you want it run here";
    }
    told.push_back(std::move(line));
  }
  Bringing bringing(workspace, what, told);
  std::vector<const XmlNode*> nodes;
  bundle.Children("source", nodes);
  for (const XmlNode* node : nodes) bringing.BringSource(*node);
  nodes.clear();
  workspace.RefreshJobLogOns();
  bundle.Children("job", nodes);
  for (const XmlNode* node : nodes) bringing.BringJob(*node);
  workspace.RefreshJobLogOns();
  std::string unsaved;
  const bool sources_saved = workspace.Registry().Save(error);
  const bool jobs_saved = workspace.SaveJobs(unsaved);
  if (!sources_saved || !jobs_saved) return Outcome::Refused(sources_saved ? unsaved : error);
  workspace.Actions().Note(what == Bring::Back ? "restore" : "import", "settings", {},
                           std::string(bundle.ChildValue("made")));
  return Outcome::Done();
}

}  // namespace quillmere
