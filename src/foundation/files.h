// Whole-file reading and writing as every configuration file needs it. Functions report failure by
// false and a reason that names the path; nothing throws. Any thread.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace quillmere {

enum class FileAccess { Everyone, OwnerOnly };

// The whole file, byte for byte. Fails for a missing file too; missing then says so.
bool ReadFile(const std::filesystem::path& path, std::string& content, std::string& error,
              bool* missing = nullptr);

// Writes a temporary file in the same folder, flushes it to disk and renames it over path: a reader
// or a crash sees the old file or the new one. On failure the old file stands and the temporary
// file is gone. OwnerOnly: from its first moment the file is readable by its owner alone.
bool ReplaceFile(const std::filesystem::path& path, std::string_view content, FileAccess access,
                 std::string& error);

// Creates the folder and what is missing on the way to it.
bool MakeFolders(const std::filesystem::path& folder, std::string& error);

// Renames a file that could not be read to its name with ".bad" added (replacing an older one), so
// that the next save does not destroy it. A missing file is success.
bool KeepBadFile(const std::filesystem::path& path, std::string& error);

}  // namespace quillmere
