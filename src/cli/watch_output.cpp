// SPDX-License-Identifier: MIT
#include "cli/watch_output.h"

#include <array>
#include <optional>

#include "foundation/clock.h"
#include "watch/advice.h"

namespace quillmere::cli {
namespace {

using Json = nlohmann::ordered_json;
using Age = std::optional<std::chrono::seconds>;

std::string Text(const Age& age, const char* behind) {
  return age ? AgeText(*age) + behind : std::string();
}

Json Number(const Age& age) {
  return age ? Json(age->count()) : Json(nullptr);
}

std::string PlaceText(const PassProblem& what) {
  switch (what.where) {
    case PassProblem::Where::Source:
      return "source";
    case PassProblem::Where::Destination:
      return "destination";
    case PassProblem::Where::Disk:
      return "disk";
    case PassProblem::Where::Statement:
      break;
  }
  return "statement " + std::to_string(what.number) + " of " + std::to_string(what.of);
}

std::string TableText(const PassProblem& what) {
  return what.table.empty() ? std::string() : what.owner + "." + what.table;
}

Json ProblemObject(const JobProblem& problem) {
  const PassProblem& what = problem.what;
  const bool statement = what.where == PassProblem::Where::Statement;
  return {{"where", statement ? "statement" : PlaceText(what)},
          {"ora", problem.ora},
          {"table", TableText(what)},
          {"number", what.number},
          {"of", what.of},
          {"error", what.error},
          {"statement", what.statement},
          {"first", FormatTimeStamp(problem.first)},
          {"last", FormatTimeStamp(problem.last)},
          {"tries", problem.tries},
          {"advice", AdviceFor(problem)}};
}

}  // namespace

std::vector<std::string> HealthHeads() {
  return {"Health", "Last Good Pass", "Behind", "Next Pass"};
}

std::vector<std::string> HealthCells(const WatchedJob& job) {
  return {std::string(HealthName(job.health)), Text(job.since_good, " ago"), Text(job.behind, ""),
          job.next_pass ? "in " + AgeText(*job.next_pass) : ""};
}

std::vector<std::vector<std::string>> HealthLines(const WatchedJob& job) {
  const std::vector<std::string> heads = HealthHeads();
  const std::vector<std::string> cells = HealthCells(job);
  std::vector<std::vector<std::string>> lines;
  for (std::size_t i = 0; i < heads.size(); ++i) {
    if (!cells[i].empty()) lines.push_back({heads[i], cells[i]});
  }
  if (job.problem) lines.push_back({"Problem", ProblemSummary(*job.problem)});
  return lines;
}

std::string ProblemSummary(const JobProblem& problem) {
  const std::string table = TableText(problem.what);
  return PlaceText(problem.what) + (table.empty() ? "" : ", " + table) + ": " + problem.what.error;
}

std::vector<std::vector<std::string>> ProblemLines(const std::string& name, const WatchedJob& job) {
  const JobProblem& problem = *job.problem;
  std::vector<std::vector<std::string>> lines = {
      {"JOB ID", name},
      {"Health", std::string(HealthName(job.health))},
      {"Where", PlaceText(problem.what)},
      {"Table", TableText(problem.what)},
      {"Error", problem.what.error},
      {"Statement", problem.what.statement},
      {"First", FormatTimeStamp(problem.first)},
      {"Last", FormatTimeStamp(problem.last)},
      {"Tries", std::to_string(problem.tries)},
      {"Waiting", std::to_string(job.waiting) + " changes"},
      {"What helps", std::string(AdviceFor(problem))}};
  std::erase_if(lines, [](const std::vector<std::string>& line) { return line[1].empty(); });
  return lines;
}

void AddHealth(Json& object, const WatchedJob& job) {
  object["health"] = HealthName(job.health);
  object["last_good_pass"] = Number(job.since_good);
  object["behind"] = Number(job.behind);
  object["next_pass"] = Number(job.next_pass);
  object["waiting"] = job.waiting;
  object["problem"] = job.problem ? ProblemObject(*job.problem) : Json(nullptr);
}

}  // namespace quillmere::cli
