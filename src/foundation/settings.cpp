// SPDX-License-Identifier: MIT
#include "foundation/settings.h"

#include <algorithm>

#include "foundation/text.h"
#include "foundation/xml_document.h"

namespace quillmere {

namespace {

constexpr int kMostMessages = 1'000'000;
constexpr int kMostCommitAge = 3600;  // seconds
constexpr int kMostHours = 10'000;
constexpr int kLeastStatements = 1000;
constexpr int kMostStatements = 100'000'000;
constexpr std::string_view kCommits = "commits";

bool ReadBool(const XmlNode& node, std::string_view name) {
  return node.ChildValue(name) == "true";
}

}  // namespace

bool LoadSettings(FileSystem& files, const std::filesystem::path& file, Settings& settings,
                  std::string& error) {
  settings.debug = false;
  settings.statement_trace = false;
  settings.registry_messages = false;
  settings.message_limit = kDefaultMessageLimit;
  settings.commit_age_seconds = kDefaultCommitAge;
  settings.most_statements = kDefaultMostStatements;
  settings.oldest_transaction_hours = kDefaultOldestHours;
  settings.loss_warning_hours = kDefaultLossHours;
  settings.definitions_by_rows = false;
  settings.pause_on_definition = false;
  settings.new_jobs_follow_commits = false;
  settings.resume_jobs = false;
  settings.health_command.clear();
  settings.client_library.clear();

  XmlDocument document;
  if (const FileStatus loaded = document.Load(files, file); !loaded) {
    if (loaded.Missing()) return true;
    error = "Can not read the settings in " + PathText(file) + ": " + document.Message();
    return false;
  }
  const XmlNode* node = document.Root().Child("settings");
  if (node == nullptr) return true;
  settings.debug = ReadBool(*node, "debug");
  settings.statement_trace = ReadBool(*node, "statement_trace");
  settings.registry_messages = ReadBool(*node, "registry_messages");
  const auto number = [&](std::string_view name, int least, int most, std::atomic<int>& setting) {
    if (node->Child(name) != nullptr) {
      setting = std::clamp(node->ChildNumber(name), least, most);
    }
  };
  number("message_limit", 1, kMostMessages, settings.message_limit);
  number("commit_age", 0, kMostCommitAge, settings.commit_age_seconds);
  number("most_statements", kLeastStatements, kMostStatements, settings.most_statements);
  number("oldest_transaction_hours", 1, kMostHours, settings.oldest_transaction_hours);
  number("loss_warning_hours", 0, kMostHours, settings.loss_warning_hours);
  settings.definitions_by_rows = ReadBool(*node, "definitions_by_rows");
  settings.pause_on_definition = ReadBool(*node, "pause_on_definition");
  settings.new_jobs_follow_commits = node->ChildValue("new_jobs_follow") == kCommits;
  settings.resume_jobs = ReadBool(*node, "resume_jobs");
  settings.health_command = node->ChildValue("health_command");
  settings.client_library = node->ChildValue("client_library");
  return true;
}

bool SaveSettings(FileSystem& files, const std::filesystem::path& file, const Settings& settings,
                  std::string& error) {
  XmlDocument document;
  const FileStatus old = document.Load(files, file);
  if (!old && !old.Missing() && !KeepBadFile(files, file, error)) return false;
  document.Clear();
  XmlNode& node = document.Root().AddChild("settings");
  node.AddChild("debug", BoolText(settings.debug));
  node.AddChild("statement_trace", BoolText(settings.statement_trace));
  node.AddChild("registry_messages", BoolText(settings.registry_messages));
  node.AddNumber("message_limit", settings.message_limit);
  node.AddNumber("commit_age", settings.commit_age_seconds);
  node.AddNumber("most_statements", settings.most_statements);
  node.AddNumber("oldest_transaction_hours", settings.oldest_transaction_hours);
  node.AddNumber("loss_warning_hours", settings.loss_warning_hours);
  node.AddChild("definitions_by_rows", BoolText(settings.definitions_by_rows));
  node.AddChild("pause_on_definition", BoolText(settings.pause_on_definition));
  node.AddChild("new_jobs_follow", settings.new_jobs_follow_commits ? kCommits : "rows");
  node.AddChild("resume_jobs", BoolText(settings.resume_jobs));
  node.AddChild("health_command", settings.health_command);
  node.AddChild("client_library", settings.client_library);
  return MakeFolders(files, file.parent_path(), error) &&
         ReplaceTextFile(files, file, document.Text(), FileAccess::Everyone, error);
}

}  // namespace quillmere
