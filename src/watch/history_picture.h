// SPDX-License-Identifier: MIT
// What a job did over a span of time, in as many points as a picture has room for: the passes of
// its history put together. Plain values; any thread.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "watch/job_history.h"

namespace quillmere {

// The passes that ended in one part of the span.
struct PicturePoint {
  std::size_t part = 0;
  std::int64_t passes = 0;
  std::int64_t failed = 0;  // of them; what was interrupted has not failed
  std::int64_t applied = 0;
  std::int64_t waiting = 0;                // of the batch, at most
  std::optional<std::int64_t> behind_s{};  // at most; nothing: not known
};

class HistoryPicture {
 public:
  // The span ends there; parts: at least one.
  HistoryPicture(LocalTime end, std::chrono::seconds span, std::size_t parts);

  // In the order of the file. What lies outside of the span counts for what waits only.
  void Add(const HistoryLine& line);

  LocalTime Begin() const { return begin_; }
  std::chrono::milliseconds Span() const { return span_; }
  std::size_t Parts() const { return parts_; }
  LocalTime TimeOf(std::size_t part) const;  // its beginning
  double AppliedPerSecond(const PicturePoint& point) const;

  // By time; parts without a pass have none.
  const std::vector<PicturePoint>& Points() const { return points_; }
  // Of all of them together; part means nothing.
  PicturePoint Sum() const;

 private:
  PicturePoint& PointOf(std::size_t part);

  LocalTime begin_;
  std::chrono::milliseconds span_;
  std::size_t parts_;
  std::int64_t waiting_ = 0;
  std::vector<PicturePoint> points_;
};

// What can be drawn of a job's history.
struct HistoryRead {
  HistoryPicture picture;
  std::int64_t source_scn = 0;   // where the source stood when it was last asked; 0: never
  std::int64_t reached_scn = 0;  // where the destination stands
  std::string error;             // the file could not be read
};

// Reads no more of the file than the span needs. Blocks for some milliseconds.
HistoryRead ReadHistoryPicture(FileSystem& files, const std::filesystem::path& path, LocalTime end,
                               std::chrono::seconds span, std::size_t parts);

}  // namespace quillmere
