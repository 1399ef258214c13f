// SPDX-License-Identifier: MIT
#include "jobs/set_aside_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/temp_folder.h"

namespace quillmere {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

// Real files. The operation with the number fail_at fails, halfway when it is an appending.
class FailingFiles final : public FileSystem {
 public:
  FileStatus Open(const Path& path, OpenMode how, Mode mode,
                  std::unique_ptr<OpenFile>& file) override {
    if (!Passes()) return kNo;
    std::unique_ptr<OpenFile> real;
    FileStatus status = real_.Open(path, how, mode, real);
    if (status) file = std::make_unique<File>(*this, std::move(real));
    return status;
  }
  FileStatus Look(const Path& path, FileFacts& facts) override { return real_.Look(path, facts); }
  FileStatus MakeFolder(const Path& path) override { return real_.MakeFolder(path); }
  FileStatus FlushFolder(const Path& path) override { return real_.FlushFolder(path); }
  FileStatus List(const Path&, std::vector<Path>&) override { return kNo; }
  bool AreSame(const Path&, const Path&) override { return false; }
  FileStatus Rename(const Path&, const Path&) override { return kNo; }
  FileStatus RemoveFile(const Path&) override { return kNo; }
  FileStatus RemoveFolder(const Path&) override { return kNo; }
  std::string_view LineEnd() const override { return "\n"; }
  std::uint64_t ProcessId() const override { return 1; }

  int fail_at = -1;
  bool unflushed = false;

 private:
  struct File final : OpenFile {
    File(FailingFiles& the_owner, std::unique_ptr<OpenFile> the_file)
        : owner(the_owner), file(std::move(the_file)) {}
    std::uint64_t Size() override { return file->Size(); }
    FileStatus Read(std::uint64_t, char*, std::size_t, std::size_t&) override { return kNo; }
    FileStatus Write(std::uint64_t, std::string_view) override { return kNo; }
    FileStatus Append(std::string_view bytes) override {
      owner.unflushed = true;
      if (owner.Passes()) return file->Append(bytes);
      static_cast<void>(file->Append(bytes.substr(0, bytes.size() / 2)));
      return kNo;
    }
    FileStatus Truncate(std::uint64_t size) override { return file->Truncate(size); }
    FileStatus Flush() override {
      if (!owner.Passes()) return kNo;
      owner.unflushed = false;
      return file->Flush();
    }
    FileStatus Close() override { return file->Close(); }
    FileStatus TryLock(LockKind) override { return kNo; }
    FailingFiles& owner;
    std::unique_ptr<OpenFile> file;
  };
  bool Passes() { return fail_at-- != 0; }

  inline static const FileStatus kNo{FileCode::NoSpace, "no"};
  SystemFiles real_;
};

TEST(SetAsideFile, GrowsWholeOrNotAtAll) {
  const TempFolder folder;
  const JobFolder job(folder.Path(), "J");
  const std::string name = "jobs/J/setaside.sql";
  FailingFiles files;
  std::string error;
  ASSERT_TRUE(AppendSetAside(files, job, "one;\n", error)) << error;
  const std::string first = folder.Read(name);
  EXPECT_THAT(first, ::testing::StartsWith("-- Changes that were mined"));
  EXPECT_THAT(first, EndsWith("\n\none;\n"));
  struct stat status {};
  ASSERT_EQ(::stat((folder / name).c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600U);

  int failures = 0;
  for (files.fail_at = 0; !AppendSetAside(files, job, "two;\n", error); files.fail_at = failures) {
    EXPECT_THAT(error, HasSubstr(": no"));
    EXPECT_EQ(folder.Read(name), first) << "after failure " << failures;
    ASSERT_LT(++failures, 50);
  }
  EXPECT_EQ(failures, 3) << "open, append, flush";
  EXPECT_EQ(folder.Read(name), first + "two;\n");
  EXPECT_FALSE(files.unflushed);
}

TEST(SetAsideFile, AboveItsSizeWaitsForTheOperator) {
  const TempFolder folder;
  const JobFolder job(folder.Path(), "J");
  folder.Write("jobs/J/setaside.sql", "x");
  std::filesystem::resize_file(folder / "jobs/J/setaside.sql", kMostSetAsideBytes);
  std::string error;
  EXPECT_TRUE(AppendSetAside(folder.Files(), job, "y", error)) << error;
  EXPECT_FALSE(AppendSetAside(folder.Files(), job, "z", error));
  EXPECT_THAT(error, HasSubstr("setaside.sql is above 256 MiB"));
  EXPECT_EQ(std::filesystem::file_size(folder / "jobs/J/setaside.sql"), kMostSetAsideBytes + 1);
}

}  // namespace
}  // namespace quillmere
