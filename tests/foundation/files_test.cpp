// SPDX-License-Identifier: MIT
#include "foundation/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <thread>

#include "support/memory_files.h"
#include "support/temp_folder.h"

namespace quillmere {
namespace {

using testing::MemoryFiles;
constexpr auto kEveryone = FileAccess::Everyone;

// --- What every file system does alike ---------------------------------------------------------

// Does one thing with a file, or with two, and tells what came of it. number: an offset or a size.
std::string Do(FileSystem& files, const std::filesystem::path& one,
               const std::filesystem::path& two, std::size_t what, std::size_t number) {
  std::unique_ptr<OpenFile> file;
  FileFacts facts;
  std::vector<std::filesystem::path> names;
  const auto told = [](const FileStatus& status, const std::string& more = "") {
    EXPECT_EQ(status.reason.empty(), static_cast<bool>(status));
    FileCode code = status.code;
#ifdef _WIN32  // does not tell a file on the way from nothing there
    if (code == FileCode::NotAFile) code = FileCode::Missing;
#endif
    return std::to_string(static_cast<int>(code)) + " " + (status ? more : "");
  };
  switch (what) {
    case 0:
      return told(files.MakeFolder(one));
    case 1:
      return told(files.RemoveFolder(one));
    case 2:
      return told(files.RemoveFile(one));
    case 3:
      return told(files.Rename(one, two)) + (files.AreSame(one, two) ? "same" : "");
    case 4:
      return told(files.FlushFolder(one));
    case 5: {
      std::string all = told(files.List(one, names));
      std::sort(names.begin(), names.end());
      for (const auto& name : names) all += name.string() + " ";
      return all;
    }
    case 6: {
      const FileStatus status = files.Look(one, facts);
      const std::string kind = std::to_string(static_cast<int>(facts.kind));
      if (facts.kind != FileKind::File) return told(status, kind);
      EXPECT_TRUE(!status || facts.mode == FileSystem::kOwnerOnly ||
                  facts.mode == FileSystem::kUsualMode);
      return told(status, kind + std::to_string(facts.size));
    }
    default: {
      const auto how = static_cast<OpenMode>(what - 7);
      const FileStatus opened = files.Open(one, how, FileSystem::kOwnerOnly, file);
      EXPECT_EQ(file != nullptr, static_cast<bool>(opened));
      if (!opened) return told(opened);
      const bool in_place = how == OpenMode::InPlace, reads = how == OpenMode::Read;
      EXPECT_TRUE(!in_place || file->Write(number, "xyz"));
      EXPECT_TRUE(!in_place || number % 3 > 0 || file->Truncate(number / 2));
      EXPECT_TRUE(in_place || reads || file->Append("abcdefg"));
      std::string content(20, '?');
      std::size_t got = 0;
      EXPECT_TRUE(!(in_place || reads) || file->Read(number, content.data(), content.size(), got));
      return told(file->Flush(), content.substr(0, got) + std::to_string(file->Size()));
    }
  }
}

TEST(EveryFileSystem, TellsTheSame) {
  const TempFolder real;
  MemoryFiles memory;
  std::mt19937 random(1);
  const std::string names[] = {"a", "b", "d", "e", "d/x", "e/x", "a/x", "none/x"};
  for (int step = 0; step < 20'000 && !::testing::Test::HasFailure(); ++step) {
    const std::string& one = names[random() % std::size(names)];
    const std::string& two = names[random() % std::size(names)];
    const std::size_t what = random() % 11, number = random() % 10;
    if (what == 3 && (two.starts_with(one + "/") || one.starts_with(two + "/"))) continue;
    EXPECT_EQ(Do(memory, "/work/" + one, "/work/" + two, what, number),
              Do(real.Files(), real / one, real / two, what, number))
        << what << " " << one << " " << two << " " << number;
  }
}

TEST(EveryFileSystem, ALockKeepsOthersOut) {
  using Lock = OpenFile::LockKind;
  const TempFolder real;
  MemoryFiles memory;
  const std::pair<FileSystem*, std::filesystem::path> rows[] = {{&real.Files(), real / "f"},
                                                                {&memory, "/work/f"}};
  for (const auto& [files, path] : rows) {
    std::unique_ptr<OpenFile> one, two;
    ASSERT_TRUE(files->Open(path, OpenMode::InPlace, FileSystem::kUsualMode, one));
    ASSERT_TRUE(files->Open(path, OpenMode::Read, FileSystem::kUsualMode, two));
    EXPECT_TRUE(one->TryLock(Lock::Shared) && two->TryLock(Lock::Shared));
    EXPECT_EQ(one->TryLock(Lock::Exclusive).code, FileCode::Busy);
    two.reset();
    EXPECT_TRUE(one->TryLock(Lock::Exclusive));
    ASSERT_TRUE(files->Open(path, OpenMode::Read, FileSystem::kUsualMode, two));
    EXPECT_EQ(two->TryLock(Lock::Shared).code, FileCode::Busy);
    EXPECT_TRUE(one->Close() && two->TryLock(Lock::Shared));
    one.reset();
    EXPECT_TRUE(files->LockFolder(path.parent_path(), Lock::Exclusive, one));
    if (one == nullptr) continue;  // where the file's lock has to do
    EXPECT_EQ(files->LockFolder(path.parent_path(), Lock::Shared, two).code, FileCode::Busy);
  }
}

// --- What the system's one does besides --------------------------------------------------------

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

TEST(WholeFiles, HalfALineIsTakenBack) {
  MemoryFiles files;
  std::string error;
  const auto append = [&](const char* text) {
    return AppendTextFile(files, "/work/f", text, error);
  };
  EXPECT_TRUE(append("one\n"));
  files.on_operation = [](const testing::FileOperation& operation) {
    return FileStatus{operation.what == "append" ? FileCode::NoSpace : FileCode::Ok, "full"};
  };
  EXPECT_FALSE(append("half of it is written\n"));
  files.Release();
  EXPECT_TRUE(append("two\n"));
  EXPECT_EQ(files.Content("/work/f"), "one\ntwo\n");
  EXPECT_FALSE(MakeFolders(files, "/work/f/g", error) || MakeFolders(files, "/work/f", error));
  EXPECT_EQ(error, "Can not create folder /work/f: a file stands there");
}

}  // namespace
}  // namespace quillmere
