// SPDX-License-Identifier: MIT
#include "workspace/working_folder.h"

#include <system_error>

namespace quillmere {

bool IsWorkingFolder(const std::filesystem::path& folder) {
  // Folders of these names are common; their lists are not.
  for (const char* list : {"config/database.xml", "jobs/jobs.xml"}) {
    std::error_code code;
    if (std::filesystem::is_regular_file(folder / list, code)) return true;
  }
  return false;
}

WorkingFolder ChooseWorkingFolder(const std::optional<std::filesystem::path>& named,
                                  const std::filesystem::path& current,
                                  const std::filesystem::path& data_folder) {
  if (named) return {*named, "named with --workdir"};
  if (IsWorkingFolder(current) || data_folder.empty()) return {current, "where it was started"};
  return {data_folder, "of this user"};
}

}  // namespace quillmere
