// SPDX-License-Identifier: MIT
#include "ui/main/banner.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>

#include "ui/toolkit/appearance.h"
#include "ui/toolkit/icons.h"

namespace quillmere {
namespace {

constexpr int kSign = 32;
constexpr int kButtonIcon = 24;
constexpr qreal kTitleScale = 1.3;

QLabel* Title(QWidget* parent) {
  auto* title = new QLabel(QStringLiteral("Quillmere"), parent);
  QFont font = title->font();
  font.setBold(true);
  font.setPointSizeF(font.pointSizeF() * kTitleScale);
  title->setFont(font);
  return title;
}

}  // namespace

Banner::Banner(const QString& caption, QWidget* parent) : QFrame(parent) {
  setObjectName(QStringLiteral("Panel2"));
  setFixedHeight(kHeight);
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::Base);

  auto* sign = new QLabel(this);
  sign->setObjectName(QStringLiteral("Image1"));
  sign->setPixmap(Icon("app").pixmap(QSize(kSign, kSign), devicePixelRatioF()));
  auto* what = new QLabel(caption, this);
  what->setTextFormat(Qt::PlainText);
  what->setForegroundRole(QPalette::PlaceholderText);
  what->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  what->setToolTip(caption.toHtmlEscaped());

  options_ = new QToolButton(this);
  options_->setObjectName(QStringLiteral("Image3"));
  options_->setToolTip(tr("control  options"));
  options_->setAccessibleName(tr("Options"));
  options_->setIcon(Icon("options"));
  options_->setIconSize(QSize(kButtonIcon, kButtonIcon));
  options_->setAutoRaise(true);
  options_->setPopupMode(QToolButton::InstantPopup);

  auto* text = new QVBoxLayout;
  text->setSpacing(0);
  text->addStretch();
  text->addWidget(Title(this));
  text->addWidget(what);
  text->addStretch();
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kMargin, 0, kSpacing, 0);
  row->setSpacing(kSpacing);
  row->addWidget(sign);
  row->addLayout(text, 1);
  row->addWidget(options_);
}

void Banner::SetMenu(QMenu* menu) {
  options_->setMenu(menu);
}

}  // namespace quillmere
