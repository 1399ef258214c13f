// SPDX-License-Identifier: MIT
// The file of a database: where it is, how it is made, how it is opened. Plain functions, for any
// thread; `out` is untouched on failure.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "sandbox/store/sqlite.h"

namespace quillmere::sandbox {

struct DatabasePath {
  std::filesystem::path file;  // <dir>/<NAME>.db
  std::filesystem::path open;  // <dir>/<NAME>.open
};

// False for what can be no file name of a database.
bool FindDatabasePath(const std::filesystem::path& directory, const std::string& name,
                      DatabasePath* out);

// Makes directory and file (readable by the owner only) with the users SYS and SYSTEM; refused
// when the file exists. Nothing is left behind on failure.
Status CreateDatabase(const DatabasePath& path, const std::string& password);

// ORA-12154 when there is no such file, 01130 or 01578 when it is none of ours. The connection
// belongs to the thread that uses it.
Status OpenDatabase(const DatabasePath& path, std::unique_ptr<SqliteConnection>* out);

}  // namespace quillmere::sandbox
