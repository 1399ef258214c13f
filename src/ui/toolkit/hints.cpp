// SPDX-License-Identifier: MIT
#include "ui/toolkit/hints.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace quillmere {
namespace {

constexpr char kProperty[] = "hint";

QString HintOf(const QWidget* widget) {
  for (; widget != nullptr; widget = widget->parentWidget()) {
    const QVariant hint = widget->property(kProperty);
    if (hint.isValid()) return hint.toString();
    if (widget->isWindow()) break;
  }
  return {};
}

}  // namespace

void SetHint(QWidget* widget, const QString& text) {
  widget->setProperty(kProperty, text);
}

HintWatcher::HintWatcher(std::function<void(const QString&)> show, QObject* parent)
    : QObject(parent), show_(std::move(show)) {
  qApp->installEventFilter(this);
}

bool HintWatcher::eventFilter(QObject* watched, QEvent* event) {
  if (watched->isWidgetType() &&
      (event->type() == QEvent::Enter || event->type() == QEvent::Leave)) {
    const auto* widget = static_cast<QWidget*>(watched);
    show_(HintOf(event->type() == QEvent::Enter ? widget : widget->parentWidget()));
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace quillmere
