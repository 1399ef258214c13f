// SPDX-License-Identifier: MIT
#include "gallery/studio.h"

#include <QApplication>
#include <QCloseEvent>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>
#include <QTextStream>
#include <QTimer>
#include <QWidget>

namespace quillmere {
namespace {

constexpr int kTitle = 30;
constexpr int kRadius = 8;
constexpr int kRounds = 5;

// Nothing of the desktop's that would make one day's pictures differ from the next's.
QImage Framed(const QPixmap& window, const QString& title) {
  const QSize inside = window.deviceIndependentSize().toSize();
  const QSize size(inside.width() + 2, inside.height() + kTitle + 2);
  QImage picture(size * window.devicePixelRatio(), QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(window.devicePixelRatio());
  picture.fill(Qt::transparent);
  const QPalette palette = QApplication::palette();
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath outline;
  outline.addRoundedRect(QRectF(QPointF(0, 0), size).adjusted(0.5, 0.5, -0.5, -0.5), kRadius,
                         kRadius);
  painter.fillPath(outline, palette.color(QPalette::Midlight));
  painter.save();
  painter.setClipPath(outline);
  painter.drawPixmap(1, kTitle + 1, window);
  painter.restore();
  painter.setPen(palette.color(QPalette::Dark));
  painter.drawPath(outline);
  painter.setPen(palette.color(QPalette::WindowText));
  QFont bold = QApplication::font();
  bold.setBold(true);
  painter.setFont(bold);
  const QRect bar(kTitle, 0, size.width() - 2 * kTitle, kTitle);
  painter.drawText(bar, Qt::AlignCenter,
                   painter.fontMetrics().elidedText(title, Qt::ElideRight, bar.width()));
  const QRectF cross(size.width() - kTitle + 9.5, 10.5, 9, 9);
  painter.setPen(QPen(palette.color(QPalette::WindowText), 1.5));
  painter.drawLine(cross.topLeft(), cross.bottomRight());
  painter.drawLine(cross.topRight(), cross.bottomLeft());
  return picture;
}

}  // namespace

void Settle() {
  for (int round = 0; round < kRounds; ++round) {
    QCoreApplication::sendPostedEvents(nullptr, 0);
    QCoreApplication::processEvents();
  }
}

void Studio::Take(QWidget& window, const QString& name) {
  if (!window.isVisible()) window.show();
  Settle();
  const bool bare = window.windowFlags().testFlag(Qt::FramelessWindowHint) ||
                    window.windowType() == Qt::Popup || window.windowType() == Qt::SplashScreen;
  const QPixmap grabbed = window.grab();
  Save(bare ? grabbed.toImage() : Framed(grabbed, window.windowTitle()), name);
}

void Studio::TakePart(QWidget& part, const QString& name) {
  Settle();
  Save(part.grab().toImage(), name);
}

void Studio::TakeModal(const QString& name, const std::function<void()>& open,
                       const std::function<void(QWidget&)>& arrange) {
  bool seen = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
    QWidget* const dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || !dialog->isVisible() || seen) return;
    seen = true;
    arrange(*dialog);
    Take(*dialog, name);
    dialog->close();
  });
  timer.start(0);
  open();
  if (seen) return;
  QTextStream(stderr) << "No dialog came for " << name << '\n';
  failed_ = true;
}

void Studio::Save(const QImage& picture, const QString& name) {
  const QString file = folder_.filePath(name + suffix_ + QStringLiteral(".png"));
  constexpr int kSmallest = 0;  // the quality of a PNG is how little it is compressed
  if (picture.save(file, "PNG", kSmallest)) {
    ++taken_;
    return;
  }
  QTextStream(stderr) << "Can not write " << file << '\n';
  failed_ = true;
}

}  // namespace quillmere
