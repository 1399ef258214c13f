// SPDX-License-Identifier: MIT
#include "watch/history_picture.h"

#include <algorithm>

namespace quillmere {
namespace {

constexpr std::uint64_t kFirstRead = 64 << 10;  // bytes
constexpr std::uint64_t kMostRead = std::uint64_t{128} << 20;

// What a damaged file says must not run over when it is added up.
std::int64_t Sane(std::int64_t count) {
  constexpr std::int64_t kMost = 1'000'000'000'000;
  return std::clamp(count, -kMost, kMost);
}

// How much may reach back to begin, when the lines of so many bytes reach back as far as they do.
std::uint64_t BytesFor(const std::vector<HistoryLine>& lines, LocalTime begin,
                       std::uint64_t bytes) {
  const std::int64_t covered = lines.back().time.ms - lines.front().time.ms;
  const std::int64_t wanted = lines.back().time.ms - begin.ms;
  if (covered <= 0 || wanted <= 0) return bytes;
  const double times = 1.1 * static_cast<double>(wanted) / static_cast<double>(covered);
  return static_cast<std::uint64_t>(
      std::min(static_cast<double>(bytes) * times, static_cast<double>(kMostRead)));
}

}  // namespace

HistoryPicture::HistoryPicture(LocalTime end, std::chrono::seconds span, std::size_t parts)
    : begin_{end.ms - std::chrono::milliseconds(span).count()}, span_(span), parts_(parts) {}

LocalTime HistoryPicture::TimeOf(std::size_t part) const {
  const auto of = static_cast<std::int64_t>(part);
  return {begin_.ms + span_.count() * of / static_cast<std::int64_t>(parts_)};
}

double HistoryPicture::AppliedPerSecond(const PicturePoint& point) const {
  const double seconds = static_cast<double>(span_.count()) / 1000 / static_cast<double>(parts_);
  return static_cast<double>(point.applied) / seconds;
}

// They come in order, but for a clock that was set back.
PicturePoint& HistoryPicture::PointOf(std::size_t part) {
  if (points_.empty() || points_.back().part < part) points_.push_back({.part = part});
  if (points_.back().part == part) return points_.back();
  const auto place = std::lower_bound(
      points_.begin(), points_.end(), part,
      [](const PicturePoint& point, std::size_t wanted) { return point.part < wanted; });
  if (place->part == part) return *place;
  return *points_.insert(place, {.part = part});
}

void HistoryPicture::Add(const HistoryLine& line) {
  const std::int64_t applied = Sane(line.applied);
  // A batch is captured when the one before it is worked off, or was given up.
  if (line.captured > 0) waiting_ = 0;
  waiting_ = Sane(
      std::max<std::int64_t>(waiting_ + Sane(line.captured) - applied - Sane(line.blocked), 0));
  const std::int64_t since = line.time.ms - begin_.ms;
  if (since < 0 || since >= span_.count()) return;
  PicturePoint& point =
      PointOf(static_cast<std::size_t>(since * static_cast<std::int64_t>(parts_) / span_.count()));
  ++point.passes;
  if (!line.error.empty() && line.error != kInterrupted) ++point.failed;
  point.applied += applied;
  point.waiting = std::max(point.waiting, waiting_);
  if (line.behind_s) point.behind_s = std::max(point.behind_s.value_or(0), Sane(*line.behind_s));
}

PicturePoint HistoryPicture::Sum() const {
  PicturePoint sum;
  for (const PicturePoint& point : points_) {
    sum.passes += point.passes;
    sum.failed += point.failed;
    sum.applied += point.applied;
    sum.waiting = std::max(sum.waiting, point.waiting);
    if (point.behind_s) sum.behind_s = std::max(sum.behind_s.value_or(0), *point.behind_s);
  }
  return sum;
}

HistoryRead ReadHistoryPicture(FileSystem& files, const std::filesystem::path& path, LocalTime end,
                               std::chrono::seconds span, std::size_t parts) {
  HistoryRead read{HistoryPicture(end, span, parts), 0, 0, {}};
  std::vector<HistoryLine> lines;
  // What a larger piece adds nothing to is the whole file.
  for (std::uint64_t bytes = kFirstRead; bytes <= kMostRead;) {
    const std::size_t before = lines.size();
    lines = ReadHistoryEnd(files, path, bytes, read.error);
    const bool whole = lines.size() == before;
    if (whole || lines.front().time < read.picture.Begin() || !read.error.empty()) break;
    bytes = std::max(4 * bytes, BytesFor(lines, read.picture.Begin(), bytes));
  }
  for (const HistoryLine& line : lines) {
    read.picture.Add(line);
    if (line.source_scn != 0) read.source_scn = line.source_scn;
    read.reached_scn = line.reached_scn;
  }
  return read;
}

}  // namespace quillmere
