#include "ui/toolkit/appearance.h"

#include <QApplication>
#include <QFile>
#include <QPalette>

namespace quillmere {
namespace {

const QString kSchemeName = QStringLiteral("look/scheme");
const QString kSkinName = QStringLiteral("look/skin");

bool IsDark() {
  return QApplication::palette().color(QPalette::Window).lightness() <
         QApplication::palette().color(QPalette::WindowText).lightness();
}

}  // namespace

void Appearance::Restore(std::string& problem) {
  scheme_ = static_cast<Scheme>(memory_.Text(kSchemeName, QStringLiteral("0")).toInt());
  const QString skin = memory_.Text(kSkinName);
  if (!skin.isEmpty() && !LoadSkin(skin.toStdString(), problem)) return;
  Apply();
}

void Appearance::SetScheme(Scheme scheme) {
  scheme_ = scheme;
  memory_.KeepText(kSchemeName, QString::number(static_cast<int>(scheme)));
  Apply();
}

bool Appearance::LoadSkin(const std::filesystem::path& file, std::string& reason) {
  QFile skin(QString::fromStdString(file.string()));
  if (!skin.open(QIODevice::ReadOnly)) {
    reason = "Can not open the skin " + file.string() + ": " + skin.errorString().toStdString();
    return false;
  }
  style_sheet_ = QString::fromUtf8(skin.readAll());
  skin_file_ = skin.fileName();
  memory_.KeepText(kSkinName, skin_file_);
  Apply();
  return true;
}

void Appearance::RemoveSkin() {
  style_sheet_.clear();
  skin_file_.clear();
  memory_.KeepText(kSkinName, {});
  Apply();
}

void Appearance::Apply() {
  qApp->setStyleSheet(style_sheet_);
}

QColor SuccessColor() {
  return IsDark() ? QColor(0x6f, 0xcf, 0x97) : QColor(0x1e, 0x7d, 0x45);
}
QColor WarningColor() {
  return IsDark() ? QColor(0xf2, 0xc1, 0x4e) : QColor(0x9a, 0x62, 0x00);
}
QColor FailureColor() {
  return IsDark() ? QColor(0xff, 0x7b, 0x72) : QColor(0xb4, 0x23, 0x18);
}
QColor QuietColor() {
  return IsDark() ? QColor(0x9a, 0xa4, 0xb2) : QColor(0x5d, 0x67, 0x75);
}

}  // namespace quillmere
