// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "foundation/system_files.h"

namespace quillmere {
namespace {

constexpr mode_t kUsualBits = 0666;
constexpr mode_t kModeBits = 0777;
constexpr mode_t kOwnerBits = 0600;

FileCode CodeOf(int number) {
  switch (number) {
    case ENOENT:
      return FileCode::Missing;
    case EISDIR:
    case ENOTDIR:
    case ENXIO:  // a pipe that nobody reads
    case ELOOP:
      return FileCode::NotAFile;
    case EEXIST:
    case ENOTEMPTY:
      return FileCode::Exists;
    case EACCES:
    case EPERM:
    case EROFS:
      return FileCode::Denied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return FileCode::NoSpace;
    case EWOULDBLOCK:
      return FileCode::Busy;
    default:
      return FileCode::Failed;
  }
}

FileStatus ErrorOf(int number) {
  if (number == ENXIO) return {CodeOf(number), "it is not a file"};
  if (number == ELOOP) return {CodeOf(number), "it is a symbolic link"};
  return {CodeOf(number), std::generic_category().message(number)};
}

FileStatus StatusOf(bool done) {
  return done ? FileStatus{} : ErrorOf(errno);
}

// Again as long as a signal breaks the call.
template <typename Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

class PosixFile final : public OpenFile {
 public:
  PosixFile(int fd, bool in_place) : fd_(fd), in_place_(in_place) {}
  ~PosixFile() override {
    if (fd_ >= 0) ::close(fd_);
  }

  std::uint64_t Size() override {
    struct stat status {};
    return ::fstat(fd_, &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
  }

  FileStatus Read(std::uint64_t offset, char* to, std::size_t room, std::size_t& got) override {
    const ssize_t count =
        Uninterrupted([&] { return ::pread(fd_, to, room, static_cast<off_t>(offset)); });
    got = count < 0 ? 0 : static_cast<std::size_t>(count);
    return StatusOf(count >= 0);
  }

  FileStatus Write(std::uint64_t offset, std::string_view bytes) override {
    return WriteAll(bytes, [&](std::string_view rest) {
      const std::uint64_t at = offset + (bytes.size() - rest.size());
      return ::pwrite(fd_, rest.data(), rest.size(), static_cast<off_t>(at));
    });
  }

  FileStatus Append(std::string_view bytes) override {
    return WriteAll(bytes,
                    [&](std::string_view rest) { return ::write(fd_, rest.data(), rest.size()); });
  }

  FileStatus Truncate(std::uint64_t size) override {
    return StatusOf(::ftruncate(fd_, static_cast<off_t>(size)) == 0);
  }

  // What is rewritten in place keeps its size: its times need not go to the disk, too.
  FileStatus Flush() override {
    return StatusOf((in_place_ ? ::fdatasync(fd_) : ::fsync(fd_)) == 0);
  }

  FileStatus Close() override {
    const int fd = fd_;
    fd_ = -1;
    return StatusOf(::close(fd) == 0);
  }

  FileStatus TryLock(LockKind kind) override {
    const int operation = (kind == LockKind::Shared ? LOCK_SH : LOCK_EX) | LOCK_NB;
    return StatusOf(Uninterrupted([&] { return ::flock(fd_, operation); }) == 0);
  }

 private:
  template <typename Call>
  static FileStatus WriteAll(std::string_view rest, Call call) {
    while (!rest.empty()) {
      const ssize_t written = Uninterrupted([&] { return call(rest); });
      if (written < 0) return ErrorOf(errno);
      if (written == 0) return ErrorOf(ENOSPC);
      rest.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
  }

  int fd_;
  const bool in_place_;
};

int FlagsOf(OpenMode how) {
  switch (how) {
    case OpenMode::Read:
      return O_RDONLY | O_NOFOLLOW;
    case OpenMode::New:
      return O_WRONLY | O_CREAT | O_EXCL;
    case OpenMode::Append:
      return O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW;
    case OpenMode::InPlace:
      break;
    case OpenMode::ReadLink:
      return O_RDONLY;
  }
  return O_RDWR | O_CREAT | O_NOFOLLOW;
}

// What was opened must be a file, and gets a mode that was asked for.
FileStatus CheckOpened(int fd, OpenMode how, bool usual, mode_t bits) {
  struct stat status {};
  if (::fstat(fd, &status) != 0) return ErrorOf(errno);
  if (!S_ISREG(status.st_mode)) return {FileCode::NotAFile, "it is not a file"};
  if (usual) return {};
  if (how == OpenMode::New) return StatusOf(::fchmod(fd, bits) == 0);
  const bool writes = how == OpenMode::Append || how == OpenMode::InPlace;
  // Who may write a file of somebody else's can not close it.
  if (writes && (status.st_mode & kModeBits & ~kOwnerBits) != 0) {
    static_cast<void>(::fchmod(fd, status.st_mode & kOwnerBits));
  }
  return {};
}

}  // namespace

FileStatus SystemFiles::Open(const Path& path, OpenMode how, Mode mode,
                             std::unique_ptr<OpenFile>& file) {
  // A mode that was asked for holds whatever the process's mask says; nobody else gets in before.
  const bool usual = mode == kUsualMode;
  const mode_t bits = usual ? kUsualBits : static_cast<mode_t>(mode) & kModeBits;
  // A pipe must not be waited for.
  const int flags = FlagsOf(how) | O_NONBLOCK | O_CLOEXEC;
  const int fd = ::open(path.c_str(), flags, usual ? bits : bits & kOwnerBits);
  if (fd < 0) return ErrorOf(errno);
  auto opened = std::make_unique<PosixFile>(fd, how == OpenMode::InPlace);
  FileStatus status = CheckOpened(fd, how, usual, bits);
  if (status) {
    file = std::move(opened);
  } else if (how == OpenMode::New) {
    ::unlink(path.c_str());
  }
  return status;
}

FileStatus SystemFiles::Look(const Path& path, FileFacts& facts) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return ErrorOf(errno);
  facts.link = S_ISLNK(status.st_mode);
  if (facts.link && ::stat(path.c_str(), &status) != 0) return ErrorOf(errno);
  facts.kind = S_ISREG(status.st_mode)   ? FileKind::File
               : S_ISDIR(status.st_mode) ? FileKind::Folder
                                         : FileKind::Other;
  facts.size = static_cast<std::uint64_t>(status.st_size);
  facts.mode = static_cast<Mode>(status.st_mode & kModeBits);
  facts.changed = ToLocalTime(std::int64_t{status.st_mtime} * 1000);
  return {};
}

FileStatus SystemFiles::List(const Path& folder, std::vector<Path>& names) {
  std::error_code code;
  names.clear();
  for (std::filesystem::directory_iterator entry(folder, code), end; !code && entry != end;
       entry.increment(code)) {
    names.push_back(entry->path().filename());
  }
  return code ? ErrorOf(code.value()) : FileStatus{};
}

bool SystemFiles::AreSame(const Path& a, const Path& b) {
  std::error_code code;
  return std::filesystem::equivalent(a, b, code) && !code;
}

FileStatus SystemFiles::LockFolder(const Path& folder, OpenFile::LockKind kind,
                                   std::unique_ptr<OpenFile>& lock) {
  const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return ErrorOf(errno);
  auto opened = std::make_unique<PosixFile>(fd, false);
  FileStatus status = opened->TryLock(kind);
  if (status) lock = std::move(opened);
  return status;
}

FileStatus SystemFiles::Rename(const Path& from, const Path& to) {
  return StatusOf(::rename(from.c_str(), to.c_str()) == 0);
}

FileStatus SystemFiles::RemoveFile(const Path& path) {
  return StatusOf(::unlink(path.c_str()) == 0);
}

FileStatus SystemFiles::RemoveFolder(const Path& path) {
  return StatusOf(::rmdir(path.c_str()) == 0);
}

FileStatus SystemFiles::MakeFolder(const Path& path) {
  return StatusOf(::mkdir(path.c_str(), kModeBits) == 0);
}

FileStatus SystemFiles::FlushFolder(const Path& folder) {
  const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  // A folder that may be written but not read can not be flushed.
  if (fd < 0) return errno == EACCES ? FileStatus{} : ErrorOf(errno);
  const PosixFile closer(fd, false);
  if (::fsync(fd) == 0 || errno == EINVAL || errno == ENOTSUP) return {};
  return ErrorOf(errno);
}

std::string_view SystemFiles::LineEnd() const {
  return "\n";
}

std::uint64_t SystemFiles::ProcessId() const {
  return static_cast<std::uint64_t>(::getpid());
}

}  // namespace quillmere
