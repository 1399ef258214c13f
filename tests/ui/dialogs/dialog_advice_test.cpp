// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "support/config_of.h"
#include "support/temp_folder.h"
#include "ui/job_dialogs/job_advice.h"
#include "ui/sources/login_advice.h"

namespace quillmere {
namespace {

TEST(DialogAdvice, ARefusedLogOnLeadsToTheFieldThatIsWrong) {
  struct Row {
    const char* what;
    LogOn login;
    const char* refusal;
    LoginField field;
  };
  const char* const empty = "Obligatory field can not be empty";
  const std::vector<Row> rows = {
      {"nothing entered", {"", "", ""}, empty, LoginField::Name},
      {"no user", {"A", "", ""}, empty, LoginField::UserId},
      {"long",
       {"A", "u", "p"},
       "A password must not be longer than 31 bytes",
       LoginField::Password},
      {"password",
       {"A", "u", "p"},
       "connect Database failed. Error: OCISessionBegin : ORA-01017: no",
       LoginField::Password},
      {"sysdba", {"A", "u", "p"}, "ORA-01031: insufficient privileges", LoginField::Mode},
      {"locked", {"A", "u", "p"}, "ORA-28000: the account is locked", LoginField::UserId},
      {"no such name", {"A", "u", "p"}, "ORA-12154: TNS", LoginField::Name},
      {"taken", {"A", "u", "p"}, "Database already exist, user another please", LoginField::Name},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(FieldToCorrect(row.login, row.refusal), row.field) << row.what;
  }
}

TEST(DialogAdvice, SaveSaysWhoseLogOnItChanges) {
  TempFolder folder;
  Settings settings;
  SystemClock clock;
  MessageLog log(folder.Files(), folder.Path(), clock, settings);
  DataSourceRegistry registry(folder.Files(), folder.Path(), log, settings);
  for (const char* name : {"A", "B"}) {
    DataSource source;
    source.name = name;
    registry.Add(std::move(source));
  }
  EXPECT_THAT(SaveAdvice(registry, "A", "A"), ::testing::StartsWith("Save tries the log-on"));
  EXPECT_EQ(SaveAdvice(registry, "A", "B"), "Save will change the log-on of B, not that of A.");
  EXPECT_THAT(SaveAdvice(registry, "A", "a"), ::testing::HasSubstr("use New"));
}

TEST(DialogAdvice, DeletingADataSourceSaysWhichJobsItStops) {
  JobList jobs;
  const auto add = [&](const char* name, const char* source, const char* destination) {
    const std::size_t slot = jobs.Claim();
    ConfigOf(jobs.At(slot)).name = name;
    ConfigOf(jobs.At(slot)).src_database_name = source;
    ConfigOf(jobs.At(slot)).des_database_name = destination;
    jobs.SetState(slot, JobState::Stopped);
    return slot;
  };
  const std::size_t gone = add("Gone", "A", "B");
  EXPECT_THAT(DeleteQuestion(jobs, "A"), ::testing::EndsWith("Job Gone can not run without it."));
  jobs.SetState(gone, JobState::Empty);
  EXPECT_THAT(DeleteQuestion(jobs, "A"), ::testing::EndsWith("stays as it is."));
  add("J1", "A", "B");
  add("J2", "B", "C");
  add("J3", "C", "B");
  EXPECT_THAT(DeleteQuestion(jobs, "A"), ::testing::EndsWith("Job J1 can not run without it."));
  EXPECT_THAT(DeleteQuestion(jobs, "B"), ::testing::EndsWith("J1 and 2 other jobs can not run "
                                                             "without it."));
}

TEST(DialogAdvice, RefusedPropertiesLeadToTheFirstFieldThatIsWrong) {
  struct Row {
    const char* what;
    JobProperties entered;
    std::size_t sources;
    JobField field;
  };
  const std::vector<Row> rows = {
      {"all wrong", {"", "", "", "", 0}, 1, JobField::NewSource},
      {"no interval", {"", "", "", "", 0}, 2, JobField::Interval},
      {"below 0", {"J", "d", "A", "B", -1}, 2, JobField::Interval},
      {"no name", {"", "", "", "", 1}, 2, JobField::Name},
      {"no description", {"J", "", "", "", 1}, 2, JobField::Description},
      {"no source", {"J", "d", "", "", 1}, 2, JobField::Source},
      {"no destination", {"J", "d", "A", "", 1}, 2, JobField::Destination},
      {"both alike", {"J", "d", "A", "A", 1}, 2, JobField::Destination},
      {"the name is taken", {"J", "d", "A", "B", 1}, 2, JobField::Name},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(FieldToCorrect(row.entered, row.sources), row.field) << row.what;
    const bool refused = !WhyPropertiesRefused(row.entered, row.sources).empty();
    EXPECT_EQ(refused, std::string_view(row.what) != "the name is taken") << row.what;
  }
}

TEST(DialogAdvice, TheIntervalStopsAtBothEnds) {
  EXPECT_EQ(SteppedInterval(0, -1), 0);
  EXPECT_EQ(SteppedInterval(9995, 10), 10000);
  EXPECT_EQ(SteppedInterval(2147483647, 1), 10000) << "typed";
  EXPECT_EQ(SteppedInterval(-2147483647 - 1, -10), 0) << "typed";
  EXPECT_EQ(SteppedInterval(7, 1), 8);
}

}  // namespace
}  // namespace quillmere
