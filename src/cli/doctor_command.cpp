// SPDX-License-Identifier: MIT
#include "cli/doctor_command.h"

#include <map>

#include "cli/text_table.h"
#include "doctor/doctor.h"
#include "watch/health_json.h"

namespace quillmere::cli {
namespace {

constexpr int kNotExamined = 3;
constexpr std::size_t kMostShown = 20;  // of one check

std::string FindingsText(const std::vector<Finding>& findings) {
  std::vector<std::vector<std::string>> rows = {{"No.", "Check", "", "Where", "Finding", "Cure"}};
  std::map<int, std::size_t> shown;
  for (const Finding& finding : findings) {
    const std::size_t count = ++shown[finding.number];
    if (count > kMostShown) continue;
    rows.push_back({std::to_string(finding.number), finding.check,
                    std::string(GradeName(finding.grade)), finding.subject, OneLine(finding.text),
                    OneLine(finding.cure)});
  }
  std::string text = TextTable(rows);
  for (const auto& [number, count] : shown) {
    if (count <= kMostShown) continue;
    text += "Check " + std::to_string(number) + " has " + std::to_string(count - kMostShown) +
            " more findings; --json and --cures have them all\n";
  }
  return text;
}

std::string FindingsJson(const std::string& job, const std::vector<Finding>& findings) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const Finding& finding : findings) {
    list.push_back({{"number", finding.number},
                    {"check", finding.check},
                    {"grade", GradeName(finding.grade)},
                    {"subject", finding.subject},
                    {"text", finding.text},
                    {"cure", finding.cure},
                    {"database", finding.database}});
  }
  return JsonText({{"name", job}, {"worst", GradeName(Worst(findings))}, {"findings", list}});
}

}  // namespace

int RunDoctor(const CommandLine& line, const DoctorArguments& arguments) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kNotExamined;
  const std::size_t index = FindJob(*workspace, arguments.job);
  if (index == JobList::kNotFound) return kNotExamined;
  const Patient patient = PatientOf(workspace->Jobs(), index);
  EndRequest end_request;
  const std::vector<Finding> findings =
      Examine(patient, workspace->Oci(), workspace->TimeSource(),
              [&](int, std::string_view) { return !end_request.Came(); });
  if (end_request.Came()) {
    Fail("Ended before all checks were made");
    return kNotExamined;
  }
  if (!arguments.cures.empty()) {
    std::string error;
    if (!ReplaceFile(workspace->Files(), arguments.cures, CuresText(patient, findings),
                     FileAccess::OwnerOnly, error)) {
      Fail(error);
      return kNotExamined;
    }
  }
  const int printed =
      Print(arguments.json ? FindingsJson(arguments.job, findings) : FindingsText(findings));
  return printed == kDone ? static_cast<int>(Worst(findings)) : kNotExamined;
}

}  // namespace quillmere::cli
