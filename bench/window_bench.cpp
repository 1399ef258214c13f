// SPDX-License-Identifier: MIT
// The window with large lists: opening and repainting one costs a fraction of filling a model of
// Qt's own, and the event loop keeps turning while the worker is busy. Without a display.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLoggingCategory>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTimer>
#include <QTreeView>
#include <array>
#include <chrono>
#include <memory>

#include "benches.h"
#include "jobs/run_state_files.h"
#include "null_oci.h"
#include "support/temp_folder.h"
#include "ui/main/program_window.h"
#include "watch/job_history.h"

namespace quillmere::bench {

namespace {

constexpr std::size_t kJobTables = 50'000;
constexpr std::size_t kCachedTables = 100'000;

void Settle() {
  for (int turn = 0; turn < 3; ++turn) QApplication::processEvents();
}

std::unique_ptr<Workspace> OpenWorkspace(const std::filesystem::path& folder, const OciApi& api) {
  Workspace::Options options;
  options.folder = folder;
  options.oci = &api;
  std::string reason;
  auto workspace = Workspace::Open(options, reason);
  if (workspace == nullptr) std::abort();
  return workspace;
}

SyncJob& MakeJob(Workspace& workspace, const std::string& name, std::size_t tables) {
  const std::size_t index = workspace.Jobs().Claim();
  SyncJob& job = workspace.Jobs().At(index);
  {
    const MutexLock lock(job.config_mutex);
    job.config.name = name;
    job.config.description = "copies the tables of a branch";
    job.config.sync_interval = 1'000'000;
    job.config.table_list_fetched = true;
    JobSchema& schema = job.config.schemas["SALES"];
    for (std::size_t t = 0; t < tables; ++t) {
      schema.Append({.name = "ORDERS_" + std::to_string(t), .desowner = "BRANCH"});
    }
  }
  workspace.Jobs().SetState(index, JobState::Stopped);
  return job;
}

// Two large jobs and two large data sources, so that each opening is one of another list.
class LargeWindow {
 public:
  explicit LargeWindow(std::shared_ptr<QApplication> application)
      : application_(std::move(application)) {
    for (const std::string name : {"first", "second"}) {
      MakeJob(*workspace_, name, kJobTables).run.next_due = LocalTime{1LL << 50};
      DataSource source;
      source.state = ConnectionState::Disconnected;
      source.name = name;
      for (std::size_t t = 0; t < kCachedTables; ++t) {
        TableRecord table;
        table.table_owner = owner_;
        table.table_name = "SHIPMENT_" + std::to_string(t);
        table.rows = static_cast<std::int32_t>(t);
        source.tables.push_back(std::move(table));
      }
      workspace_->Registry().Add(std::move(source));
    }
    window_ = std::make_unique<ProgramWindow>(*workspace_);
    window_->Show();
    Settle();
  }

  void OpenJobTables() { Open("JobMgrTV", 0, kJobTables); }       // "Include"
  void OpenSourceTables() { Open("DbMgrTV", 2, kCachedTables); }  // "Table"

  // The list of the selected job's tables, as the timer does it every ten seconds.
  void StartJobs() {
    for (const std::size_t job : {0U, 1U}) workspace_->Jobs().SetState(job, JobState::Started);
  }
  void TimerRepaint() {
    QMetaObject::invokeMethod(window_->Form().findChild<QTimer*>("TimerRefresh"), "timeout");
    Settle();
  }

  void ShowPage(int page) {
    window_->Form().findChild<QTabWidget*>("PageClient")->setCurrentIndex(page);
    Settle();
  }

 private:
  void Open(const char* tree_name, int child, std::size_t expected) {
    auto* tree = window_->Form().findChild<QTreeView*>(tree_name);
    const QAbstractItemModel& model = *tree->model();
    const QModelIndex parent = model.index(turn_++ % 2, 0, model.index(0, 0));
    tree->setCurrentIndex(model.index(child, 0, parent));
    Settle();
    const std::string list =
        std::string(tree_name).substr(0, 5) == "JobMg" ? "JobMgrLV" : "DbMgrLV";
    auto* view = window_->Form().findChild<QAbstractItemView*>(list.c_str());
    if (view->model()->rowCount() != static_cast<int>(expected)) std::abort();
  }

  const std::shared_ptr<QApplication> application_;
  TempFolder folder_;
  const OciApi api_ = NullOci();
  const SharedText owner_ = "WAREHOUSE";
  std::unique_ptr<Workspace> workspace_ = OpenWorkspace(folder_.Path(), api_);
  std::unique_ptr<ProgramWindow> window_;
  int turn_ = 0;
};

// What a list costs that holds an item a cell.
void FillItemModel(std::size_t rows, int columns) {
  QStandardItemModel model;
  for (std::size_t row = 0; row < rows; ++row) {
    QList<QStandardItem*> items;
    items.reserve(columns);
    for (int column = 0; column < columns; ++column) {
      items.append(new QStandardItem(QStringLiteral("SHIPMENT_") + QString::number(row)));
    }
    model.appendRow(items);
  }
}

double StartWithThousandJobs() {
  const TempFolder folder;
  const OciApi api = NullOci();
  {
    const auto workspace = OpenWorkspace(folder.Path(), api);
    for (int i = 0; i < 1000; ++i) MakeJob(*workspace, "job_" + std::to_string(i), 50);
    std::string reason;
    if (!workspace->SaveJobs(reason)) std::abort();
  }
  const double begin = ProcessorMilliseconds();
  const auto workspace = OpenWorkspace(folder.Path(), api);
  ProgramWindow window(*workspace);
  window.Show();
  Settle();
  return ProcessorMilliseconds() - begin;
}

// Beats at each turn of the event loop; knows the longest pause between two.
class Heart {
 public:
  Heart() {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
      longest_ = std::max(longest_, Clock::now() - last_);
      last_ = Clock::now();
    });
    timer_.start(0);
  }
  double LongestMs() const { return std::chrono::duration<double, std::milli>(longest_).count(); }

 private:
  using Clock = std::chrono::steady_clock;

  QTimer timer_;
  Clock::time_point last_ = Clock::now();
  Clock::duration longest_{};
};

constexpr std::uint32_t kStatements = 100'000;

std::string Statement(std::uint32_t number) {
  return "update \"SALES\".\"ORDERS_1\" set \"STATUS\" = 'sent', \"NOTE\" = '" +
         std::string(200, 'x') + "' where \"ID\" = '" + std::to_string(number) + "'";
}

// While the worker applies a batch and the window shows it.
double LongestTurn() {
  const TempFolder folder;
  const OciApi api = NullOci();
  const auto workspace = OpenWorkspace(folder.Path(), api);
  SyncJob& job = MakeJob(*workspace, "busy", 10);
  for (std::uint32_t i = 0; i < kStatements; ++i) job.run.pending_batch.Append(Statement(i));
  job.run.batch_pending = 1;
  ProgramWindow window(*workspace, std::chrono::milliseconds(1));
  window.Show();
  Settle();
  const Heart heart;
  workspace->Jobs().SetState(0, JobState::Started, {0, kStatements});
  while (job.run.applied_count < static_cast<std::int32_t>(kStatements)) {
    QApplication::processEvents();
  }
  return heart.LongestMs();
}

// While a preview of as many statements is made, opened and scrolled through, one of each screen
// looked at.
double LongestTurnOfPreview() {
  const TempFolder folder;
  const OciApi api = NullOci();
  const auto workspace = OpenWorkspace(folder.Path(), api);
  SyncJob& job = MakeJob(*workspace, "stuck", 10);
  PendingBatch batch;
  for (std::uint32_t i = 0; i < kStatements; ++i) batch.Append(Statement(i));
  job.run.batch_pending = 1;
  const JobFolder of_job(workspace->Folder(), "stuck");
  std::string error;
  if (!of_job.Make(workspace->Files(), error) ||
      !WriteBatchFile(workspace->Files(), of_job, batch, error) ||
      !RunRecordWriter(workspace->Files(), of_job)
           .Write(MakeRunRecord(job, JobState::Started, {0, kStatements}), error)) {
    std::abort();
  }
  ProgramWindow window(*workspace);
  window.Show();
  auto* tree = window.Form().findChild<QTreeView*>("JobMgrTV");
  tree->setCurrentIndex(tree->model()->index(0, 0, tree->model()->index(0, 0)));
  auto* pages = window.Form().findChild<QTabWidget*>("JobPages");
  pages->setCurrentWidget(pages->findChild<QWidget*>("PreviewPage"));
  Settle();
  const Heart heart;
  pages->findChild<QAbstractButton*>("PreviewBtn")->click();
  auto* list = pages->findChild<QAbstractItemView*>("PreviewStatements");
  if (list->model()->rowCount() != static_cast<int>(kStatements)) std::abort();
  QScrollBar& bar = *list->verticalScrollBar();
  for (int row = 0; row < bar.maximum(); row += bar.pageStep()) {
    bar.setValue(row);
    list->setCurrentIndex(list->model()->index(row, 0));
    QApplication::processEvents();
  }
  return heart.LongestMs();
}

// From the opening of the page until a month of passes ten seconds apart is drawn.
double PictureOfAMonth() {
  constexpr std::int64_t kPasses = kHistoryDays * 86'400 / 10;
  const TempFolder folder;
  const OciApi api = NullOci();
  const auto workspace = OpenWorkspace(folder.Path(), api);
  MakeJob(*workspace, "old", 10);
  const JobFolder of_job(workspace->Folder(), "old");
  HistoryLine line;
  std::string text, error;
  const LocalTime now = workspace->TimeSource().Now();
  for (std::int64_t i = kPasses; i > 0; --i) {
    line.time.ms = now.ms - i * 10'000;
    line.captured = line.applied = i % 1000;
    line.took_ms = 1234;
    line.behind_s = i % 60;
    line.error = i % 100 == 0 ? "ORA-00001: unique constraint (SHOP.ITEM_PK) violated" : "";
    line.source_scn = 10'000'000 - i;
    line.reached_scn = line.source_scn - 5;
    text += HistoryText(line);
  }
  if (!of_job.Make(workspace->Files(), error) ||
      !ReplaceFile(workspace->Files(), of_job.File(JobFile::History), text, FileAccess::OwnerOnly,
                   error)) {
    std::abort();
  }
  ProgramWindow window(*workspace);
  window.Show();
  auto* tree = window.Form().findChild<QTreeView*>("JobMgrTV");
  tree->setCurrentIndex(tree->model()->index(0, 0, tree->model()->index(0, 0)));
  auto* pages = window.Form().findChild<QTabWidget*>("JobPages");
  auto* page = pages->findChild<QWidget*>("PicturePage");
  page->findChild<QComboBox*>("PictureSpan")->setCurrentIndex(3);
  Settle();
  const auto begin = std::chrono::steady_clock::now();
  pages->setCurrentWidget(page);
  const auto* summary = page->findChild<QLabel*>("PictureSummary");
  while (summary->text().isEmpty()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  Settle();
  const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begin;
  return took.count();
}

}  // namespace

void AddWindowBenches(RatioTable& table) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QLoggingCategory::setFilterRules(QStringLiteral("*.warning=false"));  // what it cannot do
  static int count = 1;
  static std::array<char, 16> name = {"quillmere_bench"};
  static std::array<char*, 2> arguments = {name.data(), nullptr};
  const auto application = std::make_shared<QApplication>(count, arguments.data());
  const auto window = std::make_shared<LargeWindow>(application);
  table.Add({"window: job of 50000 tables / item model", 0.2,
             [application] { FillItemModel(kJobTables, 6); },
             [window] { window->OpenJobTables(); }});
  table.Add({"window: timer repaint of them / item model", 0.2,
             [application] { FillItemModel(kJobTables, 6); },
             [window] {
               window->StartJobs();
               window->TimerRepaint();
             }});
  table.Add({"window: 100000 cached tables / item model", 0.2,
             [application] { FillItemModel(kCachedTables, 5); },
             [window] {
               window->ShowPage(1);
               window->OpenSourceTables();
             }});
  table.AddFigure("window: start with 1000 jobs of 50 tables", "ms of processor", 500,
                  [application] { return StartWithThousandJobs(); });
  table.AddFigure("window: longest turn, 100000 statements", "ms", 100,
                  [application] { return LongestTurn(); });
  table.AddFigure("window: longest turn, preview of 100000", "ms", 100,
                  [application] { return LongestTurnOfPreview(); });
  table.AddFigure("window: picture of 30 days, 10 s apart", "ms", 200,
                  [application] { return PictureOfAMonth(); });
}

}  // namespace quillmere::bench
