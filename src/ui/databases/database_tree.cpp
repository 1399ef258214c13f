// SPDX-License-Identifier: MIT
#include "ui/databases/database_tree.h"

#include <QIcon>
#include <algorithm>
#include <iterator>
#include <utility>

#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

// The internal id of an index: 0 the root; four numbers to each data source, the first one its own,
// the others its children's.
constexpr quintptr kIdsPerSource = 4;

QString MetaTypeCaption(NodeKind kind) {
  if (kind == NodeKind::PrimaryKey) return DatabaseTree::tr("Primary Key");
  return kind == NodeKind::Index ? DatabaseTree::tr("Index") : DatabaseTree::tr("Table");
}

QIcon IconOf(NodeKind kind, bool connected) {
  switch (kind) {
    case NodeKind::None:
      break;
    case NodeKind::Root:
      return Icon("oracle");
    case NodeKind::DataSource:
      return Icon(connected ? "connected" : "disconnected");
    case NodeKind::PrimaryKey:
      return Icon("key");
    case NodeKind::Index:
      return Icon("index");
    case NodeKind::Table:
      return Icon("table");
  }
  return {};
}

}  // namespace

void DatabaseTree::Show(const DataSourceRegistry& registry) {
  std::vector<Source> now;
  for (std::size_t slot = 0; slot < registry.Count(); ++slot) {
    const DataSource& source = registry.At(slot);
    if (source.state != ConnectionState::Empty) now.push_back({0, source.name, source.state});
  }
  RemoveMissing(now);
  InsertNew(now);
  for (std::size_t row = 0; row < now.size(); ++row) sources_[row].state = now[row].state;
  if (now.empty()) return;
  const int last = static_cast<int>(now.size()) - 1;
  Q_EMIT dataChanged(index(0, 0, Root()), index(last, 0, Root()));
}

void DatabaseTree::RemoveMissing(const std::vector<Source>& now) {
  // Who is not found in the new order behind those found before, has gone or moved.
  std::size_t next = 0;
  for (std::size_t row = 0; row < sources_.size();) {
    const auto found =
        std::find_if(now.begin() + static_cast<std::ptrdiff_t>(next), now.end(),
                     [&](const Source& source) { return source.name == sources_[row].name; });
    if (found != now.end()) {
      next = static_cast<std::size_t>(found - now.begin()) + 1;
      ++row;
      continue;
    }
    beginRemoveRows(Root(), static_cast<int>(row), static_cast<int>(row));
    sources_.erase(sources_.begin() + static_cast<std::ptrdiff_t>(row));
    endRemoveRows();
  }
}

void DatabaseTree::InsertNew(std::vector<Source>& now) {
  for (std::size_t row = 0; row < now.size(); ++row) {
    if (row < sources_.size() && sources_[row].name == now[row].name) continue;
    now[row].id = ++last_id_;
    beginInsertRows(Root(), static_cast<int>(row), static_cast<int>(row));
    sources_.insert(sources_.begin() + static_cast<std::ptrdiff_t>(row), now[row]);
    endInsertRows();
  }
}

DatabaseNode DatabaseTree::NodeAt(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  if (index.internalId() == 0) return {NodeKind::Root, {}};
  const int row = RowOf(static_cast<std::uint32_t>(index.internalId() / kIdsPerSource));
  if (row < 0) return {};
  const std::string& name = sources_[static_cast<std::size_t>(row)].name;
  const quintptr child = index.internalId() % kIdsPerSource;
  return {child == 0 ? NodeKind::DataSource : kMetaTypes[child - 1], name};
}

QModelIndex DatabaseTree::IndexOf(const DatabaseNode& node) const {
  if (node.kind == NodeKind::None) return {};
  if (node.kind == NodeKind::Root) return Root();
  for (std::size_t row = 0; row < sources_.size(); ++row) {
    if (sources_[row].name != node.source) continue;
    const QModelIndex source = index(static_cast<int>(row), 0, Root());
    const auto* kind = std::find(std::begin(kMetaTypes), std::end(kMetaTypes), node.kind);
    if (kind == std::end(kMetaTypes)) return source;
    return index(static_cast<int>(kind - std::begin(kMetaTypes)), 0, source);
  }
  return {};
}

int DatabaseTree::RowOf(std::uint32_t id) const {
  const auto found = std::find_if(sources_.begin(), sources_.end(),
                                  [&](const Source& source) { return source.id == id; });
  return found == sources_.end() ? -1 : static_cast<int>(found - sources_.begin());
}

QModelIndex DatabaseTree::index(int row, int column, const QModelIndex& parent) const {
  if (column != 0 || row < 0 || row >= rowCount(parent)) return {};
  if (!parent.isValid()) return createIndex(row, 0, quintptr{0});
  const auto child = static_cast<quintptr>(row);
  if (parent.internalId() != 0) return createIndex(row, 0, parent.internalId() + 1 + child);
  return createIndex(row, 0, sources_[child].id * kIdsPerSource);
}

QModelIndex DatabaseTree::parent(const QModelIndex& child) const {
  if (!child.isValid() || child.internalId() == 0) return {};
  if (child.internalId() % kIdsPerSource == 0) return Root();
  const int row = RowOf(static_cast<std::uint32_t>(child.internalId() / kIdsPerSource));
  return row < 0 ? QModelIndex() : index(row, 0, Root());
}

int DatabaseTree::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return 1;
  if (parent.internalId() == 0) return static_cast<int>(sources_.size());
  return parent.internalId() % kIdsPerSource == 0 ? static_cast<int>(std::size(kMetaTypes)) : 0;
}

int DatabaseTree::columnCount(const QModelIndex&) const {
  return 1;
}

QVariant DatabaseTree::data(const QModelIndex& index, int role) const {
  const DatabaseNode node = NodeAt(index);
  if (node.kind == NodeKind::None) return {};
  const bool is_source = node.kind == NodeKind::DataSource;
  const ConnectionState state =
      is_source ? sources_[static_cast<std::size_t>(index.row())].state : ConnectionState::Empty;
  switch (role) {
    case Qt::DisplayRole:
      if (node.kind == NodeKind::Root) return tr("ORACLE");
      return is_source ? OneLine(node.source) : MetaTypeCaption(node.kind);
    case Qt::DecorationRole:
      return IconOf(node.kind, state == ConnectionState::Connected);
    case Qt::ToolTipRole:
      return is_source ? Translated(ConnectionText(state)) : QVariant();
    case Qt::AccessibleDescriptionRole:
      return Translated(ConnectionText(state));
    case kKindTagRole:
      return ToQt(KindTag(node.kind));
    default:
      return {};
  }
}

}  // namespace quillmere
