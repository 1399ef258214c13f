// SPDX-License-Identifier: MIT
#include "workspace/way_out.h"

#include "engine/skip.h"
#include "workspace/job_operations.h"
#include "workspace/skip_statement.h"

namespace quillmere {

WaysOut WaysOutOf(const WatchedJob& job) {
  WaysOut ways;
  const bool started = job.state == JobState::Started;
  if (!started && job.state != JobState::Paused) return ways;
  ways.stop = true;
  ways.retry = started || job.held.empty();
  if (!job.problem || !job.held.empty()) return ways;
  const PassProblem& what = job.problem->what;
  ways.skip = what.where == PassProblem::Where::Statement && job.waiting > 0;
  ways.exclude = !what.table.empty();
  return ways;
}

Outcome RetryJob(Workspace& workspace, EngineContext& engine, std::size_t index) {
  JobRun& run = workspace.Jobs().At(index).run;
  switch (workspace.Jobs().State(index)) {
    case JobState::Started:
      run.pass_asked = true;
      return Outcome::Done();
    case JobState::Paused:
      run.next_due = {};
      return RunJob(workspace, engine, index);
    default:
      return Outcome::Refused(NameOf(workspace.Jobs().At(index)) +
                              " is neither started nor paused: there is nothing to try again");
  }
}

Outcome SkipProblem(Workspace& workspace, std::size_t index, const JobProblem& seen,
                    const std::string& reason) {
  NextToSkip next;
  std::string error;
  if (!FindNextToSkip(workspace.Jobs(), index, next, error)) {
    return Outcome::Refused(std::move(error));
  }
  const auto now = workspace.Watch().Look(index).problem;
  const PassProblem& what = seen.what;
  const bool same = now && SameProblem(*now, seen) && now->reached_scn == seen.reached_scn &&
                    next.of == what.of && next.first < what.number &&
                    what.number <= next.first + next.count;
  if (!same) {
    return Outcome::Refused(NameOf(workspace.Jobs().At(index)) +
                            " got further meanwhile: nothing was skipped");
  }
  return SkipStatement(workspace, index, reason);
}

std::optional<RowBeside> ReadRowBeside(Workspace& workspace, std::size_t index,
                                       const JobProblem& problem, DatabaseWork& work) {
  LogOn log_on;
  {
    const SyncJob& record = workspace.Jobs().At(index);
    const MutexLock lock(record.config_mutex);
    log_on = record.config.destination;
  }
  return RunFor(work, workspace.Log(),
                [library = &workspace.Oci(), log_on, problem](SchemaListener& listener, LogLines&) {
                  RowBeside row;
                  OracleSession destination(*library);
                  if (!listener.OnConnect("connect to " + log_on.name)) return row;
                  if (destination.Connect(log_on)) return LookAtRow(destination, problem);
                  row.why_not = "The destination did not give the row: " + destination.LastError();
                  return row;
                });
}

}  // namespace quillmere
