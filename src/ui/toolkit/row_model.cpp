// SPDX-License-Identifier: MIT
#include "ui/toolkit/row_model.h"

#include <algorithm>
#include <numeric>

#include "foundation/text.h"
#include "ui/toolkit/row_order.h"
#include "ui/toolkit/text.h"

namespace quillmere {

RowModel::RowModel(std::vector<Column> columns, QObject* parent)
    : QAbstractTableModel(parent), columns_(std::move(columns)) {}

std::size_t RowModel::SourceRow(const QModelIndex& index) const {
  return SourceRow(index.row());
}

int RowModel::ModelRowOf(std::size_t source_row) const {
  const auto found = std::find(shown_.begin(), shown_.end(), source_row);
  return found == shown_.end() ? -1 : static_cast<int>(found - shown_.begin());
}

int RowModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int RowModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

std::int64_t RowModel::CellNumber(std::size_t, int) const {
  return 0;
}

QVariant RowModel::CellExtra(std::size_t, int, int) const {
  return {};
}

QVariant RowModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const std::size_t row = SourceRow(index);
  const Column& column = columns_[static_cast<std::size_t>(index.column())];
  const bool number = column.kind == Kind::Number;
  switch (role) {
    case Qt::DisplayRole:
      if (number) {
        const std::int64_t value = CellNumber(row, index.column());
        return column.words == nullptr ? QString::number(value) : column.words(value);
      }
      return OneLine(CellText(row, index.column()));
    case Qt::TextAlignmentRole:
      return QVariant(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
    default:
      return CellExtra(row, index.column(), role);
  }
}

QVariant RowModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  const Column& column = columns_[static_cast<std::size_t>(section)];
  if (role == Qt::DisplayRole) return column.caption;
  if (role == Qt::TextAlignmentRole) {
    const Qt::Alignment side = column.kind == Kind::Number ? Qt::AlignRight : Qt::AlignLeft;
    return static_cast<int>(Qt::AlignVCenter | side) | Qt::TextWordWrap;
  }
  return {};
}

bool RowModel::Matches(std::size_t row) const {
  for (int column = 0; column < columnCount(); ++column) {
    if (columns_[static_cast<std::size_t>(column)].kind != Kind::Text) continue;
    if (ContainsFolded(CellText(row, column), filter_)) return true;
  }
  return false;
}

std::vector<std::uint32_t> RowModel::Arrange() const {
  const std::size_t count = SourceRows();
  std::vector<std::uint32_t> rows(count);
  // Rows as shown so far, if they are the same ones: then they are in order already, or nearly.
  if (filter_.empty() && shown_.size() == count) {
    rows = shown_;
  } else {
    std::iota(rows.begin(), rows.end(), 0U);
  }
  if (!filter_.empty()) std::erase_if(rows, [this](std::uint32_t row) { return !Matches(row); });
  const bool descending = sort_order_ == Qt::DescendingOrder;
  if (sort_column_ < 0) return rows;
  if (columns_[static_cast<std::size_t>(sort_column_)].kind == Kind::Number) {
    SortByNumber(
        rows, [this](std::uint32_t row) { return CellNumber(row, sort_column_); }, descending);
  } else {
    SortByText(
        rows, [this](std::uint32_t row) { return CellText(row, sort_column_); }, descending);
  }
  return rows;
}

void RowModel::Reorder(std::vector<std::uint32_t> rows) {
  Q_EMIT layoutAboutToBeChanged();
  const QModelIndexList before = persistentIndexList();
  if (!before.isEmpty()) {
    std::vector<int> place(SourceRows(), -1);
    for (std::size_t i = 0; i < rows.size(); ++i) place[rows[i]] = static_cast<int>(i);
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex& index : before) {
      const int row = place[SourceRow(index)];
      after << (row < 0 ? QModelIndex() : createIndex(row, index.column()));
    }
    changePersistentIndexList(before, after);
  }
  shown_ = std::move(rows);
  Q_EMIT layoutChanged();
}

void RowModel::SetFilter(std::string_view text) {
  std::string folded = LowerCase(text);
  if (folded == filter_) return;
  // Rows come and go, which a change of layout alone does not tell; the views start anew.
  beginResetModel();
  filter_ = std::move(folded);
  shown_ = Arrange();
  endResetModel();
}

void RowModel::sort(int column, Qt::SortOrder order) {
  if (column >= columnCount()) return;
  if (column == sort_column_ && order == sort_order_) return;
  sort_column_ = column;
  sort_order_ = order;
  Reorder(Arrange());
}

void RowModel::ReplaceRows(bool same_rows, const std::function<void()>& replace) {
  if (!same_rows) {
    beginResetModel();
    shown_.clear();
    replace();
    shown_ = Arrange();
    endResetModel();
    return;
  }
  replace();
  std::vector<std::uint32_t> rows = Arrange();
  if (rows == shown_) {
    if (rows.empty()) return;
    Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
  } else if (rows.size() == shown_.size()) {
    Reorder(std::move(rows));
  } else {
    beginResetModel();
    shown_ = std::move(rows);
    endResetModel();
  }
}

}  // namespace quillmere
