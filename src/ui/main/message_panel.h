// SPDX-License-Identifier: MIT
// The message list with what is beside it: its filters, and how many errors nobody has looked at.
// User-interface thread.
#pragma once

#include <QWidget>
#include <filesystem>

#include "messages/message_log.h"

class QCheckBox;
class QLineEdit;
class QToolButton;

namespace quillmere {

class MessageView;

class MessagePanel final : public QWidget {
  Q_OBJECT

 public:
  // folder: where the log files lie.
  MessagePanel(MessageLog& log, const std::filesystem::path& folder, QWidget* parent);

  // "2 unread errors"; empty: none.
  QString UnreadWords() const;

 Q_SIGNALS:
  void UnreadChanged(const QString& words);
  void HelpAsked(const QString& message);

 private:
  QWidget* MakeSide();
  void Filter();
  void ShowUnread();
  void Look();

  MessageLog& log_;
  MessageView* view_ = nullptr;
  QLineEdit* filter_ = nullptr;
  QCheckBox* errors_only_ = nullptr;
  QToolButton* unread_ = nullptr;
  std::size_t told_ = 0;
};

}  // namespace quillmere
