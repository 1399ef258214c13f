// SPDX-License-Identifier: MIT
// The message log as a list: the line, the job it is about, its kind. User-interface thread.
#pragma once

#include <QAbstractTableModel>
#include <QElapsedTimer>
#include <QTimer>
#include <cstddef>
#include <string>
#include <vector>

#include "messages/message_log.h"

namespace quillmere {

// Listens to the log while it lives; one model a log. A message that comes right behind another is
// shown a moment later, together with those that follow: views paint for each showing.
class MessageListModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kLine, kJob, kKind, kColumns };

  explicit MessageListModel(MessageLog& log, QObject* parent = nullptr);
  ~MessageListModel() override;

  // Errors only, and lines or jobs with that text, whatever the case of its ASCII letters. A
  // filtered list shows lines that say the same once, the latest, with their number.
  void SetFilter(bool errors_only, const std::string& text);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

  // The whole message, with its line ends.
  QString FullText(int row) const;

  MessageLog& Log() { return log_; }

 Q_SIGNALS:
  void LogShown();  // of the log's lines, the views know all

 private:
  struct Group {
    std::size_t entry = 0;  // the latest
    int times = 0;
    bool operator==(const Group&) const = default;
  };

  bool Filtered() const { return errors_only_ || !filter_.empty(); }
  const MessageEntry& EntryAt(int row) const;
  QString LineText(int row) const;
  QString Tip(const MessageEntry& entry) const;
  void OnLogChanged(bool cleared);
  void ShowAll();
  std::vector<Group> Grouped() const;
  void ShowGroups();
  void Reset();

  MessageLog& log_;
  bool errors_only_ = false;
  std::string filter_;         // ASCII lower case
  std::vector<Group> groups_;  // while it is filtered
  int rows_ = 0;               // that the views know
  QElapsedTimer shown_;
  QTimer show_;
};

}  // namespace quillmere
