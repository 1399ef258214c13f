// SPDX-License-Identifier: MIT
// The pages below a job's one row that read a database or a file when they are asked.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QTabBar>
#include <QTabWidget>
#include <fstream>
#include <regex>
#include <string>

#include "window/program_fixture.h"

namespace quillmere::window {
namespace {

class JobPages : public ProgramTest {
 protected:
  // The job by commits, under way, with that page open.
  void OpenRunning(const std::string& page) {
    OpenWithJob();
    Ui([this] {
      ConfigOf(Work().Jobs().At(0)).follow = Follow::Commits;
      Work().ProgramSettings().commit_age_seconds = 0;
    });
    StartJob();
    OpenPage(page);
  }
  void OpenPage(const std::string& page) {
    SelectNode({"J"});
    auto* bar = Find<QTabBar>("JobPagesTabs");
    ClickAt(bar, [&] {
      auto* pages = static_cast<QTabWidget*>(bar->parentWidget());
      const auto* wanted = pages->findChild<QWidget*>(page.c_str());
      return bar->tabRect(pages->indexOf(wanted)).center();
    });
    Find(page);
  }
  void WaitForIn(const std::string& field, const std::string& words) {
    const QWidget* widget = Find(field);
    WaitFor(field + " with " + words, [&] {
      const QVariant text = widget->property("text");
      return (text.isValid() ? text : widget->property("plainText"))
          .toString()
          .contains(words.c_str());
    });
    WaitForNoDialog();
  }
  // A row of the list, its cells with "|" between them.
  void WaitForRow(const std::string& list, const std::string& cells) {
    const auto* model = Find<QAbstractItemView>(list)->model();
    WaitFor(list + " with " + cells, [&] {
      for (int row = 0; row < model->rowCount(); ++row) {
        QStringList texts;
        for (int i = 0; i < model->columnCount(); ++i)
          texts << model->index(row, i).data().toString();
        if (texts.join(u'|').startsWith(cells.c_str())) return true;
      }
      return false;
    });
    WaitForNoDialog();
  }
};

TEST_F(JobPages, PreviewShowsWhatTheNextPassExecutesAndWhereAStuckJobStands) {
  OpenRunning("PreviewPage");
  Press("alt+w");
  WaitForIn("PreviewSummary", "The next pass of J has nothing to execute");
  Ui([this] { ConfigOf(Work().Jobs().At(0)).schemas["SHOP"].Find("NOTE")->includeflag = false; });
  Sql("A",
      "insert into SHOP.NOTE values (1, 'x');\ninsert into SHOP.ITEM values (1, 'ours');\ncommit;\n"
      "insert into SHOP.ITEM values (2, 'ours');");
  Click("PreviewBtn");
  WaitForRows("PreviewTables",
              {{"SHOP.ITEM", "2", "0", "0", "0", "", "SHOP.ITEM"},
               {"SHOP.NOTE", "0", "0", "0", "1", "the job excludes the table", ""}});
  WaitForRows("PreviewStatements",
              {{"1", "block", "SHOP.NOTE"}, {"2", "execute", "SHOP.ITEM"}, {"3", "execute"}});
  WaitForIn("PreviewSummary", "Would execute 2 and block 1.");
  ClickRow("PreviewStatements", "2");
  WaitForIn("PreviewStatement", "'ours'");
  EXPECT_FALSE(Identical()) << "nothing was executed";

  Sql("B", "insert into SHOP.ITEM values (2, 'theirs');");
  NextPass();
  WaitFor("the problem", [this] { return Work().Watch().Look(0).problem.has_value(); });
  Click("PreviewBtn");
  WaitForRows("PreviewStatements",
              {{"1", "done"}, {"2", "done", "SHOP.ITEM"}, {"3", "execute", "SHOP.ITEM"}});
  WaitForIn("PreviewSummary", "Goes on with a batch of 3 statements, number 3 is next.");
  EXPECT_EQ(SelectedRow("PreviewStatements"), "3");
}

TEST_F(JobPages, DoctorSaysWhatIsWrongAndCuresAreTakenAlong) {
  OpenWithJob();
  SelectNode({"J"});
  EXPECT_TRUE(IsShown("AskDoctorBtn"));
  Click("AskDoctorBtn");
  WaitForNoDialog();
  WaitForIn("DoctorSummary", "Checks with a failure: ");
  const std::string cure = "alter table SHOP.NOTE add primary key (...);";
  WaitForRow("DoctorList", "1|log-on|OK||both databases can be logged on to|");
  WaitForRow("DoctorList",
             "15|keys|warning|SHOP.NOTE|has no key or unique index on either side: equal rows can "
             "not be told apart|" +
                 cure);
  WaitForRow("DoctorList", "21|rows|OK");
  ClickRow("DoctorList", "15");
  WaitForIn("DoctorFinding", "Cure, on B:\n" + cure);
  Press("alt+c");
  WaitFor("the cures", [&] { return QGuiApplication::clipboard()->text().contains(cure.c_str()); });
  Click("SaveCuresBtn");
  Enter("fileNameEdit", (folder_ / "ours.sql").string());
  Press("Return");
  WaitForNoDialog();
  EXPECT_NE(folder_.Read("ours.sql").find(cure), std::string::npos);
  StartJob();
  OpenPage("NowPage");
  WaitFor("the offer to go", [this] { return !IsShown("AskDoctorBtn"); });
  OpenPage("DoctorPage");
  std::filesystem::remove(folder_ / "sandbox/B.db");
  Press("alt+m");
  WaitForRow("DoctorList", "1|log-on|failure|B|");
}

TEST_F(JobPages, NowSaysWhatDoesNotFitOnTheDestinationUntilItDoes) {
  OpenRunning("NowPage");
  const std::string row = "insert into SHOP.ITEM (ID) values ";
  Sql("A", row + "(1);\nalter table SHOP.ITEM add (EXTRA VARCHAR2(20));\n" + row + "(2);");
  const auto wait_for = [this](const std::string& words) {
    const auto* field = Find("NowPage")->findChild<QLabel*>("NowDefinitions");
    WaitFor("definitions: " + words, [=, this] {
      NextPass();
      return words.empty() ? field->text().isEmpty() : field->text().contains(words.c_str());
    });
  };
  wait_for("SHOP.ITEM has no column EXTRA");
  Sql("B", "alter table SHOP.ITEM add (EXTRA VARCHAR2(20));");
  Sql("A", row + "(3);");
  wait_for("");
}

TEST_F(JobPages, PictureShowsThePassesAndWhereTheSourceStands) {
  OpenRunning("PicturePage");
  Sql("A", "insert into SHOP.ITEM values (1, 'x');\ninsert into SHOP.ITEM values (2, 'x');");
  WaitFor("the changes", [this] {
    NextPass();
    return Work().Jobs().At(0).run.applied_count == 2;
  });
  // The pass ends behind its changes, and a day is read again after a minute only.
  WaitFor("the line of its pass", [this] {
    std::ifstream history(folder_.Path() / "jobs" / "J" / "history.csv");
    const std::regex applied("[^,]*,[^,]*,2,.*");
    for (std::string line; std::getline(history, line);) {
      if (std::regex_match(line, applied)) return true;
    }
    return false;
  });
  Choose("PictureSpan", "day");
  WaitForIn("PictureSummary", " failed: 0. Applied: 2. Waiting at most: 0.");
  WaitForIn("StripWords", "oldest needed ");
  // The charts differ from what is drawn of a job without passes.
  const auto drawn = [this](const char* part) {
    auto* widget = Find(part);
    return Ui([=] { return widget->grab().toImage(); });
  };
  const QImage charts = drawn("HistoryCharts");
  const QImage strip = drawn("ScnStrip");
  OracleSession session(Work().Oci());
  ASSERT_TRUE(session.Connect({"A", "SYS", kPassword, true})) << session.LastError();
  ASSERT_TRUE(session.Execute("insert into SHOP.NOTE values (3, 'x')")) << session.LastError();
  Press("alt+c");
  WaitForIn("StripWords", "; oldest redo there ");
  WaitForIn("StripWords", "; open from ");
  WaitForIn("StripWords", " of SYS on instance 1 (");
  EXPECT_NE(drawn("ScnStrip"), strip);
  Choose("PictureSpan", "week");
  auto* picture = Find("HistoryCharts");
  WaitFor("another picture", [&] { return picture->grab().toImage() != charts; });
}

}  // namespace
}  // namespace quillmere::window
