// SPDX-License-Identifier: MIT
#include "ui/databases/T_dbmgrform.h"

#include <QAction>
#include <QItemSelectionModel>
#include <QMenu>
#include <QShortcut>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "ui/databases/T_dropform.h"
#include "ui/databases/T_migrateform.h"
#include "ui/databases/T_renameform.h"
#include "ui/sources/Dbconnection.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"

namespace quillmere {

TDbMgrForm::TDbMgrForm(UiContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      frame_(new ExplorerFrame(context.memory, QStringLiteral("databases"), tr("All Databases"),
                               this)),
      actions_(MakeDatabaseActions(*this)),
      menus_(MakeDatabaseMenus(*this, actions_)),
      tree_(new DatabaseTree(this)),
      list_(new ListPane(context.workspace.Registry(), *frame_)),
      connection_(context, this) {
  setObjectName(QStringLiteral("TDbMgrForm"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(frame_);
  frame_->Tools().setObjectName(QStringLiteral("DbMgrToolBar"));
  FillToolBar(frame_->Tools(), actions_);
  frame_->HeadMenuButton().setObjectName(QStringLiteral("OptionsImg"));
  frame_->HeadMenuButton().setMenu(menus_.tree);
  frame_->Filter().setObjectName(QStringLiteral("DbMgrFilter"));
  SetUpTree();
  SetUpList();
  ConnectActions();
  tree_->Show(context_.workspace.Registry());
  frame_->Tree().expand(tree_->Root());
  Select({NodeKind::Root, {}});
}

void TDbMgrForm::SetUpTree() {
  QTreeView& view = frame_->Tree();
  view.setObjectName(QStringLiteral("DbMgrTV"));
  view.setModel(tree_);
  connect(view.selectionModel(), &QItemSelectionModel::currentChanged, this,
          &TDbMgrForm::ShowSelectedList);
  // A node that is hidden in its parent is not what the operator works on any more.
  connect(&view, &QTreeView::collapsed, this, [&view](const QModelIndex& parent) {
    for (QModelIndex at = view.currentIndex().parent(); at.isValid(); at = at.parent()) {
      if (at == parent) view.setCurrentIndex(parent);
    }
  });
  view.setContextMenuPolicy(Qt::CustomContextMenu);
  connect(&view, &QWidget::customContextMenuRequested, this, &TDbMgrForm::ShowTreeMenu);
}

void TDbMgrForm::SetUpList() {
  RowTable& list = frame_->List();
  list.setObjectName(QStringLiteral("DbMgrLV"));
  list.setAccessibleName(tr("Contents of the selected node"));
  connect(&list, &QAbstractItemView::doubleClicked, this, &TDbMgrForm::OpenRow);
  for (int key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* enter = new QShortcut(QKeySequence(key), &list);
    enter->setContext(Qt::WidgetShortcut);
    connect(enter, &QShortcut::activated, this, [this] { OpenRow(frame_->List().currentIndex()); });
  }
  list.setContextMenuPolicy(Qt::CustomContextMenu);
  connect(&list, &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
    if (!ObjectKindOf(SelectedNode().kind)) return;
    menus_.meta->popup(frame_->List().viewport()->mapToGlobal(position));
  });
}

void TDbMgrForm::ConnectActions() {
  const auto on = [this](QAction* action, auto call) {
    connect(action, &QAction::triggered, this, [this, call] {
      Q_EMIT Acting();
      call();
    });
  };
  on(actions_.ActOpenDbMgr, [this] { OpenManager(); });
  on(actions_.ConnectDS, [this] { ConnectSource(); });
  on(actions_.DisConnectDS, [this] { DisconnectSource(); });
  on(actions_.RefreshDS, [this] { RefreshSource(); });
  on(actions_.DropMeta, [this] { RunOnSelection(SchemaAction::Drop); });
  on(actions_.ChangeMeta, [this] { RunOnSelection(SchemaAction::Rename); });
  on(actions_.MigrateMeta, [this] { RunOnSelection(SchemaAction::Migrate); });
  auto* refresh = new QShortcut(QKeySequence::Refresh, this);
  refresh->setContext(Qt::WidgetWithChildrenShortcut);
  connect(refresh, &QShortcut::activated, this, &TDbMgrForm::PressRefresh);
  on(actions_.ExpandTree, [this] { frame_->Tree().expandAll(); });
  on(actions_.CollapseTree, [this] {
    Select({NodeKind::Root, {}});
    frame_->Tree().collapseAll();
  });
}

DatabaseNode TDbMgrForm::SelectedNode() const {
  return tree_->NodeAt(frame_->Tree().currentIndex());
}

std::optional<std::size_t> TDbMgrForm::SelectedSource() const {
  const int index = context_.workspace.Registry().IndexOf(SelectedNode().source);
  if (index < 0) return std::nullopt;
  return static_cast<std::size_t>(index);
}

void TDbMgrForm::Select(const DatabaseNode& node) {
  const QModelIndex index = tree_->IndexOf(node);
  if (!index.isValid()) return;
  frame_->Tree().setCurrentIndex(index);
  frame_->Tree().scrollTo(index);
}

void TDbMgrForm::UpdateActions() {
  const DataSourceRegistry& registry = context_.workspace.Registry();
  const std::optional<std::size_t> source = SelectedSource();
  const bool connected = source && registry.At(*source).state == ConnectionState::Connected;
  ShowActions(actions_, VisibleActionsFor(SelectedNode().kind, connected));
  actions_.ActOpenDbMgr->setEnabled(MayOpenManager(registry.CountInUse()));
}

void TDbMgrForm::ShowSelectedList() {
  list_->Show(SelectedNode());
  const DataSourceRegistry& registry = context_.workspace.Registry();
  frame_->ShowFirst(registry.CountInUse() == 0 && registry.WhyListNotRead().empty());
  UpdateActions();
}

void TDbMgrForm::ShowRegistry() {
  tree_->Show(context_.workspace.Registry());
  if (!frame_->Tree().currentIndex().isValid()) Select({NodeKind::Root, {}});
  ShowSelectedList();
}

// The menu belongs to the selected node: a right press selects no other one, and beside the name of
// another one the menu would act on the wrong one.
void TDbMgrForm::ShowTreeMenu(const QPoint& position) {
  if (frame_->Tree().indexAt(position) != frame_->Tree().currentIndex()) return;
  UpdateActions();
  const NodeKind kind = SelectedNode().kind;
  QMenu* menu = nullptr;
  if (kind == NodeKind::Root) menu = menus_.root;
  if (kind == NodeKind::DataSource) menu = menus_.data_source;
  if (menu != nullptr) menu->popup(frame_->Tree().viewport()->mapToGlobal(position));
}

void TDbMgrForm::OpenRow(const QModelIndex& row) {
  Select(list_->NodeBehind(row));
}

void TDbMgrForm::OpenManager() {
  TDbConnForm form(context_, this);
  if (context_.workspace.Registry().CountInUse() == 0) form.StartNew();
  form.exec();
  if (form.Changed()) ShowRegistry();
}

void TDbMgrForm::ConnectSource() {
  const std::optional<std::size_t> source = SelectedSource();
  if (!source) return;
  connection_.Connect(*source, [this] {
    ShowRegistry();
    frame_->Tree().expand(frame_->Tree().currentIndex());
  });
  ShowRegistry();
}

void TDbMgrForm::DisconnectSource() {
  const std::optional<std::size_t> source = SelectedSource();
  if (!source) return;
  connection_.Disconnect(*source);
  frame_->Tree().collapse(frame_->Tree().currentIndex());
  ShowRegistry();
}

void TDbMgrForm::RefreshSource() {
  const std::optional<std::size_t> source = SelectedSource();
  if (!source) return;
  connection_.Refresh(*source);
  ShowRegistry();
}

// The key works wherever the action is hidden, too, and says why nothing is read.
void TDbMgrForm::PressRefresh() {
  if (actions_.RefreshDS->isVisible()) return actions_.RefreshDS->trigger();
  const std::optional<std::size_t> index = SelectedSource();
  if (!index) return ShowNotice(this, tr("Select a data source to refresh it"), &frame_->Tree());
  const DataSource& source = context_.workspace.Registry().At(*index);
  const bool connected = source.state == ConnectionState::Connected;
  const QString why = connected
                          ? tr("%1 is refreshed from its own node: select it first")
                          : tr("%1 is not connected. ConnectDS connects it and reads its lists");
  ShowNotice(this, why.arg(ToQt(source.name)), &frame_->Tree());
}

void TDbMgrForm::RunOnSelection(SchemaAction action) {
  const std::optional<ObjectKind> kind = ObjectKindOf(SelectedNode().kind);
  const std::optional<std::size_t> source = SelectedSource();
  if (!kind || !source) return;
  const SchemaSelection selection{*source, *kind, list_->SelectedItems()};
  const std::string refused = WhySchemaChangeRefused(context_.workspace, action, selection);
  if (!refused.empty()) return ShowNotice(this, refused, &frame_->List());
  std::vector<SchemaItem> selected = selection.items;
  if (!Ask(action, selection, selected)) return;
  ShowRegistry();
  list_->Select(selected);
}

bool TDbMgrForm::Ask(SchemaAction action, const SchemaSelection& selection,
                     std::vector<SchemaItem>& selected) {
  switch (action) {
    case SchemaAction::Drop:
      return TDropForm(context_, selection, this).exec() == QDialog::Accepted;
    case SchemaAction::Migrate:
      return TMigrateForm(context_, selection, this).exec() == QDialog::Accepted;
    case SchemaAction::Rename:
      break;
  }
  TRenameForm form(context_, selection, this);
  if (form.exec() != QDialog::Accepted) return false;
  selected = {form.Item()};
  return true;
}

}  // namespace quillmere
