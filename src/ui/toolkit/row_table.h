// SPDX-License-Identifier: MIT
// The list view of all windows: rows of a RowModel with grid lines, whole rows selected, read-only,
// sorted by a click on a column's head. Ctrl+C copies the selected rows. User-interface thread.
#pragma once

#include <QTableView>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ui/toolkit/row_model.h"
#include "ui/toolkit/window_memory.h"

namespace quillmere {

// Of a list's rows. Selected ones are shown.
struct RowCounts {
  std::int64_t all = 0, shown = 0, selected = 0;
};

class RowTable : public QTableView {
  Q_OBJECT

 public:
  // memory must outlive it: it keeps the widths when another list is shown and at the end.
  explicit RowTable(WindowMemory& memory, QWidget* parent = nullptr);
  ~RowTable() override;

  // Shows another list. The model is not owned and must live until another one is shown, or the
  // table is gone. layout: the name under which its column widths are remembered. Extended
  // selection when several rows may be selected. The selection model is a new one with every other
  // list.
  void ShowRows(RowModel& model, const QString& layout, bool several);

  // What an empty list says: what to do next.
  void SetEmptyText(const QString& text) { empty_text_ = text; }

  // Source rows, in the order shown.
  std::vector<std::size_t> SelectedRows() const;

  RowCounts Counts() const;

 Q_SIGNALS:
  void CountsChanged();  // perhaps

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void FitHeader(const RowModel& model);
  void RememberWidths();
  std::vector<int> ShownSelection() const;  // model rows, ascending
  void CopySelection() const;

  WindowMemory& memory_;
  QString layout_;
  QString empty_text_;
};

}  // namespace quillmere
