// SPDX-License-Identifier: MIT
// Checks 19 to 21: what else acts on the destination's tables, and whether both sides are alike.
#include <set>

#include "doctor/visit.h"

namespace quillmere::doctor {
namespace {

using Name = std::pair<std::string, std::string>;

std::set<Name> Targets(const Visit& visit) {
  std::set<Name> targets;
  for (const CarriedTable& table : visit.Job().tables) {
    targets.insert({table.to_owner, table.name});
  }
  return targets;
}

bool CountRows(Visit& visit, Side& side, const std::string& table, std::string& count) {
  TextRows rows;
  if (!side.connected) return false;
  if (!ReadRows(side.session, "select count(*) from " + table, 1, rows) || rows.empty()) {
    visit.Warn(table, "could not be checked: " + side.session.LastError());
    return false;
  }
  count = rows.front().front();
  return true;
}

}  // namespace

std::string CheckTriggers(Visit& visit) {
  Side& side = visit.Destination();
  const std::set<Name> targets = Targets(visit);
  TextRows triggers;
  TextRows cascades;
  if (!visit.Read(side,
                  "select table_owner, table_name, owner, trigger_name from dba_triggers where "
                  "status = 'ENABLED'",
                  4, triggers) ||
      !visit.Read(side,
                  "select owner, table_name, constraint_name, delete_rule from dba_constraints "
                  "where constraint_type = 'R' and delete_rule in ('CASCADE', 'SET NULL') and "
                  "status = 'ENABLED'",
                  4, cascades)) {
    return {};
  }
  for (const std::vector<std::string>& row : triggers) {
    if (!targets.contains({row[0], row[1]})) continue;
    visit.Warn(SqlName(row[0], row[1]), "the trigger " + row[3] + " acts again on what is applied",
               "alter trigger " + SqlName(row[2], row[3]) + " disable;", &side);
  }
  for (const std::vector<std::string>& row : cascades) {
    if (!targets.contains({row[0], row[1]})) continue;
    const std::string name = SqlName(row[0], row[1]);
    visit.Warn(name, row[2] + " deletes or changes rows by itself (" + row[3] + ")",
               "alter table " + name + " disable constraint " + SqlName(row[2]) + ";", &side);
  }
  return "none acts on what is applied";
}

std::string CheckOtherJobs(Visit& visit) {
  for (const Patient::Meeting& meeting : visit.Job().meetings) {
    const std::string name = SqlName(meeting.owner, meeting.table);
    if (meeting.takes_back) {
      visit.Warn(name, "the job " + meeting.job + " takes its changes back to the source");
    } else {
      visit.Fail(name, "the job " + meeting.job + " writes to it, too",
                 "-- quillmere-cli job exclude, in one of the two", &visit.Destination());
    }
  }
  return "none writes to the same tables";
}

std::string CheckRows(Visit& visit) {
  Side& source = visit.SourceTables();
  Side& destination = visit.Destination();
  if (!visit.Connected(source) || !visit.Connected(destination)) return {};
  std::size_t counted = 0;
  for (const CarriedTable& table : visit.Job().tables) {
    // What is not there was told before.
    if (source.facts.Find(table.owner, table.name) == nullptr ||
        destination.facts.Find(table.to_owner, table.name) == nullptr) {
      continue;
    }
    std::string here;
    std::string there;
    const std::string name = SqlName(table.to_owner, table.name);
    if (!CountRows(visit, source, SqlName(table.owner, table.name), here) ||
        !CountRows(visit, destination, name, there)) {
      continue;
    }
    ++counted;
    if (here == there) continue;
    visit.Warn(name, there + " rows, on the source " + here +
                         ": of a job that runs, or while people work, they differ for moments");
  }
  return "the same number on both sides, in " + std::to_string(counted) + " tables";
}

}  // namespace quillmere::doctor
