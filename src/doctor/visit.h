// SPDX-License-Identifier: MIT
// One examination in hand: the two databases, and what was found. Internal to doctor/.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "doctor/doctor.h"
#include "doctor/table_facts.h"
#include "engine/rewriter.h"
#include "oracle/read_rows.h"

namespace quillmere::doctor {

// A database of the job, with one session.
struct Side {
  Side(OciLibrary& library, const LogOn& with) : log_on(with), session(library) {}

  const LogOn& log_on;
  OracleSession session;
  bool connected = false;
  std::string why_not;  // connected
  TableFacts facts;     // of the tables that the job carries
};

class Visit {
 public:
  Visit(const Patient& patient, OciLibrary& library, const Clock& clock, const DoctorWatch& watch);

  const Patient& Job() const { return patient_; }
  const Clock& Time() const { return clock_; }
  bool ByCommits() const { return patient_.follow == Follow::Commits; }
  Side& Source() { return source_; }
  Side& Destination() { return destination_; }
  // The source's tables are looked at in the container that the job follows.
  Side& SourceTables();

  void Begin(int number, std::string_view check);
  // Behind a check: that all was well, unless it found something.
  void End(std::string text);
  bool GoesOn() const { return goes_on_; }

  void Warn(std::string subject, std::string text, std::string cure = {},
            const Side* where = nullptr) {
    Say(Grade::Warning, std::move(subject), std::move(text), std::move(cure), where);
  }
  void Fail(std::string subject, std::string text, std::string cure = {},
            const Side* where = nullptr) {
    Say(Grade::Failure, std::move(subject), std::move(text), std::move(cure), where);
  }
  // A warning that nobody knows.
  void Unknown(const Side& side, const std::string& why, std::string cure = {});

  // False when there was no answer, which is a finding then.
  bool Read(Side& side, std::string_view sql, std::size_t columns, TextRows& rows);
  // The same for a query that answers one value; empty when it has no row.
  bool ReadOne(Side& side, std::string_view sql, std::string& value);
  // That the side is there; a finding when it is not.
  bool Connected(const Side& side);

  std::vector<Finding> Take() { return std::move(findings_); }

 private:
  void Say(Grade grade, std::string subject, std::string text, std::string cure, const Side* where);

  const Patient& patient_;
  OciLibrary& library_;
  const Clock& clock_;
  const DoctorWatch& watch_;
  Side source_, destination_;
  std::unique_ptr<Side> inside_;  // the container
  int number_ = 0;
  std::string check_;
  std::size_t begin_ = 0;  // of this check's findings
  bool goes_on_ = true;
  std::vector<Finding> findings_;
};

// Who is logged on there, for a grant.
std::string UserName(const Side& side);

// What the operator types, as a comment of one line.
std::string Command(std::string_view command);

// The checks, each a function that returns what is to be said when it found nothing.
std::string CheckLogOn(Visit& visit);
std::string CheckVersion(Visit& visit);
std::string CheckContainers(Visit& visit);
std::string CheckCharacters(Visit& visit);
std::string CheckClock(Visit& visit);
std::string CheckSourceGrants(Visit& visit);
std::string CheckLogMiner(Visit& visit);
std::string CheckArchiving(Visit& visit);
std::string CheckSupplemental(Visit& visit);
std::string CheckRedoKept(Visit& visit);
std::string CheckMembers(Visit& visit);
std::string CheckDestinationGrants(Visit& visit);
std::string CheckRoom(Visit& visit);
std::string CheckPresence(Visit& visit);
std::string CheckKeys(Visit& visit);
std::string CheckColumns(Visit& visit);
std::string CheckTypes(Visit& visit);
std::string CheckNames(Visit& visit);
std::string CheckTriggers(Visit& visit);
std::string CheckOtherJobs(Visit& visit);
std::string CheckRows(Visit& visit);

}  // namespace quillmere::doctor
