// SPDX-License-Identifier: MIT
// Checks 14 to 18, of each table.
#include <algorithm>
#include <array>
#include <utility>

#include "doctor/visit.h"
#include "engine/column_differences.h"
#include "engine/rewriter.h"

namespace quillmere::doctor {
namespace {

constexpr std::size_t kLongestName = 80;  // bytes that a statement may have for it

// Operation by operation LogMiner has no statement for them, or none that can be executed.
constexpr std::array<std::string_view, 6> kLeftOut = {"BFILE",  "XMLTYPE", "ROWID",
                                                      "UROWID", "ANYDATA", "UNDEFINED"};
constexpr std::array<std::string_view, 5> kInParts = {"BLOB", "CLOB", "NCLOB", "LONG", "LONG RAW"};

template <typename Names>
bool IsOneOf(const Names& names, std::string_view type) {
  return std::find(names.begin(), names.end(), type) != names.end();
}

// A carried table as both sides have it.
struct Pair {
  const CarriedTable& table;
  const TableFacts::Table* source;
  const TableFacts::Table* destination;
  std::string Name() const { return SqlName(table.to_owner, table.name); }
};

// False: a side did not answer, which was told.
template <typename Look>
bool ForEachTable(Visit& visit, Look look) {
  Side& source = visit.SourceTables();
  Side& destination = visit.Destination();
  if (!visit.Connected(source) || !visit.Connected(destination) ||
      !source.facts.Load(visit, source) || !destination.facts.Load(visit, destination)) {
    return false;
  }
  for (const CarriedTable& table : visit.Job().tables) {
    look(Pair{table, source.facts.Find(table.owner, table.name),
              destination.facts.Find(table.to_owner, table.name)});
  }
  return true;
}

std::string Joined(const std::vector<std::string>& columns) {
  std::string list;
  for (const std::string& column : columns) list += (list.empty() ? "" : ", ") + SqlName(column);
  return list;
}

// Migrating keeps the owner; a table that goes to another one is made by hand.
std::string CreateText(const Pair& pair) {
  std::string text;
  for (const TableFacts::Column& column : pair.source->columns) {
    text += (text.empty() ? "create table " + pair.Name() + " (" : ", ") + SqlName(column.name) +
            " " + TypeText(column) + (column.nullable ? "" : " not null");
  }
  if (text.empty()) return text;
  const std::vector<std::string>& key = pair.source->key;
  return text + (key.empty() ? "" : ", primary key (" + Joined(key) + ")") + ");";
}

}  // namespace

std::string CheckPresence(Visit& visit) {
  if (visit.Job().tables.empty()) {
    const std::string& job = visit.Job().name;
    if (visit.Job().fetched) {
      visit.Fail({}, "the job carries no table", Command("job include " + job + " OWNER TABLE..."),
                 &visit.Source());
    } else {
      visit.Fail({}, "its tables were never read", Command("job refresh " + job), &visit.Source());
    }
    return {};
  }
  const std::string& from = visit.Source().log_on.name;
  const std::string& to = visit.Destination().log_on.name;
  ForEachTable(visit, [&](const Pair& pair) {
    if (pair.source == nullptr) {
      visit.Warn(SqlName(pair.table.owner, pair.table.name), "is gone from the source",
                 Command("job refresh " + visit.Job().name), &visit.Source());
    } else if (pair.destination == nullptr) {
      const bool same = pair.table.owner == pair.table.to_owner;
      visit.Fail(pair.Name(), "is not there on the destination",
                 same ? Command("schema migrate " + from + " " + to + " table " + pair.table.owner +
                                "." + pair.table.name + " --with-key")
                      : CreateText(pair),
                 &visit.Destination());
    }
  });
  return "all " + std::to_string(visit.Job().tables.size());
}

std::string CheckKeys(Visit& visit) {
  ForEachTable(visit, [&](const Pair& pair) {
    if (pair.source == nullptr || pair.destination == nullptr) return;
    const bool there = !pair.destination->key.empty() || pair.destination->unique;
    if (there) return;
    const std::vector<std::string>& key = pair.source->key;
    const bool keyed = !key.empty() || pair.source->unique;
    visit.Warn(
        pair.Name(),
        keyed ? "has no key or unique index, the source has"
              : "has no key or unique index on either side: equal rows can not be told apart",
        key.empty() ? "alter table " + pair.Name() + " add primary key (...);"
                    : "alter table " + pair.Name() + " add primary key (" + Joined(key) + ");",
        &visit.Destination());
  });
  return "every table has a key or a unique index";
}

std::string CheckColumns(Visit& visit) {
  ForEachTable(visit, [&](const Pair& pair) {
    if (pair.source == nullptr || pair.destination == nullptr) return;
    const std::string name = pair.Name();
    for (ColumnDifference& found :
         CompareColumns(name, pair.source->columns, pair.destination->columns)) {
      visit.Fail(name, std::move(found.what), std::move(found.cure), &visit.Destination());
    }
  });
  return "the destination has room for each";
}

std::string CheckTypes(Visit& visit) {
  Side& side = visit.SourceTables();
  if (!visit.Connected(side) || !side.facts.Load(visit, side)) return {};
  for (const CarriedTable& table : visit.Job().tables) {
    const TableFacts::Table* const known = side.facts.Find(table.owner, table.name);
    if (known == nullptr) continue;
    const std::string name = SqlName(table.owner, table.name);
    for (const TableFacts::Column& column : known->columns) {
      const std::string_view type = TypeFamily(column.type);
      if (IsOneOf(kLeftOut, type) || !column.type_owner.empty()) {
        visit.Fail(
            name, column.name + " is " + column.type + ", of which LogMiner tells nothing",
            Command("job exclude " + visit.Job().name + " " + table.owner + " " + table.name),
            &side);
      } else if (IsOneOf(kInParts, type)) {
        visit.Warn(name, column.name + " is " + column.type +
                             ": what is changed in parts comes without a statement");
      }
    }
  }
  return "LogMiner knows each";
}

std::string CheckNames(Visit& visit) {
  const std::string cure = "job exclude " + visit.Job().name + " ";
  for (const CarriedTable& table : visit.Job().tables) {
    const std::string name = SqlName(table.owner, table.name);
    const std::string exclude = Command(cure + table.owner + " " + table.name);
    if (table.owner.size() > kLongestName || table.name.size() > kLongestName) {
      visit.Fail(name, "its name is too long: its changes are blocked", exclude, &visit.Source());
    } else if (!visit.ByCommits() && (NeedsQuotes(table.name) || NeedsQuotes(table.to_owner))) {
      visit.Fail(name, "needs quotes, and a job that follows rows writes names without them",
                 exclude, &visit.Source());
    }
  }
  return "plain, or kept in their quotes";
}

}  // namespace quillmere::doctor
