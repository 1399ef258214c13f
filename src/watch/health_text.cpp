// SPDX-License-Identifier: MIT
#include "watch/health_text.h"

#include <optional>

#include "foundation/clock.h"
#include "watch/advice.h"
#include "watch/refused_row.h"

namespace quillmere {
namespace {

using Age = std::optional<std::chrono::seconds>;

std::string Text(const Age& age, const char* behind) {
  return age ? AgeText(*age) + behind : std::string();
}

}  // namespace

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

std::vector<std::string> HealthHeads() {
  return {"Health", "Last Good Pass", "Behind", "Next Pass", "Time To Loss"};
}

std::vector<std::string> HealthCells(const WatchedJob& job) {
  return {std::string(HealthName(job.health)), Text(job.since_good, " ago"), Text(job.behind, ""),
          job.next_pass ? "in " + AgeText(*job.next_pass) : "", Text(job.time_to_loss, "")};
}

TextLines HealthLines(const WatchedJob& job) {
  const std::vector<std::string> heads = HealthHeads();
  const std::vector<std::string> cells = HealthCells(job);
  TextLines lines;
  for (std::size_t i = 0; i < heads.size(); ++i) {
    if (!cells[i].empty()) lines.push_back({heads[i], cells[i]});
  }
  if (job.problem) lines.push_back({"Problem", ProblemSummary(*job.problem)});
  if (job.definitions) {
    for (const DefinitionDifference& one : *job.definitions) {
      lines.push_back({"Definition", DefinitionText(one)});
    }
  }
  return lines;
}

std::string DefinitionText(const DefinitionDifference& one) {
  return one.owner + "." + one.table + " " + one.what + (one.cure.empty() ? "" : ": " + one.cure);
}

std::string ProblemSummary(const JobProblem& problem) {
  const std::string table = TableText(problem.what);
  return PlaceText(problem.what) + (table.empty() ? "" : ", " + table) + ": " + problem.what.error;
}

TextLines ProblemLines(const std::string& name, const WatchedJob& job) {
  const JobProblem& problem = *job.problem;
  TextLines lines = {{"JOB ID", name},
                     {"Health", std::string(HealthName(job.health))},
                     {"Where", PlaceText(problem.what)},
                     {"Operation", std::string(OperationOf(problem.what.statement))},
                     {"Table", TableText(problem.what)},
                     {"Row", RowOf(problem.what.statement)},
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

}  // namespace quillmere
