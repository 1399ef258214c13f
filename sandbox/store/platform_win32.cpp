// SPDX-License-Identifier: MIT
#include "sandbox/store/platform.h"

// Before bcrypt.h, which needs what it declares.
#include <windows.h>

#include <bcrypt.h>

#include <array>
#include <cstdint>
#include <string_view>
#include <system_error>

namespace quillmere::sandbox {
namespace {

using Bytes = std::array<unsigned char, 32>;

constexpr std::string_view kScheme = "$pbkdf2$";
constexpr std::size_t kSaltBytes = 16;
// As cheap as elsewhere: sessions come by the thousand.
constexpr ULONGLONG kRounds = 1000;

std::string Hex(const unsigned char* bytes, std::size_t size) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < size; ++i) {
    text += kDigits[bytes[i] / 16];
    text += kDigits[bytes[i] % 16];
  }
  return text;
}

// Empty when the system refuses.
std::string Derived(std::string password, std::string salt) {
  const auto bytes = [](std::string& text) {
    return reinterpret_cast<unsigned char*>(text.data());
  };
  BCRYPT_ALG_HANDLE algorithm = nullptr;
  if (BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr,
                                  BCRYPT_ALG_HANDLE_HMAC_FLAG) != 0) {
    return {};
  }
  Bytes key{};
  const NTSTATUS status = BCryptDeriveKeyPBKDF2(
      algorithm, bytes(password), static_cast<ULONG>(password.size()), bytes(salt),
      static_cast<ULONG>(salt.size()), kRounds, key.data(), static_cast<ULONG>(key.size()), 0);
  BCryptCloseAlgorithmProvider(algorithm, 0);
  return status == 0 ? Hex(key.data(), key.size()) : std::string();
}

std::string Hash(const std::string& password, const std::string& salt) {
  const std::string derived = Derived(password, salt);
  return derived.empty() ? derived : std::string(kScheme) + salt + '$' + derived;
}

std::string WhatFailed() {
  return std::system_category().message(static_cast<int>(GetLastError()));
}

// The lock stands behind all that a file can hold: it keeps nobody from reading or writing.
OVERLAPPED BehindTheFile() {
  OVERLAPPED place{};
  place.Offset = 0xFFFFFFFE;
  place.OffsetHigh = 0x7FFFFFFF;
  return place;
}

}  // namespace

// Who may read it is what the folder says: a user's own folders are for that user.
Status MakePrivateFile(const std::filesystem::path& path) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file != INVALID_HANDLE_VALUE) {
    CloseHandle(file);
    return {};
  }
  if (GetLastError() == ERROR_FILE_EXISTS) return {1119, path.string() + " exists already"};
  return {1119, "cannot make " + path.string() + ": " + WhatFailed()};
}

bool LockFile(std::intptr_t file, FileLock lock) {
  auto* const handle = reinterpret_cast<HANDLE>(file);
  OVERLAPPED place = BehindTheFile();
  if (lock == FileLock::None) return UnlockFileEx(handle, 0, 1, 0, &place) != 0;
  const DWORD how =
      lock == FileLock::Exclusive ? LOCKFILE_EXCLUSIVE_LOCK : LOCKFILE_FAIL_IMMEDIATELY;
  return LockFileEx(handle, how, 0, 1, 0, &place) != 0;
}

Status FileFailure(const std::string& what) {
  return {1110, "cannot " + what + ": " + WhatFailed()};
}

Status MapShared(const std::filesystem::path& path, std::size_t size, SharedFile* out) {
  HANDLE file =
      CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return FileFailure("use " + path.string());
  // The file grows to the mapping's size. The view keeps the mapping.
  HANDLE mapping =
      CreateFileMappingW(file, nullptr, PAGE_READWRITE, 0, static_cast<DWORD>(size), nullptr);
  void* const memory =
      mapping == nullptr ? nullptr : MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, size);
  if (memory == nullptr) {
    Status status = FileFailure("use " + path.string());
    if (mapping != nullptr) CloseHandle(mapping);
    CloseHandle(file);
    return status;
  }
  CloseHandle(mapping);
  *out = {reinterpret_cast<std::intptr_t>(file), memory};
  return {};
}

void Unmap(const SharedFile& shared, std::size_t) {
  UnmapViewOfFile(shared.memory);
  CloseHandle(reinterpret_cast<HANDLE>(shared.file));
}

ProcessFacts ThisProcess() {
  ProcessFacts facts{GetCurrentProcessId(), {}, {}};
  std::array<char, MAX_COMPUTERNAME_LENGTH + 1> machine{};
  auto size = static_cast<DWORD>(machine.size());
  if (GetComputerNameA(machine.data(), &size) != 0) facts.machine = machine.data();
  std::array<wchar_t, MAX_PATH> program{};
  if (GetModuleFileNameW(nullptr, program.data(), MAX_PATH - 1) != 0) {
    facts.program = std::filesystem::path(program.data()).filename().string();
  }
  return facts;
}

std::string HashPassword(const std::string& password) {
  std::array<unsigned char, kSaltBytes> salt{};
  if (BCryptGenRandom(nullptr, salt.data(), static_cast<ULONG>(salt.size()),
                      BCRYPT_USE_SYSTEM_PREFERRED_RNG) != 0) {
    return {};
  }
  return Hash(password, Hex(salt.data(), salt.size()));
}

bool PasswordMatches(const std::string& password, const std::string& hash) {
  if (!hash.starts_with(kScheme)) return false;
  const std::size_t end = hash.find('$', kScheme.size());
  if (end == std::string::npos) return false;
  return Hash(password, hash.substr(kScheme.size(), end - kScheme.size())) == hash;
}

}  // namespace quillmere::sandbox
