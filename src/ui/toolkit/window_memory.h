// SPDX-License-Identifier: MIT
// Remembers how the operator arranged the windows: config/window.ini in the working folder. Losing
// it loses nothing else: a file that cannot be read is as good as none, and one that cannot be
// written is not told. User-interface thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <filesystem>
#include <memory>
#include <vector>

class QHeaderView;
class QSettings;
class QSplitter;
class QWidget;

namespace quillmere {

class WindowMemory {
 public:
  explicit WindowMemory(const std::filesystem::path& working_folder);
  ~WindowMemory();

  // Position and size of a window, from its constructor; kept again at its end by KeepGeometry.
  // False: nothing is remembered and the window is as it was.
  bool RestoreGeometry(QWidget& window, const QString& name) const;
  void KeepGeometry(const QWidget& window, const QString& name);

  bool RestoreSplitter(QSplitter& splitter, const QString& name) const;
  void KeepSplitter(const QSplitter& splitter, const QString& name);

  // Pixels, one a column; empty when another number of columns is remembered.
  std::vector<int> Widths(const QString& name, int columns) const;
  void KeepWidths(const QString& name, const std::vector<int>& widths);

  QString Text(const QString& name, const QString& otherwise = {}) const;
  void KeepText(const QString& name, const QString& text);

 private:
  std::unique_ptr<QSettings> file_;
};

}  // namespace quillmere
