// SPDX-License-Identifier: MIT
// Who watches the jobs: what each pass was, how a job is now, its problem, its history and the
// figures for other programs. Nothing that goes wrong here stops a job.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/pass_report.h"
#include "foundation/mutex.h"
#include "jobs/job_list.h"
#include "watch/health.h"
#include "watch/job_history.h"
#include "watch/problem_file.h"
#include "watch/scn_clock.h"

namespace quillmere {

// How a job is at one moment.
struct WatchedJob {
  Health health = Health::Stopped;
  JobState state = JobState::Stopped;
  std::string held;                                // why; empty when it is not
  std::optional<std::chrono::seconds> since_good;  // the end of the last good pass
  std::optional<std::chrono::seconds> behind;      // 0: the destination has all that was seen
  std::optional<std::chrono::seconds> next_pass;   // of a started job
  // Until the redo that it needs next is gone from the source, unless it goes on; nothing when the
  // source did not say. room: as the last pass that asked found it.
  std::optional<std::chrono::seconds> time_to_loss;
  std::optional<RedoRoom> room;
  std::uint32_t waiting = 0;  // changes of the batch
  // Why the destination's tables do not take the source's rows; null: nothing is known to be so.
  std::shared_ptr<const std::vector<DefinitionDifference>> definitions;
  std::optional<JobProblem> problem;
};

// What the operator is to be told.
struct WatchMessage {
  bool error = false;
  std::string text;
};

// Made by the workspace, outlives what it refers to. Any thread, but for what is said below.
class JobWatch {
 public:
  JobWatch(FileSystem& files, std::filesystem::path working_folder, const JobList& jobs,
           const JobCatalogue& catalogue, const Clock& clock);

  // What the files of the job's folder say; before it runs, or of a folder that is looked at only.
  // A damaged file counts for nothing. Why one could not be read, or nothing.
  std::string Load(std::size_t index);
  // A job that is no more, or a new one in its place.
  void Forget(std::size_t index);

  WatchedJob Look(std::size_t index) const;

  // The thread that runs the job. Keeps what the pass was, in memory and on disk.
  std::vector<WatchMessage> TakePass(std::size_t index, const PassReport& report);
  // A stopped job is about to be started anew: what it failed at is of no interest any more. On the
  // thread that its run belongs to while it rests.
  void BeginAnew(std::size_t index);

 private:
  struct Facts {
    std::optional<SteadyTime> good;  // end of the last good pass
    std::optional<JobProblem> problem;
    ScnClock clock;
    std::int64_t reached_scn = 0;
    bool asked = false;  // the last pass knew where the source stood
    std::optional<RedoRoom> room;
    SteadyTime room_at{0};
    std::shared_ptr<const std::vector<DefinitionDifference>> definitions;
    LocalTime next_due;
    std::int64_t passes[3] = {};  // of this program: good, failed, interrupted
    SteadyTime took{0};
    HistoryWriter history;       // of the thread that runs the job
    bool told_of_files = false;  // as well
  };

  static void LoadProblem(Facts& facts, JobProblem problem, LocalTime now, SteadyTime steady);
  std::optional<std::chrono::seconds> BehindOf(const Facts& facts, SteadyTime now) const;
  // Each with the lock; what is to be told.
  void NoteGood(Facts& facts, const std::string& name, std::vector<WatchMessage>& told);
  void NoteFailed(Facts& facts, const std::string& name, const PassReport& report,
                  std::vector<WatchMessage>& told);
  // Without it: files.
  bool Keep(const JobFolder& folder, const PassReport& report, HistoryWriter& history,
            const HistoryLine& line, const std::optional<JobProblem>& problem, bool had_problem,
            std::string& error);
  std::string Metrics() const;
  bool WriteMetrics(std::string& error);

  FileSystem& files_;
  const std::filesystem::path working_folder_;
  const JobList& jobs_;
  const JobCatalogue& catalogue_;
  const Clock& clock_;
  SteadyTime next_metrics_{0};  // of the thread that runs the jobs
  mutable Mutex mutex_;
  std::map<std::size_t, Facts> facts_ GUARDED_BY(mutex_);
};

}  // namespace quillmere
