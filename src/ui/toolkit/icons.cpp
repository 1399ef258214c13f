// SPDX-License-Identifier: MIT
#include "ui/toolkit/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>

#include "ui/toolkit/appearance.h"
#include "ui/toolkit/drawing.h"

namespace quillmere {
namespace {

DrawingColours ColoursFor(QIcon::Mode mode) {
  const QPalette palette = QGuiApplication::palette();
  DrawingColours colours;
  if (mode == QIcon::Disabled || mode == QIcon::Selected) {
    const bool selected = mode == QIcon::Selected;
    colours.fill(selected ? palette.color(QPalette::Active, QPalette::HighlightedText)
                          : palette.color(QPalette::Disabled, QPalette::Text));
    colours[kPaper] = selected ? palette.color(QPalette::Active, QPalette::Highlight)
                               : palette.color(QPalette::Active, QPalette::Base);
    return colours;
  }
  return {palette.color(QPalette::Active, QPalette::Text),
          palette.color(QPalette::Active, QPalette::Link),
          SuccessColor(),
          WarningColor(),
          FailureColor(),
          QuietColor(),
          palette.color(QPalette::Active, QPalette::Base)};
}

// Draws when asked, in the colours of that moment; Qt's pixmap cache keeps what was drawn.
class DrawnIcon final : public QIconEngine {
 public:
  // mark: drawn small over the corner; empty: none.
  DrawnIcon(QString name, QString mark) : name_(std::move(name)), mark_(std::move(mark)) {}

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) override {
    if (size.isEmpty()) return {};
    const DrawingColours colours = ColoursFor(mode);
    QString key = QStringLiteral("%1 %2x%3 %4").arg(name_).arg(size.width()).arg(size.height());
    key = key.arg(mark_);
    for (const QColor& colour : colours)
      key += QLatin1Char(' ') + QString::number(colour.rgba(), 16);
    QPixmap picture;
    if (QPixmapCache::find(key, &picture)) return picture;
    picture = QPixmap(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    const QRectF whole(QPointF(0, 0), QSizeF(size));
    PaintDrawing(painter, name_, colours, whole);
    if (!mark_.isEmpty()) {
      constexpr qreal kFree = 0.4;  // of the picture, beside and above the mark
      const QRectF corner = whole.adjusted(kFree * whole.width(), kFree * whole.height(), 0, 0);
      painter.setCompositionMode(QPainter::CompositionMode_Clear);
      painter.fillRect(corner, Qt::transparent);
      painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
      PaintDrawing(painter, mark_, colours, corner);
    }
    painter.end();
    QPixmapCache::insert(key, picture);
    return picture;
  }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const qreal ratio = painter->device()->devicePixelRatioF();
    QPixmap picture = pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state);
    picture.setDevicePixelRatio(ratio);
    painter->drawPixmap(rect.topLeft(), picture);
  }

  QString key() const override { return QStringLiteral("quillmere"); }
  QIconEngine* clone() const override { return new DrawnIcon(*this); }

 private:
  const QString name_, mark_;
};

QString AsText(std::string_view name) {
  return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

}  // namespace

QIcon Icon(std::string_view name) {
  return MarkedIcon(name, {});
}

QIcon MarkedIcon(std::string_view name, std::string_view mark) {
  if (!IsDrawing(AsText(name))) return {};
  return QIcon(new DrawnIcon(AsText(name), AsText(mark)));
}

}  // namespace quillmere
