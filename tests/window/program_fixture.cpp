// SPDX-License-Identifier: MIT
#include "window/program_fixture.h"

#include <QTabBar>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <cstdlib>

#include "workspace/job_operations.h"
#include "workspace/program_folder.h"

namespace quillmere::window {
namespace {

constexpr std::chrono::milliseconds kSweepPause{10};

}  // namespace

const std::string ProgramTest::kOwners = R"(
create user SHOP identified by x;
create user CRM identified by x;
create user ARCHIVE identified by x;
)";
const std::string ProgramTest::kTables = kOwners + R"(
create table SHOP.ITEM (ID number(10), NAME varchar2(60), constraint ITEM_PK primary key (ID));
create table SHOP.NOTE (ID number(10), NAME varchar2(60));
create table SHOP.SECRET (ID number(10));
create table CRM.VISIT (ID number(10), constraint VISIT_PK primary key (ID),
  constraint VISIT_FK foreign key (ID) references SHOP.ITEM (ID));
create index SHOP.ITEM_NAME on SHOP.ITEM (NAME);
)";

ProgramTest::ProgramTest() {
  // No thread of the program runs yet that could read them.
  setenv("QUILLMERE_SANDBOX_DIR", (folder_ / "sandbox").c_str(), 1);
  setenv("QUILLMERE_SANDBOX_SYNC", "off", 1);
  unsetenv("QUILLMERE_SANDBOX_LATENCY_US");
}

ProgramTest::~ProgramTest() {
  Quit();
}

bool ProgramTest::Tool(const std::string& arguments, const std::string& script) {
  folder_.Write("tool.sql", script);
  const std::string in = folder_.Path().string();
  const std::string command = (ProgramFolder() / "quillmere-sandbox").string() + " --workdir " +
                              in + " " + arguments + " <" + in + "/tool.sql >" + in +
                              "/tool.out 2>&1";
  return std::system(command.c_str()) == 0;
}

void ProgramTest::MakeDatabase(const std::string& name, const std::string& sql) {
  ASSERT_TRUE(Tool("create " + name)) << folder_.Read("tool.out");
  Sql(name, sql);
}

void ProgramTest::Sql(const std::string& database, const std::string& statements, bool works) {
  EXPECT_EQ(Tool("sql " + database, statements), works) << folder_.Read("tool.out");
}

bool ProgramTest::Identical(const std::string& a_and_b) {
  return Tool("diff " + a_and_b);
}

void ProgramTest::Open() {
  Workspace::Options options;
  options.folder = folder_.Path();
  options.client = "sandbox";
  options.oci = oci_;
  options.program_folder = ProgramFolder();
  options.clock = &clock_;
  std::string reason;
  Ui([&] { workspace_ = Workspace::Open(options, reason); });
  ASSERT_NE(workspace_, nullptr) << reason;
}

void ProgramTest::AddSource(const std::string& name) {
  InPlace work;
  EXPECT_TRUE(Ui([&] { return AddDataSource(Work(), {name, "SYS", kPassword, true}, work); }));
}

void ProgramTest::AddJob(const std::string& name, const std::string& from, const std::string& to) {
  std::size_t index = 0;
  InPlace work;
  EXPECT_TRUE(Ui([&] {
    return quillmere::AddJob(Work(), {name, "copies " + from, from, to, 1}, index, work);
  }));
}

void ProgramTest::Show() {
  Ui([this] {
    window_ = std::make_unique<ProgramWindow>(*workspace_, kSweepPause);
    window_->Show();
  });
  WaitFor("the window", [this] { return window_->Form().isActiveWindow(); });
}

void ProgramTest::OpenWithSources(const std::string& sql_of_b) {
  MakeDatabase("A", kTables);
  MakeDatabase("B", sql_of_b);
  Open();
  for (const std::string name : {"A", "B"}) AddSource(name);
}

void ProgramTest::OpenWithJob() {
  OpenWithSources();
  AddJob("J");
  Show();
}

void ProgramTest::StartJob() {
  Ui([this] { Work().Jobs().SetState(0, JobState::Starting); });
  WaitForState(JobState::Started);
}

void ProgramTest::Quit() {
  Ui([this] {
    if (window_ != nullptr) window_->RequestEnd();
  });
  WaitForNoDialog();
  Ui([this] {
    std::string reason;
    EXPECT_TRUE(window_ == nullptr || window_->Finish(reason)) << reason;
    window_.reset();
    workspace_.reset();
  });
}

void ProgramTest::Restart() {
  Quit();
  Open();
  Show();
}

void ProgramTest::ShowPage(int page) {
  auto* tabs = Find<QTabBar>("qt_tabwidget_tabbar");
  ClickAt(tabs, [=] { return tabs->tabRect(page).center(); });
  WaitFor("the page", [=] { return tabs->currentIndex() == page; });
}

Names ProgramTest::ActionsShown(const Names* expected) {
  WaitForNoDialog();
  const auto* bar = Find<QToolBar>(IsShown("ToolBar1") ? "ToolBar1" : "DbMgrToolBar");
  Names shown;
  WaitFor("the actions", [&] {
    shown.clear();
    for (QAction* action : bar->actions()) {
      const QWidget* button = bar->widgetForAction(action);
      // What keeps the place of a hidden one is no button.
      if (qobject_cast<const QToolButton*>(button) != nullptr && button->isVisible()) {
        shown.push_back(action->objectName().toStdString());
      }
    }
    return expected == nullptr || shown == *expected;
  });
  return shown;
}

void ProgramTest::WaitForMessage(const std::string& text) {
  WaitFor("the message " + text, [&] {
    const auto* list = window_->Form().findChild<QTreeView*>("TreeView1")->model();
    const auto line = QString::fromStdString(" " + text);
    return !list->match(list->index(0, 0), Qt::DisplayRole, line, 1, Qt::MatchEndsWith).empty();
  });
}

void ProgramTest::WaitForState(JobState state) {
  WaitFor(std::string(StateName(state)), [=, this] { return Work().Jobs().State(0) == state; });
}

}  // namespace quillmere::window
