// SPDX-License-Identifier: MIT
#include "cli/health_command.h"

#include <array>

#include "cli/text_table.h"
#include "watch/health_json.h"
#include "watch/health_text.h"

namespace quillmere::cli {
namespace {

constexpr std::array<std::string_view, 4> kNames = {"well", "warning", "trouble", "unknown"};

std::string_view NameOf(HealthStatus status) {
  return kNames[static_cast<std::size_t>(status)];
}

// Trouble that is known comes before what is not known.
HealthStatus Worse(HealthStatus a, HealthStatus b) {
  constexpr std::array kRanks = {0, 1, 3, 2};
  const auto rank = [&](HealthStatus one) { return kRanks[static_cast<std::size_t>(one)]; };
  return rank(a) < rank(b) ? b : a;
}

}  // namespace

HealthStatus StatusOf(const WatchedJob& job, bool named, std::optional<int> max_behind,
                      int loss_hours) {
  HealthStatus status = HealthStatus::Well;
  switch (job.health) {
    case Health::UpToDate:
      break;
    case Health::Behind:
    case Health::Paused:
      status = HealthStatus::Warning;
      break;
    case Health::Failing:
    case Health::Held:
      return HealthStatus::Trouble;
    case Health::Stopped:
      if (!named) return status;
      status = HealthStatus::Warning;
      break;
  }
  const bool short_of_redo = job.time_to_loss && *job.time_to_loss < std::chrono::hours{loss_hours};
  if (short_of_redo || job.definitions) {
    status = HealthStatus::Warning;
  }
  if (!max_behind) return status;
  if (!job.behind) return Worse(status, HealthStatus::Unknown);
  return *job.behind > std::chrono::minutes{*max_behind} ? HealthStatus::Trouble : status;
}

int ShowHealth(const CommandLine& line, const HealthArguments& arguments) {
  constexpr int kUnknown = static_cast<int>(HealthStatus::Unknown);
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kUnknown;
  const bool named = !arguments.job.empty();
  if (named && FindJob(*workspace, arguments.job) == JobList::kNotFound) return kUnknown;
  std::vector<std::vector<std::string>> rows = {{"JOB ID"}};
  for (std::string& head : HealthHeads()) rows.front().push_back(std::move(head));
  rows.front().emplace_back("Problem");
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  HealthStatus status = HealthStatus::Well;
  const JobList& jobs = workspace->Jobs();
  for (std::size_t index = 0; index < jobs.Count(); ++index) {
    const std::string name = quillmere::NameOf(jobs.At(index));
    if (jobs.State(index) == JobState::Empty || (named && name != arguments.job)) continue;
    const WatchedJob job = workspace->Watch().Look(index);
    const HealthStatus one =
        StatusOf(job, named, arguments.max_behind, workspace->ProgramSettings().loss_warning_hours);
    status = Worse(status, one);
    std::vector<std::string> row = {name};
    for (std::string& cell : HealthCells(job)) row.push_back(std::move(cell));
    row.push_back(job.problem ? OneLine(ProblemSummary(*job.problem)) : job.held);
    rows.push_back(std::move(row));
    nlohmann::ordered_json object = {{"name", name}, {"status", NameOf(one)}, {"held", job.held}};
    AddHealth(object, job);
    list.push_back(std::move(object));
  }
  // Whoever watches jobs has some.
  if (rows.size() == 1) status = HealthStatus::Unknown;
  const int printed = Print(arguments.json ? JsonText({{"status", NameOf(status)}, {"jobs", list}})
                                           : TextTable(rows));
  return printed == kDone ? static_cast<int>(status) : kUnknown;
}

}  // namespace quillmere::cli
