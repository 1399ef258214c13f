// SPDX-License-Identifier: MIT
#include "workspace/folder_lock.h"

#include <array>
#include <chrono>
#include <optional>
#include <string_view>
#include <thread>

namespace quillmere {
namespace {

constexpr int kAttempts = 25;
constexpr std::chrono::milliseconds kBetweenAttempts{20};
constexpr auto kExclusive = OpenFile::LockKind::Exclusive;

std::filesystem::path LockFile(const std::filesystem::path& folder) {
  return folder / "quillmere.lock";
}

// Nothing when the file has anything else in it than a program writes there.
std::optional<std::string> ReadProcess(OpenFile& file) {
  std::array<char, 32> text{};
  std::size_t got = 0;
  if (!file.Read(0, text.data(), text.size(), got)) return std::nullopt;
  std::string_view digits(text.data(), got);
  if (digits.ends_with('\n')) digits.remove_suffix(1);
  const bool ours = digits.find_first_not_of("0123456789") == std::string_view::npos;
  return ours && got < text.size() ? std::optional<std::string>(digits) : std::nullopt;
}

std::string WhoHas(FileSystem& files, const std::filesystem::path& path) {
  std::unique_ptr<OpenFile> file;
  if (!files.Open(path, OpenMode::Read, FileSystem::kUsualMode, file)) return {};
  const std::string process = ReadProcess(*file).value_or("");
  return process.empty() ? "" : " (process " + process + ")";
}

// For whoever is refused; the lock does not depend on it.
void WriteOwnProcess(OpenFile& file, std::uint64_t process) {
  if (!ReadProcess(file)) return;  // a file of somebody else's
  if (file.Truncate(0)) static_cast<void>(file.Write(0, std::to_string(process) + "\n"));
}

// The lock of a program that ends is let go of by the system.
template <typename TryLock>
FileStatus LockPatiently(TryLock try_lock) {
  FileStatus status;
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    if (attempt > 1) std::this_thread::sleep_for(kBetweenAttempts);
    status = try_lock();
    if (status.code != FileCode::Busy) break;
  }
  return status;
}

}  // namespace

bool FolderLock::Take(FileSystem& files, const std::filesystem::path& folder, std::string& reason) {
  const std::filesystem::path path = LockFile(folder);
  std::unique_ptr<OpenFile> lock, file;
  FileStatus status = LockPatiently([&] { return files.LockFolder(folder, kExclusive, lock); });
  // Some network file systems can not lock a folder: the file's lock has to do there.
  if (status.code != FileCode::Busy) {
    status = files.Open(path, OpenMode::InPlace, FileSystem::kUsualMode, file);
    if (!status) {
      reason = "Can not create " + PathText(path) + ": " + status.reason +
               ". The working folder must be writable";
      return false;
    }
    status = LockPatiently([&] { return file->TryLock(kExclusive); });
  }
  if (status) {
    WriteOwnProcess(*file, files.ProcessId());
    folder_ = std::move(lock);
    file_ = std::move(file);
    return true;
  }
  reason = status.code == FileCode::Busy
               ? "Another program" + WhoHas(files, path) + " works on " + PathText(folder) +
                     ". End it first, or choose another working folder"
               : "Can not lock " + PathText(path) + ": " + status.reason;
  return false;
}

bool FolderLock::IsTaken(FileSystem& files, const std::filesystem::path& folder) {
  constexpr auto kShared = OpenFile::LockKind::Shared;
  std::unique_ptr<OpenFile> lock, file;
  return files.LockFolder(folder, kShared, lock).code == FileCode::Busy ||
         (files.Open(LockFile(folder), OpenMode::Read, FileSystem::kUsualMode, file) &&
          file->TryLock(kShared).code == FileCode::Busy);
}

}  // namespace quillmere
