// SPDX-License-Identifier: MIT
// The message log as a list. User-interface thread.
#pragma once

#include <QAbstractListModel>
#include <QElapsedTimer>
#include <QTimer>
#include <cstddef>

#include "messages/message_log.h"

namespace quillmere {

// Listens to the log while it lives; one model a log. A message that comes right behind another is
// shown a moment later, together with those that follow: views paint for each showing.
class MessageListModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  explicit MessageListModel(MessageLog& log, QObject* parent = nullptr);
  ~MessageListModel() override;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

  // The whole message, with its line ends.
  QString FullText(int row) const;

 private:
  void OnLogChanged(bool cleared);
  void ShowAll();

  MessageLog& log_;
  int rows_ = 0;  // of the log's entries, how many the views know
  QElapsedTimer shown_;
  QTimer show_;
};

}  // namespace quillmere
