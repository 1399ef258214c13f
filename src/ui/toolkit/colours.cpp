// SPDX-License-Identifier: MIT
#include "ui/toolkit/colours.h"

#include <QStringList>
#include <cmath>

namespace quillmere {
QColor Mixed(const QColor& one, const QColor& other, double share_of_other) {
  const auto mix = [share_of_other](int a, int b) {
    return static_cast<int>(std::lround(a + (b - a) * share_of_other));
  };
  return QColor(mix(one.red(), other.red()), mix(one.green(), other.green()),
                mix(one.blue(), other.blue()));
}

Colours LightColours() {
  return {.window = "#f2f4f6",
          .base = "#ffffff",
          .alternate = "#f6f8fa",
          .text = "#1d2730",
          .button = "#fbfcfd",
          .border = "#c5ccd3",
          .accent = "#1f6fb8",
          .link = "#1f6fb8",
          .disabled = "#7f8a94",
          .placeholder = "#626d78",
          .tip = "#27323c",
          .tip_text = "#f4f6f8"};
}

Colours DarkColours() {
  return {.window = "#20262c",
          .base = "#181d22",
          .alternate = "#1c2228",
          .text = "#e2e7ec",
          .button = "#2c343c",
          .border = "#434d57",
          .accent = "#2b72b5",
          .link = "#6db3f2",
          .disabled = "#7a8691",
          .placeholder = "#8f9ba7",
          .tip = "#36414c",
          .tip_text = "#f0f3f6"};
}

QPalette PaletteOf(const Colours& colours) {
  QPalette palette(colours.button, colours.window);
  const auto set = [&palette](QPalette::ColorRole role, const QColor& colour) {
    palette.setColor(QPalette::All, role, colour);
  };
  set(QPalette::WindowText, colours.text);
  set(QPalette::Text, colours.text);
  set(QPalette::ButtonText, colours.text);
  set(QPalette::BrightText, Qt::white);
  set(QPalette::Window, colours.window);
  set(QPalette::Base, colours.base);
  set(QPalette::AlternateBase, colours.alternate);
  set(QPalette::Button, colours.button);
  set(QPalette::Light, Mixed(colours.button, Qt::white, 0.4));
  set(QPalette::Midlight, Mixed(colours.window, colours.border, 0.3));
  set(QPalette::Mid, colours.border);
  set(QPalette::Dark, Mixed(colours.border, colours.text, 0.25));
  set(QPalette::Shadow, Mixed(colours.window, Qt::black, 0.7));
  set(QPalette::Highlight, colours.accent);
  set(QPalette::HighlightedText, Qt::white);
  set(QPalette::Link, colours.link);
  set(QPalette::LinkVisited, colours.link);
  set(QPalette::ToolTipBase, colours.tip);
  set(QPalette::ToolTipText, colours.tip_text);
  set(QPalette::PlaceholderText, colours.placeholder);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                          QPalette::PlaceholderText, QPalette::Link}) {
    palette.setColor(QPalette::Disabled, role, colours.disabled);
  }
  palette.setColor(QPalette::Disabled, QPalette::Base, Mixed(colours.base, colours.window, 0.6));
  palette.setColor(QPalette::Disabled, QPalette::Highlight, colours.disabled);
  // A selection in a list without the focus stays readable, but steps back.
  palette.setColor(QPalette::Inactive, QPalette::Highlight, Mixed(colours.accent, "#5f6b77", 0.45));
  return palette;
}

bool ReadSkinPalette(const QString& style_sheet, SkinPalette& palette, QString& reason) {
  const QString sheet = style_sheet.trimmed();
  const qsizetype end = sheet.indexOf(QLatin1String("*/"));
  if (!sheet.startsWith(QLatin1String("/*")) || end < 0) return true;
  const QStringList lines = sheet.mid(2, end - 2).split(QLatin1Char('\n'));
  if (lines.front().trimmed() != QLatin1String("palette")) return true;
  const struct {
    QLatin1String name;
    std::optional<QColor>& colour;
  } colours[] = {
      {QLatin1String("window"), palette.window},       {QLatin1String("base"), palette.base},
      {QLatin1String("alternate"), palette.alternate}, {QLatin1String("text"), palette.text},
      {QLatin1String("button"), palette.button},       {QLatin1String("border"), palette.border},
      {QLatin1String("accent"), palette.accent},       {QLatin1String("link"), palette.link}};
  for (const QString& line : lines.mid(1)) {
    if (line.trimmed().isEmpty()) continue;
    const QString name = line.section(QLatin1Char(':'), 0, 0).trimmed();
    const QString value = line.section(QLatin1Char(':'), 1).trimmed();
    bool understood = false;
    if (name == QLatin1String("scheme")) {
      understood = value == QLatin1String("dark") || value == QLatin1String("light");
      palette.dark = value == QLatin1String("dark");
    }
    for (const auto& [known, colour] : colours) {
      if (name != known || !QColor::isValidColor(value)) continue;
      colour = QColor(value);
      understood = true;
    }
    if (!understood) {
      reason = QStringLiteral("its palette has a line that is not understood: ") + line.trimmed();
      return false;
    }
  }
  return true;
}

void Apply(const SkinPalette& palette, Colours& colours) {
  const auto set = [](const std::optional<QColor>& from, QColor& to) {
    if (from) to = *from;
  };
  set(palette.window, colours.window);
  set(palette.base, colours.base);
  set(palette.alternate, colours.alternate);
  set(palette.text, colours.text);
  set(palette.button, colours.button);
  set(palette.border, colours.border);
  set(palette.accent, colours.accent);
  set(palette.accent, colours.link);
  set(palette.link, colours.link);
  if (!palette.text) return;
  colours.disabled = Mixed(colours.text, colours.window, 0.5);
  colours.placeholder = Mixed(colours.text, colours.base, 0.4);
}

}  // namespace quillmere
