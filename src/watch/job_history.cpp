// SPDX-License-Identifier: MIT
#include "watch/job_history.h"

#include <array>
#include <charconv>
#include <chrono>
#include <memory>

#include "foundation/text.h"

namespace quillmere {
namespace {

constexpr std::string_view kHead =
    "time,captured,applied,blocked,seconds,behind,error,source_scn,reached_scn,needed_scn,"
    "oldest_scn,left\n";
constexpr std::size_t kLongestError = 400;
constexpr std::int64_t kDay = 86'400'000;
constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20;
constexpr std::size_t kFields = 12;
constexpr std::size_t kLeastFields = 9;  // without the room of the redo

// "20260131 23:59:07" as tables read it: "2026-01-31 23:59:07".
std::string TimeText(LocalTime time) {
  const std::string stamp = FormatTimeStamp(time);
  return stamp.substr(0, 4) + "-" + stamp.substr(4, 2) + "-" + stamp.substr(6);
}

bool ReadTime(std::string_view text, LocalTime& time) {
  constexpr std::string_view kForm = "0000-00-00 00:00:00";
  if (text.size() != kForm.size()) return false;
  std::array<int, 6> parts{};
  std::size_t part = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (kForm[i] != '0') {
      if (text[i] != kForm[i]) return false;
      ++part;
    } else {
      if (text[i] < '0' || text[i] > '9') return false;
      parts[part] = parts[part] * 10 + (text[i] - '0');
    }
  }
  using namespace std::chrono;
  const year_month_day date{year{parts[0]}, month{static_cast<unsigned>(parts[1])},
                            day{static_cast<unsigned>(parts[2])}};
  if (!date.ok()) return false;
  const auto days = sys_days{date}.time_since_epoch().count();
  time.ms = (std::int64_t{days} * 86'400 + parts[3] * 3600 + parts[4] * 60 + parts[5]) * 1000;
  return true;
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (std::size_t i = 0; i < text.size(); ++i) {
    // Never in the midst of a character.
    if (i >= kLongestError && !ContinuesCharacter(text[i])) break;
    if (text[i] == '"') quoted += '"';
    quoted += IsControlCharacter(text[i]) ? ' ' : text[i];
  }
  return quoted + "\"";
}

// The fields of a line; false when a quote is not closed or there are too few or too many.
bool Split(std::string_view text, std::array<std::string, kFields>& fields) {
  std::size_t field = 0;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') {
      if (quoted && i + 1 < text.size() && text[i + 1] == '"') {
        fields[field] += text[i++];
      } else {
        quoted = !quoted;
      }
    } else if (text[i] == ',' && !quoted) {
      if (++field == kFields) return false;
    } else {
      fields[field] += text[i];
    }
  }
  return !quoted && (field + 1 == kFields || field + 1 == kLeastFields);
}

// Behind the first line whose pass lies in the days that are kept.
std::size_t BeginOfKept(std::string_view text, LocalTime now) {
  std::size_t begin = 0;
  while (begin < text.size()) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    const auto line = ReadHistoryLine(text.substr(begin, end - begin));
    // A clock that was wrong once does not cost what it wrote: only what is surely old goes.
    if (line && line->time.ms > now.ms - kHistoryDays * kDay) return begin;
    begin = end + 1;
  }
  return text.size();
}

std::string RoomText(const std::optional<RedoRoom>& room) {
  if (!room) return {};
  return "," + std::to_string(room->needed_scn) + "," + std::to_string(room->oldest_scn) + "," +
         (room->left ? std::to_string(room->left->count()) : "");
}

bool ReadRoom(const std::string* fields, std::optional<RedoRoom>& room) {
  if (fields[0].empty()) return true;
  std::int64_t left = 0;
  room.emplace();
  if (!ParseNumber(fields[0], room->needed_scn) || !ParseNumber(fields[1], room->oldest_scn)) {
    return false;
  }
  if (fields[2].empty()) return true;
  if (!ParseNumber(fields[2], left) || left < 0) return false;
  room->left = std::chrono::seconds{left};
  return true;
}

}  // namespace

std::string HistoryText(const HistoryLine& line) {
  std::string seconds = std::to_string(line.took_ms % 1000);
  seconds.insert(0, 3 - std::min<std::size_t>(seconds.size(), 3), '0');
  return TimeText(line.time) + "," + std::to_string(line.captured) + "," +
         std::to_string(line.applied) + "," + std::to_string(line.blocked) + "," +
         std::to_string(line.took_ms / 1000) + "." + seconds + "," +
         (line.behind_s ? std::to_string(*line.behind_s) : "") + "," +
         (line.error.empty() ? "" : Quoted(line.error)) + "," + std::to_string(line.source_scn) +
         "," + std::to_string(line.reached_scn) + RoomText(line.room) + "\n";
}

std::optional<HistoryLine> ReadHistoryLine(std::string_view text) {
  std::array<std::string, kFields> fields;
  HistoryLine line;
  if (!Split(TrimRight(text), fields) || !ReadTime(fields[0], line.time)) return std::nullopt;
  const std::size_t point = fields[4].find('.');
  std::int64_t seconds = 0;
  std::int64_t thousandths = 0;
  bool whole = ParseNumber(fields[1], line.captured) && ParseNumber(fields[2], line.applied) &&
               ParseNumber(fields[3], line.blocked) && point != std::string::npos &&
               fields[4].size() == point + 4 &&
               ParseNumber(std::string_view(fields[4]).substr(0, point), seconds) &&
               ParseNumber(std::string_view(fields[4]).substr(point + 1), thousandths) &&
               ParseNumber(fields[7], line.source_scn) && ParseNumber(fields[8], line.reached_scn);
  if (whole) whole = ReadRoom(&fields[kLeastFields], line.room);
  if (whole && !fields[5].empty()) whole = ParseNumber(fields[5], line.behind_s.emplace());
  // What no pass can take is damage, and would not fit below.
  if (!whole || seconds < 0 || seconds > 1'000'000'000) return std::nullopt;
  line.took_ms = seconds * 1000 + thousandths;
  line.error = std::move(fields[6]);
  return line;
}

bool HistoryWriter::DropOld(FileSystem& files, const std::filesystem::path& path, LocalTime now,
                            std::string& error) const {
  std::string text;
  const FileStatus read = ReadFile(files, path, text);
  if (!read) {
    error = read.reason;
    return read.Missing() && MakeFolders(files, path.parent_path(), error);
  }
  std::size_t begin = text.starts_with(kHead) ? kHead.size() : 0;
  const std::size_t old = begin;
  begin += BeginOfKept(std::string_view(text).substr(begin), now);
  if (text.size() - begin > kMostBytes) {
    begin = std::min(text.find('\n', text.size() - kMostBytes / 2) + 1, text.size());
  }
  // A line that a death cut short stands for itself.
  const bool cut = !text.empty() && !text.ends_with('\n');
  if (begin == old && !cut) return true;
  return ReplaceFile(files, path, std::string(kHead) + text.substr(begin) + (cut ? "\n" : ""),
                     FileAccess::OwnerOnly, error);
}

bool HistoryWriter::Append(FileSystem& files, const std::filesystem::path& path,
                           const HistoryLine& line, std::string& error) {
  const std::int64_t day = line.time.ms / kDay;
  if (day != day_ && !DropOld(files, path, line.time, error)) return false;
  day_ = day;
  std::unique_ptr<OpenFile> file;
  FileStatus status = files.Open(path, OpenMode::Append, FileSystem::kOwnerOnly, file);
  if (status) {
    const std::uint64_t size = file->Size();
    status = file->Append((size == 0 ? std::string(kHead) : std::string()) + HistoryText(line));
    if (!status) static_cast<void>(file->Truncate(size));
  }
  if (status) status = file->Close();
  if (!status) error = "Can not write " + PathText(path) + ": " + status.reason;
  return static_cast<bool>(status);
}

std::vector<HistoryLine> ReadHistoryEnd(FileSystem& files, const std::filesystem::path& path,
                                        std::uint64_t bytes, std::string& error) {
  std::vector<HistoryLine> lines;
  std::unique_ptr<OpenFile> file;
  FileStatus status = files.Open(path, OpenMode::Read, FileSystem::kUsualMode, file);
  if (status.Missing()) return lines;
  std::string text;
  if (status) {
    const std::uint64_t size = file->Size();
    text.resize(static_cast<std::size_t>(std::min(size, bytes)));
    std::size_t got = 0;
    status = file->Read(size - text.size(), text.data(), text.size(), got);
    text.resize(status ? got : 0);
  }
  if (!status) error = "Can not open " + PathText(path) + ": " + status.reason;
  // The first line of what was read may have lost its beginning, and does not read then.
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    if (auto line = ReadHistoryLine(std::string_view(text).substr(begin, end - begin))) {
      lines.push_back(std::move(*line));
    }
    begin = end + 1;
  }
  return lines;
}

}  // namespace quillmere
