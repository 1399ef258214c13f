// SPDX-License-Identifier: MIT
#include "foundation/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <thread>

#include "support/memory_files.h"
#include "support/temp_folder.h"

namespace {
std::atomic<int> syncs{0};
}
// In place of the C library's, to see that they are called.
int fsync(int file) {
  ++syncs;
  return static_cast<int>(syscall(SYS_fsync, file));
}
int fdatasync(int file) {
  ++syncs;
  return static_cast<int>(syscall(SYS_fdatasync, file));
}

namespace quillmere {
namespace {

using testing::MemoryFiles;
constexpr auto kEveryone = FileAccess::Everyone;

// --- What every file system does alike ---------------------------------------------------------

class EveryFileSystem : public ::testing::TestWithParam<bool> {
 protected:
  std::filesystem::path operator/(std::string_view name) { return folder_ / name; }
  void Write(std::string_view name, std::string_view content) {
    std::string error;
    EXPECT_TRUE(ReplaceFile(files_, *this / name, content, kEveryone, error)) << error;
  }
  std::string Read(std::string_view name) {
    std::string content;
    return ReadFile(files_, *this / name, content) ? content : "(none)";
  }
  TempFolder real_;
  MemoryFiles memory_;
  FileSystem& files_ = GetParam() ? real_.Files() : static_cast<FileSystem&>(memory_);
  const std::filesystem::path folder_ = GetParam() ? real_.Path() : "/work";
};
INSTANTIATE_TEST_SUITE_P(Files, EveryFileSystem, ::testing::Bool(),
                         [](const auto& suite) { return suite.param ? "System" : "Memory"; });

TEST_P(EveryFileSystem, TellsWhyAFileIsNotOpened) {
  Write("file", "x");
  ASSERT_TRUE(files_.MakeFolder(*this / "folder"));
  using enum FileCode;
  const struct {
    const char* name;
    FileCode read, made, appended, in_place;
  } rows[] = {{"file", Ok, Exists, Ok, Ok},
              {"folder", NotAFile, Exists, NotAFile, NotAFile},
              {"none/below", Missing, Missing, Missing, Missing},
              {"file/below", NotAFile, NotAFile, NotAFile, NotAFile}};
  for (const auto& row : rows) {
    const auto open = [&](OpenMode how) {
      std::unique_ptr<OpenFile> file;
      const FileStatus status = files_.Open(*this / row.name, how, FileSystem::kOwnerOnly, file);
      EXPECT_EQ(status.reason.empty(), static_cast<bool>(status));
      EXPECT_EQ(file != nullptr, static_cast<bool>(status));
      return status.code;
    };
    EXPECT_EQ(open(OpenMode::Read), row.read) << row.name;
    EXPECT_EQ(open(OpenMode::New), row.made) << row.name;
    EXPECT_EQ(open(OpenMode::Append), row.appended) << row.name;
    EXPECT_EQ(open(OpenMode::InPlace), row.in_place) << row.name;
  }
  EXPECT_EQ(Read("file"), "x") << "opening changes nothing";
}

TEST_P(EveryFileSystem, WritesWhereItIsTold) {
  std::unique_ptr<OpenFile> file;
  ASSERT_TRUE(files_.Open(*this / "f", OpenMode::Append, FileSystem::kOwnerOnly, file));
  EXPECT_TRUE(file->Append("abc") && file->Append("defg") && file->Close());
  ASSERT_TRUE(files_.Open(*this / "f", OpenMode::InPlace, FileSystem::kUsualMode, file));
  EXPECT_TRUE(file->Write(1, "BC") && file->Write(8, "!") && file->Flush());
  EXPECT_EQ(file->Size(), 9u);
  char bytes[4] = {};
  std::size_t got = 0;
  EXPECT_TRUE(file->Read(6, bytes, 4, got));
  EXPECT_EQ(std::string(bytes, got), std::string("g\0!", 3));
  EXPECT_TRUE(file->Read(9, bytes, 4, got));
  EXPECT_EQ(got, 0u);
  EXPECT_TRUE(file->Truncate(3));
  EXPECT_EQ(Read("f"), "aBC");
  FileFacts facts;
  ASSERT_TRUE(files_.Look(*this / "f", facts));
  EXPECT_EQ(facts.kind, FileKind::File);
  EXPECT_EQ(facts.size, 3u);
  EXPECT_EQ(facts.mode, FileSystem::kOwnerOnly);
}

TEST_P(EveryFileSystem, NamesAreMadeRenamedAndRemoved) {
  FileSystem& files = files_;
  using enum FileCode;
  Write("a", "a");
  Write("b", "b");
  EXPECT_TRUE(files.Rename(*this / "a", *this / "b"));
  EXPECT_EQ(Read("b"), "a");
  EXPECT_EQ(files.Rename(*this / "a", *this / "c").code, Missing);
  EXPECT_TRUE(files.MakeFolder(*this / "d"));
  EXPECT_EQ(files.MakeFolder(*this / "d").code, Exists);
  EXPECT_EQ(files.MakeFolder(*this / "no/d").code, Missing);
  Write("d/x", "x");
  EXPECT_EQ(files.Rename(*this / "b", *this / "d").code, NotAFile);
  EXPECT_TRUE(files.Rename(*this / "d", *this / "e"));
  EXPECT_EQ(Read("e/x"), "x") << "what is in a folder goes with it";
  EXPECT_TRUE(files.AreSame(*this / "e", *this / "e/"));
  EXPECT_FALSE(files.AreSame(*this / "e", *this / "b"));
  EXPECT_EQ(files.RemoveFolder(*this / "e").code, Exists);
  EXPECT_TRUE(files.RemoveFile(*this / "e/x"));
  EXPECT_EQ(files.RemoveFile(*this / "e/x").code, Missing);
  EXPECT_TRUE(files.RemoveFolder(*this / "e"));
  EXPECT_EQ(files.FlushFolder(*this / "e").code, Missing);
  std::vector<std::filesystem::path> names;
  EXPECT_TRUE(files.List(folder_, names));
  EXPECT_EQ(names, std::vector<std::filesystem::path>{"b"});
  FileFacts facts;
  EXPECT_EQ(files.Look(*this / "e", facts).code, Missing);
  EXPECT_EQ(files.Look(*this / "b/e", facts).code, NotAFile);
}

TEST_P(EveryFileSystem, ALockKeepsOthersOut) {
  using Lock = OpenFile::LockKind;
  std::unique_ptr<OpenFile> one, two;
  ASSERT_TRUE(files_.Open(*this / "f", OpenMode::InPlace, FileSystem::kUsualMode, one));
  ASSERT_TRUE(files_.Open(*this / "f", OpenMode::Read, FileSystem::kUsualMode, two));
  EXPECT_TRUE(one->TryLock(Lock::Shared) && two->TryLock(Lock::Shared));
  EXPECT_EQ(one->TryLock(Lock::Exclusive).code, FileCode::Busy);
  two.reset();
  EXPECT_TRUE(one->TryLock(Lock::Exclusive));
  ASSERT_TRUE(files_.Open(*this / "f", OpenMode::Read, FileSystem::kUsualMode, two));
  EXPECT_EQ(two->TryLock(Lock::Shared).code, FileCode::Busy);
  EXPECT_TRUE(one->Close() && two->TryLock(Lock::Shared));
}

// --- What the system's one does besides --------------------------------------------------------

TEST(SystemFiles, ModesPipesAndFullDisks) {
  const TempFolder folder;
  FileSystem& files = folder.Files();
  const auto mode = [&](const char* name) {
    struct stat status {};
    return stat((folder / name).c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
  };
  std::string error, content = "old";
  folder.Write("f", "old");
  chmod((folder / "f").c_str(), 0666);
  const mode_t mask = umask(0077);
  EXPECT_TRUE(ReplaceFile(files, folder / "f", "new", kEveryone, error)) << error;
  EXPECT_TRUE(ReplaceFile(files, folder / "g", "new", kEveryone, error)) << error;
  umask(mask);
  EXPECT_EQ(mode("f"), 0666u) << "as the operator has set it";
  EXPECT_EQ(mode("g"), 0600u);
  EXPECT_TRUE(ReplaceFile(files, folder / "f", "", FileAccess::OwnerOnly, error));
  EXPECT_EQ(mode("f"), 0600u);
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(ReadFile(files, folder / "pipe", content).code, FileCode::NotAFile)
      << "must not wait for a writer";
  EXPECT_EQ(content, "");
  EXPECT_TRUE(ReadFile(files, "/proc/self/status", content)) << "it hides its size";
  EXPECT_FALSE(content.empty());
  std::unique_ptr<OpenFile> full;
  ASSERT_TRUE(files.Open("/dev/full", OpenMode::Append, FileSystem::kUsualMode, full));
  EXPECT_EQ(full->Append("x").code, FileCode::NoSpace);
}

TEST(SystemFiles, AFlushIsTheSystems) {
  const TempFolder folder;
  for (const OpenMode how : {OpenMode::New, OpenMode::InPlace, OpenMode::Append}) {
    std::unique_ptr<OpenFile> file;
    ASSERT_TRUE(folder.Files().Open(folder / "f", how, FileSystem::kUsualMode, file));
    const int before = syncs;
    EXPECT_TRUE(file->Flush());
    EXPECT_EQ(syncs, before + 1);
    EXPECT_TRUE(folder.Files().FlushFolder(folder.Path()));
    EXPECT_EQ(syncs, before + 2);
  }
}

TEST(SystemFiles, AReaderSeesTheOldOrTheNew) {
  const TempFolder folder;
  const std::string texts[] = {std::string(100'000, 'a'), std::string(50'000, 'b')};
  folder.Write("f", texts[0]);
  std::atomic<bool> done{false};
  std::thread writer([&] {
    std::string reason;
    for (int i = 0; i < 20; ++i) {
      EXPECT_TRUE(ReplaceFile(folder.Files(), folder / "f", texts[i % 2], kEveryone, reason));
    }
    done = true;
  });
  std::string content;
  do {
    EXPECT_TRUE(ReadFile(folder.Files(), folder / "f", content));
    EXPECT_TRUE(content == texts[0] || content == texts[1]) << content.size();
  } while (!done);
  writer.join();
  EXPECT_EQ(folder.List(), std::vector<std::string>{"f"});
}

// --- Whole files, whatever fails ---------------------------------------------------------------

// What stands below /work.
std::string Listing(const MemoryFiles& disk) {
  std::string text;
  for (const auto& [name, content] : disk.All("/work")) text += name + "=" + content + " ";
  return text;
}

using Files = FileSystem&;
using Text = std::string&;
const std::string kTraces = "f.bad.tmp-3-4=left f.tmp-1-0=left ff.tmp-1-2=other ";
const std::string kBefore = "d/x=in d f=old f.bad=bad " + kTraces;

struct Deed {
  std::string what;
  std::function<bool(FileSystem&, std::string& error)> run;
  std::string after;      // what stands then, and after a power cut
  bool in_parts = false;  // a failure may leave it half done
};

const std::vector<Deed> kDeeds = {
    {"replace", [](Files f, Text e) { return ReplaceFile(f, "/work/f", "new", kEveryone, e); },
     "d/x=in d f=new f.bad=bad " + kTraces},
    {"make folders", [](Files f, Text e) { return MakeFolders(f, "/work/n/m", e); },
     kBefore + "n/m/= ", true},
    {"rename a folder", [](Files f, Text e) { return RenamePath(f, "/work/d", "/work/e", e); },
     "e/x=in d f=old f.bad=bad " + kTraces},
    {"keep a bad file", [](Files f, Text e) { return KeepBadFile(f, "/work/f", e); },
     "d/x=in d f.bad=old " + kTraces},
    {"keep a bad copy", [](Files f, Text e) { return KeepBadCopy(f, "/work/f", kEveryone, e); },
     "d/x=in d f=old f.bad=old " + kTraces},
    {"remove", [](Files f, Text e) { return (e = RemoveForGood(f, "/work/f").reason).empty(); },
     "d/x=in d f.bad=bad " + kTraces},
    {"remove every trace", [](Files f, Text e) { return RemoveEveryTrace(f, "/work/f", e); },
     "d/x=in d ff.tmp-1-2=other ", true}};

// Each operation in turn fails, and each in turn is the last before the power goes.
TEST(WholeFiles, AreDoneOrNotAndDoneMeansOnTheDisk) {
  for (const Deed& deed : kDeeds) {
    for (int fault = 1, faults = 1; faults > 0; ++fault) {
      SCOPED_TRACE(deed.what + ", operation " + std::to_string(fault));
      MemoryFiles disk;
      disk.Put("/work/d/x", "in d");
      disk.Put("/work/f", "old");
      disk.Put("/work/f.bad", "bad");
      disk.Put("/work/ff.tmp-1-2", "other");
      for (const char* trace : {"f.bad.tmp-3-4", "f.tmp-1-0"}) {
        disk.Put(std::string("/work/") + trace, "left");
      }
      ASSERT_EQ(Listing(disk), kBefore);
      std::string failed, error;
      int number = 0;
      disk.on_operation = [&](const testing::FileOperation& operation) {
        if (++number != fault) return FileStatus{};
        failed = operation.Text();
        for (const bool kept : {false, true}) {
          // Never half a file, and never none.
          std::string f = disk.AfterPowerCut([&] { return kept; })->Content("/work/f");
          if (deed.after.find(" f=") == std::string::npos && f == "(none)") f = "old";
          EXPECT_TRUE(f == "old" || f == "new") << f << " before " << failed;
        }
        return FileStatus{FileCode::NoSpace, "No space left on device"};
      };
      const bool done = deed.run(disk, error);
      faults = failed.empty() ? 0 : 1;
      if (done) {
        EXPECT_EQ(Listing(disk), deed.after) << failed;
        EXPECT_EQ(Listing(*disk.AfterPowerCut([] { return false; })), deed.after) << failed;
      } else {
        EXPECT_NE(error.find("No space left on device"), std::string::npos) << error;
        const std::string stands = Listing(disk);
        EXPECT_TRUE(deed.in_parts || stands == kBefore || stands == deed.after) << failed << stands;
      }
    }
  }
}

TEST(WholeFiles, WhatIsNotThereNeedsNoCare) {
  MemoryFiles files;
  std::string error;
  EXPECT_TRUE(KeepBadFile(files, "/work/f", error) && RemoveForGood(files, "/work/f") &&
              RemoveEveryTrace(files, "/work/none/f", error) &&
              MakeFolders(files, "/work", error) && KeepBadCopy(files, "/work/f", kEveryone, error))
      << error;
  EXPECT_TRUE(AppendTextFile(files, "/work/f", "one\n", error) &&
              AppendTextFile(files, "/work/f", "two\n", error));
  EXPECT_EQ(files.Content("/work/f"), "one\ntwo\n");
  EXPECT_FALSE(MakeFolders(files, "/work/f/g", error) || MakeFolders(files, "/work/f", error));
  EXPECT_EQ(error, "Can not create folder /work/f: a file stands there");
  EXPECT_TRUE(EmptyFile(files, "/work/f", error));
  EXPECT_EQ(files.Content("/work/f"), "");
}

}  // namespace
}  // namespace quillmere
