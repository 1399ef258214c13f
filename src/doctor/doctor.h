// SPDX-License-Identifier: MIT
// What could keep a job from running well, looked at before it runs: 21 checks of both databases
// and of the job's tables, each with the statement that cures what it finds. Only asks: neither
// database is changed, and no file is written.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "doctor/patient.h"
#include "oracle/H_oracle.h"

namespace quillmere {

// From well to bad.
enum class Grade { Ok, Warning, Failure };

// "ok", "warning", "failure".
std::string_view GradeName(Grade grade);

struct Finding {
  int number = 0;     // of the check, from 1
  std::string check;  // its name
  Grade grade = Grade::Ok;
  std::string subject;   // the database or the table, "" when it is about both
  std::string text;      // one line why
  std::string cure;      // a statement with its semicolon, or a comment that begins with "-- "
  std::string database;  // where the statement is to be run
};

// Asked before each check with its number and name, and during it: false ends the examination
// there; what was found is returned.
using DoctorWatch = std::function<bool(int number, std::string_view check)>;
inline constexpr int kDoctorChecks = 21;

// At least one finding for each check, in their order. What can not be answered is a warning that
// begins with "could not be checked: ". Blocks for seconds, or as long as the rows of the tables
// take to be counted; on one thread, which may use the client library.
std::vector<Finding> Examine(const Patient& patient, OciLibrary& library, const Clock& clock,
                             const DoctorWatch& watch = {});

Grade Worst(const std::vector<Finding>& findings);

// All cures as a script for the administrator, database by database.
std::string CuresText(const Patient& patient, const std::vector<Finding>& findings);

}  // namespace quillmere
