// SPDX-License-Identifier: MIT
#include "ui/main_dialogs/splash.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

#include "foundation/version.h"
#include "ui/toolkit/appearance.h"
#include "ui/toolkit/icons.h"

namespace quillmere {
namespace {

constexpr int kIconSize = 72;
constexpr int kWidth = 420;
constexpr double kNameSize = 2.2;  // of the font's size

}  // namespace

Splash::Splash() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint), step_(new QLabel) {
  setObjectName(QStringLiteral("Splash"));
  setFixedWidth(kWidth);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(3 * kMargin, 3 * kMargin, 3 * kMargin, 3 * kMargin);
  layout->setSpacing(2 * kMargin);
  auto* picture = new QLabel;
  picture->setPixmap(Icon("app").pixmap(kIconSize));
  layout->addWidget(picture);
  auto* words = new QVBoxLayout;
  words->setSpacing(kSpacing);
  auto* name = new QLabel(QCoreApplication::applicationName());
  QFont font = name->font();
  font.setPointSizeF(font.pointSizeF() * kNameSize);
  font.setBold(true);
  name->setFont(font);
  words->addWidget(name);
  auto* version = new QLabel(tr("Version %1").arg(QLatin1String(ProgramVersion())));
  version->setForegroundRole(QPalette::PlaceholderText);
  words->addWidget(version);
  step_->setTextFormat(Qt::PlainText);
  words->addWidget(step_);
  layout->addLayout(words, 1);
}

void Splash::Tell(const QString& step) {
  step_->setText(step);
  if (!isVisible()) {
    adjustSize();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    move(screen.center() - rect().center());
    show();
  }
  // Once to be put on screen, once to be painted; what comes later is not waited for.
  for (int turn = 0; turn < 2; ++turn) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  }
  repaint();
}

}  // namespace quillmere
