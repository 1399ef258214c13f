// SPDX-License-Identifier: MIT
#include "ui/toolkit/menu_entry.h"

#include <QAction>
#include <QMenu>

namespace quillmere {
namespace {

// The shortcut as a text: set on two actions it would lead to neither.
QString WithShortcut(const QString& caption, const QAction& action) {
  const QString keys = action.shortcut().toString(QKeySequence::NativeText);
  return keys.isEmpty() ? caption : caption + u'\t' + keys;
}

}  // namespace

QAction* AddEntry(QMenu& menu, const char* name, QAction& action, const QString& caption) {
  const QString text = caption.isEmpty() ? action.text() : caption;
  auto* entry = new QAction(action.icon(), WithShortcut(text, action), &menu);
  entry->setObjectName(QLatin1StringView(name));
  const auto follow = [entry, &action] {
    entry->setVisible(action.isVisible());
    entry->setEnabled(action.isEnabled());
  };
  QObject::connect(&action, &QAction::changed, entry, follow);
  QObject::connect(entry, &QAction::triggered, &action, &QAction::trigger);
  follow();
  menu.addAction(entry);
  return entry;
}

}  // namespace quillmere
