// SPDX-License-Identifier: MIT
#include "ui/main/message_list_model.h"

#include "ui/toolkit/appearance.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kTogetherMs = 40;

}  // namespace

MessageListModel::MessageListModel(MessageLog& log, QObject* parent)
    : QAbstractListModel(parent), log_(log), rows_(static_cast<int>(log.Entries().size())) {
  show_.setSingleShot(true);
  connect(&show_, &QTimer::timeout, this, &MessageListModel::ShowAll);
  log_.SetListener([this](bool cleared) { OnLogChanged(cleared); });
}

MessageListModel::~MessageListModel() {
  log_.SetListener({});
}

int MessageListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

QString MessageListModel::FullText(int row) const {
  return ToQt(log_.Entries()[static_cast<std::size_t>(row)].text);
}

QVariant MessageListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const MessageLog::Entry& entry = log_.Entries()[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
      return OneLine(entry.text);
    case Qt::ToolTipRole:
      // As text: a message may hold what looks like mark-up.
      return ToQt(entry.text).toHtmlEscaped().replace(u'\n', QStringLiteral("<br>"));
    case Qt::DecorationRole:
      return Icon(entry.error ? "error" : "information");
    case Qt::AccessibleTextRole:
      return QString((entry.error ? QStringLiteral("Error: ") : QString()) + OneLine(entry.text));
    default:
      return {};
  }
}

void MessageListModel::OnLogChanged(bool cleared) {
  if (cleared) {
    beginResetModel();
    rows_ = static_cast<int>(log_.Entries().size());
    endResetModel();
  } else if (!shown_.isValid() || shown_.hasExpired(kTogetherMs)) {
    ShowAll();
  } else if (!show_.isActive()) {
    show_.start(kTogetherMs);
  }
}

void MessageListModel::ShowAll() {
  shown_.start();
  const int rows = static_cast<int>(log_.Entries().size());
  if (rows == rows_) return;
  beginInsertRows({}, rows_, rows - 1);
  rows_ = rows;
  endInsertRows();
}

}  // namespace quillmere
