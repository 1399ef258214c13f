// The lists of a job's tables: those that are included and those that are not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "foundation/byte_arena.h"
#include "jobs/sync_job.h"
#include "ui/toolkit/row_model.h"

namespace quillmere {

// Shows a copy as of the last Fill, so the job's lists may be replaced meanwhile.
class TableRows : public RowModel {
  Q_OBJECT

 public:
  struct Row {
    std::string_view name, owner, desowner;
    std::int32_t beginrows = 0, rows = 0, totalsynced = 0, blocked = 0;
  };

  void Fill(const SyncJob& job);
  void Clear();

  // Valid until the next Fill.
  const Row& At(std::size_t source_row) const { return rows_[source_row]; }

 protected:
  TableRows(std::vector<Column> columns, bool included, QObject* parent);

  std::size_t SourceRows() const override { return rows_.size(); }
  QVariant CellExtra(std::size_t row, int column, int role) const override;

 private:
  const bool included_;
  ByteArena texts_;
  std::vector<Row> rows_;
  const SyncJob* job_ = nullptr;  // only compared
};

class IncludedTables final : public TableRows {
  Q_OBJECT

 public:
  explicit IncludedTables(QObject* parent = nullptr);

 protected:
  std::string_view CellText(std::size_t row, int column) const override;
  std::int64_t CellNumber(std::size_t row, int column) const override;
};

class ExcludedTables final : public TableRows {
  Q_OBJECT

 public:
  explicit ExcludedTables(QObject* parent = nullptr);

 protected:
  std::string_view CellText(std::size_t row, int column) const override;
  std::int64_t CellNumber(std::size_t row, int column) const override;
};

}  // namespace quillmere
