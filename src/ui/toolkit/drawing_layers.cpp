// SPDX-License-Identifier: MIT
// A picture holds in its red, green and blue how much of each of three roles' colours there is at a
// point: what is drawn over each other mixes, and mixing is linear, so the sum over all roles is
// what the drawing itself would look like in these colours.
#include <QFile>
#include <QImage>
#include <QPainter>
#include <algorithm>

#include "ui/toolkit/drawing.h"

namespace quillmere {
namespace {

constexpr std::size_t kRolesOfALayer = 3;

QString FileOf(const QString& name, std::size_t layer) {
  return QStringLiteral(":/icons/%1-%2.png").arg(name).arg(layer);
}

QImage Layer(const QString& name, std::size_t layer, QSize size) {
  return QImage(FileOf(name, layer))
      .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
      .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

struct Mixed {
  double red = 0, green = 0, blue = 0;

  void Add(const QColor& colour, int amount) {
    const double much = amount;
    red += much * static_cast<double>(colour.redF());
    green += much * static_cast<double>(colour.greenF());
    blue += much * static_cast<double>(colour.blueF());
  }
  // Never more than the alpha, as a premultiplied picture must have it.
  QRgb With(int alpha) const {
    const auto part = [alpha](double value) { return std::min(qRound(value), alpha); };
    return qRgba(part(red), part(green), part(blue), alpha);
  }
};

QImage InColours(const QString& name, const DrawingColours& colours, QSize size) {
  std::array<QImage, (kDrawingRoles + kRolesOfALayer - 1) / kRolesOfALayer> layers;
  for (std::size_t i = 0; i < layers.size(); ++i) layers[i] = Layer(name, i, size);
  const auto colour = [&](std::size_t role) {
    return role < kDrawingRoles ? colours[role] : QColor(Qt::black);
  };
  QImage picture(size, QImage::Format_ARGB32_Premultiplied);
  for (int y = 0; y < size.height(); ++y) {
    for (int x = 0; x < size.width(); ++x) {
      Mixed mixed;
      for (std::size_t i = 0; i < layers.size(); ++i) {
        const QRgb much = reinterpret_cast<const QRgb*>(layers[i].constScanLine(y))[x];
        mixed.Add(colour(kRolesOfALayer * i), qRed(much));
        mixed.Add(colour(kRolesOfALayer * i + 1), qGreen(much));
        mixed.Add(colour(kRolesOfALayer * i + 2), qBlue(much));
      }
      const QRgb first = reinterpret_cast<const QRgb*>(layers[0].constScanLine(y))[x];
      reinterpret_cast<QRgb*>(picture.scanLine(y))[x] = mixed.With(qAlpha(first));
    }
  }
  return picture;
}

}  // namespace

bool IsDrawing(const QString& name) {
  return QFile::exists(FileOf(name, 0));
}

void PaintDrawing(QPainter& painter, const QString& name, const DrawingColours& colours,
                  const QRectF& place) {
  if (!IsDrawing(name)) return;
  const int side = std::max(1, qFloor(std::min(place.width(), place.height())));
  const QSize size(side, side);
  const QImage picture =
      name == QLatin1String(kOwnColours) ? Layer(name, 0, size) : InColours(name, colours, size);
  painter.drawImage(place.center() - QPointF(side, side) / 2, picture);
}

}  // namespace quillmere
