// SPDX-License-Identifier: MIT
#include "jobs/job_catalogue.h"

#include <algorithm>
#include <utility>

#include "foundation/text.h"
#include "jobs/job_files.h"
#include "jobs/job_list.h"

namespace quillmere {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kListFile = "jobs.xml";

}  // namespace

JobCatalogue::JobCatalogue(FileSystem& files, fs::path working_folder, JobList& jobs,
                           MessageLog& log)
    : files_(files), working_folder_(std::move(working_folder)), jobs_(jobs), log_(log) {}

fs::path JobCatalogue::ListFile() const {
  return working_folder_ / "jobs" / kListFile;
}

std::string JobCatalogue::WhyNameRefused(std::string_view name, std::size_t index) const {
  std::string refused = WhyNoFileName(name);
  if (!refused.empty()) return refused;
  // The folder would meet the list of all jobs, or a copy of it.
  if (SameFileName(name.substr(0, kListFile.size()), kListFile)) {
    return "A job's name must not begin with " + std::string(kListFile);
  }
  for (std::size_t other = 0; other < jobs_.Count(); ++other) {
    if (other == index || jobs_.State(other) == JobState::Empty) continue;
    const SyncJob& job = jobs_.At(other);
    const MutexLock lock(job.config_mutex);
    if (SameFileName(job.config.name, name))
      return "There is a job " + job.config.name + " already";
  }
  return {};
}

bool JobCatalogue::SaveMarked(std::string& error) {
  const MutexLock saving(save_mutex_);
  return Save(Selection::Marked, error);
}

bool JobCatalogue::SaveAll(std::string& error) {
  const MutexLock saving(save_mutex_);
  return Save(Selection::All, error);
}

bool JobCatalogue::Save(Selection selection, std::string& error) {
  // Jobs that the list may name have files of their own that must stay, too.
  error = unreadable_.WhyNotSaved(ListFile());
  if (!error.empty()) return false;
  std::string reason;
  std::vector<SyncJob*> changed;
  if (!SaveList(selection, changed, reason)) KeepFirst(error, reason);
  for (SyncJob* job : changed) {
    if (!SaveOwnFile(*job, reason)) KeepFirst(error, reason);
  }
  return error.empty();
}

bool JobCatalogue::SaveList(Selection selection, std::vector<SyncJob*>& changed,
                            std::string& error) {
  // Every save passes here with all jobs: one visit to each, and nothing that grows with its
  // tables.
  XmlDocument document;
  for (SyncJob* job : jobs_.LiveJobs()) {
    const MutexLock lock(job->config_mutex);
    JobConfig& config = job->config;
    const bool selected = selection == Selection::All || config.save_mark;
    if (selection == Selection::All) config.save_mark = false;
    if (!selected || config.name.empty()) continue;
    AppendJobElement(document.Root(), config);
    if (config.tables_revision != config.tables_saved_revision) changed.push_back(job);
  }
  std::string text;
  if (!document.WriteText(text)) {
    error = "Can not create " + PathText(ListFile()) + ": the list is too large";
    return false;
  }
  if (text == saved_list_ && IsThere(files_, ListFile())) return true;
  if (!MakeFolders(files_, ListFile().parent_path(), error)) return false;
  if (!unreadable_.Keep(files_, ListFile(), error)) return false;
  if (list_has_more_ && !KeepBadCopy(files_, ListFile(), FileAccess::Everyone, error)) return false;
  list_has_more_ = false;
  saved_list_.assign(1, '\0');  // a failure leaves the one or the other: no list is like this
  if (!ReplaceTextFile(files_, ListFile(), text, FileAccess::Everyone, error)) return false;
  saved_list_ = std::move(text);
  return true;
}

bool JobCatalogue::SaveOwnFile(SyncJob& job, std::string& error) {
  XmlWriter writer;
  std::string name;
  std::uint64_t revision = 0;
  {
    const MutexLock lock(job.config_mutex);
    if (job.config.name.empty()) return true;  // removed meanwhile
    name = job.config.name;
    // Counters go on meanwhile. Whoever counts raises the revision behind it: what comes too late
    // for this writing is written with the next.
    revision = job.config.tables_revision;
    WriteSchemas(writer, job.config.schemas);
  }
  const JobFolder folder = FolderOf(name);
  const fs::path file = folder.File(JobFile::Tables);
  if (!writer.Ok()) {
    error = "Can not create " + PathText(file) + ": it would be too large";
    return false;
  }
  if (!folder.Make(files_, error) || !unreadable_.Keep(files_, file, error) ||
      !ReplaceTextFile(files_, file, writer.Text(), FileAccess::Everyone, error)) {
    return false;
  }
  const MutexLock lock(job.config_mutex);
  job.config.tables_saved_revision = revision;
  return true;
}

bool JobCatalogue::MoveFolder(std::string_view from, std::string_view to, LocalTime now,
                              std::string& error) {
  if (!FolderOf(from).MoveTo(files_, FolderOf(to), now, error)) return false;
  unreadable_.Rename(FolderOf(from).File(JobFile::Tables), FolderOf(to).File(JobFile::Tables));
  return true;
}

// Moved all the same, and not to be moved back: going on would make a second folder beside it.
void JobCatalogue::HoldIfMoved(std::size_t index, std::string_view old_name,
                               std::string_view new_name, const std::string& error) {
  FileFacts facts;
  if (files_.Look(FolderOf(old_name).Path(), facts).Missing() &&
      files_.Look(FolderOf(new_name).Path(), facts)) {
    jobs_.Hold(index, error + std::string(kOnTheirWay));
  }
}

// Whatever the ends of its lines are here.
bool JobCatalogue::IsOnDisk(std::string list) {
  std::string text, ignored;
  if (!ReadFile(files_, ListFile(), text)) return false;
  std::erase(text, '\r');
  std::erase(list, '\r');
  return text == list && FlushFolder(files_, ListFile().parent_path(), ignored);
}

bool JobCatalogue::Rename(std::size_t index, std::string_view new_name, LocalTime now,
                          std::string& error) {
  const MutexLock saving(save_mutex_);
  SyncJob& job = jobs_.At(index);
  const std::string old_name = NameOf(job);
  if (old_name == new_name) return true;
  error = WhyNameRefused(new_name, index);
  if (!error.empty()) return false;
  if (!MoveFolder(old_name, new_name, now, error)) {
    HoldIfMoved(index, old_name, new_name, error);
    return false;
  }
  const auto set_name = [&](std::string_view name) {
    const MutexLock lock(job.config_mutex);
    job.config.name = name;
    job.config.error_log_path = PathText(FolderOf(name).File(JobFile::ErrorLog));
  };
  set_name(new_name);
  const std::string former_list = saved_list_;
  std::vector<SyncJob*> changed;
  const bool renamed = SaveList(Selection::All, changed, error);
  std::string ignored;
  if (!renamed && MoveFolder(new_name, old_name, now, ignored)) {
    set_name(old_name);
    // It may have been replaced, and only not be known to be on the disk. As long as it may bear
    // the new name the job must be found by that.
    if (SaveList(Selection::All, changed, ignored) || IsOnDisk(former_list)) {
      FolderOf(old_name).ForgetFormer(files_, FolderOf(new_name));
    }
  } else if (renamed) {
    FolderOf(new_name).ForgetFormer(files_, FolderOf(old_name));
  }
  return renamed;
}

bool JobCatalogue::KeepHeldFiles(std::size_t index, std::initializer_list<JobFile> run_files,
                                 std::string& error) {
  const MutexLock saving(save_mutex_);
  SyncJob& job = jobs_.At(index);
  const JobFolder folder = FolderOf(NameOf(job));
  const fs::path tables = folder.File(JobFile::Tables);
  if (!folder.KeepBad(files_, run_files, error)) return false;
  if (!unreadable_.Contains(tables)) return true;
  if (!folder.KeepBad(files_, {JobFile::Tables}, error)) return false;
  unreadable_.Forget(tables);
  const MutexLock lock(job.config_mutex);
  ++job.config.tables_revision;
  return true;
}

bool JobCatalogue::Remove(std::size_t index, std::string& error) {
  const MutexLock saving(save_mutex_);
  const std::string name = NameOf(jobs_.At(index));
  jobs_.Remove(index);
  error.clear();
  if (name.empty()) return true;
  const JobFolder folder = FolderOf(name);
  unreadable_.Forget(folder.File(JobFile::Tables));
  return folder.RemoveFiles(files_, error);
}

}  // namespace quillmere
