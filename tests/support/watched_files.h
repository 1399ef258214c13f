// SPDX-License-Identifier: MIT
// Passes every operation on files on to another file system, tells of it first, and lets it fail.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/file_system.h"

namespace quillmere::testing {

// "write", "flush", "remove" ... and the path, or both of a renaming with " -> " between.
struct FileOperation {
  std::string_view what;
  std::string path;
  std::string Text() const { return std::string(what) + " " + path; }
};

class WatchedFiles final : public FileSystem {
 public:
  explicit WatchedFiles(FileSystem& real) : real_(real) {}

  // Called before each operation. What is not Ok fails it; of a write, half of the bytes are
  // written all the same.
  std::function<FileStatus(const FileOperation&)> on_operation;

  // From now on nothing gets through, as if the program had been killed.
  void CutOff() { cut_off_ = true; }

  FileStatus Open(const Path& path, OpenMode how, Mode mode,
                  std::unique_ptr<OpenFile>& file) override;
  FileStatus Look(const Path& path, FileFacts& facts) override {
    return Do("look", path, [&] { return real_.Look(path, facts); });
  }
  FileStatus List(const Path& folder, std::vector<Path>& names) override {
    return Do("list", folder, [&] { return real_.List(folder, names); });
  }
  bool AreSame(const Path& a, const Path& b) override { return real_.AreSame(a, b); }
  FileStatus Rename(const Path& from, const Path& to) override {
    return Do("rename", from.string() + " -> " + to.string(),
              [&] { return real_.Rename(from, to); });
  }
  FileStatus RemoveFile(const Path& path) override {
    return Do("remove", path, [&] { return real_.RemoveFile(path); });
  }
  FileStatus RemoveFolder(const Path& path) override {
    return Do("remove folder", path, [&] { return real_.RemoveFolder(path); });
  }
  FileStatus MakeFolder(const Path& path) override {
    return Do("make folder", path, [&] { return real_.MakeFolder(path); });
  }
  FileStatus FlushFolder(const Path& folder) override {
    return Do("flush folder", folder, [&] { return real_.FlushFolder(folder); });
  }
  std::string_view LineEnd() const override { return real_.LineEnd(); }
  std::uint64_t ProcessId() const override { return real_.ProcessId(); }

 private:
  class Handle;

  FileStatus Ask(std::string_view what, const Path& path) {
    FileStatus status = on_operation ? on_operation({what, path.string()}) : FileStatus{};
    return cut_off_ ? FileStatus{FileCode::Failed, "cut off"} : status;
  }
  template <typename Operation>
  FileStatus Do(std::string_view what, const Path& path, Operation operation) {
    FileStatus status = Ask(what, path);
    return status ? operation() : status;
  }

  FileSystem& real_;
  bool cut_off_ = false;
};

class WatchedFiles::Handle final : public OpenFile {
 public:
  Handle(WatchedFiles& files, Path path, std::unique_ptr<OpenFile> real)
      : files_(files), path_(std::move(path)), real_(std::move(real)) {}

  std::uint64_t Size() override { return real_->Size(); }
  FileStatus Read(std::uint64_t offset, char* to, std::size_t room, std::size_t& got) override {
    got = 0;
    return files_.Do("read", path_, [&] { return real_->Read(offset, to, room, got); });
  }
  FileStatus Write(std::uint64_t offset, std::string_view bytes) override {
    FileStatus status = files_.Ask("write", path_);
    if (status) return real_->Write(offset, bytes);
    if (!files_.cut_off_)
      static_cast<void>(real_->Write(offset, bytes.substr(0, bytes.size() / 2)));
    return status;
  }
  FileStatus Append(std::string_view bytes) override {
    FileStatus status = files_.Ask("append", path_);
    if (status) return real_->Append(bytes);
    if (!files_.cut_off_) static_cast<void>(real_->Append(bytes.substr(0, bytes.size() / 2)));
    return status;
  }
  FileStatus Truncate(std::uint64_t size) override {
    return files_.Do("truncate", path_, [&] { return real_->Truncate(size); });
  }
  FileStatus Flush() override {
    return files_.Do("flush", path_, [&] { return real_->Flush(); });
  }
  FileStatus Close() override {
    return files_.Do("close", path_, [&] { return real_->Close(); });
  }
  FileStatus TryLock(LockKind kind) override {
    return files_.Do("lock", path_, [&] { return real_->TryLock(kind); });
  }

 private:
  WatchedFiles& files_;
  const Path path_;
  const std::unique_ptr<OpenFile> real_;
};

inline FileStatus WatchedFiles::Open(const Path& path, OpenMode how, Mode mode,
                                     std::unique_ptr<OpenFile>& file) {
  static constexpr std::string_view kNames[] = {"open", "create", "open to append",
                                                "open in place"};
  return Do(kNames[static_cast<std::size_t>(how)], path, [&] {
    std::unique_ptr<OpenFile> real;
    FileStatus status = real_.Open(path, how, mode, real);
    if (status) file = std::make_unique<Handle>(*this, path, std::move(real));
    return status;
  });
}

}  // namespace quillmere::testing
