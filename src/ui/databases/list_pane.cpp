// SPDX-License-Identifier: MIT
#include "ui/databases/list_pane.h"

#include <QItemSelectionModel>
#include <QScrollBar>
#include <set>
#include <tuple>

#include "ui/databases/list_texts.h"

namespace quillmere {
namespace {

QString LayoutName(NodeKind kind) {
  return QStringLiteral("databases/") + QString::fromLatin1(KindTag(kind).data());
}

}  // namespace

ListPane::ListPane(const DataSourceRegistry& registry, ExplorerFrame& frame)
    : QObject(&frame), registry_(registry), frame_(frame) {}

void ListPane::Show(const DatabaseNode& node) {
  const bool same = node == node_;
  node_ = node;
  if (!same) frame_.Filter().clear();
  const int scrolled = frame_.List().verticalScrollBar()->value();
  RowModel& model = Fill();
  const bool several = Objects(node.kind) != nullptr;
  frame_.List().ShowRows(model, LayoutName(node.kind), several);
  frame_.Filter().SetModel(&model);
  Empty(model);
  if (same) frame_.List().verticalScrollBar()->setValue(scrolled);
  if (!same) frame_.List().scrollToTop();
  const DataSource* source = Source();
  const ConnectionState state = source == nullptr ? ConnectionState::Empty : source->state;
  frame_.List().SetEmptyText(EmptyText(node_, state));
  frame_.SetCountText(CountText(node_, model.SourceRowCount(), state),
                      node_.kind != NodeKind::DataSource);
}

RowModel& ListPane::Fill() {
  if (ObjectList* objects = Objects(node_.kind)) {
    objects->Show(Source());
    return *objects;
  }
  if (node_.kind == NodeKind::DataSource) return meta_types_;
  sources_.Show(registry_);
  return sources_;
}

// Long lists that are not shown need no memory.
void ListPane::Empty(const RowModel& but) {
  for (const auto& [kind, objects] : objects_) {
    if (objects != &but && objects->SourceRowCount() > 0) objects->Show(nullptr);
  }
}

ObjectList* ListPane::Objects(NodeKind kind) const {
  const auto found = objects_.find(kind);
  return found == objects_.end() ? nullptr : found->second;
}

const DataSource* ListPane::Source() const {
  const int index = registry_.IndexOf(node_.source);
  return index < 0 ? nullptr : &registry_.At(static_cast<std::size_t>(index));
}

std::vector<SchemaItem> ListPane::SelectedItems() const {
  std::vector<SchemaItem> items;
  const ObjectList* objects = Objects(node_.kind);
  if (objects == nullptr) return items;
  for (std::size_t row : frame_.List().SelectedRows()) items.push_back(objects->ItemAt(row));
  return items;
}

void ListPane::Select(const std::vector<SchemaItem>& items) {
  const ObjectList* objects = Objects(node_.kind);
  if (objects == nullptr || items.empty()) return;
  std::set<std::tuple<std::string, std::string, std::string>> wanted;
  for (const SchemaItem& item : items) wanted.emplace(item.owner, item.table, item.name);
  QItemSelection selection;
  const int last_column = objects->columnCount() - 1;
  const auto is_wanted = [&](int row) {
    const SchemaItem item = objects->ItemAt(objects->SourceRow(row));
    return wanted.contains({item.owner, item.table, item.name});
  };
  for (int row = 0; row < objects->rowCount(); ++row) {
    // In whole ranges: a selection of many single rows is slow.
    const int first = row;
    while (row < objects->rowCount() && is_wanted(row)) ++row;
    if (row > first) {
      selection.append({objects->index(first, 0), objects->index(row - 1, last_column)});
    }
  }
  if (selection.isEmpty()) return;
  const QModelIndex first = selection.first().topLeft();
  QItemSelectionModel& shown = *frame_.List().selectionModel();
  shown.setCurrentIndex(first, QItemSelectionModel::NoUpdate);
  shown.select(selection, QItemSelectionModel::ClearAndSelect);
  frame_.List().scrollTo(first);
}

DatabaseNode ListPane::NodeBehind(const QModelIndex& row) const {
  if (!row.isValid()) return {};
  if (row.model() == &sources_) {
    return {NodeKind::DataSource, sources_.RowAt(sources_.SourceRow(row)).name};
  }
  if (row.model() == &meta_types_) {
    return {meta_types_.RowAt(meta_types_.SourceRow(row)).kind, node_.source};
  }
  return {};
}

}  // namespace quillmere
