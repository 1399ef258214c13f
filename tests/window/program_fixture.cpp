// SPDX-License-Identifier: MIT
#include "window/program_fixture.h"

#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>
#include <cstdlib>

#include "workspace/job_operations.h"
#include "workspace/program_folder.h"
#include "workspace/source_operations.h"

namespace quillmere::window {
namespace {

constexpr std::chrono::milliseconds kSweepPause{10};

struct Unwatched final : ProgressListener {
  bool OnProgress(std::string_view, std::size_t, std::size_t) override { return true; }
};

}  // namespace

const std::string ProgramTest::kTables = R"(
create user SHOP identified by x;
create user CRM identified by x;
create user ARCHIVE identified by x;
create table SHOP.ITEM (ID number(10) constraint ITEM_PK primary key, NAME varchar2(60));
create table SHOP.NOTE (ID number(10) primary key, NAME varchar2(60));
create table SHOP.SECRET (ID number(10) primary key);
create table CRM.VISIT (ID number(10) primary key);
)";

ProgramTest::ProgramTest() {
  // No thread of the program runs yet that could read them.
  setenv("QUILLMERE_SANDBOX_DIR", (folder_ / "sandbox").c_str(), 1);
  setenv("QUILLMERE_SANDBOX_SYNC", "off", 1);
  unsetenv("QUILLMERE_SANDBOX_LATENCY_US");
}

ProgramTest::~ProgramTest() {
  CloseDialogs();
  Quit();
}

std::string ProgramTest::Tool(const std::string& arguments, const std::string& script, bool* ok) {
  folder_.Write("tool.sql", script);
  const std::string command = (ProgramFolder() / "quillmere-sandbox").string() + " --workdir " +
                              folder_.Path().string() + " " + arguments + " <" +
                              (folder_ / "tool.sql").string() + " >" +
                              (folder_ / "tool.out").string() + " 2>&1";
  *ok = std::system(command.c_str()) == 0;
  return folder_.Read("tool.out");
}

void ProgramTest::MakeDatabase(const std::string& name, const std::string& sql) {
  bool ok = false;
  const std::string said = Tool("create " + name, "", &ok);
  ASSERT_TRUE(ok) << said;
  Sql(name, sql);
}

void ProgramTest::Sql(const std::string& database, const std::string& statements) {
  ASSERT_EQ(SqlFails(database, statements), "");
}

std::string ProgramTest::SqlFails(const std::string& database, const std::string& statements) {
  bool ok = false;
  const std::string said = Tool("sql " + database, statements, &ok);
  return ok ? "" : said;
}

std::string ProgramTest::Difference(const std::string& options) {
  bool ok = false;
  return Tool("diff " + options, "", &ok);
}

void ProgramTest::Open() {
  Workspace::Options options;
  options.folder = folder_.Path();
  options.client = "sandbox";
  options.program_folder = ProgramFolder();
  options.clock = &clock_;
  std::string reason;
  Ui([&] { workspace_ = Workspace::Open(options, reason); });
  ASSERT_NE(workspace_, nullptr) << reason;
}

void ProgramTest::AddSource(const std::string& name, const std::string& mode) {
  Unwatched unwatched;
  const Outcome added = Ui([&] {
    return AddDataSource(Work(), {name, "SYS", kPassword, mode == "SYSDBA"}, unwatched);
  });
  ASSERT_TRUE(added.done) << added.text;
}

void ProgramTest::AddJob(const std::string& name, const std::string& from, const std::string& to) {
  std::size_t index = 0;
  const Outcome added = Ui([&] {
    return quillmere::AddJob(Work(), {name, "copies " + from, from, to, 1}, index);
  });
  ASSERT_TRUE(added.done) << added.text;
}

void ProgramTest::Show() {
  Ui([this] {
    window_ = std::make_unique<ProgramWindow>(*workspace_, kSweepPause);
    window_->Show();
  });
  WaitFor("the window", [this] { return window_->Form().isActiveWindow(); });
}

void ProgramTest::OpenWithJob(const std::string& job) {
  for (const std::string name : {"A", "B"}) MakeDatabase(name);
  Open();
  for (const std::string name : {"A", "B"}) AddSource(name);
  AddJob(job);
  Show();
}

void ProgramTest::Quit() {
  Ui([this] {
    std::string reason;
    if (window_ != nullptr && !window_->Finish(reason)) ADD_FAILURE() << reason;
    window_.reset();
    workspace_.reset();
  });
}

void ProgramTest::SelectNode(const Path& below_root) {
  Path path{"All Jobs"};
  path.insert(path.end(), below_root.begin(), below_root.end());
  ClickNode("JobMgrTV", path);
}

void ProgramTest::ShowDatabases() {
  auto* tabs =
      Ui([this] { return window_->Form().findChild<QTabWidget*>("PageClient")->tabBar(); });
  ClickAt(tabs, [tabs] { return tabs->tabRect(1).center(); });
}

std::vector<std::string> ProgramTest::ActionsShown(std::string_view tool_bar) {
  const auto* bar = Find<QToolBar>(tool_bar);
  return Ui([bar] {
    std::vector<std::string> shown;
    for (QAction* action : bar->actions()) {
      const auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action));
      if (button != nullptr && button->isVisible()) {
        shown.push_back(action->objectName().toStdString());
      }
    }
    return shown;
  });
}

void ProgramTest::WaitForMessage(const std::string& text, int times) {
  WaitFor("the message " + text, [&] {
    const QAbstractItemModel* list =
        window_->Form().findChild<QAbstractItemView*>("TreeView1")->model();
    int found = 0;
    for (int row = 0; row < list->rowCount(); ++row) {
      if (list->index(row, 0).data().toString().toStdString().ends_with(" " + text)) ++found;
    }
    return found >= times;
  });
}

JobState ProgramTest::StateOf(const std::string& job) {
  return Ui([&] { return Work().Jobs().State(Work().Jobs().IndexOf(job)); });
}

void ProgramTest::WaitForState(const std::string& job, JobState state) {
  WaitFor(job + " to be " + std::string(StateName(state)),
          [&] { return Work().Jobs().State(Work().Jobs().IndexOf(job)) == state; });
}

void ProgramTest::Request(const std::string& action, const std::string& question) {
  ClickAction(action);
  AnswerBox(question, "Yes");
}

}  // namespace quillmere::window
