// SPDX-License-Identifier: MIT
// Draws a thin bar under a number: how much of a job's batch is done.
#pragma once

#include <QStyledItemDelegate>

namespace quillmere {

// role: of the model, thousandths done; a cell without that value is drawn as any other.
class BatchDelegate final : public QStyledItemDelegate {
 public:
  BatchDelegate(int role, QObject* parent) : QStyledItemDelegate(parent), role_(role) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

 private:
  const int role_;
};

}  // namespace quillmere
