// SPDX-License-Identifier: MIT
// Whole-file reading and writing as every file of the program needs it, over the seam of
// file_system.h. Functions report failure by a reason that names the path; nothing throws. Any
// thread.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "foundation/file_system.h"

namespace quillmere {

enum class FileAccess { Everyone, OwnerOnly };

enum class Links { Refused, Followed };

// The whole file, byte for byte. The reason of a failure is whole, too: "Can not open <path>: ...".
// Links are followed to what an operator or the installation names only.
FileStatus ReadFile(FileSystem& files, const std::filesystem::path& path, std::string& content,
                    Links links = Links::Refused);

// Writes a temporary file in the same folder, flushes it to disk, renames it over path and flushes
// the folder: a reader or a crash sees the old file or the new one. On failure the old file stands
// and the temporary file is gone; if only the folder's flush failed, the new file stands but a
// power cut may still take it back. OwnerOnly: from its first moment the file is readable by its
// owner alone; otherwise a file that the operator has closed to others stays closed.
bool ReplaceFile(FileSystem& files, const std::filesystem::path& path, std::string_view content,
                 FileAccess access, std::string& error);

// Hands out a file's content piece by piece; an empty piece is the end.
using FileSource = std::function<std::string_view()>;

// The same for content that need not stand in memory as a whole.
bool ReplaceFileFrom(FileSystem& files, const std::filesystem::path& path, const FileSource& source,
                     FileAccess access, std::string& error);

// The same for text: line feeds become the platform's line ends.
bool ReplaceTextFile(FileSystem& files, const std::filesystem::path& path, std::string_view text,
                     FileAccess access, std::string& error);

// Adds text to the end of a file, all of it or nothing, in one write; line feeds become the
// platform's line ends. A missing file is made, readable by its owner alone. It is closed again.
bool AppendTextFile(FileSystem& files, const std::filesystem::path& path, std::string_view text,
                    std::string& error);

// Removes the file, down to the disk: after a power cut it does not come back. A missing file is
// success.
FileStatus RemoveForGood(FileSystem& files, const std::filesystem::path& path);

// The path's bytes as messages show them.
std::string PathText(const std::filesystem::path& path);

// Only asks; whoever goes on to use the path gets the reason then.
bool IsThere(FileSystem& files, const std::filesystem::path& path);
bool IsFile(FileSystem& files, const std::filesystem::path& path);
bool IsFolder(FileSystem& files, const std::filesystem::path& path);

// Creates the folder and what is missing on the way to it, down to the disk.
bool MakeFolders(FileSystem& files, const std::filesystem::path& folder, std::string& error);

// Brings down to the disk which files the folder holds; one that is not there holds none.
bool FlushFolder(FileSystem& files, const std::filesystem::path& folder, std::string& error);

// Renames a file or folder, down to the disk.
bool RenamePath(FileSystem& files, const std::filesystem::path& from,
                const std::filesystem::path& to, std::string& error);

// The file's name with ".bad" added.
std::filesystem::path BadNameOf(const std::filesystem::path& path);

// Renames a file that could not be read to its name with ".bad" added (replacing an older one),
// down to the disk, so that the next save does not destroy it. A missing file is success.
bool KeepBadFile(FileSystem& files, const std::filesystem::path& path, std::string& error);

// Copies a file that was read only in part to its name with ".bad" added (replacing an older one);
// the file itself stays. A missing file is success.
bool KeepBadCopy(FileSystem& files, const std::filesystem::path& path, FileAccess access,
                 std::string& error);

// Removes a file together with its ".bad" copy and with temporary files that a crash left of it,
// down to the disk. What is not there is success.
bool RemoveEveryTrace(FileSystem& files, const std::filesystem::path& path, std::string& error);

}  // namespace quillmere
