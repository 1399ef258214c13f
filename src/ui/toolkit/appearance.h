// SPDX-License-Identifier: MIT
// How the program looks: light or dark, and the skin, a Qt style sheet. The choice is remembered.
// User-interface thread.
//
// A skin may say in a comment at its very beginning on which colours it builds, one a line:
//   /* palette
//      scheme: light        light or dark; the operator's choice rests while the skin is on
//      accent: #c4532d      also window, base, alternate, text, button, border, link
//   */
// Pictures beside the skin are named url(skin:picture.png).
#pragma once

#include <QColor>
#include <QString>
#include <filesystem>
#include <string>

#include "foundation/file_system.h"
#include "ui/toolkit/window_memory.h"

namespace quillmere {

class Appearance {
 public:
  enum class Scheme { System, Light, Dark };

  // One a program, before any window is made: it sets style, palette and style sheet of the
  // application. Both must outlive it.
  Appearance(FileSystem& files, WindowMemory& memory);

  // Applies what was chosen last time. A skin that is gone is left out and said in `problem`.
  void Restore(std::string& problem);

  Scheme ChosenScheme() const { return scheme_; }
  void SetScheme(Scheme scheme);  // applied and remembered at once, like a skin

  // Applies a style sheet file; false: the reason, and the look is as before.
  bool LoadSkin(const std::filesystem::path& file, std::string& reason);
  void RemoveSkin();
  const QString& SkinFile() const { return skin_file_; }  // empty: none

 private:
  void Apply();

  FileSystem& files_;
  WindowMemory& memory_;
  Scheme scheme_ = Scheme::System;
  bool system_is_dark_ = false;
  QString skin_file_;
  QString style_sheet_;
};

// Colours with a meaning, readable on the palette's base colour in light and dark.
QColor SuccessColor();
QColor WarningColor();
QColor FailureColor();
QColor QuietColor();

// Measures in pixels that all windows share.
inline constexpr int kSpacing = 8;
inline constexpr int kMargin = 12;

}  // namespace quillmere
