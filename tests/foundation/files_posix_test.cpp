// SPDX-License-Identifier: MIT
// What the system's files do besides where there are pipes, modes and links.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "foundation/files.h"
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
  EXPECT_TRUE(ReplaceFile(files, folder / "f", "new", FileAccess::Everyone, error)) << error;
  EXPECT_TRUE(ReplaceFile(files, folder / "g", "new", FileAccess::Everyone, error)) << error;
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
  folder.Write("log", "");
  chmod((folder / "log").c_str(), 0666);
  EXPECT_TRUE(AppendTextFile(files, folder / "log", "row data", error));
  EXPECT_EQ(mode("log"), 0600u) << "also one that is there";
  for (const char* target : {"f", "none", "/dev/full"}) {
    std::filesystem::remove(folder / "link");
    std::filesystem::create_symlink(target, folder / "link");
    for (const char* name : {"link", "pipe", "/dev/full"}) {
      for (const OpenMode how : {OpenMode::Read, OpenMode::Append, OpenMode::InPlace}) {
        std::unique_ptr<OpenFile> file;
        EXPECT_EQ(files.Open(folder / name, how, FileSystem::kUsualMode, file).code,
                  FileCode::NotAFile)
            << name << " to " << target << static_cast<int>(how);
      }
    }
    EXPECT_EQ(static_cast<bool>(ReadFile(files, folder / "link", content, Links::Followed)),
              *target == 'f');
  }
  FileFacts facts;
  std::filesystem::create_symlink(".", folder / "here");
  EXPECT_TRUE(files.Look(folder / "here", facts) && facts.link && facts.kind == FileKind::Folder);
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

}  // namespace
}  // namespace quillmere
