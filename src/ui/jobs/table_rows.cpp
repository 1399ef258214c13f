#include "ui/jobs/table_rows.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

using Kind = RowModel::Kind;

std::vector<RowModel::Column> IncludedColumns() {
  return {{QStringLiteral("Table Name"), 180, Kind::Text},
          {QStringLiteral("Source Owner"), 60, Kind::Text},
          {QStringLiteral("Remote Owner"), 60, Kind::Text},
          {QStringLiteral("Begin Rows"), 60, Kind::Number},
          {QStringLiteral("Current Rows"), 60, Kind::Number},
          {QStringLiteral("Total Synced "), 60, Kind::Number}};
}

std::vector<RowModel::Column> ExcludedColumns() {
  return {{QStringLiteral("Table Name"), 210, Kind::Text},
          {QStringLiteral("Source Owner"), 80, Kind::Text},
          {QStringLiteral("Rows"), 80, Kind::Number},
          {QStringLiteral("Total Blocked "), 80, Kind::Number}};
}

// Copies tables one after another; few owners stand behind many tables.
class Copier {
 public:
  Copier(ByteArena& texts, std::vector<TableRows::Row>& rows) : texts_(texts), rows_(rows) {}

  void BeginOwner(std::string_view owner) { owner_ = texts_.Copy(owner); }

  void Add(const JobTable& table) {
    TableRows::Row row;
    row.name = texts_.Copy(table.name);
    row.owner = owner_;
    row.desowner = RemoteOwner(table.desowner);
    row.beginrows = table.beginrows;
    row.rows = table.rows;
    row.totalsynced = table.totalsynced;
    row.blocked = table.RecordsBlocked;
    rows_.push_back(row);
  }

 private:
  std::string_view RemoteOwner(std::string_view name) {
    if (name == owner_) return owner_;
    if (name != remote_owner_) remote_owner_ = texts_.Copy(name);
    return remote_owner_;
  }

  ByteArena& texts_;
  std::vector<TableRows::Row>& rows_;
  std::string_view owner_, remote_owner_;
};

std::vector<TableRows::Row> Copy(const SyncJob& job, bool included, ByteArena& texts) {
  std::vector<TableRows::Row> rows;
  Copier copier(texts, rows);
  const std::lock_guard lock(job.config_mutex);
  for (const auto& [owner, schema] : job.schemas) {
    copier.BeginOwner(owner);
    for (const JobTable& table : schema.Tables()) {
      if (table.includeflag == included) copier.Add(table);
    }
  }
  return rows;
}

bool SameTable(const TableRows::Row& a, const TableRows::Row& b) {
  return a.name == b.name && a.owner == b.owner;
}

}  // namespace

TableRows::TableRows(std::vector<Column> columns, bool included, QObject* parent)
    : RowModel(std::move(columns), parent), included_(included) {}

void TableRows::Fill(const SyncJob& job) {
  ByteArena texts;
  std::vector<Row> rows = Copy(job, included_, texts);
  const bool same =
      job_ == &job && std::equal(rows.begin(), rows.end(), rows_.begin(), rows_.end(), SameTable);
  ReplaceRows(same, [&] {
    job_ = &job;
    rows_ = std::move(rows);
    texts_ = std::move(texts);
  });
}

void TableRows::Clear() {
  ReplaceRows(false, [&] {
    job_ = nullptr;
    rows_ = {};
    texts_ = {};
  });
}

QVariant TableRows::CellExtra(std::size_t row, int column, int role) const {
  if (column != 0) return {};
  if (role == Qt::DecorationRole) return Icon(included_ ? "table-included" : "table-excluded");
  if (role == Qt::ToolTipRole) return OneLine(rows_[row].name);
  return {};
}

IncludedTables::IncludedTables(QObject* parent) : TableRows(IncludedColumns(), true, parent) {}

std::string_view IncludedTables::CellText(std::size_t row, int column) const {
  const Row& table = At(row);
  if (column == 0) return table.name;
  return column == 1 ? table.owner : table.desowner;
}

std::int64_t IncludedTables::CellNumber(std::size_t row, int column) const {
  const Row& table = At(row);
  if (column == 3) return table.beginrows;
  return column == 4 ? table.rows : table.totalsynced;
}

ExcludedTables::ExcludedTables(QObject* parent) : TableRows(ExcludedColumns(), false, parent) {}

std::string_view ExcludedTables::CellText(std::size_t row, int column) const {
  return column == 0 ? At(row).name : At(row).owner;
}

std::int64_t ExcludedTables::CellNumber(std::size_t row, int column) const {
  return column == 2 ? At(row).rows : At(row).blocked;
}

}  // namespace quillmere
