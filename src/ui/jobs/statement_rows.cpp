// SPDX-License-Identifier: MIT
#include "ui/jobs/statement_rows.h"

#include <utility>

#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr std::size_t kCell = 300;  // bytes

std::string_view FateIcon(PreviewEntry::Fate fate) {
  if (fate == PreviewEntry::Fate::Blocked) return "exclude";
  return fate == PreviewEntry::Fate::Execute ? "run" : "up-to-date";
}

}  // namespace

QString StatementRows::FateName(PreviewEntry::Fate fate) {
  switch (fate) {
    case PreviewEntry::Fate::Executed:
      return tr("done");
    case PreviewEntry::Fate::Execute:
      return tr("execute");
    case PreviewEntry::Fate::Blocked:
      return tr("block");
  }
  return {};
}

QString StatementRows::TableOf(std::string_view owner, std::string_view table) {
  if (table.empty()) return tr("(no table)");
  return OneLine(owner) + u'.' + OneLine(table);
}

void StatementRows::Show(std::shared_ptr<const Preview> preview) {
  beginResetModel();
  preview_ = std::move(preview);
  entry_row_ = -1;
  endResetModel();
}

int StatementRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || preview_ == nullptr ? 0 : static_cast<int>(preview_->Size());
}

int StatementRows::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

const PreviewEntry& StatementRows::EntryAt(int row) const {
  if (std::exchange(entry_row_, row) != row) {
    entry_ = preview_->At(static_cast<std::size_t>(row));
  }
  return entry_;
}

QString StatementRows::TextOf(const PreviewEntry& entry, int row, int column) const {
  switch (column) {
    case kNumber:
      return Grouped(row + 1);
    case kFate:
      return FateName(entry.fate);
    case kTable:
      return TableOf(entry.owner, entry.table);
    case kStatement:
      return Beginning(entry.statement, kCell);
    default:
      return OneLine(ToBytes(Translated(entry.why)));
  }
}

QVariant StatementRows::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const int column = index.column();
  if (role == Qt::DisplayRole) return TextOf(EntryAt(index.row()), index.row(), column);
  if (role == Qt::TextAlignmentRole && column == kNumber) {
    return QVariant(Qt::AlignVCenter | Qt::AlignRight);
  }
  if (role == Qt::DecorationRole && column == kFate) {
    return Icon(FateIcon(EntryAt(index.row()).fate));
  }
  return {};
}

QVariant StatementRows::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) {
    return QVariant(Qt::AlignVCenter | (section == kNumber ? Qt::AlignRight : Qt::AlignLeft));
  }
  if (role != Qt::DisplayRole) return {};
  switch (section) {
    case kNumber:
      return tr("No.");
    case kFate:
      return tr("Next pass");
    case kTable:
      return tr("Table");
    case kStatement:
      return tr("Statement");
    default:
      return tr("Because");
  }
}

}  // namespace quillmere
