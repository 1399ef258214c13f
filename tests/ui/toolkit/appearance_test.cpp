// SPDX-License-Identifier: MIT
#include "ui/toolkit/appearance.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPalette>
#include <QPixmap>
#include <QTemporaryDir>

#include "foundation/system_files.h"
#include "ui/toolkit/icons.h"

namespace quillmere {
namespace {

class AppearanceTest : public testing::Test {
 protected:
  std::filesystem::path Skin(const QByteArray& text) {
    QFile file(folder_.filePath("skin.qss"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text);
    return file.fileName().toStdString();
  }
  static QColor Window() { return QApplication::palette().color(QPalette::Window); }

  int argc_ = 3;
  char name_[5] = "test", option_[10] = "-platform", platform_[10] = "offscreen";
  char* argv_[4] = {name_, option_, platform_, nullptr};
  QApplication application_{argc_, argv_};
  QTemporaryDir folder_;
  WindowMemory memory_{folder_.path().toStdString()};
  SystemFiles files_;
  Appearance appearance_{files_, memory_};
};

TEST_F(AppearanceTest, SkinsAreCheckedBeforeTheyReplaceTheLook) {
  std::string reason;
  ASSERT_TRUE(appearance_.LoadSkin(Skin("QLabel { color: #112233 }"), reason)) << reason;
  const struct {
    const char* name;
    QByteArray text;
    const char* reason;
  } rows[] = {
      {"broken sheet", "QLabel { color: red", "no Qt style sheet"},
      {"empty", " \n", "no Qt style sheet"},
      {"no UTF-8", "QLabel { color: red } /* \xff */", "no text"},
      {"unknown colour", "/* palette\n window: reddish\n*/\nQLabel { color: red }",
       "window: reddish"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_FALSE(appearance_.LoadSkin(Skin(row.text), reason));
    EXPECT_NE(reason.find(row.reason), std::string::npos) << reason;
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

  Appearance again(files_, memory_);
  again.Restore(reason);
  EXPECT_EQ(reason, "");
  EXPECT_EQ(Window(), QColor("#fff0e0"));
  QFile::remove(folder_.filePath("skin.qss"));
  Appearance without(files_, memory_);
  without.Restore(reason);
  EXPECT_NE(reason.find("skin.qss"), std::string::npos) << reason;
  EXPECT_EQ(Window(), dark);
}

TEST_F(AppearanceTest, EveryDrawingCanBeDrawnAndFollowsThePalette) {
  const QStringList drawings = QDir(":/icons").entryList({"*.svg"});
  EXPECT_GE(drawings.size(), 50);
  EXPECT_TRUE(Icon("no-such-drawing").isNull());
  for (const QString& drawing : drawings) {
    SCOPED_TRACE(drawing.toStdString());
    const QIcon icon = Icon(drawing.chopped(4).toStdString());
    appearance_.SetScheme(Appearance::Scheme::Light);
    const QImage light = icon.pixmap(QSize(16, 16), 2.0).toImage();
    appearance_.SetScheme(Appearance::Scheme::Dark);
    const QImage dark = icon.pixmap(QSize(16, 16), 2.0).toImage();
    QImage nothing(light.size(), light.format());
    nothing.fill(Qt::transparent);
    EXPECT_EQ(light.size(), QSize(32, 32));
    EXPECT_NE(light, nothing);
    EXPECT_EQ(light == dark, drawing == "app.svg");
  }
}

}  // namespace
}  // namespace quillmere
