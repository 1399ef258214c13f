// SPDX-License-Identifier: MIT
// The files that the program keeps in a job's folder: which there are, where they stand, and what
// becomes of each when the job is removed, renamed, or its name taken again. A new kind of file is
// a new row in job_folder.cpp. docs/file-formats.md has what is in them.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/clock.h"
#include "foundation/files.h"

namespace quillmere {

enum class JobFile {
  Record,       // block.dat
  CommitPoint,  // commit.dat
  Batch,        // sqlcmds.txt
  Tables,       // named after the job
  Source,       // source.dat, of a job that follows commits
  Problem,      // problem.xml, of a job that fails
  History,      // history.csv
  Skip,         // skip.xml, of a job that is to leave something out
  SetAside,     // setaside.sql, the operator's
  Skipped,      // skipped.sql, the operator's
  ErrorLog,     // error.log, the operator's
  Held,         // held.xml, why the job can not be continued
  Definitions,  // definitions.xml, the columns of its tables
};

// Paths of one job; makes nothing by itself. Any thread.
class JobFolder {
 public:
  JobFolder(const std::filesystem::path& working_folder, std::string_view job_name);

  const std::filesystem::path& Path() const { return path_; }
  std::filesystem::path File(JobFile file) const;

  // Makes the folder. Refused when a link stands in its place.
  bool Make(FileSystem& files, std::string& error) const;
  // Why what stands in it is not the job's own; empty when it is, or there is nothing.
  std::string WhyNotOwn(FileSystem& files) const;

  // Renames files to their names with ".bad" added, before others are written in their place.
  bool KeepBad(FileSystem& files, std::initializer_list<JobFile> kept, std::string& error) const;

  // Moves all that lies in the folder, which a job of this name left behind, or which belongs to
  // one that the list has lost, into old-<date>-<number> in it: it would come back as a new job's.
  // What fails leaves the rest where it is.
  bool SetOldFilesAside(FileSystem& files, LocalTime now, std::string& error) const;

  // Renames the folder, which may be missing, and in it the file that is named after the job, with
  // its ".bad" copy. If one of them fails everything stays. The file is there under both names, so
  // that whoever knows the old one only finds the folder, until ForgetFormer. Another folder that
  // stands there becomes old-<date>-<number> in this one.
  bool MoveTo(FileSystem& files, const JobFolder& to, LocalTime now, std::string& error) const;
  void ForgetFormer(FileSystem& files, const JobFolder& former) const;

  // Of a job whose folder is missing: the folder beside it, if there is one, that was on its way to
  // another name when the program ended. taken: the names of folders that belong to jobs. Leaves
  // the reason when that can not be found out.
  std::string FindMoved(FileSystem& files, const std::vector<std::string_view>& taken,
                        std::string& error) const;

  // Removes what goes with the job, and the folder unless something else is in it. Goes on after a
  // failure; the first reason is kept.
  bool RemoveFiles(FileSystem& files, std::string& error) const;

 private:
  // A name in it that is free.
  std::filesystem::path NextOld(FileSystem& files, LocalTime now) const;

  std::filesystem::path path_;
  std::string job_name_;
};

}  // namespace quillmere
