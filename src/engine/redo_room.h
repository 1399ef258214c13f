// SPDX-License-Identifier: MIT
// How much time there is until the redo that a job needs is gone from its source. Pure.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace quillmere {

struct RedoRoom {
  std::int64_t needed_scn = 0;  // the job needs the redo from here on
  std::int64_t oldest_scn = 0;  // the source has it from here on
  // Until the two meet when the job does not go on and redo comes and goes as it does now.
  std::chrono::seconds left{0};
};

// age: since when the oldest redo is being written; now_scn: where the source stands. Nothing when
// that says nothing yet.
inline std::optional<RedoRoom> RoomOf(std::int64_t needed_scn, std::int64_t oldest_scn,
                                      std::chrono::minutes age, std::int64_t now_scn) {
  if (oldest_scn <= 0 || now_scn <= oldest_scn || age.count() == 0) return std::nullopt;
  RedoRoom room{needed_scn, oldest_scn, {}};
  if (needed_scn <= oldest_scn) return room;
  const double kept =
      static_cast<double>(needed_scn - oldest_scn) / static_cast<double>(now_scn - oldest_scn);
  const auto seconds = std::chrono::seconds{age}.count();
  room.left = std::chrono::seconds{static_cast<std::int64_t>(static_cast<double>(seconds) * kept)};
  return room;
}

}  // namespace quillmere
