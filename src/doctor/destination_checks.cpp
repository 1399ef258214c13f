// SPDX-License-Identifier: MIT
// Checks 12 and 13, of the destination.
#include <map>
#include <set>

#include "doctor/visit.h"
#include "foundation/text.h"

namespace quillmere::doctor {
namespace {

constexpr std::int64_t kMegabyte = 1 << 20;
constexpr std::int64_t kLittle = 100 * kMegabyte;
constexpr std::string_view kVerbs[] = {"INSERT", "UPDATE", "DELETE"};

struct Space {
  std::int64_t free = 0;  // bytes, with what its files may still grow by
};

void TellQuota(Visit& visit, Side& side, const std::vector<std::string>& row) {
  std::int64_t used = 0;
  std::int64_t most = 0;
  ParseNumber(row[2], used);
  ParseNumber(row[3], most);
  if (most < 0 || most - used > kLittle) return;  // -1: no limit
  const std::string text = row[0] + " has " + std::to_string((most - used) / kMegabyte) +
                           " MB left of its quota on " + row[1];
  const std::string cure =
      "alter user " + SqlName(row[0]) + " quota unlimited on " + SqlName(row[1]) + ";";
  if (most <= used) {
    visit.Fail(side.log_on.name, text, cure, &side);
  } else {
    visit.Warn(side.log_on.name, text, cure, &side);
  }
}

}  // namespace

std::string CheckDestinationGrants(Visit& visit) {
  Side& side = visit.Destination();
  TextRows anywhere;
  TextRows given;
  TextRows by_role;
  if (!visit.Read(side, "select privilege from session_privs", 1, anywhere) ||
      !visit.Read(side, "select owner, table_name, privilege from user_tab_privs", 3, given) ||
      !visit.Read(side, "select owner, table_name, privilege from role_tab_privs", 3, by_role)) {
    return {};
  }
  std::set<std::vector<std::string>> rights(given.begin(), given.end());
  rights.insert(by_role.begin(), by_role.end());
  std::set<std::string> any;
  for (const std::vector<std::string>& row : anywhere) any.insert(row[0]);
  const std::string& user = side.log_on.user_id;
  for (const CarriedTable& table : visit.Job().tables) {
    if (EqualsIgnoringCase(table.to_owner, user)) continue;
    std::string missing;
    for (const std::string_view verb : kVerbs) {
      const std::string right(verb);
      if (any.contains(right + " ANY TABLE") ||
          rights.contains({table.to_owner, table.name, right})) {
        continue;
      }
      missing += (missing.empty() ? "" : ", ") + right;
    }
    if (missing.empty()) continue;
    const std::string name = SqlName(table.to_owner, table.name);
    visit.Fail(name, user + " may not " + missing,
               "grant " + missing + " on " + name + " to " + UserName(side) + ";", &side);
  }
  return user + " may write to every table of the job";
}

std::string CheckRoom(Visit& visit) {
  Side& side = visit.Destination();
  TextRows quotas;
  TextRows free;
  TextRows files;
  if (!visit.Connected(side) || !side.facts.Load(visit, side)) return {};
  if (!visit.Read(side, "select username, tablespace_name, bytes, max_bytes from dba_ts_quotas", 4,
                  quotas) ||
      !visit.Read(side, "select tablespace_name, bytes from dba_free_space", 2, free) ||
      !visit.Read(side,
                  "select tablespace_name, bytes, maxbytes, autoextensible from dba_data_files", 4,
                  files)) {
    return {};
  }
  std::set<std::string> owners;
  std::map<std::string, Space> spaces;
  for (const CarriedTable& table : visit.Job().tables) {
    owners.insert(table.to_owner);
    const TableFacts::Table* const known = side.facts.Find(table.to_owner, table.name);
    if (known != nullptr && !known->tablespace.empty()) spaces[known->tablespace];
  }
  for (const std::vector<std::string>& row : quotas) {
    if (owners.contains(row[0]) && spaces.contains(row[1])) TellQuota(visit, side, row);
  }
  const auto add = [&](const std::string& tablespace, std::int64_t bytes) {
    const auto found = spaces.find(tablespace);
    if (found != spaces.end()) found->second.free += bytes;
  };
  for (const std::vector<std::string>& row : free) {
    std::int64_t bytes = 0;
    if (ParseNumber(row[1], bytes)) add(row[0], bytes);
  }
  for (const std::vector<std::string>& row : files) {
    std::int64_t bytes = 0;
    std::int64_t most = 0;
    const bool grows = row[3] == "YES" && ParseNumber(row[1], bytes) && ParseNumber(row[2], most);
    if (grows && most > bytes) add(row[0], most - bytes);
  }
  for (const auto& [name, space] : spaces) {
    if (space.free > kLittle) continue;
    const std::string text = std::to_string(space.free / kMegabyte) + " MB left";
    const std::string cure =
        "alter tablespace " + SqlName(name) + " add datafile size 1G autoextend on;";
    if (space.free < kMegabyte) {
      visit.Fail("tablespace " + name, text, cure, &side);
    } else {
      visit.Warn("tablespace " + name, text, cure, &side);
    }
  }
  return "in " + std::to_string(spaces.size()) + " tablespaces";
}

}  // namespace quillmere::doctor
