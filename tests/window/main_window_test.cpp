// SPDX-License-Identifier: MIT
// The window around the two managers: menus, hints, settings, the guard at its close, and how the
// program ends while it is at work. Nothing may hang, and nothing be lost.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QTextBrowser>
#include <QTreeView>
#include <QUrl>
#include <csignal>
#include <memory>
#include <utility>

#include "window/program_fixture.h"
#include "workspace/program_folder.h"

namespace quillmere::window {
namespace {

class MainWindow : public ProgramTest {
 protected:
  // The whole program in a process of its own: how it ends after what is done to its window.
  int RunProgram(const std::string& folder, const std::function<void(pid_t)>& work) {
    const std::string program = (ProgramFolder() / "quillmere").string();
    const pid_t id = vfork();
    if (id == 0) {
      execl(program.c_str(), program.c_str(), "--workdir", folder.c_str(), "--client", "sandbox",
            nullptr);
      _exit(127);
    }
    WaitFor("its window", [] { return x::ActiveTitle() == "Quillmere"; });
    work(id);
    int status = -1;
    WaitFor("the program's end", [&] { return waitpid(id, &status, WNOHANG) == id; });
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  // A started job with so many statements to apply.
  void StartWithBatch(int rows) {
    OpenWithJob();
    StartJob();
    std::string inserts;
    for (int i = 0; i < rows; ++i) {
      inserts += "insert into SHOP.ITEM values (" + std::to_string(i) + ", 'x');\n";
    }
    Sql("A", inserts);
    NextPass();
  }
  void ExpectAllIsAppliedAfterRestart() {
    unsetenv("QUILLMERE_SANDBOX_LATENCY_US");
    Restart();
    WaitForState(JobState::Paused);
    SelectNode({"J"});
    ClickAction("RunRun");
    AnswerBox("Continue J?", "Yes");
    WaitFor("all rows", [this] {
      NextPass();
      return Identical();
    });
  }
};

TEST_F(MainWindow, HintsMessagesAndSettings) {
  OpenWithJob();
  MoveOver(Find("TreeView1"));
  WaitFor("its hint", [this] { return TextOf("LblTips").starts_with("Show all errors"); });
  ChooseInMenu("Options", "ShowLog");
  Work().ProgramSettings().commit_age_seconds = 9;  // which has no field
  ChooseInMenu("Options", "Settings ...");
  Click("CheckDebug");
  Choose("CBNewJobsFollow", "Commits (recommended)");
  Choose("CBLanguage", "Deutsch");
  Enter("EditMessageLimit", "7");
  Enter("EditHealthCommand", "/bin/true \"a b\"");
  Click("OkBtn");
  WaitForNoDialog();
  Press("ctrl+2");
  WaitFor("the other page", [this] { return IsShown("DbMgrTV"); });
  Press("ctrl+Tab");
  WaitFor("the first page", [this] { return IsShown("JobMgrTV"); });
  Restart();
  WaitForMessage("A job created, name is J");
  EXPECT_TRUE(Work().ProgramSettings().debug);
  EXPECT_EQ(Work().ProgramSettings().message_limit, 7);
  EXPECT_EQ(Work().ProgramSettings().health_command, "/bin/true \"a b\"");
  EXPECT_EQ(Work().ProgramSettings().commit_age_seconds, 9);
  EXPECT_TRUE(Work().ProgramSettings().new_jobs_follow_commits);
  EXPECT_FALSE(IsShown("TreeView1"));
  ChooseInMenu("Optionen", "Meldungen zeigen");
  EXPECT_TRUE(IsShown("TreeView1"));
}

TEST_F(MainWindow, ExplainsTheMessageUnderTheMouse) {
  folder_.Write("HTML/messages.html",
                "<tr id=\"gone\"><td><code>job: <var>JOB</var> deleted.</code></td></tr>\n"
                "<tr id=\"made\"><td><code>A job created, name is <var>JOB</var></code></td></tr>");
  OpenWithJob();
  Ui([this] { Work().Log().Add("job: J deleted.", false); });
  const auto browser = Ui([] { return std::make_unique<QTextBrowser>(); });
  Ui([&] { QDesktopServices::setUrlHandler("file", browser.get(), "setSource"); });
  const auto wait_for = [&](const QString& anchor) {
    WaitFor(anchor.toStdString(), [&] {
      return browser->source().fileName() == "messages.html" &&
             browser->source().fragment() == anchor;
    });
  };
  for (const auto& [words, anchor] :
       {std::pair(" A job created, name is J", "made"), std::pair(" job: J deleted.", "gone")}) {
    const auto* list = Find<QTreeView>("TreeView1")->model();
    const auto line = Ui([&, end = words] {
      return list->match(list->index(0, 0), Qt::DisplayRole, end, 1, Qt::MatchEndsWith)
          .value(0)
          .data()
          .toString()
          .toStdString();
    });
    ClickRow("TreeView1", line, x::kRight);
    ChooseInPopup("Explain this message");
    wait_for(anchor);
  }
  Ui([&] { browser->setSource(QUrl()); });
  Press("Menu");
  WaitFor("the menu", [] { return QApplication::activePopupWidget() != nullptr; });
  Press("e");
  wait_for("gone");
  Ui([] { QDesktopServices::unsetUrlHandler("file"); });
}

TEST_F(MainWindow, StaysOpenWhileThereIsWork) {
  OpenWithJob();
  for (const bool running : {true, false}) {
    Ui([&] {
      Work().Jobs().At(0).run.next_due = AddMinutes(clock_.Now(), 1000);
      Work().Jobs().SetState(0, running ? JobState::Started : JobState::Paused, {1, 2});
    });
    Press("ctrl+q");
    AnswerBox(running ? "J is running, do not close the application"
                      : "Some job is running or has records to synchronize, stop them first");
  }
  Ui([&] { Work().Jobs().SetState(0, JobState::Paused, {3, 0}); });
  ChooseInMenu("Job", "Exit");
  WaitFor("the window to close", [this] { return !Window().Form().isVisible(); });
}

TEST_F(MainWindow, HidesInTheTrayAndComesBack) {
  OpenWithJob();
  const auto trigger = [this](const char* name) {
    Ui([&] { Window().Form().findChild<QAction*>(name)->trigger(); });
  };
  const auto wait_until = [this](bool shown) {
    WaitFor(shown ? "the window" : "none",
            [=, this] { return Window().Form().isVisible() == shown; });
  };
  Press("alt+j");
  WaitFor("the menu", [] { return QApplication::activePopupWidget() != nullptr; });
  EXPECT_FALSE(Ui([this] { return Window().Form().findChild<QAction*>("Hide")->isEnabled(); }));
  Press("Escape");
  auto tray = std::make_unique<x::Tray>();
  ChooseInMenu("Job", "Hide");
  wait_until(false);
  trigger("TrayShow");
  wait_until(true);
  ChooseInMenu("Job", "Hide");
  wait_until(false);
  tray.reset();
  wait_until(true);
}

TEST_F(MainWindow, WhatWasAtWorkGoesOnByItselfIfAsked) {
  OpenWithJob();
  StartJob();
  Restart();
  EXPECT_EQ(TextOf("ListNote").find("J was at work when the program ended, and is Paused"), 0U);
  StartJob();
  folder_.Write("config/settings.xml",
                "<settings>\n<resume_jobs>true</resume_jobs>\n</settings>\n");
  Restart();
  WaitForMessage("J goes on by itself, as the settings say");
  WaitForState(JobState::Started);
}

TEST_F(MainWindow, EndsDuringAPassAndGoesOnThere) {
  setenv("QUILLMERE_SANDBOX_LATENCY_US", "2000", 1);
  StartWithBatch(400);
  WaitFor("the pass", [this] { return Work().Jobs().At(0).run.applied_count >= 5; });
  Quit();
  EXPECT_FALSE(Identical()) << "it should have ended within the batch";
  ExpectAllIsAppliedAfterRestart();
  WaitForMessage("Continue synchronize a old batch");
}

TEST_F(MainWindow, EndsWithDialogsOpen) {
  OpenWithJob();
  Press("ctrl+n");
  Click("OkBtn");
  WaitFor("the box", [] { return QApplication::activeModalWidget()->inherits("QMessageBox"); });
  // In the middle of long work.
  setenv("QUILLMERE_SANDBOX_LATENCY_US", "30000", 1);
  Restart();
  ShowDatabases();
  SelectNode({"A"});
  Ui([this] { Work().Registry().At(0).tables.clear(); });
  ClickAction("ConnectDS");
  WaitFor("the refresh", [this] {
    return QApplication::activeModalWidget() != nullptr &&
           Work().Registry().At(0).state == ConnectionState::Connected;
  });
  Ui([this] { Window().RequestEnd(); });
  WaitForNoDialog();
  EXPECT_TRUE(Ui([this] { return Work().Registry().At(0).tables.empty(); })) << "cancelled";
}

TEST_F(MainWindow, TheProgramRefusesBadFoldersAndEndsInGoodOrder) {
  Open();  // takes the folder
  folder_.Write("file", "");
  folder_.Write("log/error.log/x", "");  // no error.log can be written there
  for (const char* bad : {".", "file", "log"}) {
    EXPECT_EQ(RunProgram((folder_ / bad).string(), [](pid_t) { x::Press("Return"); }), 1) << bad;
  }
  Quit();
  EXPECT_EQ(RunProgram(folder_.Path().string(), [](pid_t program) { kill(program, SIGTERM); }), 0);
  EXPECT_TRUE(folder_.Exists("jobs/jobs.xml"));
}

}  // namespace
}  // namespace quillmere::window
