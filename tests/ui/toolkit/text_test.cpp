// SPDX-License-Identifier: MIT
#include "ui/toolkit/text.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>

namespace quillmere {
namespace {

// Widgets need an application; no display is needed for what is never shown.
class FieldText : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "ui_toolkit_test";
    static char* argv[] = {name, nullptr};
    static QApplication application(argc, argv);
  }
};

TEST_F(FieldText, AnUntouchedFieldGivesItsBytesBack) {
  using namespace std::string_literals;
  for (const std::string& original : {"plain"s, "\xc3\x84rger"s, "\xff\xfe no UTF-8"s,
                                      "two\nlines\ttab"s, "a\0b"s, ""s, std::string(10000, 'x')}) {
    SCOPED_TRACE(original.substr(0, 40));
    QLineEdit field;
    field.setText(ToQt(original));
    EXPECT_EQ(EditedText(field, original), original);
    field.setText(QStringLiteral("other \u00c4"));
    EXPECT_EQ(EditedText(field, original), "other \xc3\x84");
  }
}

}  // namespace
}  // namespace quillmere
