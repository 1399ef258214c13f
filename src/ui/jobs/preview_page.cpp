// SPDX-License-Identifier: MIT
#include "ui/jobs/preview_page.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QStringList>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "ui/jobs/way_out_runner.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/row_table.h"
#include "ui/toolkit/text.h"
#include "ui/waiting/waiting.h"

namespace quillmere {
namespace {

// Bytes: a text of one line takes the longer to be laid out the longer it is.
constexpr std::size_t kLongestShown = 100'000;
constexpr int kStatementLines = 4;
constexpr int kHeadLines = 4;

QString CountOf(std::size_t count) {
  return Grouped(static_cast<std::int64_t>(count));
}

template <std::size_t PreviewTable::*Count>
std::int64_t CountIn(const PreviewRow& row) {
  return static_cast<std::int64_t>(row.counts.*Count);
}
std::string_view WrittenTo(const PreviewRow& row) {
  return row.counts.to;
}
std::string_view WhyBlocked(const PreviewRow& row) {
  return row.counts.why;
}

QString Shown(const std::string& why) {
  return OneLine(ToBytes(Translated(why)));
}

QVariant NameExtra(const PreviewRow& row, int role) {
  if (role == Qt::DecorationRole) return Icon("table");
  return role == Qt::ToolTipRole ? OneLine(row.name) : QVariant();
}

QString WhatItIs(const Preview& preview) {
  switch (preview.What()) {
    case Preview::Kind::Nothing:
      return Shown(preview.Why());
    case Preview::Kind::Failed:
      return PreviewPage::tr("The source could not be read: %1").arg(Shown(preview.Why()));
    case Preview::Kind::Pending:
      return PreviewPage::tr("Goes on with a batch of %1 statements, number %2 is next.")
          .arg(CountOf(preview.Size()), CountOf(preview.Next() + 1));
    case Preview::Kind::Captured:
      return PreviewPage::tr("Statements that the source has now: %1.")
          .arg(CountOf(preview.Size()));
  }
  return {};
}

QString SummaryOf(const Preview& preview, const std::string& when) {
  QStringList lines{PreviewPage::tr("Read at %1. %2").arg(Dated(when), WhatItIs(preview))};
  if (preview.Size() > 0) {
    lines.front() += u' ' + PreviewPage::tr("Would execute %1 and block %2.")
                                .arg(CountOf(preview.ToExecute()), CountOf(preview.ToBlock()));
    if (!preview.Why().empty()) lines << Shown(preview.Why());
  }
  for (const std::string& note : preview.Notes()) {
    if (lines.size() < kHeadLines) lines << Beginning(ToBytes(Translated(note)), 500);
  }
  return lines.join(u'\n');
}

}  // namespace

PreviewTables::PreviewTables(QObject* parent)
    : RowList({Text<&PreviewRow::name>(PreviewPage::tr("Table"), 130, NameExtra),
               Count<&PreviewTable::inserts>(PreviewPage::tr("Inserts")),
               Count<&PreviewTable::updates>(PreviewPage::tr("Updates")),
               Count<&PreviewTable::deletes>(PreviewPage::tr("Deletes")),
               Count<&PreviewTable::blocked>(PreviewPage::tr("Blocked")),
               Text<WhyBlocked>(PreviewPage::tr("Because"), 160),
               Text<WrittenTo>(PreviewPage::tr("Written to"), 120)},
              parent) {}

template <std::size_t PreviewTable::*Member>
PreviewTables::ListColumn PreviewTables::Count(const QString& caption) {
  return Number<CountIn<Member>>(caption, 64, nullptr, Grouped);
}

void PreviewTables::Show(const Preview* preview) {
  std::vector<PreviewRow> rows;
  if (preview != nullptr) {
    for (const PreviewTable& table : preview->Tables()) {
      rows.push_back({ToBytes(StatementRows::TableOf(table.owner, table.table)), table});
      std::string& why = rows.back().counts.why;
      why = ToBytes(Translated(why));
    }
  }
  Take(std::move(rows), false);
}

PreviewPage::PreviewPage(UiContext& context, WayOutRunner& ways, QWidget* parent)
    : JobPage(parent), context_(context), ways_(ways) {
  setObjectName(QStringLiteral("PreviewPage"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(MakeHead());
  column->addWidget(MakeLists(), 1);
}

QWidget* PreviewPage::MakeHead() {
  auto* head = new QWidget(this);
  read_ = new QPushButton(tr("Previe&w"), head);
  read_->setObjectName(QStringLiteral("PreviewBtn"));
  read_->setToolTip(tr("Reads what the next pass would execute; nothing is written"));
  read_->setAccessibleDescription(read_->toolTip());
  connect(read_, &QPushButton::clicked, this, &PreviewPage::Read);
  summary_ = new QLabel(head);
  summary_->setObjectName(QStringLiteral("PreviewSummary"));
  summary_->setAccessibleName(tr("What the next pass would do"));
  summary_->setTextFormat(Qt::PlainText);
  summary_->setWordWrap(true);
  summary_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto* row = new QHBoxLayout(head);
  row->setContentsMargins(kMargin, kSpacing / 2, kMargin, kSpacing / 2);
  row->setSpacing(kMargin);
  row->addWidget(read_, 0, Qt::AlignTop);
  row->addWidget(summary_, 1);
  return head;
}

QSplitter* PreviewPage::MakeLists() {
  tables_ = new RowTable(context_.memory, this);
  tables_->setObjectName(QStringLiteral("PreviewTables"));
  tables_->setAccessibleName(tr("Tables of the preview"));
  tables_->ShowRows(table_rows_, QStringLiteral("preview-tables"), false);
  statements_ = new QTableView(this);
  statements_->setObjectName(QStringLiteral("PreviewStatements"));
  statements_->setAccessibleName(tr("Statements of the preview"));
  statements_->setModel(&statement_rows_);
  statements_->setSelectionBehavior(QAbstractItemView::SelectRows);
  statements_->setSelectionMode(QAbstractItemView::SingleSelection);
  statements_->setAlternatingRowColors(true);
  statements_->setWordWrap(false);
  statements_->setTabKeyNavigation(false);
  statements_->setCornerButtonEnabled(false);
  statements_->verticalHeader()->hide();
  statements_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  statements_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kSpacing);
  statements_->horizontalHeader()->setHighlightSections(false);
  statements_->horizontalHeader()->setStretchLastSection(true);
  constexpr int kWidths[] = {70, 80, 120, 420};
  // In other languages a heading may be longer; words of the cells are as short as it.
  for (int i = 0; i < StatementRows::kWhy; ++i) {
    statements_->setColumnWidth(
        i, std::max(kWidths[i], statements_->horizontalHeader()->sectionSizeHint(i)));
  }
  connect(statements_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          &PreviewPage::ShowStatement);
  statement_ = new QPlainTextEdit(this);
  statement_->setObjectName(QStringLiteral("PreviewStatement"));
  statement_->setAccessibleName(tr("The selected statement"));
  statement_->setPlaceholderText(tr("The selected statement"));
  statement_->setReadOnly(true);
  statement_->setTabChangesFocus(true);
  statement_->setFixedHeight(statement_->fontMetrics().height() * kStatementLines);
  auto* right = new QWidget(this);
  auto* column = new QVBoxLayout(right);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(statements_, 1);
  column->addWidget(statement_);
  auto* lists = new QSplitter(Qt::Horizontal, this);
  lists->addWidget(tables_);
  lists->addWidget(right);
  lists->setStretchFactor(0, 2);
  lists->setStretchFactor(1, 3);
  lists->setChildrenCollapsible(false);
  lists->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);  // for the smallest window
  return lists;
}

void PreviewPage::ShowJob(std::size_t job, const WatchedJob&) {
  std::string name = NameOf(context_.workspace.Jobs().At(job));
  const bool other = job != job_ || name != name_;
  job_ = job;
  name_ = std::move(name);
  if (!other) return;
  Show(nullptr);
  summary_->setText(tr("What the next pass would execute, and what it would block and why."));
}

void PreviewPage::Read() {
  const std::size_t job = job_;
  std::string source;
  {
    const SyncJob& record = context_.workspace.Jobs().At(job);
    const MutexLock lock(record.config_mutex);
    source = record.config.src_database_name;
  }
  Waiting waiting(context_, this, tr("Preview"));
  auto read = RunFor(
      waiting, context_.workspace.Log(),
      [engine = ways_.Engine(), job, connect = ToBytes(tr("connect to %1").arg(ToQt(source))),
       reading = ToBytes(tr("read what %1 has").arg(ToQt(source)))](
          SchemaListener& listener, LogLines&) -> std::shared_ptr<const Preview> {
        bool goes_on = listener.OnConnect(connect);
        if (!goes_on) return nullptr;
        std::shared_ptr<const Preview> preview = LookAhead(engine, job, [&] {
          goes_on = goes_on && listener.OnProgress(reading, 0, 0);
          return !goes_on;
        });
        return goes_on ? preview : nullptr;
      });
  // The operator left, or was led to another job by what went on meanwhile.
  if (!read || *read == nullptr || job != job_) return;
  Show(std::move(*read));
}

void PreviewPage::Show(std::shared_ptr<const Preview> preview) {
  preview_ = std::move(preview);
  table_rows_.Show(preview_.get());
  statement_rows_.Show(preview_);
  statement_->clear();
  if (preview_ == nullptr) return;
  summary_->setText(SummaryOf(*preview_, ReadableTime(context_.workspace.TimeSource().Now())));
  const int next = static_cast<int>(preview_->Next());
  if (next >= statement_rows_.rowCount()) return;
  statements_->setCurrentIndex(statement_rows_.index(next, 0));
  statements_->scrollTo(statements_->currentIndex(), QAbstractItemView::PositionAtTop);
}

void PreviewPage::ShowStatement(const QModelIndex& row) {
  if (!row.isValid() || preview_ == nullptr) return statement_->clear();
  const std::string text = preview_->At(static_cast<std::size_t>(row.row())).statement;
  QString shown = ToQt(std::string_view(text).substr(0, kLongestShown));
  if (text.size() > kLongestShown) {
    shown += u'\n' +
             tr("(%1 bytes in all; \"job preview --json\" shows them)").arg(CountOf(text.size()));
  }
  statement_->setPlainText(shown);
}

}  // namespace quillmere
