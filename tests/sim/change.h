// SPDX-License-Identifier: MIT
// What the model's transactions do, and the texts that LogMiner makes of it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillmere::sim {

inline constexpr std::string_view kTables[] = {"ORDERS", "ITEMS", "SECRET"};
inline constexpr std::string_view kContainers[] = {"SHOPPDB", "OTHERPDB"};  // of a root
inline constexpr std::size_t kTableCount = std::size(kTables);

// Those above Update carry no statement.
enum class Operation : std::uint8_t { Insert, Delete, Update, LobWrite, Unsupported, Temporary };

// Tables have columns ID, V and NOTE. A change writes its own id into V, so that its statement
// tells which change it is; it finds its row by ID and the V before.
struct Change {
  std::int64_t scn = 0;
  std::int64_t id = 0;   // counts all changes of the source from 1
  std::int64_t old = 0;  // V before; of an undo row: the V that it brings back; 0: no row
  std::uint32_t row = 0;
  std::uint16_t note = 0;  // length of NOTE in characters; 0: not written
  std::uint8_t table = 0;
  Operation operation = Operation::Insert;
  bool undo = false;
};

// A change as it arrives elsewhere: the id that it wrote, a delete the V that it removed, negated.
struct Arrival {
  explicit Arrival(const Change& change)
      : Arrival(change.table, change.operation == Operation::Delete ? -change.old : change.id) {}
  Arrival(std::uint8_t of, std::int64_t what) : table(of), id(what) {}
  bool operator==(const Arrival&) const = default;

  std::uint8_t table;
  std::int64_t id;
};

struct Transaction {
  std::uint32_t number = 0;  // its XID is made of it
  std::size_t thread = 0;
  std::size_t container = 0;  // whose tables it changes: of equal names, rows and XIDs
  std::int64_t start_scn = 0, begun_at = 0;  // of its first change; ms
  std::int64_t commit_scn = 0, committed_at = 0;
  std::vector<Change> changes;
  std::vector<std::uint32_t> live;  // those that are not undone; empty once it has ended

  std::string Xid() const;
  std::vector<Arrival> Arrivals() const;  // of a live transaction: what a destination must get
};

std::string RowAddress(const Change& change);  // 18 characters

// Quotes, semicolons, line feeds and characters of several bytes, as they stand in the row.
std::string Note(std::int64_t id, std::size_t characters);

// SQL_REDO of the change, whole.
std::string Redo(const Change& change);

}  // namespace quillmere::sim
