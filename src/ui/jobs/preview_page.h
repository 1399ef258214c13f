// SPDX-License-Identifier: MIT
// The page with what the next pass of a job would execute, and what it would block and why; read
// when the operator asks for it.
#pragma once

#include <memory>
#include <string>

#include "ui/jobs/job_page.h"
#include "ui/jobs/statement_rows.h"
#include "ui/toolkit/row_list.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QSplitter;
class QTableView;

namespace quillmere {

class RowTable;

struct PreviewRow {
  std::string name;  // "OWNER.TABLE"
  PreviewTable counts;
};

// The counts of a preview by table.
class PreviewTables final : public RowList<PreviewRow> {
 public:
  explicit PreviewTables(QObject* parent = nullptr);
  void Show(const Preview* preview);

 private:
  template <std::size_t PreviewTable::*Member>
  static ListColumn Count(const QString& caption);
};

class PreviewPage final : public JobPage {
  Q_OBJECT

 public:
  PreviewPage(UiContext& context, WayOutRunner& ways, QWidget* parent);

  QString Title() const override { return tr("Pre&view"); }
  // Another job begins with an empty page: what was read is as of then.
  void ShowJob(std::size_t job, const WatchedJob& watched) override;

 private:
  QWidget* MakeHead();
  QSplitter* MakeLists();
  void Read();
  void Show(std::shared_ptr<const Preview> preview);
  void ShowStatement(const QModelIndex& row);

  UiContext& context_;
  WayOutRunner& ways_;
  PreviewTables table_rows_;
  StatementRows statement_rows_;
  QPushButton* read_ = nullptr;
  QLabel* summary_ = nullptr;
  RowTable* tables_ = nullptr;
  QTableView* statements_ = nullptr;
  QPlainTextEdit* statement_ = nullptr;
  std::shared_ptr<const Preview> preview_;
  std::size_t job_ = JobList::kNotFound;
  std::string name_;
};

}  // namespace quillmere
