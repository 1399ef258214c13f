// SPDX-License-Identifier: MIT
#include "ui/main_dialogs/settings_values.h"

#include <QCoreApplication>

#include "foundation/files.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

struct SettingsTexts {
  Q_DECLARE_TR_FUNCTIONS(SettingsTexts)
};

void Assign(Settings& settings, const SettingsValues& values) {
  settings.debug = values.debug;
  settings.statement_trace = values.statement_trace;
  settings.registry_messages = values.registry_messages;
  settings.message_limit = values.message_limit;
  settings.client_library = values.client_library;
  settings.new_jobs_follow_commits = values.new_jobs_follow_commits;
  settings.resume_jobs = values.resume_jobs;
  settings.health_command = values.health_command;
}

}  // namespace

SettingsValues ValuesOf(const Settings& settings) {
  return {settings.debug,         settings.statement_trace, settings.registry_messages,
          settings.message_limit, settings.client_library,  settings.new_jobs_follow_commits,
          settings.resume_jobs,   settings.health_command};
}

ClientKind KindOf(const std::string& client_library) {
  if (client_library.empty() || client_library == "oracle") return ClientKind::Oracle;
  return client_library == "sandbox" ? ClientKind::Sandbox : ClientKind::File;
}

std::string ClientSetting(ClientKind kind, const std::string& path) {
  switch (kind) {
    case ClientKind::Oracle:
      return "oracle";
    case ClientKind::Sandbox:
      return "sandbox";
    case ClientKind::File:
      break;
  }
  return path;
}

QString WhyClientFileRefused(FileSystem& files, const std::string& path) {
  if (path.empty()) return SettingsTexts::tr("Choose the file of the client library");
  if (path.find_first_of("/\\") == std::string::npos) return {};
  if (IsFile(files, path)) return {};
  return SettingsTexts::tr("There is no file %1").arg(ToQt(path));
}

bool StoreSettings(FileSystem& files, const std::filesystem::path& file,
                   const SettingsValues& values, Settings& settings, std::string& reason) {
  // What has no field in the form stays in the file as it is.
  const SettingsValues before = ValuesOf(settings);
  Assign(settings, values);
  if (SaveSettings(files, file, settings, reason)) return true;
  Assign(settings, before);
  return false;
}

}  // namespace quillmere
