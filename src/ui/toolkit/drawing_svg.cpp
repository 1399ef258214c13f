// SPDX-License-Identifier: MIT
#include <QFile>
#include <QSvgRenderer>

#include "ui/toolkit/drawing.h"

namespace quillmere {
namespace {

// What stands in the drawings for each role.
constexpr std::array<const char*, kDrawingRoles> kDrawn = {
    "#404040", "#1f6fb8", "#2e7d46", "#a86400", "#c0342c", "#808080", "#ffffff"};

QString FileOf(const QString& name) {
  return QStringLiteral(":/icons/%1.svg").arg(name);
}

QByteArray InColours(const QString& name, const DrawingColours& colours) {
  QFile source(FileOf(name));
  if (!source.open(QIODevice::ReadOnly)) return {};
  QByteArray drawing = source.readAll();
  if (name == QLatin1String(kOwnColours)) return drawing;
  // Two rounds, because a colour put in could be one that is still to be replaced.
  for (std::size_t role = 0; role < kDrawingRoles; ++role) {
    drawing.replace(kDrawn[role], "{" + QByteArray::number(static_cast<int>(role)) + "}");
  }
  for (std::size_t role = 0; role < kDrawingRoles; ++role) {
    drawing.replace("{" + QByteArray::number(static_cast<int>(role)) + "}",
                    colours[role].name(QColor::HexRgb).toLatin1());
  }
  return drawing;
}

}  // namespace

bool IsDrawing(const QString& name) {
  return QFile::exists(FileOf(name));
}

void PaintDrawing(QPainter& painter, const QString& name, const DrawingColours& colours,
                  const QRectF& place) {
  QSvgRenderer renderer(InColours(name, colours));
  renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  renderer.render(&painter, place);
}

}  // namespace quillmere
