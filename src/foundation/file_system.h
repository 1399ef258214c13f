// SPDX-License-Identifier: MIT
// The one seam between the program and its files: whatever the program reads, writes, renames or
// locks goes through a FileSystem that is handed to it. files.h has what is done with whole files;
// only that and who keeps a file open calls the functions here.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/clock.h"

namespace quillmere {

enum class FileCode {
  Ok,
  Missing,   // there is no such file, or no folder on the way to it
  NotAFile,  // a folder, a pipe or a symbolic link stands in its place, or a file in a folder's
  Exists,
  Denied,
  NoSpace,
  Busy,     // locked by another program
  Damaged,  // read, but it does not hold what it should
  Failed,   // anything else: the disk, mostly
};

// What became of an operation on a file. Not there, not readable and damaged are three different
// answers; whoever goes on must know which it was.
struct [[nodiscard]] FileStatus {
  FileCode code = FileCode::Ok;
  std::string reason;  // in the system's words

  explicit operator bool() const { return code == FileCode::Ok; }
  bool Missing() const { return code == FileCode::Missing; }
};

enum class FileKind { File, Folder, Other };

struct FileFacts {
  FileKind kind = FileKind::File;
  std::uint64_t size = 0;  // bytes; of a file
  // Who may do what; perms::unknown where the system has no such bits.
  std::filesystem::perms mode = std::filesystem::perms::unknown;
  bool link = false;  // a symbolic link leads there
  LocalTime changed;  // not set where that is not known
};

// An open file. One thread at a time. Its end closes it, without a word about what fails then. Must
// not outlive the file system that opened it.
class OpenFile {
 public:
  virtual ~OpenFile() = default;

  // Bytes, as far as the system tells: some files hide theirs behind a 0.
  virtual std::uint64_t Size() = 0;
  // Up to room bytes from offset on; 0 got is the end.
  virtual FileStatus Read(std::uint64_t offset, char* to, std::size_t room, std::size_t& got) = 0;
  // All bytes at offset, or behind the end, in one go where the system can. After a failure any
  // part of them may be there.
  virtual FileStatus Write(std::uint64_t offset, std::string_view bytes) = 0;
  virtual FileStatus Append(std::string_view bytes) = 0;
  virtual FileStatus Truncate(std::uint64_t size) = 0;
  // Down to the disk, so that a power cut leaves the content as it is now.
  virtual FileStatus Flush() = 0;
  // Can report a write that failed late. Nothing may be called afterwards.
  virtual FileStatus Close() = 0;

  enum class LockKind { Shared, Exclusive };
  // Does not wait: Busy when another program's lock is in the way. The lock goes with the file's
  // closing and with the process, however it ends.
  virtual FileStatus TryLock(LockKind kind) = 0;
};

// What is opened must be a file: pipes and the like are refused, not waited for. So are symbolic
// links: what the program writes stays where it was looked for.
enum class OpenMode {
  Read,      // must be there
  New,       // must not be there
  Append,    // made when missing
  InPlace,   // for reading and writing; made when missing, its content left alone
  ReadLink,  // as Read, wherever a link leads: for what an operator or the installation names
};

// Paths are absolute or relative to the working directory of the process. Any thread. No call
// throws.
class FileSystem {
 public:
  using Path = std::filesystem::path;
  using Mode = std::filesystem::perms;

  // What a new file gets when nothing else is asked for: the system's usual mode.
  static constexpr Mode kUsualMode = Mode::unknown;
  static constexpr Mode kOwnerOnly = Mode::owner_read | Mode::owner_write;

  FileSystem() = default;
  virtual ~FileSystem() = default;
  FileSystem(const FileSystem&) = delete;
  FileSystem& operator=(const FileSystem&) = delete;

  // file is set on success only. mode is that of a file that is made, from its first moment: New
  // gives it exactly, the others know kUsualMode and kOwnerOnly only. A file that is there and is
  // opened for writing with kOwnerOnly is closed to others, too.
  virtual FileStatus Open(const Path& path, OpenMode how, Mode mode,
                          std::unique_ptr<OpenFile>& file) = 0;
  virtual FileStatus Look(const Path& path, FileFacts& facts) = 0;
  // The names in a folder, without their folder, in no order.
  virtual FileStatus List(const Path& folder, std::vector<Path>& names) = 0;
  // True when both are there and are one file or folder.
  virtual bool AreSame(const Path& a, const Path& b) = 0;

  // Does not wait: Busy when another program has it. Whatever becomes of the files in the folder,
  // the lock goes only with the handle and with the process. Without a handle, and with success,
  // where a file that is open can not be removed: a lock on a file does there.
  virtual FileStatus LockFolder(const Path& folder, OpenFile::LockKind kind,
                                std::unique_ptr<OpenFile>& lock) = 0;

  // A file in the way of a file is replaced: whoever looks sees the old one or the new one.
  virtual FileStatus Rename(const Path& from, const Path& to) = 0;
  virtual FileStatus RemoveFile(const Path& path) = 0;
  virtual FileStatus RemoveFolder(const Path& path) = 0;  // an empty one
  virtual FileStatus MakeFolder(const Path& path) = 0;
  // Names that were made, renamed or removed in the folder down to the disk: before, a power cut
  // may take each of them back. Success where a folder can not be flushed.
  virtual FileStatus FlushFolder(const Path& folder) = 0;

  // What ends a line of text: one or two characters.
  virtual std::string_view LineEnd() const = 0;
  virtual std::uint64_t ProcessId() const = 0;
  // Another number each time, for names that nobody else uses.
  std::uint32_t NextNumber() { return next_number_.fetch_add(1); }

 private:
  std::atomic<std::uint32_t> next_number_{0};
};

}  // namespace quillmere
