// SPDX-License-Identifier: MIT
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

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <system_error>

#include "foundation/system_files.h"

namespace quillmere {
namespace {

constexpr std::size_t kLargestTransfer = std::size_t{16} << 20;
constexpr std::uint64_t kTheEnd = ~std::uint64_t{0};  // as an offset to write at
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// Locks keep others from reading what they cover: this one covers a byte that is never there.
constexpr std::uint64_t kLockedByte = 0x7FFFFFFF;

FileCode CodeOf(DWORD number) {
  switch (number) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      return FileCode::Missing;
    case ERROR_DIRECTORY:
      return FileCode::NotAFile;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
    case ERROR_DIR_NOT_EMPTY:
      return FileCode::Exists;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_WRITE_PROTECT:
      return FileCode::Denied;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return FileCode::NoSpace;
    case ERROR_LOCK_VIOLATION:
    case ERROR_IO_PENDING:
      return FileCode::Busy;
    default:
      return FileCode::Failed;
  }
}

FileStatus ErrorOf(DWORD number) {
  return {CodeOf(number), std::system_category().message(static_cast<int>(number))};
}

FileStatus StatusOf(bool done) {
  return done ? FileStatus{} : ErrorOf(::GetLastError());
}

OVERLAPPED At(std::uint64_t offset) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return place;
}

// Who runs this program, as security descriptors name him; empty when the system does not say.
std::wstring OwnName() {
  HANDLE token = nullptr;
  if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token) == 0) return {};
  alignas(TOKEN_USER) std::array<unsigned char, 256> user{};
  DWORD size = 0;
  LPWSTR text = nullptr;
  std::wstring name;
  if (::GetTokenInformation(token, TokenUser, user.data(), user.size(), &size) != 0 &&
      ::ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid, &text) != 0) {
    name = text;
    ::LocalFree(text);
  }
  ::CloseHandle(token);
  return name;
}

// Full access for who makes the file and nobody else, nothing inherited.
class OwnerOnlySecurity {
 public:
  OwnerOnlySecurity() {
    static const std::wstring rule = L"D:P(A;;FA;;;" + OwnName() + L")";
    valid_ = ::ConvertStringSecurityDescriptorToSecurityDescriptorW(rule.c_str(), SDDL_REVISION_1,
                                                                    &descriptor_, nullptr) != 0;
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

class Win32File final : public OpenFile {
 public:
  Win32File(HANDLE handle, bool writable) : handle_(handle), writable_(writable) {}
  ~Win32File() override {
    if (handle_ != INVALID_HANDLE_VALUE) ::CloseHandle(handle_);
  }

  std::uint64_t Size() override {
    LARGE_INTEGER size{};
    return ::GetFileSizeEx(handle_, &size) == 0 ? 0 : static_cast<std::uint64_t>(size.QuadPart);
  }

  FileStatus Read(std::uint64_t offset, char* to, std::size_t room, std::size_t& got) override {
    OVERLAPPED place = At(offset);
    DWORD count = 0;
    const DWORD wanted = static_cast<DWORD>(std::min(room, kLargestTransfer));
    const bool done = ::ReadFile(handle_, to, wanted, &count, &place) != 0;
    got = done ? count : 0;
    return done || ::GetLastError() == ERROR_HANDLE_EOF ? FileStatus{} : ErrorOf(::GetLastError());
  }

  FileStatus Write(std::uint64_t offset, std::string_view bytes) override {
    while (!bytes.empty()) {
      OVERLAPPED place = At(offset);
      DWORD written = 0;
      const DWORD wanted = static_cast<DWORD>(std::min(bytes.size(), kLargestTransfer));
      if (::WriteFile(handle_, bytes.data(), wanted, &written, &place) == 0) return StatusOf(false);
      if (written == 0) return ErrorOf(ERROR_DISK_FULL);
      bytes.remove_prefix(written);
      if (offset != kTheEnd) offset += written;
    }
    return {};
  }

  FileStatus Append(std::string_view bytes) override { return Write(kTheEnd, bytes); }

  FileStatus Truncate(std::uint64_t size) override {
    FILE_END_OF_FILE_INFO end{};
    end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
    return StatusOf(::SetFileInformationByHandle(handle_, FileEndOfFileInfo, &end, sizeof end) !=
                    0);
  }

  // Refused by the system where there is nothing that could be flushed.
  FileStatus Flush() override {
    return writable_ ? StatusOf(::FlushFileBuffers(handle_) != 0) : FileStatus{};
  }

  FileStatus Close() override {
    HANDLE handle = handle_;
    handle_ = INVALID_HANDLE_VALUE;
    return StatusOf(::CloseHandle(handle) != 0);
  }

  // The system's locks of one handle add up, and get in each other's way: the old one goes first,
  // and is taken again when there is no new one.
  FileStatus TryLock(LockKind kind) override {
    OVERLAPPED place = At(kLockedByte);
    if (held_) ::UnlockFileEx(handle_, 0, 1, 0, &place);
    FileStatus status = Lock(kind);
    if (status) held_ = kind;
    if (!status && held_ && !Lock(*held_)) held_.reset();
    return status;
  }

 private:
  FileStatus Lock(LockKind kind) {
    OVERLAPPED place = At(kLockedByte);
    const DWORD exclusive = kind == LockKind::Exclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0;
    return StatusOf(::LockFileEx(handle_, LOCKFILE_FAIL_IMMEDIATELY | exclusive, 0, 1, 0, &place) !=
                    0);
  }

  HANDLE handle_;
  const bool writable_;
  std::optional<LockKind> held_;
};

// A symbolic link, or what mounts another folder in a folder's place.
bool IsLink(const wchar_t* path) {
  WIN32_FIND_DATAW found{};
  const HANDLE search = ::FindFirstFileW(path, &found);
  if (search == INVALID_HANDLE_VALUE) return false;
  ::FindClose(search);
  return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
          found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

// Why a file could not be opened or removed: that a folder stands in its place is told as a want of
// rights.
FileStatus Refused(const wchar_t* path) {
  const DWORD number = ::GetLastError();
  const DWORD found = ::GetFileAttributesW(path);
  const bool folder = found != INVALID_FILE_ATTRIBUTES && (found & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return ErrorOf(number == ERROR_ACCESS_DENIED && folder ? ERROR_DIRECTORY : number);
}

HANDLE OpenHandle(const wchar_t* path, OpenMode how, SECURITY_ATTRIBUTES* security) {
  switch (how) {
    case OpenMode::Read:
    case OpenMode::ReadLink:
      return ::CreateFileW(path, GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    case OpenMode::New:
      return ::CreateFileW(path, GENERIC_WRITE, 0, security, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                           nullptr);
    case OpenMode::Append:
      return ::CreateFileW(path, GENERIC_WRITE, kShareAll, security, OPEN_ALWAYS,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    case OpenMode::InPlace:
      break;
  }
  return ::CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       security, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

FileStatus SystemFiles::Open(const Path& path, OpenMode how, Mode mode,
                             std::unique_ptr<OpenFile>& file) {
  if (how != OpenMode::ReadLink && IsLink(path.c_str())) {
    return {FileCode::NotAFile, "it is a symbolic link"};
  }
  HANDLE handle = INVALID_HANDLE_VALUE;
  if (mode == kOwnerOnly) {
    OwnerOnlySecurity security;
    if (!security.Valid()) return StatusOf(false);
    handle = OpenHandle(path.c_str(), how, security.Attributes());
  } else {
    handle = OpenHandle(path.c_str(), how, nullptr);
  }
  if (handle == INVALID_HANDLE_VALUE) return Refused(path.c_str());
  auto opened =
      std::make_unique<Win32File>(handle, how != OpenMode::Read && how != OpenMode::ReadLink);
  if (::GetFileType(handle) != FILE_TYPE_DISK) return {FileCode::NotAFile, "it is not a file"};
  file = std::move(opened);
  return {};
}

FileStatus SystemFiles::Look(const Path& path, FileFacts& facts) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == 0) {
    return StatusOf(false);
  }
  const bool folder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  facts.link = (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && IsLink(path.c_str());
  facts.kind = folder ? FileKind::Folder : FileKind::File;
  facts.size = (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
  // In tenths of a microsecond since 1601.
  const std::uint64_t written = (std::uint64_t{data.ftLastWriteTime.dwHighDateTime} << 32) |
                                data.ftLastWriteTime.dwLowDateTime;
  facts.changed = ToLocalTime(static_cast<std::int64_t>(written / 10'000) - 11'644'473'600'000);
  facts.mode = kUsualMode;  // what a folder hands down to its files is the system's business
  return {};
}

FileStatus SystemFiles::List(const Path& folder, std::vector<Path>& names) {
  std::error_code code;
  names.clear();
  for (std::filesystem::directory_iterator entry(folder, code), end; !code && entry != end;
       entry.increment(code)) {
    names.push_back(entry->path().filename());
  }
  if (!code) return {};
  // The C++ library has numbers of its own here.
  FileCode kind = FileCode::Failed;
  if (code == std::errc::no_such_file_or_directory) kind = FileCode::Missing;
  if (code == std::errc::not_a_directory) kind = FileCode::NotAFile;
  if (code == std::errc::permission_denied) kind = FileCode::Denied;
  return {kind, code.message()};
}

bool SystemFiles::AreSame(const Path& a, const Path& b) {
  std::error_code code;
  return std::filesystem::equivalent(a, b, code) && !code;
}

FileStatus SystemFiles::LockFolder(const Path&, OpenFile::LockKind, std::unique_ptr<OpenFile>&) {
  return {};
}

// A file that somebody reads at this moment, a virus scanner mostly, can not be replaced until he
// has done.
FileStatus SystemFiles::Rename(const Path& from, const Path& to) {
  constexpr int kAttempts = 20;
  constexpr DWORD kBetweenAttempts = 10;  // milliseconds
  FileFacts old_facts, new_facts;
  // Not left to the system: some put a file in a folder's place.
  if (Look(from, old_facts) && Look(to, new_facts) && !AreSame(from, to)) {
    if (old_facts.kind != new_facts.kind) return ErrorOf(ERROR_DIRECTORY);
    if (new_facts.kind == FileKind::Folder) {
      if (FileStatus status = RemoveFolder(to); !status) return status;
    }
  }
  for (int attempt = 1;; ++attempt) {
    FileStatus status =
        StatusOf(::MoveFileExW(from.c_str(), to.c_str(),
                               MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0);
    if (status.code != FileCode::Denied || attempt == kAttempts) return status;
    ::Sleep(kBetweenAttempts);
  }
}

FileStatus SystemFiles::RemoveFile(const Path& path) {
  return ::DeleteFileW(path.c_str()) != 0 ? FileStatus{} : Refused(path.c_str());
}

FileStatus SystemFiles::RemoveFolder(const Path& path) {
  return StatusOf(::RemoveDirectoryW(path.c_str()) != 0);
}

FileStatus SystemFiles::MakeFolder(const Path& path) {
  return StatusOf(::CreateDirectoryW(path.c_str(), nullptr) != 0);
}

// Names are on the disk as soon as the file system's journal is; there is no call that waits for
// it.
FileStatus SystemFiles::FlushFolder(const Path& folder) {
  FileFacts facts;
  FileStatus status = Look(folder, facts);
  return !status || facts.kind == FileKind::Folder ? std::move(status) : ErrorOf(ERROR_DIRECTORY);
}

std::string_view SystemFiles::LineEnd() const {
  return "\r\n";
}

std::uint64_t SystemFiles::ProcessId() const {
  return ::GetCurrentProcessId();
}

}  // namespace quillmere
