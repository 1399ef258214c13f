// SPDX-License-Identifier: MIT
#include "ui/toolkit/dialog_size.h"

#include <QDialog>

#include "ui/toolkit/window_memory.h"

namespace quillmere {
namespace {

QString Named(const QString& name) {
  return QStringLiteral("size/") + name;
}

}  // namespace

void RestoreSize(QDialog& dialog, const WindowMemory& memory, const QString& name, int width,
                 int height) {
  const QStringList kept = memory.Text(Named(name)).split(u'x');
  const QSize size(kept.value(0).toInt(), kept.value(1).toInt());
  dialog.resize(size.isEmpty() ? QSize(width, height) : size);
}

void KeepSize(const QDialog& dialog, WindowMemory& memory, const QString& name) {
  memory.KeepText(Named(name), QStringLiteral("%1x%2").arg(dialog.width()).arg(dialog.height()));
}

}  // namespace quillmere
