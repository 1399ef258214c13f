// SPDX-License-Identifier: MIT
#include "cli/trouble_commands.h"

#include <chrono>
#include <thread>

#include "cli/row_output.h"
#include "cli/text_table.h"
#include "engine/job_runner.h"
#include "watch/health_json.h"
#include "watch/health_text.h"
#include "workspace/skip_statement.h"
#include "workspace/way_out.h"

namespace quillmere::cli::job {
namespace {

constexpr std::chrono::seconds kLongestWait{60};
constexpr std::chrono::milliseconds kPause{200};

// Prints what the engine says as `run` does, and keeps it.
class Teller final : public RunnerListener {
 public:
  explicit Teller(MessageLog& log) : log_(log) {}
  void OnJobChanged(std::size_t, bool) override {}
  void OnError(std::size_t, std::string_view text) override {
    log_.Add(text, true);
    Print("ERROR " + OneLine(text) + "\n");
  }
  void OnInformation(std::size_t, std::string_view text) override {
    log_.Add(text, false);
    Print(OneLine(text) + "\n");
  }
  void OnPassEnd(std::size_t, const PassReport& report) override { last_ = report.outcome; }
  bool Good() const { return last_ == PassReport::Outcome::WorkedOff; }
  bool AskedAgain() const { return last_ == PassReport::Outcome::Later; }

 private:
  MessageLog& log_;
  PassReport::Outcome last_ = PassReport::Outcome::Failed;
};

std::string WaysOut(const std::string& name, const WatchedJob& job) {
  std::string text = "\nTry again: 'job retry " + name + "'";
  const PassProblem& what = job.problem->what;
  if (what.where != PassProblem::Where::Statement) return text + ".\n";
  text += ". Leave it out: 'job skip " + name + " --reason TEXT'";
  if (!what.table.empty()) {
    text +=
        ". Do without the table: 'job exclude " + name + " " + what.owner + " " + what.table + "'";
  }
  return text + ".\n";
}

RowBeside RowOf(Workspace& workspace, std::size_t index, const WatchedJob& job) {
  InPlace here;
  return ReadRowBeside(workspace, index, *job.problem, here).value_or(RowBeside{});
}

}  // namespace

int Problem(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  const std::size_t index = FindJob(*workspace, arguments.name);
  if (index == JobList::kNotFound) return kFailed;
  const WatchedJob job = workspace->Watch().Look(index);
  if (arguments.json) {
    nlohmann::ordered_json object = {{"name", arguments.name}, {"held", job.held}};
    AddHealth(object, job);
    if (arguments.row && job.problem) object["row"] = RowObject(RowOf(*workspace, index, job));
    return Print(JsonText(object));
  }
  if (!job.problem) {
    return Print("Job " + arguments.name +
                 (job.held.empty() ? " has no problem" : " is held: " + job.held) + "\n");
  }
  const std::string row = arguments.row ? "\n" + RowText(RowOf(*workspace, index, job)) : "";
  return Print(TextTable(ProblemLines(arguments.name, job)) + row + WaysOut(arguments.name, job));
}

int Retry(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToChange(line);
  if (workspace == nullptr) return kFailed;
  const std::size_t index = FindJob(*workspace, arguments.name);
  if (index == JobList::kNotFound) return kFailed;
  if (workspace->Jobs().State(index) != JobState::Paused) {
    return Fail("Job " + arguments.name + " is stopped: begin with 'run --start'");
  }
  Teller teller(workspace->Log());
  EngineContext engine = workspace->EngineFor(teller);
  const Outcome run = RetryJob(*workspace, engine, index);
  if (!run) return Fail("Job " + arguments.name + ": " + run.text);
  JobRunner runner(engine);
  // By commits the source may have to get a few seconds older first.
  const auto limit = std::chrono::steady_clock::now() + kLongestWait;
  EndRequest end_request;
  for (runner.Step(index); teller.AskedAgain(); runner.Step(index)) {
    if (end_request.Came() || std::chrono::steady_clock::now() > limit) break;
    std::this_thread::sleep_for(kPause);
  }
  RequestPause(workspace->Jobs(), index);
  runner.Step(index);
  std::string reason;
  if (!workspace->SaveJobs(reason)) return Fail(reason);
  if (teller.Good()) return kDone;
  return Fail("The pass did not work off what there was; 'job problem " + arguments.name +
              "' tells more");
}

int Skip(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToChange(line);
  if (workspace == nullptr) return kFailed;
  const std::size_t index = FindJob(*workspace, arguments.name);
  if (index == JobList::kNotFound) return kFailed;
  const Outcome skipped = SkipStatement(*workspace, index, arguments.reason);
  return skipped ? Print(skipped.text + "\n") : Fail(skipped.text);
}

}  // namespace quillmere::cli::job
