// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <ctime>
#include <sstream>

#include "foundation/H_tea.h"
#include "support/memory_files.h"

namespace quillmere {
namespace {

TEST(TeaCipher, KeepsStoredPasswordsReadable) {
  // Computed from the definition of the cycle by another program.
  const std::pair<std::string, std::string> cases[] = {
      {"", "A76C7E791EDA4D00A76C7E791EDA4D00A76C7E791EDA4D00A76C7E791EDA4D00"},
      {"tiger", "ECAA0FDBD7A31783A76C7E791EDA4D00A76C7E791EDA4D00A76C7E791EDA4D00"},
      {"0123456789012345678901234567890",
       "2EC0669D4ACC3B0722D001169B62FFF396DE791E52B487A0344B954795C4B3A8"}};
  for (const auto& [password, stored] : cases) {
    EXPECT_EQ(EncipherPassword(password), stored);
    std::string lower = stored + "beyond";
    for (char& c : lower) c = static_cast<char>(std::tolower(c));
    EXPECT_EQ(DecipherPassword(lower), password);
  }
  EXPECT_EQ(DecipherPassword(EncipherPassword(std::string(40, 'p'))), std::string(31, 'p'));
  EXPECT_EQ(DecipherPassword(""), "");
  DecipherPassword("zz not hexadecimal");  // any answer, but no crash
}

TEST(FileNames, RefusesWhatIsNoFileName) {
  std::istringstream refused(
      ";.;..;a.;a ; a;a/b;a\\b;a:b;a*;a?;a\"b;a<b;a|b;a\nb;a\x7F;NUL.x;Com1;lpt9.a;aux .x;conin$;"
      "a\xFF;\xC3;\xC0\xAF;x\xED\xA0\x80;\xF4\x90\x80\x80");
  for (std::string name; std::getline(refused, name, ';');) {
    EXPECT_NE(WhyNoFileName(name), "") << name;
  }
  EXPECT_NE(WhyNoFileName({"a\0b", 3}), "");
  EXPECT_NE(WhyNoFileName(std::string(101, 'a')), "");
  for (const char* name : {"Job 1", "a..b", ".hidden", "com", "com10", "console", "J\xC3\xBCrgen",
                           "\xE6\x97\xA5\xF0\x9F\x98\x80"}) {
    EXPECT_EQ(WhyNoFileName(name), "") << name;
  }
  EXPECT_TRUE(SameFileName("Orders", "oRDERS"));
  EXPECT_FALSE(SameFileName("Orders", "Orders2"));
}

TEST(Text, TrimsAndFoldsAsciiAlone) {
  const std::string_view cases[][3] = {// text, trimmed, trimmed of x and y
                                       {"", "", ""},
                                       {" \t\r\n\v\f", "", " \t\r\n\v\f"},
                                       {" a b\n", "a b", " a b\n"},
                                       {"xyx", "xyx", ""},
                                       {"x a y", "x a y", " a "}};
  for (const auto& [text, trimmed, without] : cases) {
    EXPECT_EQ(Trim(text), trimmed);
    EXPECT_EQ(Trim(text, "xy"), without);
  }
  EXPECT_EQ(UpperCase("a@z[`{\xE4 9"), "A@Z[`{\xE4 9");
  EXPECT_EQ(LowerCase("A@Z[`{\xC4 9"), "a@z[`{\xC4 9");
  EXPECT_FALSE(EqualsIgnoringCase("ab", "abc") || EqualsIgnoringCase("@", "`"));
  EXPECT_EQ(SqlLiteral("it's '"), "'it''s '''");
  std::int32_t number = 7;
  for (const char* text : {"", " 1", "1 ", "+1", "2147483648", "1.5"}) {
    EXPECT_FALSE(ParseNumber(text, number)) << text;
  }
  EXPECT_EQ(number, 7);
  EXPECT_TRUE(ParseNumber("-12", number) && number == -12);
}

TEST(Clock, StampsTime) {
  const std::pair<std::int64_t, const char*> cases[] = {{1769903947999, "20260131 23:59:07"},
                                                        {951782400000, "20000229 00:00:00"},
                                                        {-1, "19691231 23:59:59"},
                                                        {INT64_MAX, "99991231 23:59:59"},
                                                        {INT64_MIN, "00000101 00:00:00"}};
  for (const auto& [ms, stamp] : cases) EXPECT_EQ(FormatTimeStamp(LocalTime{ms}), stamp);
  const auto by_the_library = [] {
    const std::time_t now = std::time(nullptr);
    char stamp[32] = {};
    std::strftime(stamp, sizeof stamp, "%Y%m%d %H:%M:%S", std::localtime(&now));
    return std::string(stamp);
  };
  const std::string before = by_the_library(), now = FormatTimeStamp(SystemClock().Now()),
                    after = by_the_library();
  EXPECT_TRUE(before <= now && now <= after) << before << now << after;
}

TEST(Settings, AreKeptAndABrokenFileIsToo) {
  testing::MemoryFiles files;
  const std::string file = "/work/config/settings.xml",
                    broken = "<settings>\n<debug>true</debug>\n";
  std::string error;
  Settings settings, read;
  settings.debug = true;
  EXPECT_TRUE(LoadSettings(files, file, settings, error)) << error;
  EXPECT_FALSE(settings.debug) << "a missing file means the defaults";
  settings.statement_trace = true;
  settings.message_limit = 70;
  settings.client_library = "C:\\oracle\\oci.dll";
  ASSERT_TRUE(SaveSettings(files, file, settings, error)) << error;
  const std::string saved = files.Content(file);
  files.Put(file, broken);
  EXPECT_FALSE(LoadSettings(files, file, read, error));
  EXPECT_NE(error.find("settings.xml: Unexpected EOF"), std::string::npos) << error;
  EXPECT_TRUE(!read.debug && read.message_limit == 500) << "the defaults";
  ASSERT_TRUE(SaveSettings(files, file, settings, error)) << error;
  EXPECT_EQ(files.Content(file + ".bad"), broken);
  ASSERT_TRUE(LoadSettings(files, file, read, error)) << error;
  EXPECT_TRUE(read.statement_trace && read.client_library == settings.client_library);
  ASSERT_TRUE(SaveSettings(files, file, read, error)) << error;
  EXPECT_EQ(files.Content(file), saved) << "all has come back";
}

}  // namespace
}  // namespace quillmere
