// SPDX-License-Identifier: MIT
#include "engine/definition_check.h"

#include <algorithm>
#include <exception>
#include <set>
#include <utility>

#include "engine/column_differences.h"
#include "engine/job_runner.h"
#include "engine/rewriter.h"
#include "foundation/text.h"
#include "jobs/carried_tables.h"
#include "oracle/read_rows.h"
#include "oracle/source_facts.h"

namespace quillmere {
namespace {

constexpr std::size_t kMostTold = 20;

class Digest {
 public:
  void Add(std::string_view text) {
    for (const char c : text) Add(static_cast<unsigned char>(c));
    Add('\0');
  }
  std::string Text() const { return std::to_string(hash_); }

 private:
  void Add(unsigned char byte) { hash_ = (hash_ ^ byte) * 1'099'511'628'211U; }

  std::uint64_t hash_ = 14'695'981'039'346'656'037U;
};

std::string TextOf(const DefinitionDifference& one) {
  const std::string cure = one.cure.empty() ? "" : ". To bring it up: " + one.cure;
  return one.owner + "." + one.table + " " + one.what + cure;
}

}  // namespace

DefinitionCheck::DefinitionCheck(EngineContext& context, std::size_t index, const JobView& view,
                                 DefinitionMemory& memory)
    : context_(context),
      index_(index),
      view_(view),
      memory_(memory),
      job_(context.jobs.At(index)),
      folder_(context.catalogue.FolderOf(view.name)) {}

// False: there is nothing to be asked.
bool DefinitionCheck::Begin() {
  if (FollowOf(job_) == Follow::Rows && !context_.settings.definitions_by_rows) return false;
  if (!std::exchange(memory_.loaded, true)) {
    const FileStatus read = ReadDefinitionsFile(context_.files, folder_, memory_.known);
    if (!read && !read.Missing()) FileRefused(read.reason);
    memory_.known.source.clear();
  }
  TakeCarried();
  return !memory_.owners.empty();
}

// Of a job that carries other tables now nothing is known.
void DefinitionCheck::TakeCarried() {
  const MutexLock lock(job_.config_mutex);
  const JobConfig& config = job_.config;
  if (memory_.revision == config.tables_revision) return;
  Digest digest;
  digest.Add(view_.source.name);
  digest.Add(view_.destination.name);
  std::set<std::string_view> owners, to_owners;
  // Each pass that counts comes here: nothing is copied.
  ForEachCarried(config,
                 [&](const std::string& owner, const JobTable& table, const std::string& to_owner) {
                   for (const std::string* name : {&owner, &table.name, &to_owner})
                     digest.Add(*name);
                   owners.insert(owner);
                   to_owners.insert(to_owner);
                 });
  memory_.owners.assign(owners.begin(), owners.end());
  memory_.to_owners.assign(to_owners.begin(), to_owners.end());
  memory_.revision = config.tables_revision;
  if (memory_.known.carried == digest.Text()) return;
  memory_.known.carried = digest.Text();
  memory_.known.source_newest.clear();
  memory_.known.destination_newest.clear();
  memory_.due = false;
}

void DefinitionCheck::Refused(const std::string& reason, std::string& told) {
  if (std::exchange(told, reason) == reason) return;
  context_.listener.OnError(
      index_, "The definitions of " + view_.name + "'s tables are not compared: " + reason);
}

void DefinitionCheck::FileRefused(const std::string& reason) {
  if (std::exchange(memory_.file_refused, reason) == reason) return;
  context_.listener.OnError(index_, reason + ". What does not fit on the destination of " +
                                        view_.name + " may be told again");
}

void DefinitionCheck::Refused(const OracleSession& session, std::string& told) {
  if (!session.Stopped()) Refused(session.LastError(), told);
}

// Of the tables that are carried; an owner at a time.
bool DefinitionCheck::ReadColumns(OracleSession& session, Dictionary dictionary,
                                  TableColumns& columns) {
  const bool source = dictionary == Dictionary::Whole;
  {
    const MutexLock lock(job_.config_mutex);
    carried_ = CarriedTables(job_.config);
  }
  std::set<std::pair<std::string_view, std::string_view>> wanted;
  for (const CarriedTable& table : carried_) {
    wanted.emplace(source ? table.owner : table.to_owner, table.name);
  }
  TextRows rows;
  for (const std::string& owner : source ? memory_.owners : memory_.to_owners) {
    if (!ReadRows(session, ColumnsQuery(owner, dictionary), kColumnFields, rows)) return false;
    for (const std::vector<std::string>& row : rows) {
      if (wanted.contains({owner, row[0]})) columns[{owner, row[0]}].push_back(ColumnOf(row));
    }
  }
  return true;
}

void DefinitionCheck::LookAtSource(OracleSession& source) try {
  if (!Begin()) return;
  Definitions& known = memory_.known;
  std::string newest;
  bool read = SourceFacts(source).Enter(ContainerOf(job_)) &&
              ReadNewestChange(source, memory_.owners, Dictionary::Whole, newest);
  if (read && (newest.empty() || newest != known.source_newest)) {
    TableColumns columns;
    read = ReadColumns(source, Dictionary::Whole, columns);
    if (read) {
      known.source = std::move(columns);
      known.source_newest = std::move(newest);
      memory_.due = true;
    }
  }
  if (!read) return Refused(source, memory_.source_refused);
  memory_.source_refused.clear();
} catch (const std::exception& failure) {
  Refused(failure.what(), memory_.source_refused);
}

void DefinitionCheck::LookAtDestination(OracleSession& destination) try {
  if (!Begin()) return;
  Definitions& known = memory_.known;
  std::string newest;
  if (!ReadNewestChange(destination, memory_.to_owners, Dictionary::Own, newest))
    return Refused(destination, memory_.destination_refused);
  const bool moved = newest.empty() || newest != known.destination_newest;
  if ((moved || memory_.due) && LoadSourceColumns()) {
    TableColumns there;
    if (!ReadColumns(destination, Dictionary::Own, there))
      return Refused(destination, memory_.destination_refused);
    known.destination_newest = std::move(newest);
    Keep(Compare(there));
  }
  memory_.destination_refused.clear();
} catch (const std::exception& failure) {
  Refused(failure.what(), memory_.destination_refused);
}

void DefinitionCheck::FinishWithoutBatch(const OracleSession::StopCondition& stop) try {
  if (!memory_.due) return;
  OracleSession destination(context_.oci);
  destination.StopWhen(stop);
  if (!destination.Connect(view_.destination))
    return Refused(destination, memory_.destination_refused);
  LookAtDestination(destination);
} catch (const std::exception& failure) {
  Refused(failure.what(), memory_.destination_refused);
}

// False: the next capture reads them.
bool DefinitionCheck::LoadSourceColumns() {
  if (memory_.due) return true;
  Definitions read;
  const std::string& newest = memory_.known.source_newest;
  const bool kept = !newest.empty() && ReadDefinitionsFile(context_.files, folder_, read) &&
                    read.source_newest == newest;
  if (!kept) {
    memory_.known.source_newest.clear();
    return false;
  }
  memory_.known.source = std::move(read.source);
  return true;
}

std::vector<DefinitionDifference> DefinitionCheck::Compare(const TableColumns& there) const {
  std::vector<DefinitionDifference> differences;
  for (const CarriedTable& table : carried_) {
    const auto from = memory_.known.source.find({table.owner, table.name});
    if (from == memory_.known.source.end()) continue;  // it brings no more rows
    const auto to = there.find({table.to_owner, table.name});
    if (to == there.end()) {
      differences.push_back({table.to_owner, table.name, "", "is not there", ""});
      continue;
    }
    for (ColumnDifference& one :
         CompareColumns(SqlName(table.to_owner, table.name), from->second, to->second)) {
      differences.push_back({table.to_owner, table.name, std::move(one.column), std::move(one.what),
                             std::move(one.cure)});
    }
  }
  return differences;
}

// Told first: what is told twice after a death does less harm than what never is.
void DefinitionCheck::Keep(std::vector<DefinitionDifference> differences) {
  Definitions& known = memory_.known;
  Tell(differences);
  known.differences = std::move(differences);
  found_ = std::make_shared<const std::vector<DefinitionDifference>>(known.differences);
  std::string error;
  if (WriteDefinitionsFile(context_.files, folder_, known, error)) {
    memory_.file_refused.clear();
  } else {
    FileRefused(error);
  }
  memory_.due = false;
  known.source.clear();
}

void DefinitionCheck::Tell(const std::vector<DefinitionDifference>& differences) {
  const std::vector<DefinitionDifference>& before = memory_.known.differences;
  std::size_t fresh = 0;
  for (const DefinitionDifference& one : differences) {
    if (std::find(before.begin(), before.end(), one) != before.end()) continue;
    if (++fresh > kMostTold) continue;
    context_.listener.OnError(index_,
                              view_.name + ": on " + view_.destination.name + " " + TextOf(one));
  }
  if (fresh > kMostTold) {
    context_.listener.OnError(index_, view_.name + ": " + std::to_string(fresh - kMostTold) +
                                          " more definitions do not fit, see 'job show'");
  }
  if (differences.empty() && !before.empty()) {
    context_.listener.OnInformation(index_, "The tables on " + view_.destination.name +
                                                " fit those of " + view_.name + " again");
  }
  if (fresh == 0 || !context_.settings.pause_on_definition) return;
  context_.listener.OnError(index_, view_.name +
                                        " is paused, for its changes would be refused. Bring the "
                                        "tables up and run it again");
  RequestPause(context_.jobs, index_);
}

}  // namespace quillmere
