// SPDX-License-Identifier: MIT
// Fusion with flat faces: fewer lines, a little more room. All colours come from the palette.
// Internal to the toolkit.
#pragma once

#include <QProxyStyle>

namespace quillmere {

class FlatStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  FlatStyle();

  // For QApplication::setStyle, which owns it then.
  static QStyle* Make();

  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override;
  QIcon standardIcon(StandardPixmap standard, const QStyleOption* option,
                     const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override;
  QRect subElementRect(SubElement element, const QStyleOption* option,
                       const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
};

}  // namespace quillmere
