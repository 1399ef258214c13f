// SPDX-License-Identifier: MIT
// The drawings behind the icons, those of ui/icons/. They use one colour for each role, so that any
// viewer shows them as they are meant; here each role gets the colour of the moment.
// drawing_svg.cpp draws them as they are; drawing_layers.cpp, for builds without Qt's SVG, from
// pictures that packaging/icon_layers.py makes of them. User-interface thread.
#pragma once

#include <QColor>
#include <QRectF>
#include <QString>
#include <array>

class QPainter;

namespace quillmere {

enum DrawingRole { kText, kAccent, kSuccess, kWarning, kFailure, kQuiet, kPaper, kDrawingRoles };
using DrawingColours = std::array<QColor, kDrawingRoles>;

// The program's own has colours of its own and keeps them.
inline constexpr char kOwnColours[] = "app";

bool IsDrawing(const QString& name);

// As large as fits into the place, in its middle. Nothing for an unknown name.
void PaintDrawing(QPainter& painter, const QString& name, const DrawingColours& colours,
                  const QRectF& place);

}  // namespace quillmere
