// Whole-file reading and writing as every configuration file needs it. Functions report failure by
// false and a reason that names the path; nothing throws. Any thread.
#pragma once

#include <filesystem>
#include <functional>
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

// Hands out a file's content piece by piece; an empty piece is the end.
using FileSource = std::function<std::string_view()>;

// The same for content that need not stand in memory as a whole.
bool ReplaceFileFrom(const std::filesystem::path& path, const FileSource& source, FileAccess access,
                     std::string& error);

// The same for text: line feeds become the platform's line ends.
bool ReplaceTextFile(const std::filesystem::path& path, std::string_view text, FileAccess access,
                     std::string& error);

// Adds text to the end of a file, which is made when missing, in one write; line feeds become the
// platform's line ends. The file is closed again.
bool AppendTextFile(const std::filesystem::path& path, std::string_view text, std::string& error);

// Empties a file that exists.
bool EmptyFile(const std::filesystem::path& path, std::string& error);

// The path's bytes as messages show them.
std::string PathText(const std::filesystem::path& path);

// Creates the folder and what is missing on the way to it.
bool MakeFolders(const std::filesystem::path& folder, std::string& error);

// Renames a file that could not be read to its name with ".bad" added (replacing an older one), so
// that the next save does not destroy it. A missing file is success.
bool KeepBadFile(const std::filesystem::path& path, std::string& error);

// Copies a file that was read only in part to its name with ".bad" added (replacing an older one);
// the file itself stays. A missing file is success.
bool KeepBadCopy(const std::filesystem::path& path, FileAccess access, std::string& error);

// Removes a file together with its ".bad" copy and with temporary files that a crash left of it.
// What is not there is success.
bool RemoveEveryTrace(const std::filesystem::path& path, std::string& error);

}  // namespace quillmere
