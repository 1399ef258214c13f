// SPDX-License-Identifier: MIT
#include "ui/jobs/doctor_words.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/stored_text.h"
#include "ui/toolkit/language.h"

namespace quillmere {
namespace {

// All that the doctor's own test has it say, the good results with the names of their checks.
std::vector<Finding> StoredFindings() {
  const std::regex result("\\d+ (ok|warning|failure) (.*?): (.*)"), cure("  [A-Z]+> (.*)");
  std::istringstream lines(Meant(StoredText(std::string(DOCTOR_TABLES) + "/checks.txt")));
  std::vector<Finding> findings;
  bool cures = false;  // a cure may go on over several lines
  for (std::string line; std::getline(lines, line);) {
    std::smatch part;
    if (std::regex_match(line, part, result)) {
      Finding& finding = findings.emplace_back();
      (part[1] == "ok" ? finding.check : finding.subject) = part[2];
      finding.text = part[3];
      cures = false;
    } else if (std::regex_match(line, part, cure)) {
      findings.back().cure = part[1];
      cures = true;
    } else if (cures && !line.empty()) {
      findings.back().cure += "\n" + line;
    } else {
      cures = false;
    }
  }
  return findings;
}

TEST(DoctorWords, FindingsAreGermanButForNamesStatementsAndWhatAServerSaid) {
  int argc = 1;
  char name[] = "test";
  char* argv[] = {name, nullptr};
  const QCoreApplication application(argc, argv);
  UseLanguage(Language::German);
  std::set<std::string> checks, kept;
  const auto look = [&](const std::string& said, const std::string& shown, bool stays) {
    EXPECT_TRUE(!stays || shown == said) << shown;
    if (!stays && shown == said) kept.insert(said);
  };
  const std::regex statement(
      "[a-z ]+ [^\n]*;(\n[^-\n]+;)*|-- quillmere-cli (source|job|schema) [a-z]+ .*|");
  for (const Finding& said : StoredFindings()) {
    const Finding shown = AsShown(said);
    if (!said.check.empty()) checks.insert(said.check);
    look(said.check, shown.check, said.check.empty());
    look(said.subject, shown.subject, said.subject.find(' ') == said.subject.npos);
    look(said.text, shown.text, said.text.starts_with("OCI"));
    look(said.cure, shown.cure, std::regex_match(said.cure, statement));
  }
  EXPECT_EQ(checks.size(), kDoctorChecks);
  const std::set<std::string> alike = {
      "LogMiner", "ARCHIVELOG",
      "-- shutdown immediate, startup mount\nalter database archivelog;\nalter database open;"};
  EXPECT_EQ(kept, alike);
}

}  // namespace
}  // namespace quillmere
