// SPDX-License-Identifier: MIT
// Changes rows: keeps primary, unique and foreign keys, and writes redo beside every change. One
// for each statement, inside a transaction and a statement mark. It keeps its first error and
// changes nothing more after it; the caller then undoes the statement.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "sandbox/redo/redo_record.h"
#include "sandbox/store/sql_runner.h"
#include "sandbox/store/table.h"
#include "sandbox/store/transaction.h"

namespace quillmere::sandbox {

using RowChanges = std::vector<std::pair<std::size_t, RowValue>>;  // column, new value

struct RowUpdate {
  std::int64_t row = 0;
  RowValues old_values;
  RowChanges changes;
};

class RowChanger {
 public:
  // Both must outlive it, and so must the tables that it is given.
  RowChanger(SqliteConnection* writer, Transaction* transaction)
      : writer_(*writer), transaction_(*transaction), sql_(writer) {}

  void Insert(const Table& table, const RowValues& row);
  void Delete(const Table& table, std::int64_t row);
  // Keys are judged when all of the rows have changed, so that "id = id + 1" works.
  void Update(const Table& table, const std::vector<RowUpdate>& updates);
  // False when the row is not there any more.
  bool Read(const Table& table, std::int64_t row, RowValues* out);

  const Status& status() const { return sql_.status(); }
  // Judges what can only be judged when the statement is through.
  Status Finish();

 private:
  // Whether a key of a child still has, or has again, its parent.
  struct Check {
    const ForeignKey* key;
    bool parent_changed;
    std::vector<std::string> values;
  };

  void WriteRow(const Table& table, std::optional<std::int64_t> row, const RowValues& values);
  void RemoveRow(const Table& table, std::int64_t row);
  void WriteRedo(const Table& table, const RedoRecord& record, std::int64_t row);
  std::vector<std::size_t> LoggedColumns(const Table& table, const RowChanges& changes);
  // No changes: the row is new, or goes.
  void NoteParents(const Table& table, const RowValues& row, const RowChanges* changes);
  void NoteChildren(const Table& table, const RowValues& old_values, const RowChanges* changes);
  bool Exists(std::int64_t table_id, const std::vector<std::int64_t>& columns,
              const std::vector<std::string>& values);

  SqliteConnection& writer_;
  Transaction& transaction_;
  SqlRunner sql_;
  std::vector<Check> checks_;
};

}  // namespace quillmere::sandbox
