// SPDX-License-Identifier: MIT
#include "cli/run_command.h"

#include <cmath>

#include "cli/job_drive.h"
#include "workspace/job_operations.h"

namespace quillmere::cli {
namespace {

// The job that is to run, if its state is the one expected.
std::size_t JobToRun(const Workspace& workspace, const std::string& name, JobState expected) {
  const std::size_t index = FindJob(workspace, name);
  if (index == JobList::kNotFound) return index;
  const JobState state = workspace.Jobs().State(index);
  if (state == expected) return index;
  // One whose record can not be read looks stopped.
  const std::string held = workspace.Jobs().HeldBecause(index);
  if (!held.empty() && expected == JobState::Paused) {
    Fail("Job " + name + " is held: " + held);
    return JobList::kNotFound;
  }
  Fail("Job " + name + " is " + std::string(StateName(state)) + ": " +
       (state == JobState::Paused ? "go on with --continue, or use 'job stop' first"
                                  : "begin with --start"));
  return JobList::kNotFound;
}

bool FindAll(const Workspace& workspace, const std::vector<std::string>& names, JobState expected,
             std::vector<std::size_t>& jobs) {
  for (const std::string& name : names) {
    jobs.push_back(JobToRun(workspace, name, expected));
    if (jobs.back() == JobList::kNotFound) return false;
  }
  return true;
}

// For a service: jobs that were interrupted come back paused, and go on; a stopped one was stopped
// by somebody. One that can not go on does not hold the others. False: none goes on.
bool ContinueAll(Workspace& workspace, EngineContext& engine) {
  bool some = false;
  for (std::size_t index = 0; index < workspace.Jobs().Count(); ++index) {
    if (workspace.Jobs().State(index) != JobState::Paused) continue;
    const Outcome run = RunJob(workspace, engine, index);
    if (!run) Fail("Job " + NameOf(workspace.Jobs().At(index)) + ": " + run.text);
    some = some || run.done;
  }
  return some;
}

}  // namespace

int Run(const CommandLine& line, const RunArguments& arguments) {
  const auto workspace = OpenToChange(line);
  if (workspace == nullptr) return kFailed;
  std::vector<std::size_t> jobs;
  if (!FindAll(*workspace, arguments.start, JobState::Stopped, jobs) ||
      !FindAll(*workspace, arguments.go_on, JobState::Paused, jobs)) {
    return kFailed;
  }
  if (jobs.empty() && !arguments.go_on_all) {
    return Print("No job runs: name jobs with --start or --continue\n");
  }
  JobDrive::Options options;
  if (arguments.seconds) {
    options.time = std::chrono::milliseconds(std::llround(*arguments.seconds * 1000));
  }
  options.sweep_pause = std::chrono::milliseconds(arguments.sweep_ms);
  options.progress = arguments.progress;
  options.json = arguments.json;
  JobDrive drive(*workspace, options);
  for (const std::size_t job : jobs) {
    const Outcome run = RunJob(*workspace, drive.Engine(), job);
    if (!run) return Fail("Job " + NameOf(workspace->Jobs().At(job)) + ": " + run.text);
  }
  if (arguments.go_on_all && !ContinueAll(*workspace, drive.Engine()) && jobs.empty()) {
    return Fail("No job goes on; begin one with --start");
  }
  return drive.Run();
}

}  // namespace quillmere::cli
