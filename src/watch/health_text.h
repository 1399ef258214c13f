// SPDX-License-Identifier: MIT
// How the health of a job and its problem are put into words, the same on every face. Any thread.
#pragma once

#include <string>
#include <vector>

#include "watch/job_watch.h"

namespace quillmere {

// Of a list's columns behind the others: heads, and a job's cells. What is not known is empty.
std::vector<std::string> HealthHeads();
std::vector<std::string> HealthCells(const WatchedJob& job);

// Where a pass failed: "source", "statement 3 of 12"; and the table, empty without one.
std::string PlaceText(const PassProblem& what);
std::string TableText(const PassProblem& what);

// What does not fit on the destination, and the statement that brings it up.
std::string DefinitionText(const DefinitionDifference& one);

// In a few words: where, on which table, the error.
std::string ProblemSummary(const JobProblem& problem);

// Heads and values, to be shown line by line.
using TextLines = std::vector<std::vector<std::string>>;
TextLines HealthLines(const WatchedJob& job);
TextLines ProblemLines(const std::string& name, const WatchedJob& job);

}  // namespace quillmere
