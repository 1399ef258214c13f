#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
// clang-format off
#include <windows.h>
#include <sddl.h>
// clang-format on
#undef ReplaceFile  // a macro there, a function of ours here

#include <algorithm>
#include <system_error>

#include "foundation/files.h"
#include "foundation/files_internal.h"

namespace quillmere {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLargestTransfer = std::size_t{16} << 20;

std::string LastError() {
  return std::system_category().message(static_cast<int>(::GetLastError()));
}

class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() {
    if (Open()) ::CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  bool Open() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return handle_; }
  bool Close() {
    HANDLE handle = handle_;
    handle_ = INVALID_HANDLE_VALUE;
    return ::CloseHandle(handle) != 0;
  }

 private:
  HANDLE handle_;
};

// Full access for the file's owner and nobody else, nothing inherited ("OW" is owner rights).
class OwnerOnlySecurity {
 public:
  OwnerOnlySecurity() {
    valid_ = ::ConvertStringSecurityDescriptorToSecurityDescriptorW(
                 L"D:P(A;;FA;;;OW)", SDDL_REVISION_1, &descriptor_, nullptr) != 0;
    attributes_.nLength = sizeof attributes_;
    attributes_.lpSecurityDescriptor = descriptor_;
  }
  ~OwnerOnlySecurity() {
    if (descriptor_ != nullptr) ::LocalFree(descriptor_);
  }
  OwnerOnlySecurity(const OwnerOnlySecurity&) = delete;
  OwnerOnlySecurity& operator=(const OwnerOnlySecurity&) = delete;

  bool Valid() const { return valid_; }
  SECURITY_ATTRIBUTES* Attributes() { return &attributes_; }

 private:
  bool valid_ = false;
  PSECURITY_DESCRIPTOR descriptor_ = nullptr;
  SECURITY_ATTRIBUTES attributes_{};
};

bool WriteAll(HANDLE file, std::string_view content) {
  while (!content.empty()) {
    const DWORD wanted = static_cast<DWORD>(std::min(content.size(), kLargestTransfer));
    DWORD written = 0;
    if (::WriteFile(file, content.data(), wanted, &written, nullptr) == 0 || written == 0) {
      return false;
    }
    content.remove_prefix(written);
  }
  return true;
}

bool WriteFrom(HANDLE file, const FileSource& source) {
  for (std::string_view piece = source(); !piece.empty(); piece = source()) {
    if (!WriteAll(file, piece)) return false;
  }
  return true;
}

bool ReadAll(HANDLE file, std::string& content) {
  LARGE_INTEGER size{};
  if (::GetFileSizeEx(file, &size) == 0) return false;
  std::size_t used = 0;
  content.resize(static_cast<std::size_t>(size.QuadPart) + 1);
  while (true) {
    if (used == content.size()) content.resize(content.size() * 2);
    const DWORD wanted = static_cast<DWORD>(std::min(content.size() - used, kLargestTransfer));
    DWORD got = 0;
    if (::ReadFile(file, content.data() + used, wanted, &got, nullptr) == 0) return false;
    if (got == 0) break;
    used += got;
  }
  content.resize(used);
  return true;
}

std::string WithPlatformLineEnds(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16);
  for (const char c : text) {
    if (c == '\n') out += '\r';
    out += c;
  }
  return out;
}

HANDLE CreateTemporary(const fs::path& temporary, FileAccess access) {
  if (access == FileAccess::Everyone) {
    return ::CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  }
  OwnerOnlySecurity security;
  if (!security.Valid()) return INVALID_HANDLE_VALUE;
  return ::CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, security.Attributes(), CREATE_NEW,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

bool ReadFile(const fs::path& path, std::string& content, std::string& error, bool* missing) {
  content.clear();
  if (missing != nullptr) *missing = false;
  const Handle file(::CreateFileW(path.c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.Open()) {
    const DWORD code = ::GetLastError();
    if (missing != nullptr) {
      *missing = code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
    }
    error = FileError("open", path, std::system_category().message(static_cast<int>(code)));
    return false;
  }
  if (ReadAll(file.Get(), content)) return true;
  error = FileError("read", path, LastError());
  content.clear();
  return false;
}

bool ReplaceFileFrom(const fs::path& path, const FileSource& source, FileAccess access,
                     std::string& error) {
  const fs::path temporary = TemporaryNameFor(path, ::GetCurrentProcessId());
  Handle file(CreateTemporary(temporary, access));
  if (!file.Open()) {
    error = FileError("create", path, LastError());
    return false;
  }
  const bool written = WriteFrom(file.Get(), source) && ::FlushFileBuffers(file.Get()) != 0 &&
                       file.Close() &&
                       ::MoveFileExW(temporary.c_str(), path.c_str(),
                                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
  if (written) return true;
  error = FileError("write", path, LastError());
  if (file.Open()) file.Close();  // an open file can not be deleted
  ::DeleteFileW(temporary.c_str());
  return false;
}

bool ReplaceTextFile(const fs::path& path, std::string_view text, FileAccess access,
                     std::string& error) {
  return ReplaceFile(path, WithPlatformLineEnds(text), access, error);
}

bool AppendTextFile(const fs::path& path, std::string_view text, std::string& error) {
  Handle file(::CreateFileW(path.c_str(), FILE_APPEND_DATA,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (file.Open() && WriteAll(file.Get(), WithPlatformLineEnds(text)) && file.Close()) return true;
  error = FileError("write", path, LastError());
  return false;
}

bool EmptyFile(const fs::path& path, std::string& error) {
  Handle file(::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                            TRUNCATE_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (file.Open() && file.Close()) return true;
  error = FileError("empty", path, LastError());
  return false;
}

}  // namespace quillmere
