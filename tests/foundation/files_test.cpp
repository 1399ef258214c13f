// SPDX-License-Identifier: MIT
#include "foundation/files.h"

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <thread>

#include "support/temp_folder.h"

namespace quillmere {
namespace {

using Names = std::vector<std::string>;

unsigned ModeOf(const std::filesystem::path& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
}

struct FilesTest : testing::Test {
  TempFolder folder;
  std::string error;
};

TEST_F(FilesTest, ReplacesWholeAndKeepsWhoMayRead) {
  const std::string bytes("a\0b\r\nc\xFF", 8);
  folder.Write("f", "old");
  chmod((folder / "f").c_str(), 0640);
  ASSERT_TRUE(ReplaceFile(folder.Files(), folder / "f", bytes, FileAccess::Everyone, error))
      << error;
  EXPECT_EQ(folder.Read("f"), bytes);
  EXPECT_EQ(ModeOf(folder / "f"), 0640u);
  ASSERT_TRUE(ReplaceFile(folder.Files(), folder / "f", "", FileAccess::OwnerOnly, error)) << error;
  EXPECT_EQ(folder.Read("f"), "");
  EXPECT_EQ(ModeOf(folder / "f"), 0600u);
  EXPECT_EQ(folder.List(), Names{"f"});
}

TEST_F(FilesTest, AFailedReplacementLeavesTheOldFile) {
  folder.Write("f", "old");
  folder.Write("taken/inside", "x");
  // Every write beyond 1000 bytes fails, as on a full disk.
  rlimit old{}, small{};
  getrlimit(RLIMIT_FSIZE, &old);
  small = {1000, old.rlim_max};
  const auto old_handler = signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  const bool replaced = ReplaceFile(folder.Files(), folder / "f", std::string(5000, 'x'),
                                    FileAccess::Everyone, error);
  setrlimit(RLIMIT_FSIZE, &old);
  signal(SIGXFSZ, old_handler);
  EXPECT_FALSE(replaced);
  EXPECT_EQ(folder.Read("f"), "old");
  EXPECT_NE(error.find((folder / "f").string()), std::string::npos) << error;
  EXPECT_FALSE(ReplaceFile(folder.Files(), folder / "taken", "x", FileAccess::Everyone, error));
  EXPECT_FALSE(ReplaceFile(folder.Files(), folder / "no/such", "x", FileAccess::Everyone, error));
  EXPECT_EQ(folder.List(), (Names{"f", "taken"})) << "no temporary file stays";
}

TEST_F(FilesTest, AReaderSeesTheOldOrTheNew) {
  const std::string texts[] = {std::string(100'000, 'a'), std::string(50'000, 'b')};
  ASSERT_TRUE(ReplaceFile(folder.Files(), folder / "f", texts[0], FileAccess::Everyone, error));
  std::atomic<int> running{2};
  const auto write = [&](const std::string& text) {
    std::string reason;
    for (int i = 0; i < 30; ++i) {
      EXPECT_TRUE(ReplaceFile(folder.Files(), folder / "f", text, FileAccess::Everyone, reason))
          << reason;
    }
    --running;
  };
  std::thread one(write, texts[0]), two(write, texts[1]);
  std::string content;
  do {
    EXPECT_TRUE(ReadFile(folder.Files(), folder / "f", content));
    EXPECT_TRUE(content == texts[0] || content == texts[1]) << content.size();
  } while (running > 0);
  one.join();
  two.join();
  EXPECT_EQ(folder.List(), Names{"f"});
}

TEST_F(FilesTest, ReadingTellsMissingFromUnreadable) {
  std::string content = "old";
  EXPECT_TRUE(ReadFile(folder.Files(), folder / "none", content).Missing());
  EXPECT_TRUE(content.empty());
  EXPECT_EQ(ReadFile(folder.Files(), folder.Path(), content).code, FileCode::NotAFile);
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(ReadFile(folder.Files(), folder / "pipe", content).code, FileCode::NotAFile)
      << "must not wait for a writer";
  EXPECT_TRUE(ReadFile(folder.Files(), "/proc/self/status", content)) << "it hides its size";
  EXPECT_FALSE(content.empty());
}

TEST_F(FilesTest, AppendsAndEmpties) {
  ASSERT_TRUE(AppendTextFile(folder.Files(), folder / "log", "one\n", error));
  ASSERT_TRUE(AppendTextFile(folder.Files(), folder / "log", "two\n", error));
  EXPECT_EQ(folder.Read("log"), "one\ntwo\n");
  ASSERT_TRUE(EmptyFile(folder.Files(), folder / "log", error));
  EXPECT_EQ(folder.Read("log"), "");
  EXPECT_FALSE(AppendTextFile(folder.Files(), "/dev/full", "x", error));
  EXPECT_NE(error.find("/dev/full"), std::string::npos) << error;
}

TEST_F(FilesTest, KeepsWhatCouldNotBeRead) {
  EXPECT_TRUE(KeepBadFile(folder.Files(), folder / "f", error)) << "nothing to keep";
  EXPECT_TRUE(KeepBadCopy(folder.Files(), folder / "f", FileAccess::Everyone, error));
  folder.Write("f", "new");
  folder.Write("f.bad", "older");
  ASSERT_TRUE(KeepBadCopy(folder.Files(), folder / "f", FileAccess::OwnerOnly, error)) << error;
  EXPECT_EQ(folder.Read("f.bad") + folder.Read("f"), "newnew");
  EXPECT_EQ(ModeOf(folder / "f.bad"), 0600u);
  folder.Write("f", "newer");
  ASSERT_TRUE(KeepBadFile(folder.Files(), folder / "f", error)) << error;
  EXPECT_EQ(folder.Read("f.bad"), "newer");
  EXPECT_FALSE(folder.Exists("f"));
  folder.Write("g", "x");
  folder.Write("g.bad/inside", "x");
  EXPECT_FALSE(KeepBadFile(folder.Files(), folder / "g", error));
  EXPECT_TRUE(folder.Exists("g"));
}

TEST_F(FilesTest, RemovesCopiesAndLeftoversToo) {
  for (const char* name :
       {"a.xml", "a.xml.bad", "a.xml.tmp-1-2", "a.xml.bad.tmp-3-4", "b.xml", "aa.xml.tmp-1-2"}) {
    folder.Write(name, "secret");
  }
  ASSERT_TRUE(RemoveEveryTrace(folder.Files(), folder / "a.xml", error)) << error;
  EXPECT_EQ(folder.List(), (Names{"aa.xml.tmp-1-2", "b.xml"}));
  EXPECT_TRUE(RemoveEveryTrace(folder.Files(), folder / "a.xml", error)) << "gone already";
}

TEST_F(FilesTest, MakesMissingFolders) {
  EXPECT_TRUE(MakeFolders(folder.Files(), folder / "a/b/c", error)) << error;
  EXPECT_TRUE(MakeFolders(folder.Files(), folder / "a/b/c", error)) << "there already";
  folder.Write("file", "");
  EXPECT_FALSE(MakeFolders(folder.Files(), folder / "file", error));
  EXPECT_FALSE(MakeFolders(folder.Files(), folder / "file/below", error));
}

}  // namespace
}  // namespace quillmere
