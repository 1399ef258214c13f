// SPDX-License-Identifier: MIT
#include "ui/toolkit/appearance.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPalette>

#include "support/temp_folder.h"
#include "ui/toolkit/text.h"

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
