#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "foundation/files.h"
#include "foundation/files_internal.h"

namespace quillmere {

namespace fs = std::filesystem;

namespace {

std::string LastError() {
  return std::generic_category().message(errno);
}

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool Open() const { return fd_ >= 0; }
  int Get() const { return fd_; }

  // Close can report a write that failed late.
  bool Close() {
    const int fd = fd_;
    fd_ = -1;
    return ::close(fd) == 0;
  }

 private:
  int fd_;
};

bool WriteAll(int fd, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = ::write(fd, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool WriteFrom(int fd, const FileSource& source) {
  for (std::string_view piece = source(); !piece.empty(); piece = source()) {
    if (!WriteAll(fd, piece)) return false;
  }
  return true;
}

bool ReadAll(int fd, std::size_t size_hint, std::string& content) {
  std::size_t used = 0;
  content.resize(size_hint + 1);  // one more, so that the end shows without another allocation
  while (true) {
    if (used == content.size()) content.resize(content.size() * 2);
    const ssize_t got = ::read(fd, content.data() + used, content.size() - used);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) break;
    used += static_cast<std::size_t>(got);
  }
  content.resize(used);
  return true;
}

// A file that the operator has closed to others stays closed when it is replaced.
mode_t ModeFor(const fs::path& path, FileAccess access) {
  if (access == FileAccess::OwnerOnly) return 0600;
  struct stat old {};
  if (::stat(path.c_str(), &old) == 0 && S_ISREG(old.st_mode)) return old.st_mode & 0777;
  return 0;
}

// The rename itself must survive a power cut. Not every file system can flush a folder; the file is
// complete all the same, so this is no failure.
void FlushFolder(const fs::path& path) {
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.Open()) ::fsync(descriptor.Get());
}

}  // namespace

bool ReadFile(const fs::path& path, std::string& content, std::string& error, bool* missing) {
  content.clear();
  if (missing != nullptr) *missing = false;
  // O_NONBLOCK: a pipe in the file's place is refused below instead of waiting for its writer.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.Open()) {
    if (missing != nullptr) *missing = errno == ENOENT;
    error = FileError("open", path, LastError());
    return false;
  }
  struct stat status {};
  if (::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) {
    error = FileError("open", path, "it is not a file");
    return false;
  }
  if (ReadAll(file.Get(), static_cast<std::size_t>(status.st_size), content)) return true;
  error = FileError("read", path, LastError());
  content.clear();
  return false;
}

bool ReplaceFileFrom(const fs::path& path, const FileSource& source, FileAccess access,
                     std::string& error) {
  const fs::path temporary =
      TemporaryNameFor(path, static_cast<unsigned long>(static_cast<unsigned>(::getpid())));
  const mode_t mode = ModeFor(path, access);
  Descriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                         mode == 0 ? 0666 : mode & 0600));
  if (!file.Open()) {
    error = FileError("create", path, LastError());
    return false;
  }
  const bool written = WriteFrom(file.Get(), source) &&
                       (mode == 0 || ::fchmod(file.Get(), mode) == 0) && ::fsync(file.Get()) == 0 &&
                       file.Close() && ::rename(temporary.c_str(), path.c_str()) == 0;
  if (!written) {
    error = FileError("write", path, LastError());
    ::unlink(temporary.c_str());
    return false;
  }
  FlushFolder(path);
  return true;
}

bool ReplaceTextFile(const fs::path& path, std::string_view text, FileAccess access,
                     std::string& error) {
  return ReplaceFile(path, text, access, error);
}

bool AppendTextFile(const fs::path& path, std::string_view text, std::string& error) {
  Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666));
  if (file.Open() && WriteAll(file.Get(), text) && file.Close()) return true;
  error = FileError("write", path, LastError());
  return false;
}

bool EmptyFile(const fs::path& path, std::string& error) {
  if (::truncate(path.c_str(), 0) == 0) return true;
  error = FileError("empty", path, LastError());
  return false;
}

}  // namespace quillmere
