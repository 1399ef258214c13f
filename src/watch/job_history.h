// SPDX-License-Identifier: MIT
// history.csv of a job: one line for each pass, of the last thirty days. docs/file-formats.md has
// its layout. Whoever runs the job writes it; anybody may read it meanwhile.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/redo_room.h"
#include "foundation/clock.h"
#include "foundation/files.h"

namespace quillmere {

inline constexpr std::int64_t kHistoryDays = 30;

struct HistoryLine {
  LocalTime time;  // of the pass's end
  std::int64_t captured = 0, applied = 0, blocked = 0;
  std::int64_t took_ms = 0;
  std::optional<std::int64_t> behind_s;  // nothing: not known
  std::string error;                     // empty: the pass was good
  std::int64_t source_scn = 0;           // where the source stood; 0: not asked
  std::int64_t reached_scn = 0;          // where the destination stands
  std::optional<RedoRoom> room;          // nothing: not known
};

// What an interrupted pass has for an error.
inline constexpr std::string_view kInterrupted = "interrupted";

// With the line feed. An error is kept on one line, and cut when it is long.
std::string HistoryText(const HistoryLine& line);
// Nothing when it is not whole.
std::optional<HistoryLine> ReadHistoryLine(std::string_view text);

// Adds a line to the file of one job, which is made when missing, readable by its owner alone.
// Belongs to the thread that runs the job. What failed leaves the file readable: half a line at its
// end is passed over.
class HistoryWriter {
 public:
  bool Append(FileSystem& files, const std::filesystem::path& path, const HistoryLine& line,
              std::string& error);

 private:
  bool DropOld(FileSystem& files, const std::filesystem::path& path, LocalTime now,
               std::string& error) const;

  std::int64_t day_ = 0;  // of the line before; lines are dropped when another one begins
};

// The last lines of the file, in its order, as far back as so many bytes reach. A missing file has
// none; damaged lines are left out. Leaves the reason when it can not be read.
std::vector<HistoryLine> ReadHistoryEnd(FileSystem& files, const std::filesystem::path& path,
                                        std::uint64_t bytes, std::string& error);

}  // namespace quillmere
