// SPDX-License-Identifier: MIT
#include "ui/toolkit/kept_place.h"

#include <QAction>
#include <QToolBar>
#include <QWidget>

namespace quillmere {
namespace {

// Behind the action: an empty widget that is shown while the action is not.
void AddPlaceOf(QToolBar& bar, QAction& action) {
  auto* blank = new QWidget;
  blank->setFocusPolicy(Qt::NoFocus);
  QAction* const place = bar.addWidget(blank);
  const auto follow = [&bar, &action, blank, place] {
    // The size anew each time: style and font may be others by now.
    if (const QWidget* button = bar.widgetForAction(&action)) {
      blank->setFixedSize(button->sizeHint());
    }
    place->setVisible(!action.isVisible());
  };
  QObject::connect(&action, &QAction::changed, place, follow);
  follow();
}

}  // namespace

QWidget* AddKeepingPlace(QToolBar& bar, QAction& action) {
  bar.addAction(&action);
  QWidget* const button = bar.widgetForAction(&action);
  AddPlaceOf(bar, action);
  return button;
}

QAction* AddSeparatorKeepingPlace(QToolBar& bar) {
  QAction* const separator = bar.addSeparator();
  AddPlaceOf(bar, *separator);
  return separator;
}

}  // namespace quillmere
