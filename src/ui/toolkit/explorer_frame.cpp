// SPDX-License-Identifier: MIT
#include "ui/toolkit/explorer_frame.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMouseEvent>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "ui/toolkit/appearance.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kTreeWidth = 220;
constexpr int kTreeIndent = 27;
constexpr int kIconSize = 24;

// A right press does nothing at all: it neither selects nor opens. Nor does one beside the nodes:
// one node is always selected.
class LeftTree final : public QTreeView {
 public:
  using QTreeView::QTreeView;

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() == Qt::RightButton || !indexAt(event->position().toPoint()).isValid()) {
      return;
    }
    QTreeView::mousePressEvent(event);
  }
};

QTreeView* MakeTree(QWidget* parent) {
  auto* tree = new LeftTree(parent);
  tree->setHeaderHidden(true);
  tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tree->setUniformRowHeights(true);
  tree->setIndentation(kTreeIndent);
  tree->setRootIsDecorated(false);
  tree->setExpandsOnDoubleClick(true);
  return tree;
}

}  // namespace

ExplorerFrame::ExplorerFrame(WindowMemory& memory, const QString& name, const QString& heading,
                             QWidget* parent)
    : QWidget(parent), memory_(memory), name_(name) {
  tools_ = new QToolBar(this);
  tools_->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  tools_->setIconSize(QSize(kIconSize, kIconSize));
  tools_->setMovable(false);

  head_ = new QWidget(this);
  auto* title = new QLabel(heading, head_);
  QFont bold = title->font();
  bold.setBold(true);
  title->setFont(bold);
  menu_button_ = new QToolButton(head_);
  menu_button_->setAutoRaise(true);
  menu_button_->setIcon(Icon("options"));
  menu_button_->setPopupMode(QToolButton::InstantPopup);
  menu_button_->setToolTip(tr("Expand or collapse the tree"));
  menu_button_->setAccessibleName(tr("Tree options"));
  auto* head_row = new QHBoxLayout(head_);
  head_row->setContentsMargins(kSpacing, kSpacing / 2, kSpacing / 2, kSpacing / 2);
  head_row->addWidget(title, 1);
  head_row->addWidget(menu_button_);

  tree_ = MakeTree(this);
  tree_->setAccessibleName(heading);
  title->setBuddy(tree_);
  auto* left = new QWidget(this);
  auto* left_column = new QVBoxLayout(left);
  left_column->setContentsMargins(0, 0, 0, 0);
  left_column->setSpacing(0);
  left_column->addWidget(head_);
  left_column->addWidget(tree_, 1);

  back_ = new QToolButton(this);
  back_->setObjectName(QStringLiteral("BackBtn"));
  back_->setIcon(Icon(isRightToLeft() ? "back-right" : "back"));
  back_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  back_->setAutoRaise(true);
  back_->setFocusPolicy(Qt::TabFocus);
  back_->setShortcut(Qt::ALT | Qt::Key_Up);
  back_->hide();
  connect(back_, &QToolButton::clicked, this, &ExplorerFrame::Back);
  filter_ = new FilterLine(this);
  count_ = new QLabel(this);
  count_->setForegroundRole(QPalette::PlaceholderText);
  note_ = new QLabel(this);
  note_->setObjectName(QStringLiteral("ListNote"));
  note_->setTextFormat(Qt::PlainText);
  note_->setWordWrap(true);
  note_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  note_->setContentsMargins(kSpacing, 0, kSpacing, kSpacing / 2);
  note_->hide();
  list_ = new RowTable(memory, this);
  connect(list_, &RowTable::CountsChanged, this, &ExplorerFrame::ShowCounts);
  auto* right = new QWidget(this);
  auto* filter_row = new QHBoxLayout;
  filter_row->setContentsMargins(kSpacing / 2, kSpacing / 2, kSpacing, kSpacing / 2);
  filter_row->addWidget(back_);
  filter_row->addWidget(filter_, 1);
  filter_row->addSpacing(kSpacing);
  filter_row->addWidget(count_);
  right_ = new QVBoxLayout(right);
  right_->setContentsMargins(0, 0, 0, 0);
  right_->setSpacing(0);
  right_->addLayout(filter_row);
  right_->addWidget(note_);
  right_->addWidget(list_, 1);

  splitter_ = new QSplitter(Qt::Horizontal, this);
  splitter_->addWidget(left);
  splitter_->addWidget(right);
  splitter_->setStretchFactor(1, 1);
  splitter_->setChildrenCollapsible(false);
  splitter_->setSizes({kTreeWidth, 3 * kTreeWidth});
  memory_.RestoreSplitter(*splitter_, name_);

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(tools_);
  column->addWidget(splitter_, 1);

  auto* find = new QShortcut(QKeySequence::Find, this);
  find->setContext(Qt::WidgetWithChildrenShortcut);
  connect(find, &QShortcut::activated, filter_, [this] {
    filter_->setFocus(Qt::ShortcutFocusReason);
    filter_->selectAll();
  });
}

ExplorerFrame::~ExplorerFrame() {
  memory_.KeepSplitter(*splitter_, name_);
}

void ExplorerFrame::AddAbove(QWidget* widget) {
  right_->insertWidget(right_->indexOf(note_), widget);
}

void ExplorerFrame::AddBelow(QWidget* widget) {
  right_->addWidget(widget, 1);
}

void ExplorerFrame::SetFirst(QWidget* widget) {
  first_ = widget;
  first_->hide();
  AddBelow(first_);
}

void ExplorerFrame::ShowFirst(bool shown) {
  if (first_ == nullptr) return;
  list_->setVisible(!shown);
  first_->setVisible(shown);
}

void ExplorerFrame::SetOneRow(bool one) {
  const int bars = list_->horizontalHeader()->height() + 2 * list_->frameWidth() +
                   list_->horizontalScrollBar()->sizeHint().height();
  const int row = bars + list_->verticalHeader()->defaultSectionSize();
  list_->setMinimumHeight(one ? row : 0);
  list_->setMaximumHeight(one ? row : QWIDGETSIZE_MAX);
}

void ExplorerFrame::SetCountText(const QString& all, bool of_rows) {
  count_text_ = all;
  counts_rows_ = of_rows;
  ShowCounts();
}

void ExplorerFrame::ShowCounts() {
  if (!counts_rows_ || count_text_.isEmpty()) return count_->setText(count_text_);
  const RowCounts counts = list_->Counts();
  QString text = count_text_;
  if (counts.shown != counts.all) text = tr("%1, %2 shown").arg(text, Grouped(counts.shown));
  if (counts.selected > 1) text = tr("%1, %2 selected").arg(text, Grouped(counts.selected));
  count_->setText(text);
}

void ExplorerFrame::SetBack(const QString& text) {
  constexpr int kLongest = 160;
  back_->setText(back_->fontMetrics().elidedText(text, Qt::ElideRight, kLongest));
  back_->setToolTip(tr("Back to %1 and its actions (Alt+Up)").arg(text));
  back_->setAccessibleName(tr("Back to %1").arg(text));
  back_->setVisible(!text.isEmpty());
}

void ExplorerFrame::SetNote(const QString& text) {
  if (note_->text() != text) note_->setText(text);
  note_->setVisible(!text.isEmpty());
}

}  // namespace quillmere
