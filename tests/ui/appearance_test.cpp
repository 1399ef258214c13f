// SPDX-License-Identifier: MIT
#include "ui/toolkit/appearance.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <algorithm>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/file_names.h"
#include "support/stored_text.h"
#include "support/temp_folder.h"
#include "ui/main/farewell.h"
#include "ui/toolkit/core_words.h"
#include "ui/toolkit/language.h"
#include "ui/toolkit/other_words.h"
#include "ui/toolkit/schema_words.h"
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
      {"%2 is held: J is held: %1", "%2 ist gesperrt: J ist gesperrt: %1"},
      {"Migarte Table rows failed. Reason: Create target table:S.T failed: OCI is held: 1",
       "Tabelle rows wurde nicht übertragen. Grund: Die Zieltabelle S.T war nicht anzulegen: OCI "
       "is held: 1"},
      {"There is a data source A already, whose file can not be read",
       "Es gibt schon eine Datenquelle A, deren Datei nicht gelesen werden kann"},
      {"J is held", "J is held"},
      {"Rows of J", "Rows of J"},
  };
  for (const auto& [said, shown] : rows) {
    EXPECT_TRUE(ToBytes(Translated(said)).starts_with(shown)) << ToBytes(Translated(said));
  }
  std::vector<std::string_view> patterns(std::begin(kCoreWords), std::end(kCoreWords));
  patterns.insert(patterns.end(), std::begin(kSchemaWords), std::end(kSchemaWords));
  patterns.insert(patterns.end(), std::begin(kOtherWords), std::end(kOtherWords));
  for (const std::string_view words : patterns) {
    QString said = ToQt(words), german = QCoreApplication::translate("CoreWords", words.data());
    if (!said.contains(u'%')) continue;
    for (QString* const text : {&said, &german}) {
      text->replace("%1", "A").replace("%2", "B").replace("%3", "C").replace("%4", "D");
    }
    EXPECT_EQ(Translated(ToBytes(said)), german);
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

// All that the tests of these operations have them say.
TEST_F(AppearanceTest, WhatDropsRenamesAndMigrationsSayIsGermanButForTheServersWords) {
  UseLanguage(Language::German);
  const std::regex said("  (?:told|both|failed|refused:)(?: [-!])? (.*)");
  const std::regex english("(^|[^A-Za-z])(failed|Reason|Can|not|of|is|left|Table:)([^A-Za-z]|$)");
  std::size_t seen = 0;
  for (const char* const file : {"operations.txt", "refusals.txt", "refresh.txt"}) {
    std::istringstream lines(StoredText(std::string(SCHEMA_ACCOUNTS) + "/" + file));
    for (std::string line; std::getline(lines, line);) {
      std::smatch part;
      if (!std::regex_match(line, part, said)) continue;
      const std::string shown = ToBytes(Translated(part.str(1)));
      EXPECT_NE(shown, part.str(1));
      const std::string ours = shown.substr(0, std::min(shown.find("OCI"), shown.find(" ALTER ")));
      if (ours.find("beginnend mit") == ours.npos) {
        EXPECT_FALSE(std::regex_search(ours, english)) << line << "\n" << shown;
      }
      ++seen;
    }
  }
  EXPECT_GT(seen, 90U);
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
