// SPDX-License-Identifier: MIT
// A list that holds its rows and shows them by a table of columns: each line of the table says what
// heads a column, how wide it is at first and which part of a row it shows. Texts stand left,
// numbers right.
#pragma once

#include <functional>
#include <utility>

#include "ui/toolkit/row_model.h"

namespace quillmere {

// Base: RowModel, or what the lists of one window have in common above it.
template <typename Row, typename Base = RowModel>
class RowList : public Base {
 public:
  // Icon, tool tip, colour...: any role but those of the text itself; nothing for the others.
  using Extra = QVariant (*)(const Row& row, int role);

  struct ListColumn {
    RowModel::Column head;
    std::string_view (*text)(const Row& row);  // of a text column; lives as long as the row
    std::int64_t (*number)(const Row& row);    // of a number column
    Extra extra;
  };

  // Get: a pointer to a member of Row, or a function of it.
  template <auto Get>
  static ListColumn Text(const QString& caption, int width, Extra extra = nullptr) {
    return {{caption, width, RowModel::Kind::Text},
            [](const Row& row) -> std::string_view { return std::invoke(Get, row); },
            nullptr,
            extra};
  }
  template <auto Get>
  static ListColumn Number(const QString& caption, int width, Extra extra = nullptr,
                           QString (*words)(std::int64_t) = nullptr) {
    return {{caption, width, RowModel::Kind::Number, words},
            nullptr,
            [](const Row& row) -> std::int64_t { return std::invoke(Get, row); },
            extra};
  }

  explicit RowList(std::vector<ListColumn> columns, QObject* parent = nullptr)
      : Base(HeadsOf(columns), parent), columns_(std::move(columns)) {}

  // The row behind a source row; until it is replaced.
  const Row& RowAt(std::size_t source_row) const { return rows_[source_row]; }

 protected:
  const std::vector<Row>& Rows() const { return rows_; }

  // same_rows: as RowModel::ReplaceRows. along: replaces what the rows point into.
  void Take(
      std::vector<Row> rows, bool same_rows, const std::function<void()>& along = [] {}) {
    this->ReplaceRows(same_rows, [&] {
      rows_ = std::move(rows);
      along();
    });
  }

 private:
  static std::vector<RowModel::Column> HeadsOf(const std::vector<ListColumn>& columns) {
    std::vector<RowModel::Column> heads;
    heads.reserve(columns.size());
    for (const ListColumn& column : columns) heads.push_back(column.head);
    return heads;
  }
  const ListColumn& At(int column) const { return columns_[static_cast<std::size_t>(column)]; }

  std::size_t SourceRows() const final { return rows_.size(); }
  std::string_view CellText(std::size_t row, int column) const final {
    return At(column).text(rows_[row]);
  }
  std::int64_t CellNumber(std::size_t row, int column) const final {
    return At(column).number(rows_[row]);
  }
  QVariant CellExtra(std::size_t row, int column, int role) const final {
    const Extra extra = At(column).extra;
    return extra == nullptr ? QVariant() : extra(rows_[row], role);
  }

  const std::vector<ListColumn> columns_;
  std::vector<Row> rows_;
};

}  // namespace quillmere
