// SPDX-License-Identifier: MIT
#include "ui/toolkit/appearance.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPalette>
#include <QStringDecoder>
#include <QVariant>
#include <QWidget>
#include <atomic>

#include "foundation/files.h"
#include "ui/toolkit/colours.h"
#include "ui/toolkit/flat_style.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr std::uint64_t kLargestSkin = 1 << 20;
const QString kSchemeName = QStringLiteral("look/scheme");
const QString kSkinName = QStringLiteral("look/skin");

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() <
         palette.color(QPalette::WindowText).lightness();
}

// What the desktop asks for. Qt 6.4 tells it by the palette alone, so it is asked once, before a
// palette of ours stands in its place; the application remembers it for later callers.
bool AskSystemIsDark() {
  static constexpr char kRemembered[] = "quillmere_system_is_dark";
  const QVariant remembered = qApp->property(kRemembered);
  if (remembered.isValid()) return remembered.toBool();
  const bool dark = IsDark(QApplication::palette());
  qApp->setProperty(kRemembered, dark);
  return dark;
}

// Qt says only in a warning that it could not read a style sheet.
std::atomic<bool> sheet_was_refused = false;  // warnings come from any thread

void NoticeRefusal(QtMsgType /*type*/, const QMessageLogContext& /*where*/, const QString& text) {
  if (text.contains(QLatin1String("Could not parse"))) sheet_was_refused = true;
}

bool Understood(const QString& sheet) {
  sheet_was_refused = false;
  const QtMessageHandler before = qInstallMessageHandler(NoticeRefusal);
  QWidget probe;
  probe.setStyleSheet(sheet);
  probe.ensurePolished();
  qInstallMessageHandler(before);
  return !sheet_was_refused;
}

bool ReadSheet(FileSystem& files, const std::filesystem::path& file, QString& sheet,
               QString& reason) {
  FileFacts facts;
  std::string bytes;
  FileStatus status = files.Look(file, facts);
  const bool too_large = facts.size > kLargestSkin;
  if (status && !too_large) status = ReadFile(files, file, bytes, Links::Followed);
  if (!status) {
    reason = QString::fromStdString(status.reason);
    return false;
  }
  if (too_large) {
    reason = QStringLiteral("it is too large for a style sheet");
    return false;
  }
  QStringDecoder decoder(QStringDecoder::Utf8);
  sheet = decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
  if (decoder.hasError() || sheet.contains(QChar(0))) {
    reason = QStringLiteral("it is no text");
    return false;
  }
  SkinPalette palette;
  if (!ReadSkinPalette(sheet, palette, reason)) return false;
  if (sheet.trimmed().isEmpty() || !Understood(sheet)) {
    reason = QStringLiteral("it is no Qt style sheet");
    return false;
  }
  return true;
}

QColor ByScheme(const char* light, const char* dark) {
  return QColor(QLatin1String(IsDark(QApplication::palette()) ? dark : light));
}

}  // namespace

Appearance::Appearance(FileSystem& files, WindowMemory& memory)
    : files_(files), memory_(memory), system_is_dark_(AskSystemIsDark()) {}

void Appearance::Restore(std::string& problem) {
  problem.clear();
  const QString scheme = memory_.Text(kSchemeName);
  scheme_ = scheme == QLatin1String("dark")    ? Scheme::Dark
            : scheme == QLatin1String("light") ? Scheme::Light
                                               : Scheme::System;
  const QString skin = memory_.Text(kSkinName);
  if (!skin.isEmpty() && LoadSkin(skin.toStdU16String(), problem)) return;
  Apply();
}

void Appearance::SetScheme(Scheme scheme) {
  scheme_ = scheme;
  memory_.KeepText(kSchemeName, scheme == Scheme::Dark    ? QStringLiteral("dark")
                                : scheme == Scheme::Light ? QStringLiteral("light")
                                                          : QStringLiteral("system"));
  Apply();
}

bool Appearance::LoadSkin(const std::filesystem::path& file, std::string& reason) {
  const QString name = QString::fromStdU16String(file.u16string());
  QString sheet;
  QString why;
  if (!ReadSheet(files_, file, sheet, why)) {
    reason = "The skin " + ToBytes(name) + " was not loaded: " + ToBytes(why);
    return false;
  }
  skin_file_ = name;
  style_sheet_ = sheet;
  memory_.KeepText(kSkinName, skin_file_);
  Apply();
  return true;
}

void Appearance::RemoveSkin() {
  skin_file_.clear();
  style_sheet_.clear();
  memory_.KeepText(kSkinName, {});
  Apply();
}

void Appearance::Apply() {
  SkinPalette skin;
  QString reason;
  ReadSkinPalette(style_sheet_, skin, reason);
  const bool dark =
      skin.dark.value_or(scheme_ == Scheme::Dark || (scheme_ == Scheme::System && system_is_dark_));
  Colours colours = dark ? DarkColours() : LightColours();
  quillmere::Apply(skin, colours);
  if (skin_file_.isEmpty()) {
    QDir::setSearchPaths(QStringLiteral("skin"), {});
  } else {
    QDir::setSearchPaths(QStringLiteral("skin"), {QFileInfo(skin_file_).absolutePath()});
  }
  if (qApp->styleSheet() != style_sheet_) qApp->setStyleSheet({});
  QApplication::setStyle(FlatStyle::Make());
  QApplication::setPalette(PaletteOf(colours));
  if (qApp->styleSheet() != style_sheet_) qApp->setStyleSheet(style_sheet_);
}

QColor SuccessColor() {
  return ByScheme("#2e7d46", "#5fc27e");
}
QColor WarningColor() {
  return ByScheme("#9a5c00", "#e0a33c");
}
QColor FailureColor() {
  return ByScheme("#c0342c", "#ff7b72");
}
QColor QuietColor() {
  return ByScheme("#626d78", "#95a1ad");
}

}  // namespace quillmere
