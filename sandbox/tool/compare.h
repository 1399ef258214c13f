// SPDX-License-Identifier: MIT
// Compares two databases: which tables there are, their columns, and their rows as multisets. Both
// may be in use: what is compared is what was committed at one moment. On the calling thread;
// changes neither.
#pragma once

#include <iosfwd>
#include <map>
#include <set>
#include <string>

#include "sandbox/base/status.h"
#include "sandbox/store/database_file.h"

namespace quillmere::sandbox {

struct CompareOptions {
  std::string owner;                          // empty: every owner but SYS and SYSTEM
  std::set<std::string> excluded;             // OWNER.TABLE of the first database
  std::map<std::string, std::string> mapped;  // OWNER.TABLE of the first to that of the second
};

// `differences` counts what was found, also before a failure; the first of them are written to
// `out`.
Status CompareDatabases(const DatabasePath& first, const DatabasePath& second,
                        const CompareOptions& options, std::ostream& out, std::size_t* differences);

}  // namespace quillmere::sandbox
