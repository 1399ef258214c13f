// SPDX-License-Identifier: MIT
#include "ui/toolkit/flat_faces.h"

#include <QAbstractSpinBox>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QTabBar>
#include <tuple>

#include "ui/toolkit/colours.h"

namespace quillmere {
namespace {

constexpr qreal kRadius = 5;

QRectF Inside(const QRect& rect) {
  return QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
}

// Buttons grow a little stronger under the mouse and stronger still when pressed.
QColor Pressed(const QStyleOption* option, const QColor& colour) {
  const QColor text = option->palette.color(QPalette::ButtonText);
  if (option->state & (QStyle::State_Sunken | QStyle::State_On)) return Mixed(colour, text, 0.14);
  if (option->state & QStyle::State_MouseOver) return Mixed(colour, text, 0.06);
  return colour;
}

QColor FieldBorder(const QStyleOption* option) {
  const QPalette& palette = option->palette;
  if (!(option->state & QStyle::State_Enabled)) return palette.color(QPalette::Mid);
  if (option->state & QStyle::State_HasFocus) {
    return palette.color(QPalette::Active, QPalette::Highlight);
  }
  return palette.color(QPalette::Dark);
}

void DrawArrow(const QRect& part, bool up, const QColor& colour, QPainter* painter) {
  const QPointF middle = QRectF(part).center();
  const qreal rise = up ? -1.5 : 1.5;
  painter->setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter->drawPolyline(QPolygonF(
      {middle + QPointF(-3, -rise), middle + QPointF(0, rise), middle + QPointF(3, -rise)}));
}

}  // namespace

void DrawFace(QPainter* painter, const QRect& rect, const QColor& fill, const QColor& line) {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(line.isValid() ? QPen(line) : QPen(Qt::NoPen));
  painter->setBrush(fill);
  painter->drawRoundedRect(Inside(rect), kRadius, kRadius);
  painter->restore();
}

bool IsDefault(const QStyleOption* option) {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
  return button != nullptr && (button->features & QStyleOptionButton::DefaultButton) &&
         (option->state & QStyle::State_Enabled);
}

void DrawButton(const QStyleOption* option, QPainter* painter) {
  const QPalette& palette = option->palette;
  if (IsDefault(option)) {
    const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
    DrawFace(painter, option->rect, Pressed(option, accent), Mixed(accent, Qt::black, 0.15));
  } else {
    const bool enabled = option->state & QStyle::State_Enabled;
    const QColor border = palette.color(QPalette::Mid);
    const QColor button = palette.color(QPalette::Button);
    DrawFace(painter, option->rect, Pressed(option, button),
             enabled ? border : Mixed(border, palette.color(QPalette::Window), 0.4));
  }
}

void DrawToolButton(const QStyleOption* option, QPainter* painter) {
  if (!(option->state & QStyle::State_Enabled)) return;
  if (!(option->state & (QStyle::State_Sunken | QStyle::State_On | QStyle::State_MouseOver))) {
    return;
  }
  QColor fill = option->palette.color(QPalette::WindowText);
  fill.setAlphaF((option->state & (QStyle::State_Sunken | QStyle::State_On)) ? 0.16F : 0.08F);
  DrawFace(painter, option->rect, fill, QColor());
}

void DrawField(const QStyleOption* option, QPainter* painter) {
  const QColor base = option->palette.color(QPalette::Base);
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
  if (frame != nullptr && frame->lineWidth == 0) {
    painter->fillRect(option->rect, base);
  } else {
    DrawFace(painter, option->rect, base, FieldBorder(option));
  }
}

void DrawCheck(const QStyleOption* option, QPainter* painter, bool round) {
  const QPalette& palette = option->palette;
  const bool set = option->state & (QStyle::State_On | QStyle::State_NoChange);
  const bool enabled = option->state & QStyle::State_Enabled;
  const QColor accent =
      palette.color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::Highlight);
  const int side = qMin(option->rect.width(), option->rect.height());
  QRect square(0, 0, side, side);
  square.moveCenter(option->rect.center());
  const QRectF box = Inside(square);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(set ? accent : FieldBorder(option));
  painter->setBrush(set ? accent : Pressed(option, palette.color(QPalette::Base)));
  const qreal radius = round ? box.width() / 2 : 3;
  painter->drawRoundedRect(box, radius, radius);
  const QColor mark = palette.color(QPalette::Active, QPalette::HighlightedText);
  const auto at = [&box](qreal x, qreal y) {
    return box.topLeft() + QPointF(x * box.width(), y * box.height());
  };
  if (round && set) {
    painter->setPen(Qt::NoPen);
    painter->setBrush(mark);
    painter->drawEllipse(box.center(), box.width() * 0.21, box.height() * 0.21);
  } else if (set) {
    painter->setPen(QPen(mark, box.width() * 0.15, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->setBrush(Qt::NoBrush);
    if (option->state & QStyle::State_NoChange) {
      painter->drawLine(at(0.27, 0.5), at(0.73, 0.5));
    } else {
      painter->drawPolyline(QPolygonF({at(0.23, 0.52), at(0.43, 0.72), at(0.78, 0.3)}));
    }
  }
  painter->restore();
}

void DrawSpinBox(const QStyleOptionSpinBox* box, const QRect& up, const QRect& down,
                 QPainter* painter) {
  const QPalette& palette = box->palette;
  DrawFace(painter, box->rect, palette.color(QPalette::Base), FieldBorder(box));
  if (box->buttonSymbols == QAbstractSpinBox::NoButtons) return;
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const bool enabled = box->state & QStyle::State_Enabled;
  for (const auto& [part, at, step] :
       {std::tuple{QStyle::SC_SpinBoxUp, up, QAbstractSpinBox::StepUpEnabled},
        std::tuple{QStyle::SC_SpinBoxDown, down, QAbstractSpinBox::StepDownEnabled}}) {
    const bool works = enabled && (box->stepEnabled & step);
    if (works && (box->activeSubControls & part)) {
      painter->fillRect(QRectF(at).adjusted(0, 0, -1, 0),
                        Mixed(palette.color(QPalette::Base), palette.color(QPalette::Text),
                              (box->state & QStyle::State_Sunken) ? 0.2 : 0.1));
    }
    DrawArrow(at, part == QStyle::SC_SpinBoxUp,
              palette.color(works ? QPalette::Active : QPalette::Disabled, QPalette::Text),
              painter);
  }
  painter->restore();
}

void DrawHeaderSection(const QStyleOption* option, QPainter* painter) {
  const QPalette& palette = option->palette;
  const QRect& rect = option->rect;
  painter->fillRect(rect, Pressed(option, palette.color(QPalette::Window)));
  painter->setPen(palette.color(QPalette::Mid));
  painter->drawLine(rect.bottomLeft(), rect.bottomRight());
  const auto* section = qstyleoption_cast<const QStyleOptionHeader*>(option);
  if (section != nullptr && section->orientation == Qt::Horizontal) {
    painter->drawLine(rect.right(), rect.top() + 4, rect.right(), rect.bottom() - 4);
  }
}

// The chosen tab has the colour of the page and a line of the accent at its outer edge.
void DrawTab(const QStyleOptionTab* tab, QPainter* painter) {
  const QPalette& palette = tab->palette;
  const bool chosen = tab->state & QStyle::State_Selected;
  const bool below = tab->shape == QTabBar::RoundedSouth || tab->shape == QTabBar::TriangularSouth;
  QColor fill = palette.color(QPalette::Window);
  if (chosen) {
    fill = palette.color(QPalette::Base);
  } else if (tab->state & QStyle::State_MouseOver) {
    fill = Mixed(fill, palette.color(QPalette::WindowText), 0.06);
  }
  painter->fillRect(tab->rect, fill);
  painter->setPen(palette.color(QPalette::Mid));
  painter->drawLine(tab->rect.topRight(), tab->rect.bottomRight());
  if (!chosen) return;
  QRect line = tab->rect;
  if (below) {
    line.setTop(line.bottom() - 2);
  } else {
    line.setBottom(line.top() + 2);
  }
  painter->fillRect(line, palette.color(QPalette::Active, QPalette::Highlight));
}

void DrawProgress(const QStyleOptionProgressBar* bar, QPainter* painter) {
  const qint64 span = qint64{bar->maximum} - bar->minimum;
  if (span <= 0) return;
  QRect done = bar->rect;
  done.setWidth(
      static_cast<int>(qint64{bar->rect.width()} * (bar->progress - bar->minimum) / span));
  if (done.width() < 2) return;
  QPainterPath shape;
  shape.addRoundedRect(Inside(bar->rect), kRadius, kRadius);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setClipRect(done);
  painter->fillPath(shape, bar->palette.color(QPalette::Active, QPalette::Highlight));
  painter->restore();
}

void DrawScrollBar(const QStyleOptionSlider* bar, const QRect& handle, QPainter* painter) {
  const QPalette& palette = bar->palette;
  painter->fillRect(bar->rect, palette.color(QPalette::Window));
  if (!(bar->state & QStyle::State_Enabled) || bar->maximum <= bar->minimum) return;
  const bool active = bar->activeSubControls & QStyle::SC_ScrollBarSlider;
  QColor colour = palette.color(QPalette::WindowText);
  colour.setAlphaF(active && (bar->state & QStyle::State_Sunken) ? 0.55F : active ? 0.42F : 0.28F);
  const QRectF shape = QRectF(handle).adjusted(3, 3, -3, -3);
  const qreal radius = qMin(shape.width(), shape.height()) / 2;
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(colour);
  painter->drawRoundedRect(shape, radius, radius);
  painter->restore();
}

}  // namespace quillmere
