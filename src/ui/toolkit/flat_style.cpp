// SPDX-License-Identifier: MIT
#include "ui/toolkit/flat_style.h"

#include <QPainter>
#include <QPalette>
#include <QStyleFactory>
#include <QStyleOption>
#include <QWidget>

#include "ui/toolkit/colours.h"
#include "ui/toolkit/flat_faces.h"
#include "ui/toolkit/icons.h"

namespace quillmere {
namespace {

constexpr int kShortestHandle = 28;
constexpr int kTextMargin = 4;

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

QStyle* FlatStyle::Make() {
  return new FlatStyle;
}

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
    case CT_MenuItem:
      whole.rheight() += 2;
      break;
    case CT_ItemViewItem:
      whole.rheight() += 6;
      break;
    default:
      break;
  }
  return whole;
}

QRect FlatStyle::subElementRect(SubElement element, const QStyleOption* option,
                                const QWidget* widget) const {
  QRect rect = QProxyStyle::subElementRect(element, option, widget);
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
  if (element == SE_LineEditContents && frame != nullptr && frame->lineWidth > 0) {
    rect.adjust(kTextMargin, 0, -kTextMargin, 0);
  }
  return rect;
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
      return DrawFace(painter, option->rect, option->palette.color(QPalette::Base),
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
  const auto* box = qstyleoption_cast<const QStyleOptionSpinBox*>(option);
  if (control == CC_SpinBox && box != nullptr && box->frame) {
    return DrawSpinBox(box, subControlRect(control, option, SC_SpinBoxUp, widget),
                       subControlRect(control, option, SC_SpinBoxDown, widget), painter);
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

}  // namespace quillmere
