#include <cstring>

#include "foundation/H_tea.h"
#include "foundation/byte_arena.h"
#include "foundation/temp_folder.h"

namespace quillmere {
namespace {

TEST(TeaCipher, KeepsStoredPasswordsReadable) {
  // Computed by hand from the definition of the cycle, not by this code.
  const struct {
    std::string_view password;
    const char* stored;
  } cases[] = {
      {"", "A76C7E791EDA4D00A76C7E791EDA4D00A76C7E791EDA4D00A76C7E791EDA4D00"},
      {"tiger", "ECAA0FDBD7A31783A76C7E791EDA4D00A76C7E791EDA4D00A76C7E791EDA4D00"},
      {"0123456789012345678901234567890",
       "2EC0669D4ACC3B0722D001169B62FFF396DE791E52B487A0344B954795C4B3A8"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(EncipherPassword(row.password), row.stored);
    EXPECT_EQ(DecipherPassword(row.stored), row.password);
    std::string lower = row.stored;
    for (char& c : lower) c = static_cast<char>(std::tolower(c));
    EXPECT_EQ(DecipherPassword(lower + "beyond"), row.password);
  }
  const std::string long_password(40, 'p');
  EXPECT_EQ(DecipherPassword(EncipherPassword(long_password)), long_password.substr(0, 31));
  EXPECT_EQ(DecipherPassword(""), "");
  DecipherPassword("zz not hexadecimal");  // any answer, but no crash
}

TEST(TeaCipher, WorksOnWholeBlocks) {
  const TeaCipher cipher("0123456789abcdef");
  for (const std::size_t length : {0u, 7u, 8u, 15u, 16u, 20u}) {
    unsigned char plain[20], buffer[20];
    for (unsigned char i = 0; i < 20; ++i) plain[i] = buffer[i] = static_cast<unsigned char>(i * 7);
    cipher.EncipherBuffer(buffer, length);
    for (std::size_t i = 0; i < 20; i += 4) {
      const bool changed = std::memcmp(buffer + i, plain + i, 4) != 0;
      EXPECT_EQ(changed, i / 8 < length / 8) << "length " << length << " at " << i;
    }
    cipher.DecipherBuffer(buffer, length);
    EXPECT_EQ(std::memcmp(buffer, plain, 20), 0);
  }
}

TEST(Hex, CodesBytes) {
  const unsigned char bytes[] = {0x00, 0x9A, 0xFF};
  EXPECT_EQ(HexEncode(bytes, 3), "009AFF");
  unsigned char decoded[4] = {1, 1, 1, 1};
  HexDecode("9a F", decoded, 4);
  EXPECT_EQ(decoded[0], 0x9A);
  EXPECT_EQ(decoded[1], 0x0F) << "a blank counts as 0";
  EXPECT_EQ(decoded[2] | decoded[3], 0);
}

TEST(FileNames, RefusesWhatIsNoFileName) {
  const std::string_view refused[] = {"",
                                      ".",
                                      "..",
                                      "a.",
                                      "a ",
                                      " a",
                                      "a/b",
                                      "a\\b",
                                      "a:b",
                                      "a*",
                                      "a?",
                                      "a\"b",
                                      "a<b",
                                      "a>b",
                                      "a|b",
                                      "a\tb",
                                      "a\nb",
                                      "a\x7F",
                                      "nul",
                                      "NUL.x",
                                      "Com1",
                                      "lpt9.a.b",
                                      "aux .x",
                                      "conin$",
                                      "../evil",
                                      "a\xFF",
                                      "\xC3",
                                      "\xC0\xAF",
                                      "x\xED\xA0\x80",
                                      "\xF4\x90\x80\x80",
                                      std::string_view("a\0b", 3)};
  for (const std::string_view name : refused) EXPECT_NE(WhyNoFileName(name), "") << name;
  EXPECT_NE(WhyNoFileName(std::string(101, 'a')), "");
  const std::string_view accepted[] = {"a",
                                       "Job 1",
                                       "a.b",
                                       ".hidden",
                                       "com",
                                       "com10",
                                       "console",
                                       "ORCL.x-y",
                                       "a..b",
                                       "J\xC3\xBCrgen",
                                       "\xE6\x97\xA5\xF0\x9F\x98\x80"};
  for (const std::string_view name : accepted) EXPECT_EQ(WhyNoFileName(name), "") << name;
  EXPECT_TRUE(SameFileName("Orders", "oRDERS"));
  EXPECT_FALSE(SameFileName("Orders", "Orders2"));
}

TEST(Clock, StampsTime) {
  const struct {
    std::int64_t ms;
    const char* stamp;
  } cases[] = {{0, "19700101 00:00:00"},
               {1769903947999, "20260131 23:59:07"},
               {951782400000, "20000229 00:00:00"},
               {-1, "19691231 23:59:59"},
               {INT64_MAX, "99991231 23:59:59"},
               {INT64_MIN, "00000101 00:00:00"}};
  for (const auto& row : cases) EXPECT_EQ(FormatTimeStamp(LocalTime{row.ms}), row.stamp);

  const time_t before = time(nullptr);
  const LocalTime now = SystemClock().Now();
  tm local{};
  localtime_r(&before, &local);
  const std::int64_t expected = static_cast<std::int64_t>(timegm(&local)) * 1000;
  EXPECT_GE(now.ms, expected);
  EXPECT_LT(now.ms, expected + 60'000);
}

TEST(Settings, AreKept) {
  TempFolder folder;
  const auto file = folder / "config/settings.xml";
  std::string error;
  Settings settings;
  settings.debug = true;
  EXPECT_TRUE(LoadSettings(file, settings, error)) << error;
  EXPECT_FALSE(settings.debug) << "a missing file means the defaults";
  EXPECT_EQ(settings.message_limit, 500);
  settings.statement_trace = true;
  settings.message_limit = 70;
  settings.client_library = "C:\\oracle\\oci.dll";
  ASSERT_TRUE(SaveSettings(file, settings, error)) << error;
  Settings read;
  ASSERT_TRUE(LoadSettings(file, read, error)) << error;
  EXPECT_FALSE(read.debug);
  EXPECT_TRUE(read.statement_trace);
  EXPECT_FALSE(read.registry_messages);
  EXPECT_EQ(read.message_limit, 70);
  EXPECT_EQ(read.client_library, "C:\\oracle\\oci.dll");
  folder.Write("config/settings.xml",
               "<settings>\n<debug>TRUE</debug>\n"
               "<message_limit>-4</message_limit>\n</settings>\n");
  ASSERT_TRUE(LoadSettings(file, read, error));
  EXPECT_FALSE(read.debug) << "only the exact text counts";
  EXPECT_EQ(read.message_limit, 1);
}

TEST(Settings, ABrokenFileIsReportedAndKept) {
  TempFolder folder;
  const auto file = folder / "config/settings.xml";
  folder.Write("config/settings.xml", "<settings>\n<debug>true</debug>\n");
  Settings settings;
  std::string error;
  EXPECT_FALSE(LoadSettings(file, settings, error));
  EXPECT_NE(error.find("settings.xml: Unexpected EOF"), std::string::npos) << error;
  EXPECT_FALSE(settings.debug);
  ASSERT_TRUE(SaveSettings(file, settings, error)) << error;
  EXPECT_EQ(folder.Read("config/settings.xml.bad"), "<settings>\n<debug>true</debug>\n");
  EXPECT_TRUE(LoadSettings(file, settings, error));
  std::filesystem::remove(file);
  folder.Write("config/settings.xml/inside", "");
  folder.Write("config/settings.xml.bad", "");
  EXPECT_FALSE(SaveSettings(file, settings, error)) << "a folder can not be kept over a file";
}

TEST(ByteArena, PiecesNeverMoveOrMeet) {
  ByteArena arena;
  std::vector<std::string_view> pieces;
  for (std::size_t i = 0; i < 3000; ++i) {
    pieces.push_back(
        arena.Copy(std::string(i % 997 * (i % 50 == 0 ? 400 : 1), char('a' + i % 26))));
    void* aligned = arena.Allocate(8, 8);
    ASSERT_EQ(reinterpret_cast<std::uintptr_t>(aligned) % 8, 0u);
    std::memset(aligned, 0, 8);
  }
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    ASSERT_EQ(pieces[i].find_first_not_of(char('a' + i % 26)), std::string_view::npos);
  }
  arena.Clear();
  EXPECT_EQ(arena.Footprint(), 0u);
}

}  // namespace
}  // namespace quillmere
