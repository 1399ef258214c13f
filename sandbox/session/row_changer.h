// Changes rows: keeps primary, unique and foreign keys, and writes redo beside every change. Runs
// inside a transaction and a statement mark; after a failure the caller undoes the statement.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "sandbox/redo/redo_record.h"
#include "sandbox/store/catalog.h"
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
  RowChanger(SqliteConnection* writer, Catalog* catalog, Transaction* transaction)
      : writer_(*writer), catalog_(*catalog), transaction_(*transaction) {}

  Status Insert(const Table& table, const RowValues& row);
  Status Delete(const Table& table, std::int64_t row, const RowValues& old_values);
  Status Update(const Table& table, const RowUpdate& update);
  // Many rows whose keys change: judged when all have changed, so that "id = id + 1" works.
  Status UpdateKeys(const Table& table, const std::vector<RowUpdate>& updates);
  // What can only be judged when the statement is through.
  Status Finish();

  Status ReadRow(const Table& table, std::int64_t row, RowValues* out);

 private:
  struct ParentCheck {
    const ForeignKey* key;
    std::vector<std::string> values;
  };
  struct ChildCheck {
    const ForeignKey* key;
    std::vector<std::string> values;
  };

  Status WriteRow(const Table& table, const char* verb, std::int64_t row, const RowValues& values);
  Status RemoveRow(const Table& table, std::int64_t row);
  Status WriteRedo(const Table& table, const RedoRecord& record, std::int64_t row);
  Status CheckNotNull(const Table& table, const RowValues& row) const;
  Status CheckPartialKeys(const Table& table, const RowValues& values, std::int64_t row);
  Status NameUniqueKey(const Table& table, const Status& failure) const;
  void NoteParents(const Table& table, const RowValues& row, const RowChanges* changes);
  Status FollowChildren(const Table& table, const RowValues& old_values);
  Status ActOnChildren(const ForeignKey& key, const std::vector<std::string>& values);
  void NoteChildren(const Table& table, const RowValues& old_values, const RowChanges& changes);
  Status Exists(std::int64_t table_id, const std::vector<std::int64_t>& columns,
                const std::vector<std::string>& values, bool* out);
  Status ChildRows(const ForeignKey& key, const std::vector<std::string>& values,
                   std::vector<std::int64_t>* out);

  SqliteConnection& writer_;
  Catalog& catalog_;
  Transaction& transaction_;
  std::vector<ParentCheck> parent_checks_;
  std::vector<ChildCheck> child_checks_;
  std::vector<TablePtr> kept_;  // tables that the checks point into
  std::vector<std::pair<std::int64_t, std::int64_t>> deleting_;  // table and row, outermost first
};

}  // namespace quillmere::sandbox
