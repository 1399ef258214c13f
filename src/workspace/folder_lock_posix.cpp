#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <string_view>
#include <system_error>
#include <thread>

#include "foundation/files.h"
#include "workspace/folder_lock.h"

namespace quillmere {
namespace {

constexpr int kAttempts = 25;
constexpr std::chrono::milliseconds kBetweenAttempts{20};

std::filesystem::path LockFile(const std::filesystem::path& folder) {
  return folder / "quillmere.lock";
}

// The lock of a program that ends is let go of by the system; a signal may break the call.
bool TryLock(int fd, int operation) {
  int result = 0;
  do {
    result = ::flock(fd, operation | LOCK_NB);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

std::string WhoHas(int fd) {
  std::array<char, 32> text{};
  const ssize_t got = ::pread(fd, text.data(), text.size() - 1, 0);
  if (got <= 0) return {};
  const std::string_view digits(text.data(), static_cast<std::size_t>(got));
  return " (process " + std::string(digits.substr(0, digits.find_first_not_of("0123456789"))) + ")";
}

// For whoever is refused; the lock does not depend on it.
void WriteOwnProcess(int fd) {
  const std::string text = std::to_string(::getpid()) + "\n";
  if (::ftruncate(fd, 0) != 0 || ::pwrite(fd, text.data(), text.size(), 0) < 0) return;
}

}  // namespace

bool FolderLock::Take(const std::filesystem::path& folder, std::string& reason) {
  Release();
  const int fd = ::open(LockFile(folder).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (fd < 0) {
    reason = "Can not create " + PathText(LockFile(folder)) + ": " +
             std::generic_category().message(errno) + ". The working folder must be writable";
    return false;
  }
  for (int attempt = 1; !TryLock(fd, LOCK_EX); ++attempt) {
    if (errno != EWOULDBLOCK) {
      reason = "Can not lock " + PathText(LockFile(folder)) + ": " +
               std::generic_category().message(errno);
      ::close(fd);
      return false;
    }
    if (attempt == kAttempts) {
      reason = "Another program" + WhoHas(fd) + " works on " + PathText(folder) +
               ". End it first, or choose another working folder";
      ::close(fd);
      return false;
    }
    std::this_thread::sleep_for(kBetweenAttempts);
  }
  WriteOwnProcess(fd);
  handle_ = fd;
  return true;
}

void FolderLock::Release() {
  if (handle_ == kNone) return;
  ::close(static_cast<int>(handle_));
  handle_ = kNone;
}

bool FolderLock::IsTaken(const std::filesystem::path& folder) {
  const int fd = ::open(LockFile(folder).c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  const bool taken = !TryLock(fd, LOCK_SH) && errno == EWOULDBLOCK;
  ::close(fd);
  return taken;
}

}  // namespace quillmere
