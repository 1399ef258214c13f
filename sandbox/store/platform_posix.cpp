// SPDX-License-Identifier: MIT
#include "sandbox/store/platform.h"

#include <crypt.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <random>

namespace quillmere::sandbox {

namespace {

std::string Crypt(const std::string& password, const std::string& setting) {
  // The work area is tens of kilobytes: too much for the stack of a small thread.
  const auto data = std::make_unique<crypt_data>();
  const char* hash = crypt_r(password.c_str(), setting.c_str(), data.get());
  return hash == nullptr || hash[0] == '*' ? std::string() : std::string(hash);
}

}  // namespace

Status MakePrivateFile(const std::filesystem::path& path) {
  const int file = open(path.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600);
  if (file >= 0) return close(file) == 0 ? Status() : Status(1119, std::strerror(errno));
  if (errno == EEXIST) return {1119, path.string() + " exists already"};
  return {1119, "cannot make " + path.string() + ": " + std::strerror(errno)};
}

bool LockFile(std::intptr_t file, FileLock lock) {
  const int how = lock == FileLock::Exclusive ? LOCK_EX
                  : lock == FileLock::Try     ? LOCK_SH | LOCK_NB
                                              : LOCK_UN;
  int result = 0;
  do {
    result = flock(static_cast<int>(file), how);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

Status FileFailure(const std::string& what) {
  return {1110, "cannot " + what + ": " + std::strerror(errno)};
}

Status MapShared(const std::filesystem::path& path, std::size_t size, SharedFile* out) {
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (file < 0) return FileFailure("use " + path.string());
  void* memory = MAP_FAILED;
  if (ftruncate(file, static_cast<off_t>(size)) == 0) {
    memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  }
  if (memory == MAP_FAILED) {
    Status status = FileFailure("use " + path.string());
    close(file);
    return status;
  }
  *out = {file, memory};
  return {};
}

void Unmap(const SharedFile& shared, std::size_t size) {
  munmap(shared.memory, size);
  close(static_cast<int>(shared.file));
}

ProcessFacts ThisProcess() {
  std::array<char, 256> name{};
  const bool named = gethostname(name.data(), name.size() - 1) == 0;
  return {getpid(), named ? name.data() : "", program_invocation_short_name};
}

std::string HashPassword(const std::string& password) {
  static constexpr char kSalt[] =
      "./0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  std::random_device random;
  // The fewest rounds the hash knows: connecting must stay cheap, sessions come by the thousand.
  std::string setting = "$5$rounds=1000$";
  for (int i = 0; i < 16; ++i) setting += kSalt[random() % 64];
  return Crypt(password, setting);
}

bool PasswordMatches(const std::string& password, const std::string& hash) {
  return !hash.empty() && Crypt(password, hash) == hash;
}

}  // namespace quillmere::sandbox
