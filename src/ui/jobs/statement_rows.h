// SPDX-License-Identifier: MIT
// The statements of a preview as a list that makes a row when it is painted: 100,000 of them open
// at once. Texts are cut to what a cell shows.
#pragma once

#include <QAbstractTableModel>
#include <memory>

#include "preview/preview.h"

namespace quillmere {

// User-interface thread.
class StatementRows final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kNumber, kFate, kTable, kStatement, kWhy, kColumns };

  using QAbstractTableModel::QAbstractTableModel;

  // "OWNER.TABLE", or that it names none.
  static QString TableOf(std::string_view owner, std::string_view table);

  // Null: none. It is shared with nobody who changes it.
  void Show(std::shared_ptr<const Preview> preview);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  static QString FateName(PreviewEntry::Fate fate);
  const PreviewEntry& EntryAt(int row) const;
  QString TextOf(const PreviewEntry& entry, int row, int column) const;

  std::shared_ptr<const Preview> preview_;
  mutable PreviewEntry entry_;  // of entry_row_: a row is painted cell by cell
  mutable int entry_row_ = -1;
};

}  // namespace quillmere
