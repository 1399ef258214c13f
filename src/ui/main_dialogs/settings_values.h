// SPDX-License-Identifier: MIT
// The settings as a form holds them, and how they are stored.
#pragma once

#include <QString>
#include <filesystem>
#include <string>

#include "foundation/settings.h"

namespace quillmere {

struct SettingsValues {
  bool debug = false;
  bool statement_trace = false;
  bool registry_messages = false;
  int message_limit = kDefaultMessageLimit;
  std::string client_library;
  bool new_jobs_follow_commits = false;
  bool resume_jobs = false;
  std::string health_command;
};

inline constexpr int kMostMessageRows = 1'000'000;

enum class ClientKind { Oracle, Sandbox, File };

SettingsValues ValuesOf(const Settings& settings);

ClientKind KindOf(const std::string& client_library);

// What the kind and, for a file, its path mean as a setting.
std::string ClientSetting(ClientKind kind, const std::string& path);

// Why the path cannot be that of a client library; empty when it can. A bare name is left to the
// system, which looks for it in its library folders.
QString WhyClientFileRefused(FileSystem& files, const std::string& path);

// Writes the file, then puts the values in force. False: the reason, and nothing has changed.
bool StoreSettings(FileSystem& files, const std::filesystem::path& file,
                   const SettingsValues& values, Settings& settings, std::string& reason);

}  // namespace quillmere
