// SPDX-License-Identifier: MIT
// The program's light and dark palettes, and the changes a skin makes to them. Internal to the
// toolkit. User-interface thread.
#pragma once

#include <QColor>
#include <QPalette>
#include <QString>
#include <optional>

namespace quillmere {

// The few colours from which a palette is made.
struct Colours {
  QColor window;     // behind everything
  QColor base;       // lists and fields
  QColor alternate;  // every other row
  QColor text;
  QColor button;
  QColor border;
  QColor accent;  // selection, default button
  QColor link;    // accent that is readable on base
  QColor disabled;
  QColor placeholder;
  QColor tip;
  QColor tip_text;
};

QColor Mixed(const QColor& one, const QColor& other, double share_of_other);

Colours LightColours();
Colours DarkColours();
QPalette PaletteOf(const Colours& colours);

// What the comment at the beginning of a skin asks for; see appearance.h. Empty: no such comment.
// False: a line that makes no sense; the reason names it.
struct SkinPalette {
  std::optional<bool> dark;
  std::optional<QColor> window, base, alternate, text, button, border, accent, link;
};
bool ReadSkinPalette(const QString& style_sheet, SkinPalette& palette, QString& reason);
void Apply(const SkinPalette& palette, Colours& colours);

}  // namespace quillmere
