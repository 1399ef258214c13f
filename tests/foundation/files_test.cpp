#include "foundation/files.h"

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <thread>

#include "foundation/temp_folder.h"

namespace quillmere {
namespace {

// Every write beyond this size fails, as on a full disk.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : old_handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_);
    rlimit limit = old_;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &old_);
    signal(SIGXFSZ, old_handler_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit old_{};
  sighandler_t old_handler_;
};

unsigned ModeOf(const std::filesystem::path& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
}

TEST(ReplaceFile, ReplacesWholeAndLeavesNothingBehind) {
  TempFolder folder;
  std::string error;
  const std::string bytes("a\0b\r\nc\xFF", 8);
  ASSERT_TRUE(ReplaceFile(folder / "f", bytes, FileAccess::Everyone, error)) << error;
  EXPECT_EQ(folder.Read("f"), bytes);
  ASSERT_TRUE(ReplaceFile(folder / "f", "", FileAccess::Everyone, error)) << error;
  EXPECT_EQ(folder.Read("f"), "");
  EXPECT_EQ(folder.List(), std::vector<std::string>{"f"});
}

TEST(ReplaceFile, AFailureLeavesTheOldFile) {
  TempFolder folder;
  std::string error;
  folder.Write("f", "old");
  {
    FullDisk full(1000);
    EXPECT_FALSE(ReplaceFile(folder / "f", std::string(5000, 'x'), FileAccess::Everyone, error));
  }
  EXPECT_EQ(folder.Read("f"), "old");
  EXPECT_NE(error.find((folder / "f").string()), std::string::npos) << error;
  folder.Write("taken/inside", "x");
  EXPECT_FALSE(ReplaceFile(folder / "taken", "x", FileAccess::Everyone, error));
  EXPECT_FALSE(ReplaceFile(folder / "no/such", "x", FileAccess::Everyone, error));
  EXPECT_EQ(folder.List(), (std::vector<std::string>{"f", "taken"}));
}

TEST(ReplaceFile, KeepsWhoMayRead) {
  TempFolder folder;
  std::string error;
  folder.Write("open", "");
  chmod((folder / "open").c_str(), 0640);
  ASSERT_TRUE(ReplaceFile(folder / "open", "x", FileAccess::Everyone, error));
  EXPECT_EQ(ModeOf(folder / "open"), 0640u);
  ASSERT_TRUE(ReplaceFile(folder / "open", "x", FileAccess::OwnerOnly, error));
  EXPECT_EQ(ModeOf(folder / "open"), 0600u);
}

TEST(ReplaceFile, AReaderSeesTheOldOrTheNew) {
  TempFolder folder;
  const std::string texts[] = {std::string(100'000, 'a'), std::string(50'000, 'b')};
  std::string error;
  ASSERT_TRUE(ReplaceFile(folder / "f", texts[0], FileAccess::Everyone, error));
  std::thread writers[2];
  std::atomic<int> running{2};
  for (int w = 0; w < 2; ++w) {
    writers[w] = std::thread([&, w] {
      std::string reason;
      for (int i = 0; i < 30; ++i) {
        EXPECT_TRUE(ReplaceFile(folder / "f", texts[w], FileAccess::Everyone, reason)) << reason;
      }
      --running;
    });
  }
  std::string content;
  do {
    ASSERT_TRUE(ReadFile(folder / "f", content, error)) << error;
    ASSERT_TRUE(content == texts[0] || content == texts[1]) << content.size();
  } while (running > 0);
  for (std::thread& writer : writers) writer.join();
  EXPECT_EQ(folder.List(), std::vector<std::string>{"f"});
}

TEST(ReadFile, TellsMissingFromUnreadable) {
  TempFolder folder;
  std::string content = "old", error;
  bool missing = false;
  EXPECT_FALSE(ReadFile(folder / "none", content, error, &missing));
  EXPECT_TRUE(missing);
  EXPECT_EQ(content, "");
  EXPECT_FALSE(ReadFile(folder.Path(), content, error, &missing));
  EXPECT_FALSE(missing);
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_FALSE(ReadFile(folder / "pipe", content, error)) << "must not wait for a writer";
  EXPECT_TRUE(ReadFile("/proc/self/status", content, error)) << "a file that hides its size";
  EXPECT_FALSE(content.empty());
}

TEST(AppendTextFile, AppendsAndReports) {
  TempFolder folder;
  std::string error;
  ASSERT_TRUE(AppendTextFile(folder / "log", "one\n", error));
  ASSERT_TRUE(AppendTextFile(folder / "log", "two\n", error));
  EXPECT_EQ(folder.Read("log"), "one\ntwo\n");
  ASSERT_TRUE(EmptyFile(folder / "log", error));
  EXPECT_EQ(folder.Read("log"), "");
  EXPECT_FALSE(AppendTextFile(folder.Path(), "x", error));
  EXPECT_FALSE(AppendTextFile("/dev/full", "x", error));
  EXPECT_NE(error.find("/dev/full"), std::string::npos) << error;
  EXPECT_FALSE(EmptyFile(folder / "none", error));
}

TEST(KeepBad, KeepsWhatCouldNotBeRead) {
  TempFolder folder;
  std::string error;
  EXPECT_TRUE(KeepBadFile(folder / "f", error)) << "nothing to keep";
  EXPECT_TRUE(KeepBadCopy(folder / "f", FileAccess::Everyone, error));
  folder.Write("f", "new");
  folder.Write("f.bad", "older");
  ASSERT_TRUE(KeepBadCopy(folder / "f", FileAccess::OwnerOnly, error)) << error;
  EXPECT_EQ(folder.Read("f.bad"), "new");
  EXPECT_EQ(ModeOf(folder / "f.bad"), 0600u);
  EXPECT_EQ(folder.Read("f"), "new");
  folder.Write("f", "newer");
  ASSERT_TRUE(KeepBadFile(folder / "f", error)) << error;
  EXPECT_EQ(folder.Read("f.bad"), "newer");
  EXPECT_FALSE(folder.Exists("f"));
  folder.Write("g", "x");
  folder.Write("g.bad/inside", "x");
  EXPECT_FALSE(KeepBadFile(folder / "g", error));
  EXPECT_TRUE(folder.Exists("g"));
}

TEST(RemoveEveryTrace, TakesCopiesAndLeftoversToo) {
  TempFolder folder;
  std::string error;
  for (const char* name : {"a.xml", "a.xml.bad", "a.xml.tmp-1-2", "a.xml.bad.tmp-3-4", "b.xml",
                           "aa.xml.tmp-1-2", "a.xmltmp"}) {
    folder.Write(name, "secret");
  }
  ASSERT_TRUE(RemoveEveryTrace(folder / "a.xml", error)) << error;
  EXPECT_EQ(folder.List(), (std::vector<std::string>{"a.xmltmp", "aa.xml.tmp-1-2", "b.xml"}));
  EXPECT_TRUE(RemoveEveryTrace(folder / "a.xml", error)) << "gone already";
  folder.Write("b.xml.bad/inside", "x");
  EXPECT_FALSE(RemoveEveryTrace(folder / "b.xml", error));
}

TEST(MakeFolders, MakesWhatIsMissing) {
  TempFolder folder;
  std::string error;
  EXPECT_TRUE(MakeFolders(folder / "a/b/c", error)) << error;
  EXPECT_TRUE(MakeFolders(folder / "a/b/c", error)) << "there already";
  EXPECT_TRUE(folder.Exists("a/b/c"));
  folder.Write("file", "");
  EXPECT_FALSE(MakeFolders(folder / "file", error));
  EXPECT_FALSE(MakeFolders(folder / "file/below", error));
}

}  // namespace
}  // namespace quillmere
