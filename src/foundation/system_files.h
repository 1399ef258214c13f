// SPDX-License-Identifier: MIT
// The files of the operating system. Each platform has a file of its own.
#pragma once

#include "foundation/file_system.h"

namespace quillmere {

// Several on the same files do no harm.
class SystemFiles final : public FileSystem {
 public:
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
  std::string_view LineEnd() const override;
  std::uint64_t ProcessId() const override;
};

}  // namespace quillmere
