// SPDX-License-Identifier: MIT
// How to log on to a database: the one record of it, from what an operator enters to what a session
// sends. A plain value; whoever holds one says who guards it.
#pragma once

#include <string>

namespace quillmere {

struct LogOn {
  std::string name{};  // the connect name, which is also the data source's
  std::string user_id{};
  std::string password{};  // clear in memory only
  bool sysdba = false;

  std::string Mode() const { return sysdba ? "SYSDBA" : "NORMAL"; }
};

}  // namespace quillmere
