// SPDX-License-Identifier: MIT
#include "foundation/files.h"

#include <memory>
#include <utility>
#include <vector>

namespace quillmere {

namespace fs = std::filesystem;

namespace {

// Between a file's name and what makes its temporary file's name unique.
constexpr std::string_view kTemporaryMark = ".tmp-";

fs::path WithSuffix(const fs::path& path, std::string_view suffix) {
  fs::path longer = path;
  longer += suffix;
  return longer;
}

fs::path FolderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

// "Can not <action> <path>: <reason>"
std::string FileError(std::string_view action, const fs::path& path, std::string_view reason) {
  std::string text = "Can not ";
  text.append(action).append(" ").append(PathText(path)).append(": ").append(reason);
  return text;
}

// Leaves the reason of a failure.
bool Passed(const FileStatus& status, std::string_view action, const fs::path& path,
            std::string& error) {
  if (status) return true;
  error = FileError(action, path, status.reason);
  return false;
}

FileSystem::Mode ModeFor(FileSystem& files, const fs::path& path, FileAccess access) {
  if (access == FileAccess::OwnerOnly) return FileSystem::kOwnerOnly;
  FileFacts old;
  const bool known = static_cast<bool>(files.Look(path, old)) && old.kind == FileKind::File;
  return known ? old.mode : FileSystem::kUsualMode;
}

FileStatus OpenTemporary(FileSystem& files, const fs::path& path, FileSystem::Mode mode,
                         fs::path& temporary, std::unique_ptr<OpenFile>& file) {
  constexpr int kMostTries = 100;
  const std::string mark = std::string(kTemporaryMark) + std::to_string(files.ProcessId()) + "-";
  FileStatus status;
  for (int tries = 0; tries < kMostTries; ++tries) {
    temporary = WithSuffix(path, mark + std::to_string(files.NextNumber()));
    status = files.Open(temporary, OpenMode::New, mode, file);
    // Left by a program that had the same number and was killed.
    if (status.code != FileCode::Exists) break;
  }
  return status;
}

FileStatus WriteAndClose(OpenFile& file, const FileSource& source) {
  for (std::string_view piece = source(); !piece.empty(); piece = source()) {
    FileStatus status = file.Append(piece);
    if (!status) return status;
  }
  FileStatus status = file.Flush();
  return status ? file.Close() : status;
}

// Half a line must not stand before the next one.
FileStatus AppendWhole(OpenFile& file, std::string_view bytes) {
  const std::uint64_t size = file.Size();
  FileStatus status = file.Append(bytes);
  if (!status) static_cast<void>(file.Truncate(size));
  return status;
}

// Temporary files of path that a crash left behind.
FileStatus FindLeftovers(FileSystem& files, const fs::path& path, std::vector<fs::path>& found) {
  const fs::path folder = FolderOf(path);
  std::vector<fs::path> names;
  FileStatus status = files.List(folder, names);
  const std::string start = path.filename().string() + std::string(kTemporaryMark);
  for (const fs::path& name : names) {
    if (name.string().starts_with(start)) found.push_back(folder / name);
  }
  return status.Missing() ? FileStatus{} : status;
}

// The text with the platform's line ends, in the buffer where they are others.
std::string_view WithLineEnds(const FileSystem& files, std::string_view text, std::string& buffer) {
  if (files.LineEnd() == "\n") return text;
  buffer.clear();
  buffer.reserve(text.size() + text.size() / 16);
  for (const char c : text) {
    if (c == '\n') {
      buffer += files.LineEnd();
    } else {
      buffer += c;
    }
  }
  return buffer;
}

}  // namespace

fs::path BadNameOf(const fs::path& path) {
  return WithSuffix(path, ".bad");
}

std::string PathText(const fs::path& path) {
  return path.string();
}

FileStatus ReadFile(FileSystem& files, const fs::path& path, std::string& content, Links links) {
  content.clear();
  std::unique_ptr<OpenFile> file;
  const OpenMode how = links == Links::Followed ? OpenMode::ReadLink : OpenMode::Read;
  FileStatus status = files.Open(path, how, FileSystem::kUsualMode, file);
  if (!status) return {status.code, FileError("open", path, status.reason)};
  // One more, so that the end shows without another allocation.
  content.resize(static_cast<std::size_t>(file->Size()) + 1);
  std::size_t used = 0;
  std::size_t got = 0;
  do {
    if (used == content.size()) content.resize(content.size() * 2);
    status = file->Read(used, content.data() + used, content.size() - used, got);
    used += got;
  } while (status && got > 0);
  content.resize(status ? used : 0);
  if (!status) status.reason = FileError("read", path, status.reason);
  return status;
}

bool ReplaceFile(FileSystem& files, const fs::path& path, std::string_view content,
                 FileAccess access, std::string& error) {
  return ReplaceFileFrom(
      files, path, [&] { return std::exchange(content, {}); }, access, error);
}

bool ReplaceFileFrom(FileSystem& files, const fs::path& path, const FileSource& source,
                     FileAccess access, std::string& error) {
  fs::path temporary;
  std::unique_ptr<OpenFile> file;
  FileStatus status = OpenTemporary(files, path, ModeFor(files, path, access), temporary, file);
  if (!Passed(status, "create", path, error)) return false;
  status = WriteAndClose(*file, source);
  file.reset();  // an open file can not be renamed or removed everywhere
  if (status) status = files.Rename(temporary, path);
  if (!status) {
    // The first reason is the one to tell.
    static_cast<void>(files.RemoveFile(temporary));
    return Passed(status, "write", path, error);
  }
  return Passed(files.FlushFolder(FolderOf(path)), "write", path, error);
}

bool ReplaceTextFile(FileSystem& files, const fs::path& path, std::string_view text,
                     FileAccess access, std::string& error) {
  std::string buffer;
  return ReplaceFile(files, path, WithLineEnds(files, text, buffer), access, error);
}

bool AppendTextFile(FileSystem& files, const fs::path& path, std::string_view text,
                    std::string& error) {
  std::unique_ptr<OpenFile> file;
  FileStatus status = files.Open(path, OpenMode::Append, FileSystem::kOwnerOnly, file);
  std::string buffer;
  if (status && !text.empty()) status = AppendWhole(*file, WithLineEnds(files, text, buffer));
  if (status) status = file->Close();
  return Passed(status, "write", path, error);
}

FileStatus RemoveForGood(FileSystem& files, const fs::path& path) {
  FileStatus status = files.RemoveFile(path);
  if (status.Missing()) return {};
  return status ? files.FlushFolder(FolderOf(path)) : status;
}

bool IsThere(FileSystem& files, const fs::path& path) {
  FileFacts facts;
  return static_cast<bool>(files.Look(path, facts));
}

bool IsFile(FileSystem& files, const fs::path& path) {
  FileFacts facts;
  return files.Look(path, facts) && facts.kind == FileKind::File;
}

bool IsFolder(FileSystem& files, const fs::path& path) {
  FileFacts facts;
  return files.Look(path, facts) && facts.kind == FileKind::Folder;
}

bool MakeFolders(FileSystem& files, const fs::path& folder, std::string& error) {
  FileFacts facts;
  FileStatus status = files.Look(folder, facts);
  if (status && facts.kind != FileKind::Folder)
    status = {FileCode::NotAFile, "a file stands there"};
  if (!status.Missing()) return Passed(status, "create folder", folder, error);
  const fs::path parent = FolderOf(folder);
  if (parent != folder && !MakeFolders(files, parent, error)) return false;
  status = files.MakeFolder(folder);
  if (status) status = files.FlushFolder(parent);
  // Somebody else was quicker.
  if (status.code == FileCode::Exists && IsFolder(files, folder)) return true;
  return Passed(status, "create folder", folder, error);
}

bool FlushFolder(FileSystem& files, const fs::path& folder, std::string& error) {
  const FileStatus status = files.FlushFolder(folder);
  return status.Missing() || Passed(status, "flush", folder, error);
}

bool RenamePath(FileSystem& files, const fs::path& from, const fs::path& to, std::string& error) {
  FileStatus status = files.Rename(from, to);
  if (status) status = files.FlushFolder(FolderOf(to));
  if (status && FolderOf(from) != FolderOf(to)) status = files.FlushFolder(FolderOf(from));
  if (status) return true;
  error = "Can not rename " + PathText(from) + " to " + PathText(to) + ": " + status.reason;
  return false;
}

bool KeepBadFile(FileSystem& files, const fs::path& path, std::string& error) {
  FileStatus status = files.Rename(path, BadNameOf(path));
  if (status.Missing()) return true;
  if (status) status = files.FlushFolder(FolderOf(path));
  return Passed(status, "keep a copy of", path, error);
}

bool KeepBadCopy(FileSystem& files, const fs::path& path, FileAccess access, std::string& error) {
  std::string content;
  FileStatus status = ReadFile(files, path, content);
  if (status) return ReplaceFile(files, BadNameOf(path), content, access, error);
  error = std::move(status.reason);
  return status.Missing();
}

bool RemoveEveryTrace(FileSystem& files, const fs::path& path, std::string& error) {
  std::vector<fs::path> traces;
  FileStatus status = FindLeftovers(files, path, traces);
  if (status) status = FindLeftovers(files, BadNameOf(path), traces);
  if (!Passed(status, "remove", path, error)) return false;
  traces.push_back(BadNameOf(path));
  traces.push_back(path);
  bool removed = false;
  for (const fs::path& trace : traces) {
    status = files.RemoveFile(trace);
    if (status.Missing()) continue;
    if (!Passed(status, "remove", trace, error)) return false;
    removed = true;
  }
  return !removed || Passed(files.FlushFolder(FolderOf(path)), "remove", path, error);
}

}  // namespace quillmere
