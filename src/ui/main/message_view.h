// SPDX-License-Identifier: MIT
// The list of messages at the window's bottom: goes along with the newest one unless the operator
// has scrolled back to read.
#pragma once

#include <QTimer>
#include <QTreeView>
#include <filesystem>

#include "ui/main/message_list_model.h"

class QMenu;

namespace quillmere {

class MessageView final : public QTreeView {
  Q_OBJECT

 public:
  // folder: where the log files lie.
  MessageView(MessageLog& log, std::filesystem::path folder, QWidget* parent);

  MessageListModel& Model() { return model_; }

 Q_SIGNALS:
  void LookedAt();  // by an operator who came here or scrolls
  void HelpAsked(const QString& message);

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void MakeMenu();
  void CopySelection();
  void NoteNewest();

  MessageListModel model_;
  const std::filesystem::path folder_;
  QMenu* menu_ = nullptr;
  QAction* copy_ = nullptr;
  QAction* explain_ = nullptr;
  QTimer follow_;  // one scrolling for many messages
};

}  // namespace quillmere
