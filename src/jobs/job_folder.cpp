// SPDX-License-Identifier: MIT
#include "jobs/job_folder.h"

#include <algorithm>
#include <array>
#include <utility>

#include "foundation/file_names.h"

namespace quillmere {
namespace {

struct Kind {
  JobFile file;
  std::string_view name;  // empty: the job's, with ".xml" behind
  bool goes_with_job;     // with its ".bad" copy and leftovers
};

// They are removed in this order. The record goes before the commit point, which says what is sure:
// a record that is left alone would be believed.
constexpr std::array kKinds = {
    Kind{JobFile::Record, "block.dat", true},
    Kind{JobFile::CommitPoint, "commit.dat", true},
    Kind{JobFile::Batch, "sqlcmds.txt", true},
    Kind{JobFile::Tables, "", true},
    Kind{JobFile::Source, "source.dat", true},
    Kind{JobFile::Problem, "problem.xml", true},
    Kind{JobFile::History, "history.csv", true},
    Kind{JobFile::Skip, "skip.xml", true},
    Kind{JobFile::SetAside, "setaside.sql", false},
    Kind{JobFile::Skipped, "skipped.sql", false},
    Kind{JobFile::ErrorLog, "error.log", false},
    Kind{JobFile::Held, "held.xml", true},
    Kind{JobFile::Definitions, "definitions.xml", true},
};

constexpr std::string_view kOld = "old-";
constexpr std::size_t kDayLength = std::string_view("2000-12-31").size();
constexpr int kMostOld = 10'000;

constexpr bool StandsWhereItsNumberSays() {
  for (std::size_t i = 0; i < kKinds.size(); ++i) {
    if (kKinds[i].file != static_cast<JobFile>(i)) return false;
  }
  return true;
}
static_assert(StandsWhereItsNumberSays());

}  // namespace

JobFolder::JobFolder(const std::filesystem::path& working_folder, std::string_view job_name)
    : path_(working_folder / "jobs" / job_name), job_name_(job_name) {}

std::filesystem::path JobFolder::File(JobFile file) const {
  const Kind& kind = kKinds[static_cast<std::size_t>(file)];
  return path_ / (kind.name.empty() ? job_name_ + ".xml" : std::string(kind.name));
}

std::string JobFolder::WhyNotOwn(FileSystem& files) const {
  FileFacts facts;
  if (!files.Look(path_, facts) || !facts.link) return {};
  return PathText(path_) + " is a symbolic link";
}

bool JobFolder::Make(FileSystem& files, std::string& error) const {
  error = WhyNotOwn(files);
  return error.empty() && MakeFolders(files, path_, error);
}

bool JobFolder::KeepBad(FileSystem& files, std::initializer_list<JobFile> kept,
                        std::string& error) const {
  for (const JobFile file : kept) {
    if (!KeepBadFile(files, File(file), error)) return false;
  }
  return true;
}

std::filesystem::path JobFolder::NextOld(FileSystem& files, LocalTime now) const {
  const std::string day = std::string(kOld) + ReadableTime(now).substr(0, kDayLength) + "-";
  std::filesystem::path old;
  FileFacts facts;
  int number = 1;
  do {
    old = path_ / (day + std::to_string(number));
  } while (files.Look(old, facts) && ++number < kMostOld);
  return old;
}

bool JobFolder::SetOldFilesAside(FileSystem& files, LocalTime now, std::string& error) const {
  std::vector<std::filesystem::path> names;
  FileStatus status = files.List(path_, names);
  std::erase_if(names, [](const auto& name) { return name.string().starts_with(kOld); });
  if (status.Missing() || (status && names.empty())) return true;
  const std::filesystem::path old = NextOld(files, now);
  if (status) status = files.MakeFolder(old);
  if (!status) error = "Can not create folder " + PathText(old) + ": " + status.reason;
  return status && std::all_of(names.begin(), names.end(), [&](const auto& name) {
           return RenamePath(files, path_ / name, old / name, error);
         });
}

bool JobFolder::MoveTo(FileSystem& files, const JobFolder& to, LocalTime now,
                       std::string& error) const {
  // What can not be looked at is not missing.
  error.clear();
  FileFacts facts;
  const FileStatus other = files.Look(to.path_, facts), own = files.Look(path_, facts);
  if (!other && !other.Missing())
    error = "Can not open " + PathText(to.path_) + ": " + other.reason;
  if (!own && !own.Missing()) error = "Can not open " + PathText(path_) + ": " + own.reason;
  if (!error.empty()) return false;
  if (own.Missing()) return to.SetOldFilesAside(files, now, error);
  const bool taken = other && !files.AreSame(path_, to.path_);
  const std::filesystem::path old = NextOld(files, now);
  if (taken && !RenamePath(files, to.path_, old, error)) return false;
  std::string ignored;  // the first reason is the one to tell
  const auto stays = [&] {
    if (taken) RenamePath(files, old, to.path_, ignored);
    return false;
  };
  const std::filesystem::path file = File(JobFile::Tables);
  const std::filesystem::path copy = path_ / to.File(JobFile::Tables).filename();
  std::string content;
  const FileStatus read = ReadFile(files, file, content);
  if (!read && !read.Missing()) {
    error = read.reason;
    return stays();
  }
  if (read && !ReplaceFile(files, copy, content, FileAccess::Everyone, error)) return stays();
  if (RenamePath(files, path_, to.path_, error)) return true;
  // The folder may have its new name, and only not be known to be safe there.
  if (!IsThere(files, path_)) RenamePath(files, to.path_, path_, ignored);
  if (!files.AreSame(file, copy)) static_cast<void>(RemoveForGood(files, copy));
  return stays();
}

void JobFolder::ForgetFormer(FileSystem& files, const JobFolder& former) const {
  const std::filesystem::path own = File(JobFile::Tables);
  const std::filesystem::path old = path_ / former.File(JobFile::Tables).filename();
  std::string ignored;
  if (IsThere(files, BadNameOf(old))) RenamePath(files, BadNameOf(old), BadNameOf(own), ignored);
  if (!files.AreSame(old, own)) static_cast<void>(RemoveForGood(files, old));
}

std::string JobFolder::FindMoved(FileSystem& files, const std::vector<std::string_view>& taken,
                                 std::string& error) const {
  std::vector<std::filesystem::path> folders;
  FileFacts facts;
  if (!files.Look(path_, facts).Missing()) return {};
  const FileStatus listed = files.List(path_.parent_path(), folders);
  if (!listed && !listed.Missing()) {
    error = "Can not open " + PathText(path_.parent_path()) + ": " + listed.reason;
  }
  for (const std::filesystem::path& folder : folders) {
    const std::string name = folder.string();
    const auto is_its = [&](std::string_view other) { return SameFileName(other, name); };
    if (std::any_of(taken.begin(), taken.end(), is_its)) continue;
    if (IsFile(files, path_.parent_path() / folder / File(JobFile::Tables).filename())) return name;
  }
  return {};
}

bool JobFolder::RemoveFiles(FileSystem& files, std::string& error) const {
  error.clear();
  std::string reason;
  for (const Kind& kind : kKinds) {
    if (!kind.goes_with_job || RemoveEveryTrace(files, File(kind.file), reason)) continue;
    if (error.empty()) error = std::exchange(reason, "");
  }
  // Stays when the operator keeps something in it.
  if (files.RemoveFolder(path_)) static_cast<void>(files.FlushFolder(path_.parent_path()));
  return error.empty();
}

}  // namespace quillmere
