// SPDX-License-Identifier: MIT
#include "workspace/folder_lock.h"

#include <array>
#include <chrono>
#include <string_view>
#include <thread>

namespace quillmere {
namespace {

constexpr int kAttempts = 25;
constexpr std::chrono::milliseconds kBetweenAttempts{20};

std::filesystem::path LockFile(const std::filesystem::path& folder) {
  return folder / "quillmere.lock";
}

std::string WhoHas(OpenFile& file) {
  std::array<char, 32> text{};
  std::size_t got = 0;
  if (!file.Read(0, text.data(), text.size(), got) || got == 0) return {};
  const std::string_view digits(text.data(), got);
  return " (process " + std::string(digits.substr(0, digits.find_first_not_of("0123456789"))) + ")";
}

// For whoever is refused; the lock does not depend on it.
void WriteOwnProcess(OpenFile& file, std::uint64_t process) {
  if (file.Truncate(0)) static_cast<void>(file.Write(0, std::to_string(process) + "\n"));
}

// The lock of a program that ends is let go of by the system.
FileStatus LockPatiently(OpenFile& file) {
  FileStatus status;
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    if (attempt > 1) std::this_thread::sleep_for(kBetweenAttempts);
    status = file.TryLock(OpenFile::LockKind::Exclusive);
    if (status.code != FileCode::Busy) break;
  }
  return status;
}

}  // namespace

bool FolderLock::Take(FileSystem& files, const std::filesystem::path& folder, std::string& reason) {
  const std::filesystem::path path = LockFile(folder);
  std::unique_ptr<OpenFile> file;
  FileStatus status = files.Open(path, OpenMode::InPlace, FileSystem::kUsualMode, file);
  if (!status) {
    reason = "Can not create " + PathText(path) + ": " + status.reason +
             ". The working folder must be writable";
    return false;
  }
  status = LockPatiently(*file);
  if (status) {
    WriteOwnProcess(*file, files.ProcessId());
    file_ = std::move(file);
    return true;
  }
  reason = status.code == FileCode::Busy
               ? "Another program" + WhoHas(*file) + " works on " + PathText(folder) +
                     ". End it first, or choose another working folder"
               : "Can not lock " + PathText(path) + ": " + status.reason;
  return false;
}

bool FolderLock::IsTaken(FileSystem& files, const std::filesystem::path& folder) {
  std::unique_ptr<OpenFile> file;
  return files.Open(LockFile(folder), OpenMode::Read, FileSystem::kUsualMode, file) &&
         file->TryLock(OpenFile::LockKind::Shared).code == FileCode::Busy;
}

}  // namespace quillmere
