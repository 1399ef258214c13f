// SPDX-License-Identifier: MIT
// The window around the two managers: menus, hints, the guard at its close, and how the program
// ends while it is at work. Nothing may hang, and nothing be lost.
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <QLabel>
#include <QMenuBar>
#include <QTabWidget>
#include <csignal>
#include <thread>

#include "window/program_fixture.h"
#include "workspace/program_folder.h"

namespace quillmere::window {
namespace {

using Names = std::vector<std::string>;

class MainWindow : public ProgramTest {
 protected:
  // The whole program in a process of its own.
  pid_t StartProgram(const std::string& folder) {
    const std::string program = (ProgramFolder() / "quillmere").string();
    const char* const arguments[] = {program.c_str(), "--workdir", folder.c_str(),
                                     "--client",      "sandbox",   nullptr};
    pid_t id = -1;
    EXPECT_EQ(posix_spawn(&id, program.c_str(), nullptr, nullptr,
                          const_cast<char* const*>(arguments), environ),
              0);
    return id;
  }
  int ExitStatus(pid_t program) {
    int status = -1;
    WaitFor("the program's end", [&] { return waitpid(program, &status, WNOHANG) == program; });
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  void Insert(int rows) {
    std::string inserts;
    for (int i = 0; i < rows; ++i) {
      inserts += "insert into SHOP.ITEM values (" + std::to_string(i) + ", 'x');\n";
    }
    Sql("A", inserts);
  }
  // A started job with so many statements to apply.
  void StartWithBatch(int rows) {
    OpenWithJob();
    Ui([this] { Work().Jobs().SetState(0, JobState::Starting); });
    WaitForState("J", JobState::Started);
    Insert(rows);
    NextPass();
  }
  std::uint32_t Applied() {
    return Ui([this] { return static_cast<std::uint32_t>(Work().Jobs().At(0).run.applied_count); });
  }
  void ExpectAllIsAppliedAfterRestart() {
    unsetenv("QUILLMERE_SANDBOX_LATENCY_US");
    Open();
    Show();
    EXPECT_EQ(StateOf("J"), JobState::Paused);
    SelectNode({"J"});
    Request("RunRun", "Continue J?");
    WaitFor("all rows", [this] {
      clock_.TurnMinutes(2);
      return Difference("A B") == "identical\n";
    });
  }
};

TEST_F(MainWindow, HintsFollowTheMouseAndTheLogStaysHidden) {
  OpenWithJob();
  EXPECT_EQ(Ui([this] { return Window().Form().size(); }), QSize(850, 611));
  const auto expect_hint = [this](QWidget* under_mouse, const std::string& hint) {
    MoveOver(under_mouse);
    WaitFor("the hint " + hint, [&] {
      return Window().Form().findChild<QLabel*>("LblTips")->text().toStdString() == hint;
    });
  };
  expect_hint(Find("ToolButton1"),
              "Add a job to synchronize source database's record to destination database.");
  expect_hint(Find("JobMgrTV"), "Jobs manager: Design, mangage and monitor");
  expect_hint(Find("TreeView1"), "Show all errors and informaitons");
  ShowDatabases();
  expect_hint(Find("DbMgrTV"), "Databse manager: table, key and index management.");
  ChooseInMenu({"Options", "ShowLog"});
  EXPECT_FALSE(IsShown("TreeView1"));
  Quit();
  Open();
  Show();
  EXPECT_FALSE(IsShown("TreeView1"));
  ChooseInMenu({"Options", "ShowLog"});
  EXPECT_TRUE(IsShown("TreeView1"));
}

TEST_F(MainWindow, StaysOpenWhileThereIsWork) {
  OpenWithJob();
  const struct {
    JobState state;
    JobList::Progress progress;
    std::string refusal;
  } rows[] = {
      {JobState::Started, {0, 0}, "J is running, do not close the application"},
      {JobState::Paused,
       {1, 2},
       "Some job is running or has records to synchronize, stop them first"},
  };
  for (const auto& row : rows) {
    Ui([&] {
      Work().Jobs().At(0).run.next_due = AddMinutes(clock_.Now(), 1000);
      Work().Jobs().SetState(0, row.state, row.progress);
    });
    Press("alt+F4", false);
    AnswerBox(row.refusal);
    EXPECT_TRUE(IsShown("MainForm"));
  }
  Ui([&] { Work().Jobs().SetState(0, JobState::Paused, {3, 0}); });
  ChooseInMenu({"Job", "Exit"});
  WaitFor("the window to close", [this] { return !Window().Form().isVisible(); });
}

TEST_F(MainWindow, EndsDuringAPassAndGoesOnThere) {
  setenv("QUILLMERE_SANDBOX_LATENCY_US", "2000", 1);
  StartWithBatch(400);
  WaitFor("the pass", [this] { return Work().Jobs().At(0).run.applied_count >= 5; });
  Ui([this] { Window().RequestEnd(); });
  Quit();
  EXPECT_NE(Difference("A B"), "identical\n") << "it should have ended within the batch";
  ExpectAllIsAppliedAfterRestart();
  WaitForMessage("Continue synchronize a old batch");
}

TEST_F(MainWindow, EndsWhileMessagesArrive) {
  StartWithBatch(50);
  WaitForMessage("Successfully synchronized a batch of J");
  // A change is captured by the pass after the one that first sees it.
  Sql("A", "update SHOP.ITEM set NAME = 'y';");
  clock_.TurnMinutes(1);
  WaitForMessage("Nothing synchronized in this interval of  J", 2);
  // That pass has something to tell, and the window does not come to it before its end.
  std::filesystem::rename(folder_ / "sandbox/B.db", folder_ / "sandbox/away");
  const bool ended = Ui([this] {
    clock_.TurnMinutes(1);
    const Clock::time_point limit = Clock::now() + kLimit;
    JobList::Progress progress;
    while (progress.batch_remaining == 0 && Clock::now() < limit) {
      Work().Jobs().State(0, &progress);
    }
    Window().RequestEnd();
    std::string reason;
    return Window().Finish(reason) && progress.batch_remaining > 0;
  });
  EXPECT_TRUE(ended);
  Quit();
  std::filesystem::rename(folder_ / "sandbox/away", folder_ / "sandbox/B.db");
  ExpectAllIsAppliedAfterRestart();
}

TEST_F(MainWindow, EndsWithDialogsOpen) {
  OpenWithJob();
  Press("ctrl+n");
  Enter("EditJobName", "half entered");
  Click("OkBtn");
  BoxText();
  Ui([this] { Window().RequestEnd(); });
  WaitFor("the dialogs to end", [] { return QApplication::activeModalWidget() == nullptr; });
  Quit();
  // In a menu, and in the middle of long work.
  setenv("QUILLMERE_SANDBOX_LATENCY_US", "30000", 1);
  Open();
  Show();
  ShowDatabases();
  ClickNode("DbMgrTV", {"ORACLE", "A"});
  ClickAction("ConnectDS");
  WaitFor("the refresh", [this] {
    return QApplication::activeModalWidget() != nullptr &&
           Work().Registry().At(0).state == ConnectionState::Connected;
  });
  Ui([this] { Window().RequestEnd(); });
  WaitFor("the work to end", [] { return QApplication::activeModalWidget() == nullptr; });
  Quit();
  Open();
  EXPECT_EQ(Ui([this] { return Work().Registry().At(0).tables.size(); }), 4U) << "cancelled";
  EXPECT_EQ(Ui([this] { return Work().Jobs().LiveJobs().size(); }), 1U);
}

TEST_F(MainWindow, AnswersWhileThousandsOfStatementsAreApplied) {
  constexpr int kStatements = 5000;
  OpenWithJob();
  Ui([this] { Work().Jobs().SetState(0, JobState::Starting); });
  WaitForState("J", JobState::Started);
  Insert(kStatements);
  auto longest = Clock::duration::zero();
  auto last = Clock::now();
  int beats = 0;
  auto heart = Ui([&] {
    auto timer = std::make_unique<QTimer>();
    QObject::connect(timer.get(), &QTimer::timeout, timer.get(), [&] {
      longest = std::max(longest, Clock::now() - last);
      last = Clock::now();
      ++beats;
    });
    timer->start(1);
    return timer;
  });
  NextPass();
  WaitFor("the batch", [&] { return Applied() == kStatements; });
  WaitForRows("JobMgrLV", {{"J", "Started", std::to_string(kStatements), "0",
                            std::to_string(kStatements), "0"}});
  Ui([&] { heart.reset(); });
  EXPECT_GT(beats, 20);
  EXPECT_LT(longest, std::chrono::seconds(10)) << "the window hung";
  EXPECT_EQ(Difference("A B"), "identical\n");
}

TEST_F(MainWindow, TheProgramRefusesBadFoldersAndEndsInGoodOrder) {
  Open();  // takes the folder
  folder_.Write("file", "");
  folder_.Write("log/error.log/x", "");  // no error.log can be written there
  for (const char* bad : {".", "file", "log"}) {
    SCOPED_TRACE(bad);
    const pid_t program = StartProgram((folder_ / bad).string());
    WaitFor("its message", [this] { return Screen().ActiveTitle() == "Quillmere"; });
    Screen().Press("Return");
    EXPECT_EQ(ExitStatus(program), 1);
  }
  Quit();
  const pid_t program = StartProgram(folder_.Path().string());
  WaitFor("its window", [this] { return Screen().ActiveTitle() == "Quillmere"; });
  kill(program, SIGTERM);
  EXPECT_EQ(ExitStatus(program), 0);
  EXPECT_TRUE(folder_.Exists("jobs/jobs.xml"));
  Open();
}

}  // namespace
}  // namespace quillmere::window
