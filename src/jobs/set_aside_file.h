// SPDX-License-Identifier: MIT
// setaside.sql of a job: the changes that were not applied, for the operator, who alone takes
// something away. docs/file-formats.md has its layout. For the thread that a job's run belongs to.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "jobs/job_folder.h"

namespace quillmere {

// A file above this size takes nothing more until the operator has looked.
inline constexpr std::uint64_t kMostSetAsideBytes = std::uint64_t{256} << 20;

// Adds the text at the end, down to the disk. The file is made when missing, with a head that says
// what it is, readable by its owner alone. On failure it is as it was, if the disk lets it be; the
// reason names the file and, above its size, what to do.
bool AppendSetAside(FileSystem& files, const JobFolder& folder, std::string_view text,
                    std::string& error);

}  // namespace quillmere
