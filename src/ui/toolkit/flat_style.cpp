#include "ui/toolkit/flat_style.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QStyleFactory>
#include <QStyleOption>
#include <QWidget>

#include "ui/toolkit/colours.h"
#include "ui/toolkit/icons.h"

namespace quillmere {
namespace {

constexpr qreal kRadius = 5;
constexpr int kShortestHandle = 28;

QRectF Inside(const QRect& rect) {
  return QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
}

void Face(QPainter* painter, const QRect& rect, const QColor& fill, const QColor& line) {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(line.isValid() ? QPen(line) : QPen(Qt::NoPen));
  painter->setBrush(fill);
  painter->drawRoundedRect(Inside(rect), kRadius, kRadius);
  painter->restore();
}

// Buttons grow a little stronger under the mouse and stronger still when pressed.
QColor Pressed(const QStyleOption* option, const QColor& colour) {
  const QColor text = option->palette.color(QPalette::ButtonText);
  if (option->state & (QStyle::State_Sunken | QStyle::State_On)) return Mixed(colour, text, 0.14);
  if (option->state & QStyle::State_MouseOver) return Mixed(colour, text, 0.06);
  return colour;
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
    Face(painter, option->rect, Pressed(option, accent), Mixed(accent, Qt::black, 0.15));
  } else {
    const bool enabled = option->state & QStyle::State_Enabled;
    const QColor border = palette.color(QPalette::Mid);
    const QColor button = palette.color(QPalette::Button);
    Face(painter, option->rect, Pressed(option, button),
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
  Face(painter, option->rect, fill, QColor());
}

QColor FieldBorder(const QStyleOption* option) {
  const QPalette& palette = option->palette;
  if (!(option->state & QStyle::State_Enabled)) return palette.color(QPalette::Mid);
  if (option->state & QStyle::State_HasFocus) {
    return palette.color(QPalette::Active, QPalette::Highlight);
  }
  return palette.color(QPalette::Dark);
}

void DrawField(const QStyleOption* option, QPainter* painter) {
  const QColor base = option->palette.color(QPalette::Base);
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
  if (frame != nullptr && frame->lineWidth == 0) {
    painter->fillRect(option->rect, base);
  } else {
    Face(painter, option->rect, base, FieldBorder(option));
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

QRect ScrollHandle(const QStyleOptionSlider* bar) {
  const bool lying = bar->orientation == Qt::Horizontal;
  const int room = lying ? bar->rect.width() : bar->rect.height();
  const qint64 range = qint64{bar->maximum} - bar->minimum;
  int length = room;
  if (range > 0) {
    length = static_cast<int>(qint64{room} * bar->pageStep / (range + bar->pageStep));
    length = qBound(qMin(kShortestHandle, room), length, room);
  }
  const int at = QStyle::sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition,
                                                 room - length, bar->upsideDown);
  const QRect handle =
      lying ? QRect(at, 0, length, bar->rect.height()) : QRect(0, at, bar->rect.width(), length);
  return handle.translated(bar->rect.topLeft());
}

}  // namespace

FlatStyle::FlatStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

int FlatStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
  switch (metric) {
    case PM_LayoutLeftMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutBottomMargin:
      return 12;
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
      return 8;
    case PM_HeaderMargin:
      return 6;
    case PM_TabBarTabHSpace:
      return 32;
    case PM_TabBarTabVSpace:
      return 14;
    case PM_ToolBarItemSpacing:
      return 2;
    case PM_ToolBarItemMargin:
      return 4;
    case PM_ToolBarFrameWidth:
      return 0;
    case PM_ScrollBarExtent:
      return 14;
    case PM_SplitterWidth:
      return 6;
    case PM_TabBarBaseOverlap:
    case PM_TabBarTabShiftVertical:
      return 0;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int FlatStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* result) const {
  switch (hint) {
    case SH_EtchDisabledText:
    case SH_DialogButtonBox_ButtonsHaveIcons:
      return 0;
    case SH_Table_GridLineColor:
      if (option == nullptr) break;
      return static_cast<int>(
          Mixed(option->palette.color(QPalette::Base), option->palette.color(QPalette::Mid), 0.45)
              .rgba());
    default:
      break;
  }
  return QProxyStyle::styleHint(hint, option, widget, result);
}

QIcon FlatStyle::standardIcon(StandardPixmap standard, const QStyleOption* option,
                              const QWidget* widget) const {
  switch (standard) {
    case SP_MessageBoxInformation:
      return Icon("information");
    case SP_MessageBoxWarning:
      return Icon("warning");
    case SP_MessageBoxCritical:
      return Icon("error");
    case SP_MessageBoxQuestion:
      return Icon("help");
    default:
      return QProxyStyle::standardIcon(standard, option, widget);
  }
}

QSize FlatStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                  const QWidget* widget) const {
  QSize whole = QProxyStyle::sizeFromContents(type, option, size, widget);
  switch (type) {
    case CT_PushButton:
      whole.setWidth(qMax(whole.width() + 8, 88));
      whole.rheight() += 2;
      break;
    case CT_ToolButton:
      whole += QSize(4, 2);
      break;
    case CT_LineEdit:
    case CT_ComboBox:
    case CT_SpinBox:
    case CT_ItemViewItem:
    case CT_MenuItem:
      whole.rheight() += 2;
      break;
    default:
      break;
  }
  return whole;
}

QRect FlatStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                SubControl part, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control != CC_ScrollBar || bar == nullptr) {
    return QProxyStyle::subControlRect(control, option, part, widget);
  }
  // No arrows: the handle has the whole length.
  const QRect handle = ScrollHandle(bar);
  QRect rect = bar->rect;
  const bool lying = bar->orientation == Qt::Horizontal;
  switch (part) {
    case SC_ScrollBarSlider:
      rect = handle;
      break;
    case SC_ScrollBarGroove:
      break;
    case SC_ScrollBarSubPage:
      if (lying) {
        rect.setRight(handle.left() - 1);
      } else {
        rect.setBottom(handle.top() - 1);
      }
      break;
    case SC_ScrollBarAddPage:
      if (lying) {
        rect.setLeft(handle.right() + 1);
      } else {
        rect.setTop(handle.bottom() + 1);
      }
      break;
    default:
      return {};
  }
  return visualRect(bar->direction, bar->rect, rect);
}

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
  switch (element) {
    case PE_PanelButtonCommand:
      return DrawButton(option, painter);
    case PE_PanelButtonTool:
      return DrawToolButton(option, painter);
    case PE_PanelLineEdit:
      return DrawField(option, painter);
    case PE_FrameLineEdit:
      return;  // drawn with the panel
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
      return DrawCheck(option, painter, false);
    case PE_IndicatorRadioButton:
      return DrawCheck(option, painter, true);
    case PE_FrameTabWidget:
      return painter->fillRect(option->rect, option->palette.color(QPalette::Window));
    case PE_FrameTabBarBase:
    case PE_FrameStatusBarItem:
      return;
    default:
      return QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void FlatStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  switch (element) {
    case CE_HeaderSection:
      return DrawHeaderSection(option, painter);
    case CE_HeaderEmptyArea:
      painter->fillRect(option->rect, option->palette.color(QPalette::Window));
      painter->setPen(option->palette.color(QPalette::Mid));
      painter->drawLine(option->rect.bottomLeft(), option->rect.bottomRight());
      return;
    case CE_ToolBar:
      painter->fillRect(option->rect, option->palette.color(QPalette::Window));
      return;
    case CE_TabBarTabShape:
      if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option)) {
        return DrawTab(tab, painter);
      }
      break;
    case CE_PushButtonLabel:
      if (IsDefault(option)) {
        QStyleOptionButton label = *qstyleoption_cast<const QStyleOptionButton*>(option);
        label.palette.setColor(QPalette::ButtonText,
                               label.palette.color(QPalette::Active, QPalette::HighlightedText));
        return QProxyStyle::drawControl(element, &label, painter, widget);
      }
      break;
    case CE_MenuItem:
      if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
          item != nullptr && (item->state & State_Selected) && !item->icon.isNull()) {
        // Qt asks for the icon of a chosen entry as for any other: it would vanish on the accent.
        QStyleOptionMenuItem chosen = *item;
        const int side = pixelMetric(PM_SmallIconSize, option, widget);
        chosen.icon = QIcon(item->icon.pixmap(
            QSize(side, side), painter->device()->devicePixelRatioF(), QIcon::Selected));
        return QProxyStyle::drawControl(element, &chosen, painter, widget);
      }
      break;
    case CE_ProgressBarGroove:
      return Face(painter, option->rect, option->palette.color(QPalette::Base),
                  option->palette.color(QPalette::Mid));
    case CE_ProgressBarContents:
      if (const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
          bar != nullptr && bar->maximum > bar->minimum) {
        return DrawProgress(bar, painter);
      }
      break;
    case CE_Splitter:
      return;
    default:
      break;
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

void FlatStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_ScrollBar && bar != nullptr) {
    return DrawScrollBar(bar, subControlRect(control, option, SC_ScrollBarSlider, widget), painter);
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

}  // namespace quillmere
