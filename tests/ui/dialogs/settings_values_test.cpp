// SPDX-License-Identifier: MIT
#include "ui/main_dialogs/settings_values.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/temp_folder.h"

namespace quillmere {
namespace {

TEST(SettingsValues, AreInForceOnceTheyAreWritten) {
  TempFolder folder;
  Settings settings;
  settings.debug = true;
  const SettingsValues values = {false, true, true, 7, "/opt/x/libclntsh.so"};
  std::string reason;
  std::ofstream(folder.Path() / "config") << "in the way of the folder";
  EXPECT_FALSE(StoreSettings(folder.Files(), folder.Path() / "config/settings.xml", values,
                             settings, reason));
  EXPECT_NE(reason, "");
  EXPECT_TRUE(settings.debug) << "as before";
  EXPECT_EQ(settings.message_limit, kDefaultMessageLimit);
  EXPECT_EQ(settings.client_library, "");
  ASSERT_TRUE(
      StoreSettings(folder.Files(), folder.Path() / "b/settings.xml", values, settings, reason))
      << reason;
  Settings read;
  ASSERT_TRUE(LoadSettings(folder.Files(), folder.Path() / "b/settings.xml", read, reason))
      << reason;
  for (const SettingsValues& now : {ValuesOf(settings), ValuesOf(read)}) {
    EXPECT_FALSE(now.debug);
    EXPECT_TRUE(now.statement_trace);
    EXPECT_TRUE(now.registry_messages);
    EXPECT_EQ(now.message_limit, 7);
    EXPECT_EQ(now.client_library, "/opt/x/libclntsh.so");
  }
}

TEST(SettingsValues, AClientFileThatIsNotThereIsRefused) {
  TempFolder folder;
  std::ofstream(folder.Path() / "libfound.so") << "x";
  EXPECT_EQ(WhyClientFileRefused(folder.Files(), (folder.Path() / "libfound.so").string()), "");
  EXPECT_EQ(WhyClientFileRefused(folder.Files(), "libclntsh.so.19.1"), "")
      << "the system looks for it";
  EXPECT_NE(WhyClientFileRefused(folder.Files(), (folder.Path() / "libgone.so").string()), "");
  EXPECT_NE(WhyClientFileRefused(folder.Files(), folder.Path().string()), "") << "a folder";
  EXPECT_NE(WhyClientFileRefused(folder.Files(), ""), "");
}

}  // namespace
}  // namespace quillmere
