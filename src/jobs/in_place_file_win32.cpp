#include <windows.h>

#include "jobs/in_place_file.h"

namespace quillmere {

bool InPlaceFile::Open(const std::filesystem::path& path) {
  Close();
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  handle_ = reinterpret_cast<std::ptrdiff_t>(file);  // INVALID_HANDLE_VALUE is -1 as well
  return IsOpen();
}

bool InPlaceFile::Write(const void* bytes, std::size_t count) {
  OVERLAPPED at_start{};
  DWORD written = 0;
  return WriteFile(reinterpret_cast<HANDLE>(handle_), bytes, static_cast<DWORD>(count), &written,
                   &at_start) != 0 &&
         written == count;
}

bool InPlaceFile::Flush() {
  return FlushFileBuffers(reinterpret_cast<HANDLE>(handle_)) != 0;
}

void InPlaceFile::Close() {
  if (IsOpen()) CloseHandle(reinterpret_cast<HANDLE>(handle_));
  handle_ = kClosed;
}

bool RemoveForGood(const std::filesystem::path& path) {
  return DeleteFileW(path.c_str()) != 0 || GetLastError() == ERROR_FILE_NOT_FOUND ||
         GetLastError() == ERROR_PATH_NOT_FOUND;
}

}  // namespace quillmere
