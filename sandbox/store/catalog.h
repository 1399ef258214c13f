// SPDX-License-Identifier: MIT
// The dictionary as statements need it: tables by name, with everything that hangs on them.
// Belongs to one session and is used by one thread at a time. What it gives out stays valid, and as
// it was, for as long as somebody holds it.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "sandbox/store/sqlite.h"
#include "sandbox/store/table.h"

namespace quillmere::sandbox {

class Catalog {
 public:
  // ORA-00942 when there is no such table. The table is kept until Clear.
  Status FindTable(SqliteConnection* connection, const std::string& owner, const std::string& name,
                   TablePtr* out);
  Status FindTableById(SqliteConnection* connection, std::int64_t id, TablePtr* out);

  void Clear();

 private:
  std::unordered_map<std::string, TablePtr> by_name_;
  std::unordered_map<std::int64_t, TablePtr> by_id_;
};

}  // namespace quillmere::sandbox
