// SPDX-License-Identifier: MIT
#include "ui/jobs/batch_delegate.h"

#include <QPainter>
#include <QStyle>

#include "ui/toolkit/appearance.h"

namespace quillmere {
namespace {

constexpr int kThickness = 3;
constexpr int kWhole = 1000;
constexpr qreal kGrooveOpacity = 0.25;

}  // namespace

void BatchDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  const QVariant done = index.data(role_);
  if (!done.isValid()) return;
  const QRect groove(option.rect.left() + kSpacing / 2, option.rect.bottom() - kThickness,
                     option.rect.width() - kSpacing, kThickness);
  QRect bar = groove;
  bar.setWidth(groove.width() * done.toInt() / kWhole);
  const bool selected = (option.state & QStyle::State_Selected) != 0;
  const QColor color =
      option.palette.color(selected ? QPalette::HighlightedText : QPalette::Highlight);
  painter->save();
  painter->setOpacity(kGrooveOpacity);
  painter->fillRect(groove, color);
  painter->setOpacity(1);
  painter->fillRect(QStyle::visualRect(option.direction, groove, bar), color);
  painter->restore();
}

}  // namespace quillmere
