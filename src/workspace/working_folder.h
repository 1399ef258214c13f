// SPDX-License-Identifier: MIT
// Which folder the window program works in. A program that is started from a desktop's menu finds
// itself in the home folder, which is no place for its files. Any thread; nothing is made or
// changed.
#pragma once

#include <filesystem>
#include <optional>

namespace quillmere {

struct WorkingFolder {
  std::filesystem::path folder;
  const char* why = "";  // for the operator: "named with --workdir", ...
};

// Whether the folder has been worked in: it holds what only a working folder does.
bool IsWorkingFolder(const std::filesystem::path& folder);

// named: the one that --workdir gives. Without it the current folder when it is a working folder,
// else `data_folder`; when that is empty, too, the current one whatever it holds.
WorkingFolder ChooseWorkingFolder(const std::optional<std::filesystem::path>& named,
                                  const std::filesystem::path& current,
                                  const std::filesystem::path& data_folder);

// The user's folder for this program's data, which need not be there yet; empty when the system
// tells of none. Each platform has a file of its own.
std::filesystem::path UserDataFolder();

}  // namespace quillmere
