// SPDX-License-Identifier: MIT
#include "watch/job_watch.h"

#include <algorithm>
#include <utility>

#include "foundation/text.h"
#include "watch/metrics.h"

namespace quillmere {
namespace {

using std::chrono::duration_cast;
using std::chrono::seconds;

constexpr std::uint64_t kHistoryRead = 64 << 10;  // bytes, from which the clock is set

// A moment of the calendar on the clock that nobody sets; the future is now.
SteadyTime SteadyOf(LocalTime then, LocalTime now, SteadyTime steady) {
  return steady - SteadyTime{std::max<std::int64_t>(now.ms - then.ms, 0)};
}

std::string_view FirstLine(std::string_view text) {
  return text.substr(0, text.find('\n'));
}

std::int32_t IntervalOf(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  return job.config.sync_interval;
}

bool Unknown(const PassReport& report) {
  return report.outcome == PassReport::Outcome::Later;
}

}  // namespace

JobWatch::JobWatch(FileSystem& files, std::filesystem::path working_folder, const JobList& jobs,
                   const JobCatalogue& catalogue, const Clock& clock)
    : files_(files),
      working_folder_(std::move(working_folder)),
      jobs_(jobs),
      catalogue_(catalogue),
      clock_(clock) {}

// The history may not reach back to where the job is stuck.
void JobWatch::LoadProblem(Facts& facts, JobProblem problem, LocalTime now, SteadyTime steady) {
  if (problem.complete_until != LocalTime{} && facts.clock.Size() == 0) {
    facts.clock.Add(problem.reached_scn, SteadyOf(problem.complete_until, now, steady));
  }
  facts.reached_scn = problem.reached_scn;
  facts.problem = std::move(problem);
}

std::string JobWatch::Load(std::size_t index) {
  const SyncJob& job = jobs_.At(index);
  const JobFolder folder = catalogue_.FolderOf(NameOf(job));
  const LocalTime now = clock_.Now();
  const SteadyTime steady = clock_.Steady();
  Facts facts;
  JobProblem problem;
  const FileStatus read = ReadProblemFile(files_, folder, problem);
  const bool failing = static_cast<bool>(read);
  std::string error = failing || read.Missing() ? "" : read.reason;
  const auto lines = ReadHistoryEnd(files_, folder.File(JobFile::History), kHistoryRead, error);
  const bool reaches_back = !lines.empty() && (!failing || problem.complete_until == LocalTime{} ||
                                               lines.front().time < problem.complete_until);
  if (failing && !reaches_back) LoadProblem(facts, problem, now, steady);
  const std::int32_t interval = IntervalOf(job);
  for (const HistoryLine& line : lines) {
    const SteadyTime at = SteadyOf(line.time, now, steady);
    if (line.source_scn != 0) facts.clock.Add(line.source_scn, at);
    facts.clock.Reach(facts.reached_scn = line.reached_scn);
    facts.asked = line.source_scn != 0;
    if (line.room) {
      facts.room = line.room;
      facts.room_at = at;
    }
    if (line.error.empty()) facts.good = at;
    facts.next_due = AddMinutes(line.time, interval);
  }
  if (failing && reaches_back) LoadProblem(facts, std::move(problem), now, steady);
  facts.clock.Reach(facts.reached_scn);
  Definitions definitions;
  const FileStatus compared = ReadDefinitionsFile(files_, folder, definitions);
  if (compared) {
    facts.definitions = std::make_shared<const std::vector<DefinitionDifference>>(
        std::move(definitions.differences));
  } else if (!compared.Missing()) {
    KeepFirst(error, compared.reason);
  }
  const MutexLock lock(mutex_);
  facts_[index] = std::move(facts);
  return error;
}

void JobWatch::Forget(std::size_t index) {
  const MutexLock lock(mutex_);
  facts_.erase(index);
}

std::optional<seconds> JobWatch::BehindOf(const Facts& facts, SteadyTime now) const {
  if (facts.asked && facts.clock.HasAll()) return seconds{0};
  const auto behind = facts.clock.Behind(now);
  if (!behind) return std::nullopt;
  return duration_cast<seconds>(*behind);
}

WatchedJob JobWatch::Look(std::size_t index) const {
  WatchedJob job;
  JobList::Progress progress;
  job.state = jobs_.State(index, &progress);
  job.held = jobs_.HeldBecause(index);
  job.waiting = progress.batch_remaining;
  const SyncJob& record = jobs_.At(index);
  const std::int32_t interval = IntervalOf(record);
  const SteadyTime steady = clock_.Steady();
  const MutexLock lock(mutex_);
  if (const auto found = facts_.find(index); found != facts_.end()) {
    const Facts& facts = found->second;
    if (facts.good) job.since_good = duration_cast<seconds>(steady - *facts.good);
    job.behind = BehindOf(facts, steady);
    job.room = facts.room;
    if (facts.definitions && !facts.definitions->empty()) job.definitions = facts.definitions;
    if (facts.room && facts.room->left && job.state != JobState::Stopped) {
      const seconds since = duration_cast<seconds>(steady - facts.room_at);
      job.time_to_loss = std::max(*facts.room->left - std::max(since, seconds{0}), seconds{0});
    }
    if (job.state != JobState::Stopped) job.problem = facts.problem;
    if (job.state == JobState::Started) {
      const std::int64_t left = facts.next_due.ms - clock_.Now().ms;
      // A clock that was set back does not make a pass wait longer than its interval, as told.
      job.next_pass =
          std::clamp(seconds{left / 1000}, seconds{0}, seconds{std::chrono::minutes{interval}});
    }
  }
  job.health = HealthOf({job.state, !job.held.empty(), job.problem.has_value(), interval,
                         job.behind, job.since_good});
  return job;
}

void JobWatch::NoteGood(Facts& facts, const std::string& name, std::vector<WatchMessage>& told) {
  facts.good = clock_.Steady();
  ++facts.passes[0];
  if (!facts.problem) return;
  const JobProblem& problem = *facts.problem;
  const seconds took{std::max<std::int64_t>(clock_.Now().ms - problem.first.ms, 0) / 1000};
  told.push_back({false, "Job " + name + " recovered after " + std::to_string(problem.tries) +
                             (problem.tries == 1 ? " try, " : " tries, ") + AgeText(took)});
  facts.problem.reset();
}

void JobWatch::NoteFailed(Facts& facts, const std::string& name, const PassReport& report,
                          std::vector<WatchMessage>& told) {
  ++facts.passes[1];
  JobProblem problem;
  problem.what = report.problem;
  problem.ora = OraNumber(problem.what.error);
  problem.first = facts.problem ? facts.problem->first : report.end;
  problem.last = report.end;
  problem.tries = (facts.problem ? facts.problem->tries : 0) + 1;
  problem.reached_scn = report.reached_scn;
  if (const auto behind = facts.clock.Behind(clock_.Steady())) {
    problem.complete_until = LocalTime{std::max<std::int64_t>(report.end.ms - behind->count(), 0)};
  }
  const bool is_new = !facts.problem || !SameProblem(*facts.problem, problem);
  const PassProblem& what = problem.what;
  if (is_new && what.where == PassProblem::Where::Statement) {
    told.push_back({true, name + ": statement " + std::to_string(what.number) + " of " +
                              std::to_string(what.of) + " was refused, on " + what.owner + "." +
                              what.table});
  }
  facts.problem = std::move(problem);
}

bool JobWatch::Keep(const JobFolder& folder, const PassReport& report, HistoryWriter& history,
                    const HistoryLine& line, const std::optional<JobProblem>& problem,
                    bool had_problem, std::string& error) {
  bool kept = true;
  if (report.outcome == PassReport::Outcome::Failed) {
    kept = WriteProblemFile(files_, folder, *problem, error);
  } else if (had_problem && !problem) {
    const FileStatus removed = RemoveForGood(files_, folder.File(JobFile::Problem));
    if (!removed) error = removed.reason;
    kept = static_cast<bool>(removed);
  }
  std::string other;
  if (!history.Append(files_, folder.File(JobFile::History), line, other)) {
    if (kept) error = std::move(other);
    kept = false;
  }
  return kept;
}

std::vector<WatchMessage> JobWatch::TakePass(std::size_t index, const PassReport& report) {
  std::vector<WatchMessage> told;
  const std::string name = NameOf(jobs_.At(index));
  const LocalTime due = jobs_.At(index).run.next_due;
  HistoryLine line{report.end,
                   static_cast<std::int64_t>(report.captured),
                   report.applied,
                   report.blocked,
                   report.took.count(),
                   std::nullopt,
                   std::string(FirstLine(report.problem.error)),
                   report.source_scn,
                   report.reached_scn,
                   report.room};
  std::optional<JobProblem> problem;
  bool had_problem = false;
  Facts* facts = nullptr;
  {
    const MutexLock lock(mutex_);
    facts = &facts_[index];  // never moves, and only this thread takes passes of the job
    had_problem = facts->problem.has_value();
    if (report.source_scn != 0) facts->clock.Add(report.source_scn, clock_.Steady());
    facts->clock.Reach(facts->reached_scn = report.reached_scn);
    if (Unknown(report)) return told;
    facts->asked = report.source_scn != 0;
    facts->next_due = due;
    if (report.room) {
      facts->room = report.room;
      facts->room_at = clock_.Steady();
    }
    if (report.definitions) facts->definitions = report.definitions;
    facts->took += report.took;
    if (report.outcome == PassReport::Outcome::WorkedOff) {
      NoteGood(*facts, name, told);
    } else if (report.outcome == PassReport::Outcome::Failed) {
      NoteFailed(*facts, name, report, told);
    } else {
      ++facts->passes[2];
      line.error = kInterrupted;
    }
    if (const auto behind = BehindOf(*facts, clock_.Steady())) line.behind_s = behind->count();
    problem = facts->problem;
  }
  std::string error;
  bool kept =
      Keep(catalogue_.FolderOf(name), report, facts->history, line, problem, had_problem, error);
  std::string other;
  if (!WriteMetrics(other)) {
    if (kept) error = std::move(other);
    kept = false;
  }
  if (!kept && !std::exchange(facts->told_of_files, true)) {
    told.push_back({true, error + ". The jobs go on; what is told of " + name +
                              " after a restart may be wrong"});
  }
  return told;
}

void JobWatch::BeginAnew(std::size_t index) {
  {
    const MutexLock lock(mutex_);
    const auto found = facts_.find(index);
    if (found == facts_.end() || !found->second.problem) return;
    found->second.problem.reset();
  }
  // One that stays counts again after a restart, until the first good pass.
  static_cast<void>(
      RemoveForGood(files_, catalogue_.FolderOf(NameOf(jobs_.At(index))).File(JobFile::Problem)));
}

std::string JobWatch::Metrics() const {
  std::vector<JobFigures> figures;
  const LocalTime now = clock_.Now();
  for (std::size_t index = 0; index < jobs_.Count(); ++index) {
    if (jobs_.State(index) == JobState::Empty) continue;
    const SyncJob& job = jobs_.At(index);
    const WatchedJob watched = Look(index);
    JobFigures one;
    one.job = NameOf(job);
    one.health = watched.health;
    one.applied = job.run.applied_count;
    one.blocked = job.run.blocked_count;
    one.waiting = watched.waiting;
    const std::int64_t unix_now = clock_.UnixSeconds();
    if (watched.since_good) one.last_good = unix_now - watched.since_good->count();
    if (watched.behind) one.complete_until = unix_now - watched.behind->count();
    if (watched.problem) {
      one.failing_since = unix_now - (now.ms - watched.problem->first.ms) / 1000;
      one.tries = watched.problem->tries;
    }
    const MutexLock lock(mutex_);
    if (const auto found = facts_.find(index); found != facts_.end()) {
      std::copy_n(found->second.passes, 3, one.passes);
      one.took_ms = found->second.took.count();
    }
    figures.push_back(std::move(one));
  }
  return MetricsText(figures);
}

// At each pass, but with very many jobs not so often that it would be felt.
bool JobWatch::WriteMetrics(std::string& error) {
  constexpr int kRestFactor = 100;
  const SteadyTime begin = clock_.Steady();
  if (begin < next_metrics_) return true;
  const bool written = ReplaceQuickly(files_, working_folder_ / kMetricsFile, Metrics(), error);
  const SteadyTime end = clock_.Steady();
  next_metrics_ = end + kRestFactor * (end - begin);
  return written;
}

}  // namespace quillmere
