// SPDX-License-Identifier: MIT
// How the state of health of jobs is shown: the same words in lists, single jobs and JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "watch/job_watch.h"

namespace quillmere::cli {

// Of a list's columns behind the others: heads, and a job's cells. What is not known is empty.
std::vector<std::string> HealthHeads();
std::vector<std::string> HealthCells(const WatchedJob& job);

// Heads and values, to be shown line by line.
std::vector<std::vector<std::string>> HealthLines(const WatchedJob& job);
std::vector<std::vector<std::string>> ProblemLines(const std::string& name, const WatchedJob& job);

// In a few words: where, on which table, the error.
std::string ProblemSummary(const JobProblem& problem);

// Adds health, the clocks in seconds, and the problem; null where nothing is known.
void AddHealth(nlohmann::ordered_json& object, const WatchedJob& job);

}  // namespace quillmere::cli
