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
  // Until the two meet when the job does not go on and redo comes and goes as it does now; nothing
  // when the source did not say.
  std::optional<std::chrono::seconds> left;
};

// oldest_scn: 0 when it is not known; age: since when that redo is being written; now_scn: where
// the source stands.
inline RedoRoom RoomOf(std::int64_t needed_scn, std::int64_t oldest_scn, std::chrono::minutes age,
                       std::int64_t now_scn) {
  RedoRoom room{needed_scn, oldest_scn, std::nullopt};
  if (oldest_scn <= 0 || now_scn <= oldest_scn || age.count() == 0) return room;
  room.left = std::chrono::seconds{0};
  if (needed_scn <= oldest_scn) return room;
  const double kept =
      static_cast<double>(needed_scn - oldest_scn) / static_cast<double>(now_scn - oldest_scn);
  const auto seconds = std::chrono::seconds{age}.count();
  room.left = std::chrono::seconds{static_cast<std::int64_t>(static_cast<double>(seconds) * kept)};
  return room;
}

}  // namespace quillmere
