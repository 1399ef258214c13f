// SPDX-License-Identifier: MIT
#include "doctor/doctor.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/hand_clock.h"
#include "support/scripted_oci.h"
#include "support/stored_text.h"

namespace quillmere {
namespace {

using testing::ScriptedOci;

// What the queries of two databases that are well answer.
constexpr const char* kWell = R"(both from v$instance ~ 19.3.0.0.0
both 'con_name' ~ ORCL
both NLS_CHARACTERSET ~ AL32UTF8
both nls_session_parameters ~ NLS_DATE_FORMAT|YYYY-MM-DD HH24:MI:SS
both systimestamp ~ 2026-02-01 00:59:07 +01:00
both f.member from v$log ~ 1|7|100|CURRENT|/redo1
both log_mode ~ ARCHIVELOG
both supplemental_log_data_min ~ YES|YES|NO
both 0) from v$log where ~ 3|100|600
both 0) from v$archived_log ~ 0|0|0
both min(nvl(start_scn ~ -1
both member, status from v$logfile ~ 1|/redo1|
both session_privs ~ INSERT ANY TABLE//UPDATE ANY TABLE//DELETE ANY TABLE
both dba_free_space ~ USERS|900000000
both dba_all_tables where owner = 'SHOP' ~ ITEM|USERS
both data_type_owner ~ ITEM|ID|NUMBER||22|8|2|N|0//ITEM|NAME|VARCHAR2||20|0|0|Y|0
both constraint_type = 'P' and c.owner ~ ITEM|ID
both uniqueness = 'UNIQUE' ~ ITEM
both count(*) from SHOP.ITEM ~ 3
)";

// "a|b//c|d"
ScriptedOci::Rows ReadAnswer(const std::string& text) {
  ScriptedOci::Rows rows;
  if (text.empty()) return rows;
  rows.emplace_back().emplace_back("");
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '|') {
      rows.back().emplace_back("");
    } else if (text.compare(i, 2, "//") == 0) {
      rows.emplace_back().emplace_back("");
      ++i;
    } else {
      *rows.back().back() += text[i];
    }
  }
  return rows;
}

// A job that carries SHOP.ITEM, and what differs from databases that are well.
class Case {
 public:
  explicit Case(const std::string& given) {
    patient_.name = "J";
    patient_.source = {"SRC", "su", "sp", true};
    patient_.destination = {"DES", "DU", "dp", false};
    patient_.interval = 5;
    patient_.follow = Follow::Commits;
    patient_.tables = {{"SHOP", "ITEM", "SHOP"}};
    Take(kWell);
    Take(given);
    script_.on_call = [this](const std::string& line) {
      if (!line.starts_with("StmtExecute")) return std::string();
      for (auto& [part, rows] : sides_[line.starts_with("StmtExecute(svc2") ? 1 : 0]) {
        script_.Answer(part, rows);
      }
      return std::string();
    };
  }

  std::string Look() {
    OciLibrary library(script_.Api());
    const std::vector<Finding> findings = Examine(patient_, library, clock_);
    std::ostringstream text;
    int number = 0;
    for (const Finding& finding : findings) {
      EXPECT_TRUE(finding.number == number || finding.number == number + 1);
      number = finding.number;
      if (finding.grade == Grade::Ok) {
        if (told_ == 0 || told_ == number) {
          text << number << " ok " << finding.check << ": " << finding.text << "\n";
        }
        continue;
      }
      text << number << " " << GradeName(finding.grade) << " " << finding.subject << ": "
           << finding.text << "\n";
      if (!finding.cure.empty()) text << "  " << finding.database << "> " << finding.cure << "\n";
    }
    EXPECT_EQ(number, kDoctorChecks);
    for (const std::string& sql : script_.TakeExecuted()) {
      const bool asks = sql.starts_with("select ") || sql.starts_with("begin ") ||
                        sql.starts_with("BEGIN ") || sql.starts_with("alter session ");
      EXPECT_TRUE(asks) << sql;
    }
    return text.str();
  }

 private:
  void Take(const std::string& given) {
    std::istringstream lines(given);
    for (std::string line; std::getline(lines, line);) {
      const std::size_t space = line.find(' ');
      const std::string what = line.substr(0, space);
      const std::string rest = space == std::string::npos ? "" : line.substr(space + 1);
      const std::size_t is = rest.find(" ~");
      const std::string part = rest.substr(0, is);
      const std::string value = rest.size() > is + 3 ? rest.substr(is + 3) : "";
      if (what == "both" || what == "src") sides_[0][part] = ReadAnswer(value);
      if (what == "both" || what == "des") sides_[1][part] = ReadAnswer(value);
      if (what == "fail") script_.FailOn(part, "ORA-" + value, std::stoi(value));
      if (what == "rows") patient_.follow = Follow::Rows;
      if (what == "container") patient_.container = rest;
      if (what == "interval") patient_.interval = std::stoi(rest);
      if (what == "none") patient_.tables.clear();
      if (what == "fetched") patient_.fetched = true;
      if (what == "told") told_ = std::stoi(rest);
      if (what == "user") patient_.source.user_id = patient_.destination.user_id = rest;
      if (what == "table") {  // NAME OWNER TO_OWNER
        std::istringstream words(rest);
        CarriedTable table{"SHOP", {}, "SHOP"};
        words >> table.name >> table.owner;
        if (!(words >> table.to_owner)) table.owner = table.to_owner = "SHOP";
        patient_.tables.push_back(table);
      }
      if (what == "meets") patient_.meetings.push_back({"K", "SHOP", "ITEM", rest == "back"});
    }
  }

  Patient patient_;
  int told_ = -1;  // the check whose good result is told, too; 0: of all
  HandClock clock_;
  ScriptedOci script_;
  std::map<std::string, ScriptedOci::Rows> sides_[2];
};

TEST(Doctor, EachCheckAndWhatFailsIt) {
  ExpectCases(std::string(TABLES) + "/checks.txt", [](const std::string& given) {
    const std::string found = Case(given).Look();
    return found.empty() ? "all well" : found;
  });
}

TEST(Doctor, JobsThatMeetAreThoseThatWriteToATableOfThisOneOrBackToItsSource) {
  JobList jobs;
  const auto add = [&](const char* name, const char* from, const char* to, const char* owner,
                       const char* to_owner, bool carried = true) {
    const std::size_t index = jobs.Claim();
    {
      SyncJob& job = jobs.At(index);
      const MutexLock lock(job.config_mutex);
      job.config.name = name;
      job.config.src_database_name = from;
      job.config.des_database_name = to;
      JobTable& table = job.config.schemas[owner].Append({"ITEM", to_owner});
      table.includeflag = carried;
    }
    jobs.SetState(index, JobState::Stopped);
  };
  add("J", "A", "B", "SHOP", "SHIP");
  add("same table", "C", "B", "X", "SHIP");
  add("its owner's", "C", "B", "SHIP", "");
  add("back", "B", "A", "SHIP", "SHOP");
  add("another table", "C", "B", "SHOP", "SHOP");
  add("not carried", "C", "B", "X", "SHIP", false);
  add("elsewhere", "A", "C", "SHOP", "SHIP");
  add("further", "B", "C", "SHIP", "SHOP");
  add("back from another table", "B", "A", "SHOP", "SHOP");
  std::string met;
  for (const Patient::Meeting& one : PatientOf(jobs, 0).meetings) {
    met += one.job + ":" + one.owner + "." + one.table + (one.takes_back ? " back" : "") + "\n";
  }
  EXPECT_EQ(met, "same table:SHIP.ITEM\nits owner's:SHIP.ITEM\nback:SHIP.ITEM back\n");
}

TEST(Doctor, CuresAreAScriptInWhichOnlyCuresRun) {
  Patient patient;
  patient.name = "J\ndrop table A;";
  patient.source.name = "SRC";
  patient.destination.name = "DES";
  const std::vector<Finding> findings = {
      {9, "keys", Grade::Failure, "T\ndrop user B;", "why\ndrop C;", "alter x;", "DES"},
      {9, "keys", Grade::Failure, "T", "why", "alter x;", "DES"},
      {8, "logs", Grade::Warning, "", "why", "alter y;", "SRC"}};
  std::istringstream lines(CuresText(patient, findings));
  std::string run;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("--") && !line.empty()) run += line + "\n";
  }
  EXPECT_EQ(run, "alter y;\nalter x;\n");
  EXPECT_EQ(Worst(findings), Grade::Failure);
}

}  // namespace
}  // namespace quillmere
