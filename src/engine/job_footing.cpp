// SPDX-License-Identifier: MIT
#include "engine/job_footing.h"

#include <algorithm>
#include <map>

#include "engine/redo_room.h"
#include "oracle/commit_miner.h"
#include "oracle/position_row.h"
#include "oracle/source_facts.h"

namespace quillmere {
namespace {

using TableName = SourceFacts::TableName;

constexpr std::size_t kMostTablesNamed = 20;

std::string NotKnown(const OracleSession& source) {
  return "not known: " + source.LastError();
}

std::string Quoted(const std::string& name) {
  const bool plain = std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' || c == '#';
  });
  return plain ? name : '"' + name + '"';
}

std::string Duration(std::int64_t minutes) {
  constexpr std::int64_t kHour = 60;
  if (minutes < 2 * kHour) return std::to_string(minutes) + " minutes";
  if (minutes < 48 * kHour) return std::to_string(minutes / kHour) + " hours";
  return std::to_string(minutes / (24 * kHour)) + " days";
}

// Reads one look's lines.
class Look {
 public:
  Look(OracleSession& source, const SyncJob& job) : source_(source), facts_(source), job_(job) {}

  std::vector<FootingLine> Lines() {
    Server();
    Redo();
    Logging();
    return std::move(lines_);
  }

 private:
  void Say(std::string subject, std::string text, bool warning = false) {
    lines_.push_back({std::move(subject), std::move(text), warning});
  }

  void Server() {
    std::string text;
    Say("Server", facts_.ReadBanner(text) ? text : NotKnown(source_));
    const bool known = facts_.ReadContainer(text);
    const std::string followed = ContainerOf(job_);
    Say("Container", !known                                 ? NotKnown(source_)
                     : followed.empty() || followed == text ? text
                                                            : text + ", followed is " + followed);
  }

  void Logging() {
    SupplementalLogging database;
    if (!facts_.ReadSupplemental(database)) {
      return Say("Supplemental logging", NotKnown(source_));
    }
    const auto yes = [](bool on) { return std::string(on ? "yes" : "no"); };
    Say("Supplemental logging", "minimal " + yes(database.minimal) + ", primary key " +
                                    yes(database.key) + ", all columns " + yes(database.all));
    if (!database.minimal) {
      Say("Supplemental logging",
          "without the minimal kind LogMiner can not be relied on: alter database add supplemental "
          "log data",
          true);
    }
    if (database.key || database.all) return;
    if (!facts_.Enter(ContainerOf(job_))) return Say("Tables", NotKnown(source_));
    Tables();
  }

  std::vector<TableName> Carried() const {
    std::vector<TableName> carried;
    const MutexLock lock(job_.config_mutex);
    for (const auto& [owner, schema] : job_.config.schemas) {
      for (const JobTable& table : schema.Tables()) {
        if (table.includeflag) carried.emplace_back(owner, table.name);
      }
    }
    return carried;
  }

  // The last look, for the session is inside the container then. Those of which an update names
  // changed columns and the row's address only.
  void Tables() {
    std::map<TableName, SupplementalLogging> logging;
    if (!facts_.ReadTableLogging(logging)) return Say("Tables", NotKnown(source_));
    std::map<TableName, bool> keyed;
    const bool keys_known = facts_.ReadKeyedTables(keyed);
    std::size_t unnamed = 0;
    std::size_t named = 0;
    for (const TableName& table : Carried()) {
      const auto found = logging.find(table);
      if (found != logging.end() && (found->second.key || found->second.all)) continue;
      if (named == kMostTablesNamed) {
        ++unnamed;
        continue;
      }
      ++named;
      const std::string name = Quoted(table.first) + "." + Quoted(table.second);
      const bool by_key = keys_known && keyed.contains(table);
      Say("Table",
          "updates of " + name + " may not tell their row: alter table " + name +
              " add supplemental log data (" + (by_key ? "primary key" : "all") + ") columns",
          true);
    }
    if (unnamed > 0) {
      Say("Table", "the same for " + std::to_string(unnamed) + " more tables of the job", true);
    }
  }

  // As it stands now; of a job that is to be started there is nothing to lose.
  void TimeToLoss(const RedoReach& online, const RedoReach& archived) {
    std::int64_t needed = job_.run.positions.mining_start_scn;
    std::int64_t now = 0;
    const bool by_commits = FollowOf(job_) == Follow::Commits;
    if (needed == 0) return;
    if (!(by_commits ? CommitMiner(source_).ReadScn(now) : source_.ReadCurrentScn(now))) {
      return Say("Time to loss", NotKnown(source_));
    }
    const RedoReach& reach = by_commits && archived.logs > 0 ? archived : online;
    if (&reach == &online && online.logs <= 1) return;
    const auto left = RoomOf(needed, reach.from_scn, std::chrono::minutes{reach.minutes}, now).left;
    if (!left) return;
    Say("Time to loss", "about " + Duration(left->count() / 60) +
                            " unless the job goes on: it needs the redo from SCN " +
                            std::to_string(needed) + " on");
  }

  void Redo() {
    RedoReach reach;
    if (!facts_.ReadOnlineReach(reach)) return Say("Redo", NotKnown(source_));
    const std::string from =
        "from SCN " + std::to_string(reach.from_scn) + " on, " + Duration(reach.minutes) + " back";
    Say("Redo", reach.logs > 1 ? "online " + from + "; what is written now stays for about as long"
                               : "online " + from + ", in the first log that was used");
    const RedoReach online = reach;
    if (!facts_.ReadArchivedReach(reach)) return Say("Archived redo", NotKnown(source_));
    TimeToLoss(online, reach);
    Say("Archived redo", reach.logs == 0 ? "none"
                                         : "from SCN " + std::to_string(reach.from_scn) + " on, " +
                                               Duration(reach.minutes) + " back");
  }

  OracleSession& source_;
  SourceFacts facts_;
  const SyncJob& job_;
  std::vector<FootingLine> lines_;
};

}  // namespace

std::vector<FootingLine> ReadFooting(OracleSession& source, const SyncJob& job) {
  return Look(source, job).Lines();
}

std::vector<FootingLine> ChosenFooting(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  const std::string& owner = job.config.position_owner;
  return {{"Follows", std::string(FollowName(job.config.follow))},
          {"Position row", owner.empty() ? std::string("none")
                                         : "in " + owner + "." + std::string(kPositionTable)}};
}

}  // namespace quillmere
