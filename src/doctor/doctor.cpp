// SPDX-License-Identifier: MIT
#include "doctor/doctor.h"

#include <algorithm>
#include <array>

#include "doctor/visit.h"
#include "foundation/text.h"

namespace quillmere {
namespace {

struct Check {
  std::string_view name;
  std::string (*look)(doctor::Visit& visit);
};

// By number, from 1.
constexpr std::array<Check, kDoctorChecks> kChecks = {{
    {"log-on", doctor::CheckLogOn},
    {"version", doctor::CheckVersion},
    {"container", doctor::CheckContainers},
    {"characters and formats", doctor::CheckCharacters},
    {"clock", doctor::CheckClock},
    {"grants on the source", doctor::CheckSourceGrants},
    {"LogMiner", doctor::CheckLogMiner},
    {"archiving", doctor::CheckArchiving},
    {"supplemental logging", doctor::CheckSupplemental},
    {"redo kept", doctor::CheckRedoKept},
    {"log members", doctor::CheckMembers},
    {"grants on the destination", doctor::CheckDestinationGrants},
    {"room", doctor::CheckRoom},
    {"tables on both sides", doctor::CheckPresence},
    {"keys", doctor::CheckKeys},
    {"columns", doctor::CheckColumns},
    {"types", doctor::CheckTypes},
    {"names", doctor::CheckNames},
    {"triggers and cascades", doctor::CheckTriggers},
    {"other jobs", doctor::CheckOtherJobs},
    {"rows", doctor::CheckRows},
}};

}  // namespace

std::string_view GradeName(Grade grade) {
  constexpr std::array<std::string_view, 3> kNames = {"ok", "warning", "failure"};
  return kNames[static_cast<std::size_t>(grade)];
}

std::vector<Finding> Examine(const Patient& patient, OciLibrary& library, const Clock& clock,
                             const DoctorWatch& watch) {
  doctor::Visit visit(patient, library, clock, watch);
  for (std::size_t i = 0; i < kChecks.size(); ++i) {
    visit.Begin(static_cast<int>(i) + 1, kChecks[i].name);
    if (!visit.GoesOn()) break;
    visit.End(kChecks[i].look(visit));
  }
  return visit.Take();
}

Grade Worst(const std::vector<Finding>& findings) {
  Grade worst = Grade::Ok;
  for (const Finding& finding : findings) worst = std::max(worst, finding.grade);
  return worst;
}

std::string CuresText(const Patient& patient, const std::vector<Finding>& findings) {
  std::string text =
      OnOneLine("-- Cures for the job " + patient.name + ". Read each one before you run it.") +
      "\n";
  for (const std::string& database : {patient.source.name, patient.destination.name}) {
    std::string of_database;
    for (const Finding& finding : findings) {
      if (finding.cure.empty() || finding.database != database) continue;
      if (of_database.find(finding.cure + "\n") != std::string::npos) continue;
      std::string head = "-- " + std::to_string(finding.number) + " " + finding.check + ": ";
      if (!finding.subject.empty()) head += finding.subject + ": ";
      // What it says of names and errors must not end the comment.
      of_database += "\n" + OnOneLine(head + finding.text) + "\n";
      of_database += finding.cure + "\n";
    }
    if (!of_database.empty()) text += "\n-- On " + database + "\n" + of_database;
    if (patient.source.name == patient.destination.name) break;
  }
  return text;
}

}  // namespace quillmere
