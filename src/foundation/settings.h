// SPDX-License-Identifier: MIT
// The operator's settings, kept in config/settings.xml. One object per workspace; the window
// writes, every thread reads, hence the atomics. client_library is set before threads start.
#pragma once

#include <atomic>
#include <filesystem>
#include <string>

#include "foundation/file_system.h"

namespace quillmere {

inline constexpr int kDefaultMessageLimit = 500;
inline constexpr int kDefaultCommitAge = 5;  // seconds
inline constexpr int kDefaultOldestHours = 12;
inline constexpr int kDefaultLossHours = 2;
inline constexpr int kDefaultMostStatements = 1'000'000;

struct Settings {
  std::atomic<bool> debug{false};              // diagnostic lines in the message log
  std::atomic<bool> statement_trace{false};    // CREATE TABLE statements in the message log
  std::atomic<bool> registry_messages{false};  // "... need save before save." lines
  std::atomic<int> message_limit{kDefaultMessageLimit};  // rows of the message list
  // Following by commits: how old a reading must be before it is used, and how many statements a
  // batch may have before it ends with the transaction in hand.
  std::atomic<int> commit_age_seconds{kDefaultCommitAge};
  std::atomic<int> most_statements{kDefaultMostStatements};
  std::atomic<int> oldest_transaction_hours{kDefaultOldestHours};  // warned of when open for longer
  // Warned of when the redo that a job needs stays for less than that.
  std::atomic<int> loss_warning_hours{kDefaultLossHours};
  std::atomic<bool> definitions_by_rows{false};  // they are compared for such jobs, too
  std::atomic<bool> pause_on_definition{false};  // a job whose destination does not fit any more
  std::atomic<bool> new_jobs_follow_commits{false};
  std::atomic<bool> resume_jobs{false};  // what was at work at the last end goes on in the window
  std::string health_command;  // run at each change of a job's health; the user interface's alone
  std::string client_library;  // "", "oracle", "sandbox" or a path
};

// A missing file leaves the defaults and is success. A file that cannot be read or understood
// leaves the defaults and fails with a reason.
bool LoadSettings(FileSystem& files, const std::filesystem::path& file, Settings& settings,
                  std::string& error);
bool SaveSettings(FileSystem& files, const std::filesystem::path& file, const Settings& settings,
                  std::string& error);

}  // namespace quillmere
