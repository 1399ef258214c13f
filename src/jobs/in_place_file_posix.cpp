#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "jobs/in_place_file.h"

namespace quillmere {

bool InPlaceFile::Open(const std::filesystem::path& path) {
  Close();
  handle_ = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
  return IsOpen();
}

bool InPlaceFile::Write(const void* bytes, std::size_t count) {
  ssize_t written = 0;
  do {
    written = pwrite(static_cast<int>(handle_), bytes, count, 0);
  } while (written < 0 && errno == EINTR);
  return written == static_cast<ssize_t>(count);
}

bool InPlaceFile::Flush() {
  return fdatasync(static_cast<int>(handle_)) == 0;
}

void InPlaceFile::Close() {
  if (IsOpen()) close(static_cast<int>(handle_));
  handle_ = kClosed;
}

bool RemoveForGood(const std::filesystem::path& path) {
  if (unlink(path.c_str()) != 0) return errno == ENOENT;
  const int folder = open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    fsync(folder);
    close(folder);
  }
  return true;
}

}  // namespace quillmere
