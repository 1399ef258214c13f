// SPDX-License-Identifier: MIT
// The size that the operator gave a dialog. Its place is not kept: dialogs open over their window.
// User-interface thread.
#pragma once

class QDialog;
class QString;

namespace quillmere {

class WindowMemory;

// From the dialog's constructor, when all is laid out: the size of the last time, else the given
// one (pixels).
void RestoreSize(QDialog& dialog, const WindowMemory& memory, const QString& name, int width,
                 int height);
// From its destructor, under the same name.
void KeepSize(const QDialog& dialog, WindowMemory& memory, const QString& name);

}  // namespace quillmere
