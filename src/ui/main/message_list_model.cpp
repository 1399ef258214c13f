// SPDX-License-Identifier: MIT
#include "ui/main/message_list_model.h"

#include <QGuiApplication>
#include <algorithm>
#include <unordered_map>

#include "foundation/text.h"
#include "ui/toolkit/appearance.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/row_order.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kTogetherMs = 40;
constexpr std::size_t kStamp = sizeof("20260131 23:59:07 ") - 1;

// Readable; empty when the line does not begin with a stamp.
QString ReadableStamp(const std::string& line) {
  if (line.size() < kStamp || line[8] != ' ') return {};
  return Dated(line.substr(0, 4) + "-" + line.substr(4, 2) + "-" + line.substr(6, 2) + " " +
               line.substr(9, 8));
}

QString KindText(const MessageEntry& entry) {
  return entry.error ? MessageListModel::tr("error") : MessageListModel::tr("information");
}

}  // namespace

MessageListModel::MessageListModel(MessageLog& log, QObject* parent)
    : QAbstractTableModel(parent), log_(log), rows_(static_cast<int>(log.Entries().size())) {
  show_.setSingleShot(true);
  connect(&show_, &QTimer::timeout, this, &MessageListModel::ShowAll);
  log_.SetListener([this](bool cleared) { OnLogChanged(cleared); });
}

MessageListModel::~MessageListModel() {
  log_.SetListener({});
}

void MessageListModel::SetFilter(bool errors_only, const std::string& text) {
  const std::string folded = LowerCase(text);
  if (errors_only == errors_only_ && folded == filter_) return;
  errors_only_ = errors_only;
  filter_ = folded;
  Reset();
}

int MessageListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int MessageListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

const MessageEntry& MessageListModel::EntryAt(int row) const {
  const auto i = static_cast<std::size_t>(row);
  return log_.Entries()[Filtered() ? groups_[i].entry : i];
}

QString MessageListModel::FullText(int row) const {
  return ToQt(EntryAt(row).text);
}

QString MessageListModel::LineText(int row) const {
  QString text = OneLine(EntryAt(row).text);
  // English in any language: its time would end up behind it.
  if (QGuiApplication::isRightToLeft()) text = QChar(0x2066) + text + QChar(0x2069);
  const int times = Filtered() ? groups_[static_cast<std::size_t>(row)].times : 1;
  return times == 1 ? text : tr("%1  (%2 times)").arg(text, quillmere::Grouped(times));
}

QString MessageListModel::Tip(const MessageEntry& entry) const {
  // As text: a message may hold what looks like mark-up.
  QString head = ReadableStamp(entry.text) + QStringLiteral(", ") + KindText(entry);
  if (!entry.job.empty()) head = tr("%1, job %2").arg(head, OneLine(entry.job));
  return (head + u'\n' + ToQt(entry.text)).toHtmlEscaped().replace(u'\n', QStringLiteral("<br>"));
}

QVariant MessageListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const MessageEntry& entry = EntryAt(index.row());
  if (role == Qt::ToolTipRole) return Tip(entry);
  if (index.column() != kLine) {
    if (role != Qt::DisplayRole) return {};
    return index.column() == kJob ? OneLine(entry.job) : KindText(entry);
  }
  switch (role) {
    case Qt::DisplayRole:
      return LineText(index.row());
    case Qt::DecorationRole:
      return Icon(entry.error ? "error" : "information");
    case Qt::AccessibleTextRole:
      return entry.error ? tr("Error: %1").arg(LineText(index.row())) : LineText(index.row());
    default:
      return {};
  }
}

void MessageListModel::OnLogChanged(bool cleared) {
  if (cleared) {
    Reset();
  } else if (!shown_.isValid() || shown_.hasExpired(kTogetherMs)) {
    ShowAll();
  } else if (!show_.isActive()) {
    show_.start(kTogetherMs);
  }
}

void MessageListModel::Reset() {
  beginResetModel();
  groups_ = Grouped();
  rows_ = static_cast<int>(Filtered() ? groups_.size() : log_.Entries().size());
  endResetModel();
  Q_EMIT LogShown();
}

void MessageListModel::ShowAll() {
  shown_.start();
  if (Filtered()) {
    ShowGroups();
  } else if (const int rows = static_cast<int>(log_.Entries().size()); rows != rows_) {
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
  }
  Q_EMIT LogShown();
}

// Without the time at its beginning, a repeated line is the same.
std::vector<MessageListModel::Group> MessageListModel::Grouped() const {
  std::vector<Group> groups;
  if (!Filtered()) return groups;
  std::unordered_map<std::string, std::size_t> places;
  const auto& entries = log_.Entries();
  for (std::size_t i = entries.size(); i-- > 0;) {
    const MessageEntry& entry = entries[i];
    if (errors_only_ && !entry.error) continue;
    if (!ContainsFolded(entry.text, filter_) && !ContainsFolded(entry.job, filter_)) continue;
    const std::string said = entry.text.substr(std::min(kStamp, entry.text.size()));
    const auto [place, is_new] =
        places.try_emplace(entry.job + (entry.error ? "\nE" : "\nI") + said, groups.size());
    if (is_new) groups.push_back({i, 0});
    ++groups[place->second].times;
  }
  std::reverse(groups.begin(), groups.end());
  return groups;
}

// What only grew at its end keeps selection and place.
void MessageListModel::ShowGroups() {
  const std::vector<Group> fresh = Grouped();
  if (fresh == groups_) return;
  if (fresh.size() < groups_.size() || !std::equal(groups_.begin(), groups_.end(), fresh.begin())) {
    return Reset();
  }
  beginInsertRows({}, rows_, static_cast<int>(fresh.size()) - 1);
  groups_ = fresh;
  rows_ = static_cast<int>(fresh.size());
  endInsertRows();
}

}  // namespace quillmere
