// SPDX-License-Identifier: MIT
#include "ui/toolkit/appearance.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/file_names.h"
#include "support/temp_folder.h"
#include "ui/main/farewell.h"
#include "ui/toolkit/core_words.h"
#include "ui/toolkit/language.h"
#include "ui/toolkit/text.h"
#include "workspace/job_tables.h"

namespace quillmere {
namespace {

class AppearanceTest : public testing::Test {
 protected:
  std::filesystem::path Skin(const QByteArray& text) {
    folder_.Write("skin.qss", text.toStdString());
    return folder_ / "skin.qss";
  }
  static QColor Window() { return QApplication::palette().color(QPalette::Window); }

  int argc_ = 3;
  char name_[5] = "test", option_[10] = "-platform", platform_[10] = "offscreen";
  char* argv_[4] = {name_, option_, platform_, nullptr};
  QApplication application_{argc_, argv_};
  TempFolder folder_;
  WindowMemory memory_{folder_.Path()};
  Appearance appearance_{folder_.Files(), memory_};
};

TEST_F(AppearanceTest, SkinsAreCheckedBeforeTheyReplaceTheLook) {
  std::string reason;
  ASSERT_TRUE(appearance_.LoadSkin(Skin("QLabel { color: #112233 }"), reason)) << reason;
  const std::pair<QByteArray, const char*> rows[] = {
      {"QLabel { color: red", "no Qt style sheet"},
      {" \n", "no Qt style sheet"},
      {"QLabel { color: red } /* \xff */", "no text"},
      {"/* palette\n window: reddish\n*/\nQLabel { color: red }", "window: reddish"},
  };
  for (const auto& [text, why] : rows) {
    EXPECT_FALSE(appearance_.LoadSkin(Skin(text), reason));
    EXPECT_NE(reason.find(why), std::string::npos) << reason;
    EXPECT_EQ(qApp->styleSheet(), "QLabel { color: #112233 }");
  }
}

TEST_F(AppearanceTest, TheChoiceComesBackAndAMissingSkinIsSaid) {
  appearance_.SetScheme(Appearance::Scheme::Dark);
  const QColor dark = Window();
  std::string reason;
  ASSERT_TRUE(appearance_.LoadSkin(
      Skin("/* palette\n scheme: light\n window: #fff0e0\n*/\nQLabel { color: red }"), reason));
  EXPECT_EQ(Window(), QColor("#fff0e0"));

  Appearance again(folder_.Files(), memory_);
  again.Restore(reason);
  EXPECT_EQ(reason, "");
  EXPECT_EQ(Window(), QColor("#fff0e0"));
  std::filesystem::remove(folder_ / "skin.qss");
  Appearance without(folder_.Files(), memory_);
  without.Restore(reason);
  EXPECT_NE(reason.find("skin.qss"), std::string::npos) << reason;
  EXPECT_EQ(Window(), dark);
}

// Of what the core says with names in it: that the core still says it so, and that the names stay.
TEST_F(AppearanceTest, SentencesOfTheCoreAreTranslatedAroundTheirNames) {
  UseLanguage(Language::German);
  const std::pair<std::string, const char*> rows[] = {
      {WhyNoFileName("a?b"), "Ein Name darf kein „?“ enthalten"},
      {WhyNoFileName(std::string(1000, 'a')), "Ein Name darf nicht länger als "},
      {WhyBusy("%1"), "Der Auftrag %1 läuft. Bitte zuerst pausieren oder stoppen"},
      {"%2 is held: J is held: %1", "%2 ist gesperrt: J is held: %1"},
      {"There is a data source A already, whose file can not be read",
       "Es gibt schon eine Datenquelle A, deren Datei nicht gelesen werden kann"},
      {"J is held", "J is held"},
      {"Rows of J", "Rows of J"},
  };
  for (const auto& [said, shown] : rows) {
    EXPECT_TRUE(ToBytes(Translated(said)).starts_with(shown)) << ToBytes(Translated(said));
  }
  for (const std::string_view words : kCoreWords) {
    const QString pattern = ToQt(words);
    if (!pattern.contains(u'%')) continue;
    const QString names = QString(pattern).replace("%1", "A").replace("%2", "B");
    QString german = QCoreApplication::translate("CoreWords", words.data());
    EXPECT_EQ(Translated(ToBytes(QString(names).replace("%3", "C"))),
              german.replace("%1", "A").replace("%2", "B").replace("%3", "C"));
  }
}

TEST_F(AppearanceTest, AnEndThatTakesLongSaysWhatItWaitsFor) {
  Farewell farewell;
  const auto is_said = [](const QString& what) {
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [&](const QWidget* window) {
      const auto labels = window->findChildren<QLabel*>();
      return window->isVisible() && std::any_of(labels.begin(), labels.end(), [&](QLabel* label) {
               return label->text() == what;
             });
    });
  };
  for (const QString what : {"for A", "for B"}) {
    for (int turn = 0; turn < 12000 && !is_said(what); ++turn) farewell.Wait(what);
    EXPECT_TRUE(is_said(what)) << what.toStdString();
  }
}

TEST_F(AppearanceTest, AnUntouchedFieldGivesItsBytesBack) {
  using namespace std::string_literals;
  for (const std::string& original : {"\xc3\x84rger"s, "\xff\xfe no UTF-8"s, "two\nlines\ttab"s,
                                      "a\0b"s, ""s, std::string(10000, 'x')}) {
    QLineEdit field;
    field.setText(ToQt(original));
    EXPECT_EQ(EditedText(field, original), original);
    field.setText(QStringLiteral("other \u00c4"));
    EXPECT_EQ(EditedText(field, original), "other \xc3\x84");
  }
}

}  // namespace
}  // namespace quillmere
