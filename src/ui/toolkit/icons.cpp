// SPDX-License-Identifier: MIT
#include "ui/toolkit/icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <array>

#include "ui/toolkit/appearance.h"

namespace quillmere {
namespace {

// The drawings use these colours only, so that any viewer shows them as they are meant. Each
// stands for a role; app.svg has colours of its own and keeps them.
enum Role { kText, kAccent, kSuccess, kWarning, kFailure, kQuiet, kPaper, kRoles };
constexpr std::array<const char*, kRoles> kDrawn = {"#404040", "#1f6fb8", "#2e7d46", "#a86400",
                                                    "#c0342c", "#808080", "#ffffff"};
using Colours = std::array<QColor, kRoles>;

Colours ColoursFor(QIcon::Mode mode) {
  const QPalette palette = QGuiApplication::palette();
  Colours colours;
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

QByteArray Drawing(const QString& file, const Colours& colours) {
  QFile source(file);
  if (!source.open(QIODevice::ReadOnly)) return {};
  QByteArray drawing = source.readAll();
  if (file.endsWith(QLatin1String("/app.svg"))) return drawing;
  // Two rounds, because a colour put in could be one that is still to be replaced.
  for (std::size_t role = 0; role < kRoles; ++role) {
    drawing.replace(kDrawn[role], "{" + QByteArray::number(static_cast<int>(role)) + "}");
  }
  for (std::size_t role = 0; role < kRoles; ++role) {
    drawing.replace("{" + QByteArray::number(static_cast<int>(role)) + "}",
                    colours[role].name(QColor::HexRgb).toLatin1());
  }
  return drawing;
}

// Draws when asked, in the colours of that moment; Qt's pixmap cache keeps what was drawn.
class DrawnIcon final : public QIconEngine {
 public:
  // mark: drawn small over the corner; empty: none.
  DrawnIcon(QString file, QString mark) : file_(std::move(file)), mark_(std::move(mark)) {}

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) override {
    if (size.isEmpty()) return {};
    const Colours colours = ColoursFor(mode);
    QString key = QStringLiteral("%1 %2x%3 %4").arg(file_).arg(size.width()).arg(size.height());
    key = key.arg(mark_);
    for (const QColor& colour : colours)
      key += QLatin1Char(' ') + QString::number(colour.rgba(), 16);
    QPixmap picture;
    if (QPixmapCache::find(key, &picture)) return picture;
    picture = QPixmap(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    const QRectF whole(QPointF(0, 0), QSizeF(size));
    Draw(painter, file_, colours, whole);
    if (!mark_.isEmpty()) {
      constexpr qreal kFree = 0.4;  // of the picture, beside and above the mark
      const QRectF corner = whole.adjusted(kFree * whole.width(), kFree * whole.height(), 0, 0);
      painter.setCompositionMode(QPainter::CompositionMode_Clear);
      painter.fillRect(corner, Qt::transparent);
      painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
      Draw(painter, mark_, colours, corner);
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
  static void Draw(QPainter& painter, const QString& file, const Colours& colours,
                   const QRectF& place) {
    QSvgRenderer renderer(Drawing(file, colours));
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    renderer.render(&painter, place);
  }

  const QString file_, mark_;
};

QString FileOf(std::string_view name) {
  return QStringLiteral(":/icons/%1.svg")
      .arg(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
}

}  // namespace

QIcon Icon(std::string_view name) {
  return MarkedIcon(name, {});
}

QIcon MarkedIcon(std::string_view name, std::string_view mark) {
  const QString file = FileOf(name);
  if (!QFile::exists(file)) return {};
  return QIcon(new DrawnIcon(file, mark.empty() ? QString() : FileOf(mark)));
}

}  // namespace quillmere
