// SPDX-License-Identifier: MIT
#include "ui/main/message_view.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QUrl>
#include <algorithm>

#include "foundation/files.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kJobWidth = 90;
constexpr int kKindWidth = 90;

}  // namespace

MessageView::MessageView(MessageLog& log, std::filesystem::path folder, QWidget* parent)
    : QTreeView(parent), model_(log), folder_(std::move(folder)) {
  setHeaderHidden(true);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(ExtendedSelection);
  setAllColumnsShowFocus(true);
  setIndentation(0);
  setTextElideMode(Qt::ElideRight);
  setModel(&model_);
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(MessageListModel::kLine, QHeaderView::Stretch);
  header()->setMinimumSectionSize(kJobWidth);
  header()->resizeSection(MessageListModel::kJob, kJobWidth);
  header()->resizeSection(MessageListModel::kKind, kKindWidth);
  MakeMenu();
  follow_.setSingleShot(true);
  connect(&follow_, &QTimer::timeout, this, [this] { scrollToBottom(); });
  connect(&model_, &QAbstractItemModel::rowsAboutToBeInserted, this, &MessageView::NoteNewest);
  connect(&model_, &QAbstractItemModel::modelReset, this, [this] { follow_.start(0); });
  follow_.start(0);
}

void MessageView::NoteNewest() {
  const QScrollBar* const bar = verticalScrollBar();
  if (bar->value() >= bar->maximum()) follow_.start(0);
}

void MessageView::focusInEvent(QFocusEvent* event) {
  QTreeView::focusInEvent(event);
  // Not when the window is only given the focus back.
  if (event->reason() != Qt::ActiveWindowFocusReason) Q_EMIT LookedAt();
}

void MessageView::mousePressEvent(QMouseEvent* event) {
  QTreeView::mousePressEvent(event);
  Q_EMIT LookedAt();
}

void MessageView::wheelEvent(QWheelEvent* event) {
  QTreeView::wheelEvent(event);
  Q_EMIT LookedAt();
}

void MessageView::MakeMenu() {
  menu_ = new QMenu(this);
  menu_->setObjectName(QStringLiteral("PMMessages"));
  const auto add = [this](const char* name, const QString& caption, const char* icon, auto&& run) {
    QAction* const action = menu_->addAction(Icon(icon), caption);
    action->setObjectName(QLatin1StringView(name));
    connect(action, &QAction::triggered, this, run);
    return action;
  };
  copy_ = add("CopyMessages", tr("&Copy"), "copy", [this] { CopySelection(); });
  add("SelectAllMessages", tr("Select &all"), "", [this] { selectAll(); });
  add("ClearMessageSelection", tr("Clear &selection"), "", [this] { clearSelection(); });
  menu_->addSeparator();
  explain_ = add("ExplainMessage", tr("&Explain this message"), "help",
                 [this] { Q_EMIT HelpAsked(model_.FullText(currentIndex().row())); });
  add("OpenLogFolder", tr("Open log &folder"), "folder", [this] {
    const QString folder = ToQt(PathText(folder_));
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(folder))) return;
    ShowNotice(this, tr("The system has no program to open %1").arg(folder));
  });
}

void MessageView::contextMenuEvent(QContextMenuEvent* event) {
  copy_->setEnabled(selectionModel()->hasSelection());
  explain_->setEnabled(currentIndex().isValid());
  menu_->popup(event->globalPos());
}

void MessageView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    CopySelection();
    event->accept();
    return;
  }
  QTreeView::keyPressEvent(event);
}

void MessageView::CopySelection() {
  QModelIndexList rows = selectionModel()->selectedRows();
  std::sort(rows.begin(), rows.end());
  QString text;
  for (const QModelIndex& row : rows) text += model_.FullText(row.row()) + u'\n';
  if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

}  // namespace quillmere
