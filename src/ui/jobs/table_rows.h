// SPDX-License-Identifier: MIT
// The lists of a job's tables: those that are included and those that are not.
#pragma once

#include <QCoreApplication>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "foundation/byte_arena.h"
#include "jobs/sync_job.h"
#include "ui/toolkit/row_list.h"

namespace quillmere {

struct TableRow {
  std::string_view name, owner, desowner;
  std::string_view compare;  // empty without the mark
  std::int32_t beginrows = 0, rows = 0, totalsynced = 0, blocked = 0;
};

// Shows a copy as of the last Fill, so the job's lists may be replaced meanwhile.
class TableRows : public RowList<TableRow> {
  Q_DECLARE_TR_FUNCTIONS(TableRows)

 public:
  void Fill(const SyncJob& job);

  // Some table bears the mark "compare".
  bool AnyMarked() const;

 protected:
  TableRows(std::vector<ListColumn> columns, bool included, QObject* parent);

 private:
  const bool included_;
  ByteArena texts_;
  const SyncJob* job_ = nullptr;  // only compared
};

class IncludedTables final : public TableRows {
 public:
  explicit IncludedTables(QObject* parent = nullptr);
};

class ExcludedTables final : public TableRows {
 public:
  explicit ExcludedTables(QObject* parent = nullptr);
};

}  // namespace quillmere
