// SPDX-License-Identifier: MIT
// Files in memory that know what of them is on the disk: what was written and not flushed, and each
// name that was made, renamed or removed in a folder not flushed since, a power cut may take back.
// Every operation can be watched, and made to fail.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
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

// Paths are absolute, with "/" between. The folders above the working folder are there. Any thread.
class MemoryFiles final : public FileSystem {
 public:
  explicit MemoryFiles(const Path& working_folder = "/work");

  FileStatus Open(const Path& path, OpenMode how, Mode mode,
                  std::unique_ptr<OpenFile>& file) override;
  FileStatus Look(const Path& path, FileFacts& facts) override;
  FileStatus List(const Path& folder, std::vector<Path>& names) override;
  bool AreSame(const Path& a, const Path& b) override;
  FileStatus LockFolder(const Path& folder, OpenFile::LockKind kind,
                        std::unique_ptr<OpenFile>& lock) override;
  FileStatus Rename(const Path& from, const Path& to) override;
  FileStatus RemoveFile(const Path& path) override;
  FileStatus RemoveFolder(const Path& path) override;
  FileStatus MakeFolder(const Path& path) override;
  FileStatus FlushFolder(const Path& folder) override;
  std::string_view LineEnd() const override { return "\n"; }
  std::uint64_t ProcessId() const override { return 1; }

  // Called before each operation. What is not Ok fails it; of a write for which there is no
  // space half of the bytes are written all the same, unless they are in the place of others within
  // a sector.
  std::function<FileStatus(const FileOperation&)> on_operation;

  // From now on nothing gets through, as if the program had been killed.
  void CutOff() { cut_off_ = true; }
  // As for a program that begins: nobody watches, everything gets through.
  void Release() {
    on_operation = nullptr;
    cut_off_ = false;
  }

  // Whether a change that was not flushed is on the disk all the same; asked for each in its order.
  using Keep = std::function<bool()>;
  // What stands when the power is back. Any combination of the changes may have been kept; a write
  // as a whole where it lies within a sector, else sector by sector.
  std::unique_ptr<MemoryFiles> AfterPowerCut(const Keep& keep) const;

  // These are no operations. Makes the file with its folders, down to the disk.
  void Put(const Path& path, std::string_view content);
  void Remove(const Path& path);
  // The file's content as the program sees it, or "(none)".
  std::string Content(const Path& path) const;
  // Of all files below a folder, by their names there; of an empty folder its name with "/".
  std::map<std::string, std::string> All(const Path& folder) const;

 private:
  struct Node;
  using NodePtr = std::shared_ptr<Node>;
  class Handle;

  FileStatus Ask(std::string_view what, const std::string& path) const;
  // Unless it is refused, with the tree locked.
  template <typename Run>
  FileStatus Do(std::string_view what, const std::string& path, Run run) const;
  NodePtr Find(const Path& path) const;
  // The node and the folder that its name is looked up in; null when it is not there.
  FileStatus Find(const Path& path, NodePtr& folder, NodePtr& node) const;
  NodePtr Folders(const Path& path);
  FileStatus RemoveOne(const Path& path, FileKind kind) const;
  static NodePtr AfterCut(const Node& node, const Keep& keep);

  mutable std::mutex mutex_;  // guards the tree
  NodePtr root_;
  bool cut_off_ = false;
};

}  // namespace quillmere::testing
