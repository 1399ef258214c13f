// SPDX-License-Identifier: MIT
#include "ui/toolkit/window_memory.h"

#include <QSettings>
#include <QSplitter>
#include <QWidget>

namespace quillmere {
namespace {

QString Named(const char* group, const QString& name) {
  return QLatin1String(group) + u'/' + name;
}

}  // namespace

WindowMemory::WindowMemory(const std::filesystem::path& working_folder)
    : file_(std::make_unique<QSettings>(
          QString::fromStdString((working_folder / "config" / "window.ini").string()),
          QSettings::IniFormat)) {}

WindowMemory::~WindowMemory() = default;

bool WindowMemory::RestoreGeometry(QWidget& window, const QString& name) const {
  return window.restoreGeometry(file_->value(Named("geometry", name)).toByteArray());
}

void WindowMemory::KeepGeometry(const QWidget& window, const QString& name) {
  file_->setValue(Named("geometry", name), window.saveGeometry());
}

bool WindowMemory::RestoreSplitter(QSplitter& splitter, const QString& name) const {
  return splitter.restoreState(file_->value(Named("splitter", name)).toByteArray());
}

void WindowMemory::KeepSplitter(const QSplitter& splitter, const QString& name) {
  file_->setValue(Named("splitter", name), splitter.saveState());
}

std::vector<int> WindowMemory::Widths(const QString& name, int columns) const {
  std::vector<int> widths;
  for (const QString& text : file_->value(Named("columns", name)).toStringList()) {
    const int width = text.toInt();
    if (width <= 0 || width > 10000) return {};
    widths.push_back(width);
  }
  return widths.size() == static_cast<std::size_t>(columns) ? widths : std::vector<int>();
}

void WindowMemory::KeepWidths(const QString& name, const std::vector<int>& widths) {
  QStringList texts;
  for (int width : widths) texts << QString::number(width);
  file_->setValue(Named("columns", name), texts);
}

QString WindowMemory::Text(const QString& name, const QString& otherwise) const {
  return file_->value(name, otherwise).toString();
}

void WindowMemory::KeepText(const QString& name, const QString& text) {
  file_->setValue(name, text);
}

}  // namespace quillmere
