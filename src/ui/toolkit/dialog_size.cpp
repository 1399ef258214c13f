// SPDX-License-Identifier: MIT
#include "ui/toolkit/dialog_size.h"

#include <QDialog>

#include "ui/toolkit/window_memory.h"

namespace quillmere {

void RestoreSize(QDialog& dialog, const WindowMemory& memory, const QString& name, int width,
                 int height) {
  if (!memory.RestoreGeometry(dialog, name)) dialog.resize(width, height);
  dialog.setAttribute(Qt::WA_Moved, false);  // so that showing it centres it
}

}  // namespace quillmere
