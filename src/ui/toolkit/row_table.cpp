// SPDX-License-Identifier: MIT
#include "ui/toolkit/row_table.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>

#include "ui/toolkit/appearance.h"

namespace quillmere {

RowTable::RowTable(WindowMemory& memory, QWidget* parent) : QTableView(parent), memory_(memory) {
  setSelectionBehavior(SelectRows);
  setEditTriggers(NoEditTriggers);
  setAlternatingRowColors(true);
  setShowGrid(true);
  setWordWrap(false);
  setTabKeyNavigation(false);  // Tab leads to the next widget, as in every list
  setCornerButtonEnabled(false);
  setHorizontalScrollMode(ScrollPerPixel);
  setSortingEnabled(false);  // switched on with a model: it sorts at once
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kSpacing);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setStretchLastSection(true);
  horizontalHeader()->setSectionsMovable(false);
  horizontalHeader()->setMinimumSectionSize(24);
}

RowTable::~RowTable() {
  RememberWidths();
}

void RowTable::ShowRows(RowModel& model, const QString& layout, bool several) {
  setSelectionMode(several ? ExtendedSelection : SingleSelection);
  if (this->model() == &model && layout == layout_) return;
  RememberWidths();
  layout_ = layout;
  QItemSelectionModel* old_selection = selectionModel();
  if (this->model() != nullptr) {
    disconnect(this->model(), &QAbstractItemModel::modelReset, this, &RowTable::CountsChanged);
  }
  setSortingEnabled(false);
  setModel(&model);
  delete old_selection;
  // Anew with every selection model, so that this one has heard of a reset before.
  connect(&model, &QAbstractItemModel::modelReset, this, &RowTable::CountsChanged);
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &RowTable::CountsChanged);
  horizontalHeader()->setSortIndicator(model.SortColumn(), model.SortDirection());
  setSortingEnabled(true);
  // Numbers stay near their captions.
  horizontalHeader()->setStretchLastSection(model.Columns().back().kind == RowModel::Kind::Text);
  const std::vector<int> kept = memory_.Widths(layout, model.columnCount());
  for (int column = 0; column < model.columnCount(); ++column) {
    const auto i = static_cast<std::size_t>(column);
    setColumnWidth(column, kept.empty() ? model.Columns()[i].width : kept[i]);
  }
  FitHeader(model);
}

// Captions that are wider than their columns go on in further lines.
void RowTable::FitHeader(const RowModel& model) {
  const QHeaderView& header = *horizontalHeader();
  const int margin = header.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, &header);
  int height = header.fontMetrics().height();
  for (int column = 0; column < model.columnCount(); ++column) {
    const QString& caption = model.Columns()[static_cast<std::size_t>(column)].caption;
    const QRect room(0, 0, columnWidth(column) - 2 * margin, QWIDGETSIZE_MAX);
    const QRect text = header.fontMetrics().boundingRect(room, Qt::TextWordWrap, caption.trimmed());
    height = std::max(height, text.height());
  }
  horizontalHeader()->setFixedHeight(height + 2 * margin);
}

void RowTable::RememberWidths() {
  if (model() == nullptr || layout_.isEmpty()) return;
  std::vector<int> widths;
  const auto* rows = static_cast<const RowModel*>(model());
  for (int column = 0; column < model()->columnCount(); ++column) {
    // The last column fills the width, which is nothing that was chosen.
    const bool last =
        column + 1 == model()->columnCount() && horizontalHeader()->stretchLastSection();
    widths.push_back(last ? rows->Columns().back().width : columnWidth(column));
  }
  memory_.KeepWidths(layout_, widths);
}

std::vector<int> RowTable::ShownSelection() const {
  std::vector<int> shown;
  if (model() == nullptr) return shown;
  // By ranges: selectedRows() would take each row's every column into account.
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) shown.push_back(row);
  }
  std::sort(shown.begin(), shown.end());
  shown.erase(std::unique(shown.begin(), shown.end()), shown.end());
  return shown;
}

RowCounts RowTable::Counts() const {
  RowCounts counts;
  if (model() == nullptr) return counts;
  counts.all = static_cast<std::int64_t>(static_cast<const RowModel*>(model())->SourceRowCount());
  counts.shown = model()->rowCount();
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    counts.selected += range.height();
  }
  return counts;
}

std::vector<std::size_t> RowTable::SelectedRows() const {
  std::vector<std::size_t> selected;
  const auto* rows = static_cast<const RowModel*>(model());
  for (int row : ShownSelection()) selected.push_back(rows->SourceRow(row));
  return selected;
}

void RowTable::CopySelection() const {
  QString text;
  for (int row : ShownSelection()) {
    for (int column = 0; column < model()->columnCount(); ++column) {
      if (column > 0) text += u'\t';
      text += model()->index(row, column).data().toString();
    }
    text += u'\n';
  }
  if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

void RowTable::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    CopySelection();
    event->accept();
    return;
  }
  QTableView::keyPressEvent(event);
}

void RowTable::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (model() == nullptr || model()->rowCount() > 0) return;
  const bool filtered = !static_cast<const RowModel*>(model())->Filter().empty();
  const QString text = filtered ? tr("No row has the text that is typed above") : empty_text_;
  if (text.isEmpty()) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  const int margin = 2 * kMargin;
  painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                   Qt::AlignCenter | Qt::TextWordWrap, text);
}

}  // namespace quillmere
