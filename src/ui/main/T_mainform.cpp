// SPDX-License-Identifier: MIT
#include "ui/main/T_mainform.h"

#include <QAction>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

#include "foundation/files.h"
#include "ui/databases/T_dbmgrform.h"
#include "ui/jobs/T_jobmgrform.h"
#include "ui/jobs/job_health.h"
#include "ui/main/banner.h"
#include "ui/main/message_panel.h"
#include "ui/main/tray.h"
#include "ui/toolkit/hints.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "workspace/job_operations.h"

namespace quillmere {
namespace {

constexpr QSize kFirstSize(850, 611);
constexpr int kMessagesHeight = 81;

const QString kCaption = QStringLiteral("Quillmere");
const QString kPlace = QStringLiteral("main");
const QString kPage = QStringLiteral("main/page");
const QString kShowLog = QStringLiteral("main/showlog");

}  // namespace

TMainForm::TMainForm(UiContext& context, std::chrono::milliseconds sweep_pause)
    : context_(context) {
  setObjectName(QStringLiteral("MainForm"));
  setWindowTitle(kCaption);
  setWindowIcon(Icon("app"));
  auto* banner =
      new Banner(tr("Working folder %1").arg(ToQt(context.workspace.FolderText())), this);
  splitter_ = new QSplitter(Qt::Vertical, this);
  splitter_->setObjectName(QStringLiteral("SplitMain"));
  splitter_->addWidget(MakePages(sweep_pause));
  splitter_->addWidget(MakeMessages());
  splitter_->setStretchFactor(0, 1);
  splitter_->setChildrenCollapsible(false);
  auto* all = new QWidget(this);
  auto* column = new QVBoxLayout(all);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(banner);
  column->addWidget(splitter_, 1);
  column->addWidget(MakeHintLine());
  setCentralWidget(all);
  tray_ = new Tray(context_, *this);
  MakeMenus();
  ShowUnread(messages_->UnreadWords());
  banner->SetMenu(findChild<QMenu*>(QStringLiteral("PMOptions")));
  new HintWatcher([this](const QString& hint) { ShowTip(hint); }, this);
  clear_timer_.setObjectName(QStringLiteral("TimerClear"));
  connect(&clear_timer_, &QTimer::timeout, this, [this] { context_.workspace.Log().LimitFiles(); });
  clear_timer_.start(MessageLog::kLimitPause);
  PlaceWindow();
}

TMainForm::~TMainForm() {
  EndWorker();
  KeepPlace();
}

void TMainForm::EndWorker(const std::function<void()>& turn) {
  workload_.reset();
  job_manager_->EndWorker(turn);
}

QWidget* TMainForm::MakePages(std::chrono::milliseconds sweep_pause) {
  pages_ = new QTabWidget(this);
  pages_->setObjectName(QStringLiteral("PageClient"));
  pages_->setTabPosition(QTabWidget::South);
  pages_->setDocumentMode(true);
  job_manager_ = new TJobMgrForm(context_, this, sweep_pause);
  AddPage(job_manager_, "TSJobMgr", tr("Job Explorer"),
          tr("Jobs manager: Design, mangage and monitor"));
  connect(job_manager_, &TJobMgrForm::MessageLost, this, &TMainForm::SayLost);
  connect(job_manager_, &TJobMgrForm::JobsSeen, this, &TMainForm::OnJobsSeen);
  connect(job_manager_, &TJobMgrForm::HealthChanged, this, &TMainForm::ShowHealth);
  connect(job_manager_, &TJobMgrForm::Acting, pages_, [this] { pages_->setCurrentIndex(0); });
  database_manager_ = new TDbMgrForm(context_, this);
  AddPage(database_manager_, "TSDbMgr", tr("Database"),
          tr("Databse manager: table, key and index management."));
  connect(database_manager_, &TDbMgrForm::Acting, pages_, [this] { pages_->setCurrentIndex(1); });
  pages_->setTabIcon(1, Icon("source"));
  job_manager_->SetFirst(MakeFirst());
  database_manager_->SetFirst(MakeFirst());
  ShowHealth({});
  AddPageKeys();
  connect(pages_, &QTabWidget::currentChanged, this, &TMainForm::OnPageChanged);
  OnPageChanged();
  return pages_;
}

// Also where the focus is in a part that has pages of its own.
void TMainForm::AddPageKeys() {
  const auto on = [this](const QKeySequence& keys, int page, int step) {
    connect(new QShortcut(keys, this), &QShortcut::activated, pages_, [this, page, step] {
      const int count = pages_->count();
      pages_->setCurrentIndex(step == 0 ? page : (pages_->currentIndex() + step + count) % count);
    });
  };
  for (int page = 0; page < pages_->count(); ++page) {
    on(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + page)), page, 0);
  }
  on(QKeySequence(Qt::CTRL | Qt::Key_Tab), 0, 1);
  on(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), 0, -1);
}

void TMainForm::AddPage(QWidget* form, const char* name, const QString& caption,
                        const QString& hint) {
  auto* page = new QWidget(pages_);
  page->setObjectName(QLatin1StringView(name));
  SetHint(page, hint);
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(form);
  page_hints_ << hint;
  pages_->addTab(page, caption);
}

// In the title bar and on the page's tab, so that it is seen from the other page and in the task
// bar too.
void TMainForm::ShowHealth(const HealthCounts& counts) {
  const QString words = HealthWords(counts);
  setWindowTitle(words.isEmpty() ? kCaption : kCaption + QStringLiteral(" - ") + words);
  const auto worst = WorstOf(counts);
  pages_->setTabIcon(0, worst ? MarkedIcon("jobs", HealthMark(*worst)) : Icon("jobs"));
  pages_->setTabToolTip(0, words);
}

void TMainForm::OnJobsSeen() {
  if (tray_ != nullptr) tray_->Look();
  Workspace& workspace = context_.workspace;
  for (const WatchMessage& told : workspace.Hook().TakeMessages()) {
    if (!workspace.Log().Add(told.text, told.error)) SayLost(ToQt(told.text));
  }
}

void TMainForm::OnPageChanged() {
  const QString hint = page_hints_.value(pages_->currentIndex());
  SetHint(pages_, hint);
  if (tips_ != nullptr) ShowTip(hint);
  // Data sources are also registered in the dialogs of jobs.
  if (pages_->currentIndex() > 0) database_manager_->ShowRegistry();
}

QWidget* TMainForm::MakeMessages() {
  context_.workspace.Log().KeepRecent();
  messages_ = new MessagePanel(context_.workspace.Log(), context_.workspace.Folder(), this);
  connect(messages_, &MessagePanel::UnreadChanged, this, &TMainForm::ShowUnread);
  connect(messages_, &MessagePanel::HelpAsked, this, &TMainForm::ExplainMessage);
  return messages_;
}

// Where a menu has shortcuts, so that the entry's own words stay.
void TMainForm::ShowUnread(const QString& words) {
  if (show_log_ == nullptr) return;  // the menus are made last
  show_log_->setText(tr(" &ShowLog") + (words.isEmpty() ? QString() : u'\t' + words));
}

QWidget* TMainForm::MakeHintLine() {
  auto* line = new QFrame(this);
  line->setObjectName(QStringLiteral("PnlStatus"));
  tips_ = new QLabel(line);
  tips_->setObjectName(QStringLiteral("LblTips"));
  tips_->setTextFormat(Qt::PlainText);
  tips_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* row = new QVBoxLayout(line);
  row->setContentsMargins(kSpacing, kSpacing / 2, kSpacing, kSpacing / 2);
  row->addWidget(tips_);
  return line;
}

void TMainForm::ShowTip(const QString& text) {
  tips_->setText(text);
}

// Once in a box, so that nobody misses it; the box waits for nobody, the worker goes on.
void TMainForm::SayLost(const QString& text) {
  ShowTip(tr("error.log cannot be written. Lost: %1").arg(text));
  if (std::exchange(loss_told_, true)) return;
  auto* box = new QMessageBox(
      QMessageBox::Critical, kCaption,
      tr("error.log in the working folder cannot be written: messages are lost until it can be. "
         "Make room, or make the file writable.\n\nThe first one: %1")
          .arg(text),
      QMessageBox::Ok, this);
  box->setObjectName(QStringLiteral("LossBox"));
  box->setTextFormat(Qt::PlainText);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setModal(false);
  box->show();
}

void TMainForm::PlaceWindow() {
  resize(kFirstSize);
  splitter_->setSizes({kFirstSize.height(), kMessagesHeight});
  if (const QScreen* const screen = QGuiApplication::primaryScreen()) {
    QRect place(QPoint(), kFirstSize);
    place.moveCenter(screen->availableGeometry().center());
    move(place.topLeft());
  }
  context_.memory.RestoreGeometry(*this, kPlace);
  context_.memory.RestoreSplitter(*splitter_, kPlace);
  for (int i = 0; i < pages_->count(); ++i) {
    if (pages_->widget(i)->objectName() == context_.memory.Text(kPage)) pages_->setCurrentIndex(i);
  }
  show_log_->setChecked(context_.memory.Text(kShowLog) != QStringLiteral("hidden"));
  messages_->setVisible(show_log_->isChecked());
}

void TMainForm::KeepPlace() {
  context_.memory.KeepGeometry(*this, kPlace);
  context_.memory.KeepSplitter(*splitter_, kPlace);
  context_.memory.KeepText(kPage, pages_->currentWidget()->objectName());
  context_.memory.KeepText(
      kShowLog, show_log_->isChecked() ? QStringLiteral("shown") : QStringLiteral("hidden"));
}

void TMainForm::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (!job_manager_->MayClose()) return;
  const std::string why = WhyMainWindowStaysOpen(context_.workspace.Jobs());
  if (!why.empty()) {
    ShowNotice(this, why);
    return;
  }
  event->accept();
}

}  // namespace quillmere
