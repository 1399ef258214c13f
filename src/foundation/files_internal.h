// What the platform variants of the file functions share.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace quillmere {

// Between a file's name and what makes its temporary file's name unique.
inline constexpr std::string_view kTemporaryMark = ".tmp-";

// A name in the same folder that nobody else uses.
std::filesystem::path TemporaryNameFor(const std::filesystem::path& path, unsigned long process_id);

std::filesystem::path BadNameOf(const std::filesystem::path& path);

// "Can not <action> <path>: <reason>"
std::string FileError(std::string_view action, const std::filesystem::path& path,
                      std::string_view reason);

}  // namespace quillmere
