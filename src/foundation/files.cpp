#include "foundation/files.h"

#include <atomic>
#include <cstdint>
#include <system_error>
#include <utility>
#include <vector>

#include "foundation/files_internal.h"

namespace quillmere {

namespace fs = std::filesystem;

namespace {

fs::path WithSuffix(const fs::path& path, std::string_view suffix) {
  fs::path longer = path;
  longer += suffix;
  return longer;
}

bool Remove(const fs::path& path, std::string& error) {
  std::error_code code;
  fs::remove(path, code);
  if (!code) return true;
  error = FileError("remove", path, code.message());
  return false;
}

// Temporary files of path that a crash left behind.
std::vector<fs::path> Leftovers(const fs::path& path) {
  std::vector<fs::path> found;
  const std::string start = path.filename().string() + std::string(kTemporaryMark);
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  std::error_code code;
  for (fs::directory_iterator entry(folder, code), end; !code && entry != end;
       entry.increment(code)) {
    if (entry->path().filename().string().starts_with(start)) found.push_back(entry->path());
  }
  return found;
}

}  // namespace

fs::path TemporaryNameFor(const fs::path& path, unsigned long process_id) {
  // Two threads may replace files of one name at a time; each gets a temporary file of its own.
  static std::atomic<std::uint32_t> counter{0};
  return WithSuffix(path, std::string(kTemporaryMark) + std::to_string(process_id) + "-" +
                              std::to_string(counter.fetch_add(1)));
}

fs::path BadNameOf(const fs::path& path) {
  return WithSuffix(path, ".bad");
}

std::string FileError(std::string_view action, const fs::path& path, std::string_view reason) {
  std::string text = "Can not ";
  text.append(action).append(" ").append(PathText(path)).append(": ").append(reason);
  return text;
}

std::string PathText(const fs::path& path) {
  return path.string();
}

bool ReplaceFile(const fs::path& path, std::string_view content, FileAccess access,
                 std::string& error) {
  return ReplaceFileFrom(
      path, [&] { return std::exchange(content, {}); }, access, error);
}

bool MakeFolders(const fs::path& folder, std::string& error) {
  std::error_code code;
  fs::create_directories(folder, code);
  // Existing folders are success, but a file in a folder's place is not always an error above.
  if (!code && !fs::is_directory(folder, code) && !code) {
    code = std::make_error_code(std::errc::not_a_directory);
  }
  if (!code) return true;
  error = FileError("create folder", folder, code.message());
  return false;
}

bool KeepBadFile(const fs::path& path, std::string& error) {
  std::error_code code;
  if (!fs::exists(fs::symlink_status(path, code))) return true;
  fs::rename(path, BadNameOf(path), code);
  if (!code) return true;
  error = FileError("keep a copy of", path, code.message());
  return false;
}

bool KeepBadCopy(const fs::path& path, FileAccess access, std::string& error) {
  std::string content;
  bool missing = false;
  if (!ReadFile(path, content, error, &missing)) return missing;
  return ReplaceFile(BadNameOf(path), content, access, error);
}

bool RemoveEveryTrace(const fs::path& path, std::string& error) {
  std::vector<fs::path> traces = Leftovers(path);
  for (const fs::path& leftover : Leftovers(BadNameOf(path))) traces.push_back(leftover);
  traces.push_back(BadNameOf(path));
  traces.push_back(path);
  for (const fs::path& trace : traces) {
    if (!Remove(trace, error)) return false;
  }
  return true;
}

}  // namespace quillmere
