// SPDX-License-Identifier: MIT
#include "ui/jobs/table_rows.h"

#include <algorithm>
#include <utility>

#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

QVariant NameExtra(const TableRow& row, int role, const char* icon) {
  if (role == Qt::DecorationRole) return Icon(icon);
  return role == Qt::ToolTipRole ? OneLine(row.name) : QVariant();
}

QVariant IncludedExtra(const TableRow& row, int role) {
  return NameExtra(row, role, "table-included");
}

QVariant ExcludedExtra(const TableRow& row, int role) {
  return NameExtra(row, role, "table-excluded");
}

QVariant CompareExtra(const TableRow& row, int role) {
  if (role != Qt::ToolTipRole || row.compare.empty()) return {};
  return TableRows::tr(
      "A change of this table was not applied, see setaside.sql in the job's folder. Compare the "
      "table with the destination's, then choose Compared in its menu");
}

// Copies tables one after another; few owners stand behind many tables.
class Copier {
 public:
  Copier(ByteArena& texts, std::vector<TableRow>& rows) : texts_(texts), rows_(rows) {}

  void BeginOwner(std::string_view owner) { owner_ = texts_.Copy(owner); }

  void Add(const JobTable& table) {
    TableRow row;
    row.name = texts_.Copy(table.name);
    row.owner = owner_;
    row.desowner = RemoteOwner(table.desowner);
    row.beginrows = table.beginrows;
    row.rows = table.rows;
    row.totalsynced = table.totalsynced;
    row.blocked = table.RecordsBlocked;
    if (table.compare) row.compare = "compare";
    rows_.push_back(row);
  }

 private:
  std::string_view RemoteOwner(std::string_view name) {
    if (name == owner_) return owner_;
    if (name != remote_owner_) remote_owner_ = texts_.Copy(name);
    return remote_owner_;
  }

  ByteArena& texts_;
  std::vector<TableRow>& rows_;
  std::string_view owner_, remote_owner_;
};

std::vector<TableRow> Copy(const SyncJob& job, bool included, ByteArena& texts) {
  std::vector<TableRow> rows;
  Copier copier(texts, rows);
  const MutexLock lock(job.config_mutex);
  for (const auto& [owner, schema] : job.config.schemas) {
    copier.BeginOwner(owner);
    for (const JobTable& table : schema.Tables()) {
      if (table.includeflag == included) copier.Add(table);
    }
  }
  return rows;
}

bool SameTable(const TableRow& a, const TableRow& b) {
  return a.name == b.name && a.owner == b.owner;
}

}  // namespace

TableRows::TableRows(std::vector<ListColumn> columns, bool included, QObject* parent)
    : RowList(std::move(columns), parent), included_(included) {}

void TableRows::Fill(const SyncJob& job) {
  ByteArena texts;
  std::vector<TableRow> rows = Copy(job, included_, texts);
  const bool same =
      job_ == &job && std::equal(rows.begin(), rows.end(), Rows().begin(), Rows().end(), SameTable);
  job_ = &job;
  Take(std::move(rows), same, [&] { texts_ = std::move(texts); });
}

bool TableRows::AnyMarked() const {
  return std::any_of(Rows().begin(), Rows().end(),
                     [](const TableRow& row) { return !row.compare.empty(); });
}

IncludedTables::IncludedTables(QObject* parent)
    : TableRows({Text<&TableRow::name>(TableRows::tr("Table Name"), 180, IncludedExtra),
                 Text<&TableRow::owner>(TableRows::tr("Source Owner"), 60),
                 Text<&TableRow::desowner>(TableRows::tr("Remote Owner"), 60),
                 Number<&TableRow::beginrows>(TableRows::tr("Begin Rows"), 60),
                 Number<&TableRow::rows>(TableRows::tr("Current Rows"), 60),
                 Number<&TableRow::totalsynced>(TableRows::tr("Total Synced "), 60),
                 Text<&TableRow::compare>(TableRows::tr("Compare"), 70, CompareExtra)},
                true, parent) {}

ExcludedTables::ExcludedTables(QObject* parent)
    : TableRows({Text<&TableRow::name>(TableRows::tr("Table Name"), 210, ExcludedExtra),
                 Text<&TableRow::owner>(TableRows::tr("Source Owner"), 80),
                 Number<&TableRow::rows>(TableRows::tr("Rows"), 80),
                 Number<&TableRow::blocked>(TableRows::tr("Total Blocked "), 80),
                 Text<&TableRow::compare>(TableRows::tr("Compare"), 70, CompareExtra)},
                false, parent) {}

}  // namespace quillmere
