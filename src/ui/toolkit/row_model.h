// SPDX-License-Identifier: MIT
// A list of many rows: text and number columns, sorted and filtered here and not by a proxy, so
// that 100,000 rows open at once. Forms derive one model per kind of list.
#pragma once

#include <QAbstractTableModel>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmere {

// Rows are numbered twice: as the derived class holds them (source rows) and as they are shown
// (model rows, after sorting and filtering). User-interface thread.
class RowModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum class Kind { Text, Number };

  struct Column {
    QString caption;
    int width = 100;  // pixels, at first
    Kind kind = Kind::Text;
    QString (*words)(std::int64_t number) = nullptr;  // what is shown instead of a number
  };

  explicit RowModel(std::vector<Column> columns, QObject* parent = nullptr);

  const std::vector<Column>& Columns() const { return columns_; }

  // The source row behind a shown one.
  std::size_t SourceRow(const QModelIndex& index) const;
  std::size_t SourceRow(int model_row) const { return shown_[static_cast<std::size_t>(model_row)]; }

  // Where a source row is shown; -1 when the filter hides it. Walks the rows.
  int ModelRowOf(std::size_t source_row) const;

  // Shows only rows with the text in one of their text columns, upper and lower case ASCII alike.
  // Empty: all rows.
  void SetFilter(std::string_view text);
  const std::string& Filter() const { return filter_; }
  std::size_t SourceRowCount() const { return SourceRows(); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

  int SortColumn() const { return sort_column_; }
  Qt::SortOrder SortDirection() const { return sort_order_; }

 protected:
  // What the derived class knows. Cells are asked for source rows; a text must live until the rows
  // are replaced. Asked on the user-interface thread only, while sorting and painting: nothing here
  // may block.
  virtual std::size_t SourceRows() const = 0;
  virtual std::string_view CellText(std::size_t row, int column) const = 0;
  virtual std::int64_t CellNumber(std::size_t row, int column) const;
  // Icons, tooltips, colours...: any role but the display and alignment roles.
  virtual QVariant CellExtra(std::size_t row, int column, int role) const;

  // `replace`, called once and at once, puts fresh rows in the place of the present ones.
  // same_rows: source rows stand for what they stood for before and only other cells may have
  // changed; selection and scroll position then stay.
  void ReplaceRows(bool same_rows, const std::function<void()>& replace);

 private:
  bool Matches(std::size_t row) const;
  std::vector<std::uint32_t> Arrange() const;
  void Reorder(std::vector<std::uint32_t> rows);

  const std::vector<Column> columns_;
  std::vector<std::uint32_t> shown_;  // source rows in the order shown
  std::string filter_;                // ASCII lower case
  int sort_column_ = 0;
  Qt::SortOrder sort_order_ = Qt::AscendingOrder;
};

}  // namespace quillmere
