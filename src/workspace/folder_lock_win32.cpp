#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <chrono>
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

std::string ErrorText(DWORD code) {
  return std::system_category().message(static_cast<int>(code));
}

HANDLE OpenLockFile(const std::filesystem::path& folder, DWORD creation) {
  return ::CreateFileW(LockFile(folder).c_str(), GENERIC_READ | GENERIC_WRITE,
                       FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, creation, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
}

bool TryLock(HANDLE file, DWORD exclusive) {
  OVERLAPPED place{};
  return ::LockFileEx(file, LOCKFILE_FAIL_IMMEDIATELY | exclusive, 0, 1, 0, &place) != 0;
}

bool HeldByOther(DWORD code) {
  return code == ERROR_LOCK_VIOLATION || code == ERROR_IO_PENDING;
}

}  // namespace

bool FolderLock::Take(const std::filesystem::path& folder, std::string& reason) {
  Release();
  const HANDLE file = OpenLockFile(folder, OPEN_ALWAYS);
  if (file == INVALID_HANDLE_VALUE) {
    reason = "Can not create " + PathText(LockFile(folder)) + ": " + ErrorText(::GetLastError()) +
             ". The working folder must be writable";
    return false;
  }
  for (int attempt = 1; !TryLock(file, LOCKFILE_EXCLUSIVE_LOCK); ++attempt) {
    const DWORD code = ::GetLastError();
    if (HeldByOther(code) && attempt < kAttempts) {
      std::this_thread::sleep_for(kBetweenAttempts);
      continue;
    }
    reason = HeldByOther(code)
                 ? "Another program works on " + PathText(folder) +
                       ". End it first, or choose another working folder"
                 : "Can not lock " + PathText(LockFile(folder)) + ": " + ErrorText(code);
    ::CloseHandle(file);
    return false;
  }
  handle_ = reinterpret_cast<std::ptrdiff_t>(file);
  return true;
}

void FolderLock::Release() {
  if (handle_ == kNone) return;
  ::CloseHandle(reinterpret_cast<HANDLE>(handle_));
  handle_ = kNone;
}

bool FolderLock::IsTaken(const std::filesystem::path& folder) {
  const HANDLE file = OpenLockFile(folder, OPEN_EXISTING);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool taken = !TryLock(file, 0) && HeldByOther(::GetLastError());
  ::CloseHandle(file);
  return taken;
}

}  // namespace quillmere
